# QtColor.pc (QtColor6.pc for Qt 6), for qmake, Meson and Makefile projects.
# The file finds the prefix from its own place, so an installation moved to
# another prefix (or made with cmake --install --prefix) still works.
file(RELATIVE_PATH QTCOLOR_PKGCONFIG_TO_PREFIX
  /prefix/${QTCOLOR_PKGCONFIG_INSTALL_DIR} /prefix)
string(REGEX REPLACE "/$" "" QTCOLOR_PKGCONFIG_TO_PREFIX "${QTCOLOR_PKGCONFIG_TO_PREFIX}")

# All three libraries: the widgets, the host kit they call, the core below both.
set(QTCOLOR_PKGCONFIG_LIBS "")
foreach(library QtColorWidgets QtColorHost QtColorCore)
  get_target_property(outputName ${library} OUTPUT_NAME)
  string(APPEND QTCOLOR_PKGCONFIG_LIBS " -l${outputName}")
endforeach()
string(STRIP "${QTCOLOR_PKGCONFIG_LIBS}" QTCOLOR_PKGCONFIG_LIBS)

configure_file(${CMAKE_CURRENT_LIST_DIR}/QtColor.pc.in
  ${CMAKE_CURRENT_BINARY_DIR}/${QTCOLOR_PACKAGE_NAME}.pc @ONLY)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/${QTCOLOR_PACKAGE_NAME}.pc
  DESTINATION ${QTCOLOR_PKGCONFIG_INSTALL_DIR}
  COMPONENT ${QTCOLOR_DEVELOPMENT_COMPONENT})
