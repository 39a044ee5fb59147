# Debian packages made by `cpack -G DEB` from a built tree: the runtime
# package (libraries, translations, programs, Designer plugin) and the
# development package (headers, CMake and pkg-config files), named in
# QtColorInstallDirs.cmake.
if(QTCOLOR_QT_MAJOR STREQUAL "5")
  set(QTCOLOR_DEBIAN_QT_DEVELOPMENT_PACKAGE qtbase5-dev)
else()
  set(QTCOLOR_DEBIAN_QT_DEVELOPMENT_PACKAGE qt6-base-dev)
endif()

set(QTCOLOR_DEBIAN_MAINTAINER "QtColor developers <qtcolor@example.org>" CACHE STRING
  "Maintainer field of the Debian packages and their changelog")

# Every Debian package carries its copyright file and changelog.
set(debianDocs ${CMAKE_CURRENT_BINARY_DIR}/debian-docs)
file(MAKE_DIRECTORY ${debianDocs})
configure_file(${CMAKE_CURRENT_LIST_DIR}/debian/changelog.in ${debianDocs}/changelog @ONLY)
execute_process(COMMAND gzip -9 -n -c ${debianDocs}/changelog
  OUTPUT_FILE ${debianDocs}/changelog.gz RESULT_VARIABLE gzipResult)
if(NOT gzipResult EQUAL 0)
  message(FATAL_ERROR "gzip of the Debian changelog failed (${gzipResult})")
endif()
foreach(component Runtime Development)
  string(TOUPPER ${component} upper)
  install(FILES ${CMAKE_CURRENT_LIST_DIR}/debian/copyright ${debianDocs}/changelog.gz
    DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/${QTCOLOR_DEBIAN_${upper}_PACKAGE}
    COMPONENT ${component})
endforeach()

set(CPACK_PACKAGE_NAME ${QTCOLOR_PACKAGE_NAME})
set(CPACK_PACKAGE_VENDOR "QtColor developers")
set(CPACK_PACKAGE_CONTACT ${QTCOLOR_DEBIAN_MAINTAINER})
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
# CPack puts this summary in front of each component's description unless it
# is CPack's own default; each description below starts with its own synopsis.
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "${CMAKE_PROJECT_NAME} built using CMake")
set(CPACK_GENERATOR DEB)
set(CPACK_STRIP_FILES ON)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_COMPONENTS_ALL Runtime Development)

set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# The programs and the plugin find the libraries of the same package.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${CMAKE_LIBRARY_OUTPUT_DIRECTORY})

set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME ${QTCOLOR_DEBIAN_RUNTIME_PACKAGE})
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY ">=")
set(CPACK_DEBIAN_RUNTIME_PACKAGE_CONTROL_EXTRA ${CMAKE_CURRENT_LIST_DIR}/debian/triggers)
# CPack indents the lines after the synopsis and turns empty lines into " .".
set(CPACK_COMPONENT_RUNTIME_DESCRIPTION
  "interactive colour and image widgets for Qt ${QTCOLOR_QT_MAJOR}
QtColor provides colour sliders, colour buttons, a colour dialog with a
spectral editor, colour fields and image metadata tools for Qt Widgets
applications.

This package holds the shared libraries, their translations, the
command-line tools, the demo and image picker programs, and the Qt
Designer plugin.")

set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME ${QTCOLOR_DEBIAN_DEVELOPMENT_PACKAGE})
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS
  "${QTCOLOR_DEBIAN_RUNTIME_PACKAGE} (= ${PROJECT_VERSION}), ${QTCOLOR_DEBIAN_QT_DEVELOPMENT_PACKAGE}")
set(CPACK_COMPONENT_DEVELOPMENT_DESCRIPTION
  "interactive colour and image widgets for Qt ${QTCOLOR_QT_MAJOR} - development files
QtColor provides colour sliders, colour buttons, a colour dialog with a
spectral editor, colour fields and image metadata tools for Qt Widgets
applications.

This package holds the headers, the CMake package and the pkg-config file
for building programs with the libraries.")

include(CPack)
