include(CMakePackageConfigHelpers)

# The programs carry the package's suffix too (qzespectrum6 beside qzespectrum).
foreach(program ColorLab qzespectrum zeimagemeta qimageFileDialog)
  if(TARGET ${program})
    set_target_properties(${program} PROPERTIES OUTPUT_NAME ${program}${QTCOLOR_NAME_SUFFIX})
  endif()
endforeach()

install(EXPORT QtColorTargets
  NAMESPACE QtColor::
  FILE QtColorTargets.cmake
  DESTINATION ${QTCOLOR_CMAKE_INSTALL_DIR}
  COMPONENT ${QTCOLOR_DEVELOPMENT_COMPONENT})

# Consumers need the Qt this build was made with, at least the version the
# project itself requires of it.
if(QTCOLOR_QT_MAJOR STREQUAL "5")
  set(QTCOLOR_QT_MINIMUM 5.15)
else()
  set(QTCOLOR_QT_MINIMUM 6.2)
endif()

configure_package_config_file(cmake/QtColorConfig.cmake.in
  ${CMAKE_CURRENT_BINARY_DIR}/${QTCOLOR_PACKAGE_NAME}Config.cmake
  INSTALL_DESTINATION ${QTCOLOR_CMAKE_INSTALL_DIR})
write_basic_package_version_file(${CMAKE_CURRENT_BINARY_DIR}/${QTCOLOR_PACKAGE_NAME}ConfigVersion.cmake
  COMPATIBILITY SameMinorVersion)

install(FILES
  ${CMAKE_CURRENT_BINARY_DIR}/${QTCOLOR_PACKAGE_NAME}Config.cmake
  ${CMAKE_CURRENT_BINARY_DIR}/${QTCOLOR_PACKAGE_NAME}ConfigVersion.cmake
  DESTINATION ${QTCOLOR_CMAKE_INSTALL_DIR}
  COMPONENT ${QTCOLOR_DEVELOPMENT_COMPONENT})

include(${CMAKE_CURRENT_LIST_DIR}/QtColorPkgConfig.cmake)
include(${CMAKE_CURRENT_LIST_DIR}/QtColorPackaging.cmake)
