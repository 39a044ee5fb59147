#!/bin/bash
# Builds the Debian packages from an already built tree with cpack and checks
# them: names, version and dependencies (dpkg-deb --info), the files each one
# holds (dpkg-deb --contents), lintian (errors and unlisted warnings fail),
# and a pkg-config consumer built against the packages unpacked into a
# scratch root.
#
# Usage: check-debian-packages.sh BUILD_DIR WORK_DIR
# The rest comes from the environment, set by the CTest test: PACKAGE_NAME,
# RUNTIME_PACKAGE, DEVELOPMENT_PACKAGE, VERSION, LIBDIR, LIBEXECDIR, QT_MAJOR, INCLUDE_DIR,
# CMAKE_DIR, PKGCONFIG_DIR, DESIGNER_DIR, DATA_DIR, NAME_SUFFIX, PROGRAMS,
# CMAKE, CPACK, CXX, CXX_FLAGS, LINKER_FLAGS, CONSUMER_SOURCE, CONSUMER_SCRIPT.
set -euo pipefail

build=$1
work=$2
here=$(cd "$(dirname "$0")" && pwd)
failures=0

fail() {
    echo "FAIL: $*" >&2
    failures=$((failures + 1))
}

rm -rf "$work"
mkdir -p "$work"

"$CPACK" -G DEB --config "$build/CPackConfig.cmake" -B "$work/out" >"$work/cpack.log" 2>&1 ||
    { cat "$work/cpack.log" >&2; echo "FAIL: cpack" >&2; exit 1; }

echo "cpack: ${SECONDS} s"
arch=$(dpkg --print-architecture)
runtime_deb=$work/out/${RUNTIME_PACKAGE}_${VERSION}_${arch}.deb
development_deb=$work/out/${DEVELOPMENT_PACKAGE}_${VERSION}_${arch}.deb
for deb in "$runtime_deb" "$development_deb"; do
    [ -f "$deb" ] || { ls "$work/out" >&2; echo "FAIL: no $deb" >&2; exit 1; }
done

# --- Control fields -----------------------------------------------------------

field() { dpkg-deb --field "$1" "$2"; }

expect_field() { # deb field expected
    local actual
    actual=$(field "$1" "$2")
    [ "$actual" = "$3" ] || fail "$(basename "$1"): $2 is '$actual', expected '$3'"
}

expect_depends() { # deb pattern (an extended regex matching one dependency)
    field "$1" Depends | tr ',' '\n' | sed 's/^ *//' | grep -Eqx "$2" ||
        fail "$(basename "$1"): Depends '$(field "$1" Depends)' lacks $2"
}

expect_field "$runtime_deb" Package "$RUNTIME_PACKAGE"
expect_field "$runtime_deb" Version "$VERSION"
expect_field "$runtime_deb" Section libs
expect_field "$development_deb" Package "$DEVELOPMENT_PACKAGE"
expect_field "$development_deb" Version "$VERSION"
expect_field "$development_deb" Section libdevel

# dpkg-shlibdeps found what the libraries, programs and plugin link.
expect_depends "$runtime_deb" "libqt${QT_MAJOR}widgets${QT_MAJOR}(t64)? \(>= [0-9.~+a-z-]+\)"
expect_depends "$runtime_deb" "libexiv2-[0-9]+ \(>= [0-9.~+a-z-]+\)"
expect_depends "$runtime_deb" "libc6 \(>= [0-9.~+a-z-]+\)"
expect_depends "$runtime_deb" "libstdc\+\+6 \(>= [0-9.~+a-z-]+\)"
# The runtime package's own libraries are no dependency of it.
if field "$runtime_deb" Depends | grep -q "$RUNTIME_PACKAGE"; then
    fail "runtime package depends on itself: $(field "$runtime_deb" Depends)"
fi
# The headers need the runtime package of the same version and Qt's headers.
expect_depends "$development_deb" "$RUNTIME_PACKAGE \(= $VERSION\)"
if [ "$QT_MAJOR" = 5 ]; then
    expect_depends "$development_deb" "qtbase5-dev"
else
    expect_depends "$development_deb" "qt6-base-dev"
fi

# --- Files --------------------------------------------------------------------

# The path is the sixth column; a symbolic link's target follows it.
contents() { dpkg-deb --contents "$1" | awk '{ print $6 }' | sed -e 's|^\./|/|'; }
contents "$runtime_deb" >"$work/runtime.files"
contents "$development_deb" >"$work/development.files"

expect_file() { # list path
    grep -qx "$2" "$work/$1.files" || fail "$1 package lacks $2"
}

usr=/usr
soname_major=${VERSION%%.*}
for library in "${PACKAGE_NAME}Core" "${PACKAGE_NAME}" "${PACKAGE_NAME}Host"; do
    expect_file runtime "$usr/$LIBDIR/lib$library.so.$soname_major"
    expect_file runtime "$usr/$LIBDIR/lib$library.so.$VERSION"
    expect_file development "$usr/$LIBDIR/lib$library.so"
done
for program in $PROGRAMS; do
    expect_file runtime "$usr/bin/$program$NAME_SUFFIX"
done
# zeimagemeta's window mode is a program of its own among the private ones.
case " $PROGRAMS " in
*" zeimagemeta "*) expect_file runtime "$usr/$LIBEXECDIR/$PACKAGE_NAME/zeimagemeta-gui" ;;
esac
expect_file runtime "$usr/$DESIGNER_DIR/libQtColorDesigner.so"
expect_file runtime "$usr/$DATA_DIR/translations/QtColor_de.qm"
expect_file runtime "$usr/$DATA_DIR/translations/QtColorApps_de.qm"
expect_file runtime "$usr/share/doc/$RUNTIME_PACKAGE/copyright"
for header in QZEColor.h QZEColorSlider.h QZESpectrumPlotView.h zePlatform.h ui_QZEColorDialogGUI.h; do
    expect_file development "$usr/$INCLUDE_DIR/$header"
done
expect_file development "$usr/$CMAKE_DIR/${PACKAGE_NAME}Config.cmake"
expect_file development "$usr/$CMAKE_DIR/${PACKAGE_NAME}ConfigVersion.cmake"
expect_file development "$usr/$CMAKE_DIR/QtColorTargets.cmake"
expect_file development "$usr/$PKGCONFIG_DIR/${PACKAGE_NAME}.pc"
expect_file development "$usr/share/doc/$DEVELOPMENT_PACKAGE/copyright"

# Headers and build files belong to the development package only, and no
# file is in both packages.
grep -E "/include/|/cmake/|/pkgconfig/|\.so$" "$work/runtime.files" | grep -v "/$" |
    grep -v "/$DESIGNER_DIR/" >"$work/misplaced" || true
[ ! -s "$work/misplaced" ] || fail "runtime package holds development files: $(cat "$work/misplaced")"
sort "$work/runtime.files" | grep -v "/$" >"$work/runtime.sorted"
sort "$work/development.files" | grep -v "/$" >"$work/development.sorted"
comm -12 "$work/runtime.sorted" "$work/development.sorted" >"$work/shared"
[ ! -s "$work/shared" ] || fail "files in both packages: $(cat "$work/shared")"

# A Qt 5 and a Qt 6 build install side by side: every file is named for this
# build, by the package name, the Debian package name, the Qt major version
# of a Qt plugin folder, or the program suffix.
named_for_build() {
    local path=$1 program
    case "$path" in
    */"$PACKAGE_NAME"/* | */lib"$PACKAGE_NAME"* | */"$PACKAGE_NAME".pc) return 0 ;;
    /usr/share/doc/"$RUNTIME_PACKAGE"/* | /usr/share/doc/"$DEVELOPMENT_PACKAGE"/*) return 0 ;;
    */qt"$QT_MAJOR"/plugins/*) return 0 ;;
    esac
    for program in $PROGRAMS; do
        [ "$path" = "/usr/bin/$program$NAME_SUFFIX" ] && return 0
    done
    return 1
}
while read -r path; do
    named_for_build "$path" || fail "$path is not named for the $PACKAGE_NAME build"
done < <(cat "$work/runtime.sorted" "$work/development.sorted")

# --- Lintian ------------------------------------------------------------------

accepted=$(grep -v -e '^#' -e '^$' "$here/lintian-accepted-tags" | paste -sd, -)
lintian --no-cfg --allow-root --suppress-tags "$accepted" --fail-on error,warning \
    "$runtime_deb" "$development_deb" >"$work/lintian.log" 2>&1 ||
    fail "lintian: $(cat "$work/lintian.log")"
cat "$work/lintian.log"
echo "lintian done: ${SECONDS} s"

# --- Unpacked into a scratch root ------------------------------------------------

mkdir -p "$work/root"
dpkg-deb -x "$runtime_deb" "$work/root"
dpkg-deb -x "$development_deb" "$work/root"
"$CMAKE" -DPREFIX="$work/root$usr" -DLIBDIR="$LIBDIR" -DPACKAGE="$PACKAGE_NAME" \
    -DCONSUMER_SOURCE="$CONSUMER_SOURCE" -DWORK_DIR="$work/consumer" -DCXX_COMPILER="$CXX" \
    "-DCXX_FLAGS=$CXX_FLAGS" "-DLINKER_FLAGS=$LINKER_FLAGS" -P "$CONSUMER_SCRIPT" ||
    fail "pkg-config consumer against the unpacked packages"

if [ "$failures" -gt 0 ]; then
    echo "$failures check(s) failed" >&2
    exit 1
fi
echo "Debian packages $RUNTIME_PACKAGE and $DEVELOPMENT_PACKAGE $VERSION: all checks passed"
