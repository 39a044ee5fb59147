#!/usr/bin/env bash
# Installs the Debian packages QtColor needs to build, test, benchmark and fuzz.
# Idempotent: when every package is already installed it does nothing.
set -euo pipefail

packages=(
  cmake ninja-build g++ clang libclang-rt-dev pkg-config
  qtbase5-dev qtbase5-dev-tools libqt5svg5-dev qttools5-dev qttools5-dev-tools
  qt5-image-formats-plugins
  libexiv2-dev
  libbenchmark-dev
  xvfb xauth dbus-daemon libxcb1-dev
  qt6-base-dev qt6-base-dev-tools qt6-tools-dev qt6-tools-dev-tools qt6-l10n-tools
  qt6-image-formats-plugins qt6-svg-dev
  doxygen graphviz
  dpkg-dev fakeroot lintian file
  libvips-tools exiv2
  ccache
)

missing=()
for p in "${packages[@]}"; do
  if ! dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q 'install ok installed'; then
    missing+=("$p")
  fi
done

if [ ${#missing[@]} -eq 0 ]; then
  exit 0
fi

echo "setup-deps: installing ${missing[*]}"
sudo_cmd=()
if [ "$(id -u)" -ne 0 ]; then
  sudo_cmd=(sudo)
fi
export DEBIAN_FRONTEND=noninteractive
"${sudo_cmd[@]}" apt-get update -q
"${sudo_cmd[@]}" apt-get install -y -q --no-install-recommends "${missing[@]}"
