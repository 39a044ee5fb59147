include(${CMAKE_CURRENT_LIST_DIR}/QtColorInstallDirs.cmake)

# Declares one of the three exported libraries: QtColor::<exportName>, its
# public headers installed flat into include/QtColor (include/QtColor6 for
# Qt 6). The file is named after the package: libQtColorCore.so,
# libQtColor.so for the widgets (export name QtColor), libQtColorHost.so.
function(qtcolor_add_library target exportName)
  cmake_parse_arguments(ARG "" "" "SOURCES;HEADERS;INCLUDE_DIRS" ${ARGN})
  add_library(${target} SHARED ${ARG_SOURCES} ${ARG_HEADERS})
  add_library(QtColor::${exportName} ALIAS ${target})
  set_target_properties(${target} PROPERTIES
    EXPORT_NAME ${exportName}
    VERSION ${PROJECT_VERSION}
    SOVERSION ${PROJECT_VERSION_MAJOR})
  # The libraries find each other in their own folder, whatever the prefix.
  set_target_properties(${target} PROPERTIES INSTALL_RPATH "$ORIGIN")
  if(exportName STREQUAL "QtColor")
    set_target_properties(${target} PROPERTIES OUTPUT_NAME ${QTCOLOR_PACKAGE_NAME})
  else()
    set_target_properties(${target} PROPERTIES OUTPUT_NAME ${QTCOLOR_PACKAGE_NAME}${exportName})
  endif()
  foreach(dir IN LISTS ARG_INCLUDE_DIRS)
    target_include_directories(${target} PUBLIC $<BUILD_INTERFACE:${dir}>)
  endforeach()
  target_include_directories(${target} PUBLIC $<INSTALL_INTERFACE:${QTCOLOR_INCLUDE_INSTALL_DIR}>)
  qtcolor_warnings(${target})
  install(TARGETS ${target} EXPORT QtColorTargets
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
      COMPONENT Runtime NAMELINK_COMPONENT ${QTCOLOR_DEVELOPMENT_COMPONENT}
    ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT ${QTCOLOR_DEVELOPMENT_COMPONENT}
    RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT Runtime)
  install(FILES ${ARG_HEADERS} DESTINATION ${QTCOLOR_INCLUDE_INSTALL_DIR}
    COMPONENT ${QTCOLOR_DEVELOPMENT_COMPONENT})
  # The API reference covers exactly the installed headers.
  foreach(header IN LISTS ARG_HEADERS)
    get_filename_component(header ${header} ABSOLUTE)
    set_property(GLOBAL APPEND PROPERTY QTCOLOR_PUBLIC_HEADERS ${header})
  endforeach()
endfunction()
