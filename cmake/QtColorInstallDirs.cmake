# Where the package installs, derived from QTCOLOR_PACKAGE_NAME (QtColor or
# QtColor6) so that a Qt 5 and a Qt 6 build share no installed file and both
# can be installed side by side.
include(GNUInstallDirs)

set(QTCOLOR_INCLUDE_INSTALL_DIR ${CMAKE_INSTALL_INCLUDEDIR}/${QTCOLOR_PACKAGE_NAME})
set(QTCOLOR_CMAKE_INSTALL_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/${QTCOLOR_PACKAGE_NAME})
set(QTCOLOR_PKGCONFIG_INSTALL_DIR ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
set(QTCOLOR_DATA_INSTALL_DIR ${CMAKE_INSTALL_DATADIR}/${QTCOLOR_PACKAGE_NAME})

# Library and program names carry what QTCOLOR_PACKAGE_NAME adds to
# "QtColor": libQtColor6Core.so, qzespectrum6 and so on for the Qt 6 build.
string(REGEX REPLACE "^QtColor" "" QTCOLOR_NAME_SUFFIX "${QTCOLOR_PACKAGE_NAME}")

# Everything not marked otherwise belongs to the runtime package; headers,
# CMake and pkg-config files to the development package.
set(CMAKE_INSTALL_DEFAULT_COMPONENT_NAME Runtime)
set(QTCOLOR_DEVELOPMENT_COMPONENT Development)

# The Debian packages follow the package name, lowercase: libqtcolor and
# libqtcolor-dev for Qt 5, libqtcolor6 and libqtcolor6-dev for Qt 6.
string(TOLOWER "lib${QTCOLOR_PACKAGE_NAME}" QTCOLOR_DEBIAN_RUNTIME_PACKAGE)
set(QTCOLOR_DEBIAN_DEVELOPMENT_PACKAGE ${QTCOLOR_DEBIAN_RUNTIME_PACKAGE}-dev)
