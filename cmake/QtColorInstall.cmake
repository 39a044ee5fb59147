include(CMakePackageConfigHelpers)

set(QTCOLOR_CMAKE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/QtColor)

install(EXPORT QtColorTargets
  NAMESPACE QtColor::
  FILE QtColorTargets.cmake
  DESTINATION ${QTCOLOR_CMAKE_DIR})

configure_package_config_file(cmake/QtColorConfig.cmake.in
  ${CMAKE_CURRENT_BINARY_DIR}/QtColorConfig.cmake
  INSTALL_DESTINATION ${QTCOLOR_CMAKE_DIR})
write_basic_package_version_file(${CMAKE_CURRENT_BINARY_DIR}/QtColorConfigVersion.cmake
  COMPATIBILITY SameMinorVersion)

install(FILES
  ${CMAKE_CURRENT_BINARY_DIR}/QtColorConfig.cmake
  ${CMAKE_CURRENT_BINARY_DIR}/QtColorConfigVersion.cmake
  DESTINATION ${QTCOLOR_CMAKE_DIR})
