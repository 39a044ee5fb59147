# Declares one of the three exported libraries: QtColor::<exportName>, its
# public headers installed flat into include/QtColor.
function(qtcolor_add_library target exportName)
  cmake_parse_arguments(ARG "" "" "SOURCES;HEADERS;INCLUDE_DIRS" ${ARGN})
  add_library(${target} SHARED ${ARG_SOURCES} ${ARG_HEADERS})
  add_library(QtColor::${exportName} ALIAS ${target})
  set_target_properties(${target} PROPERTIES
    EXPORT_NAME ${exportName}
    VERSION ${PROJECT_VERSION}
    SOVERSION ${PROJECT_VERSION_MAJOR})
  foreach(dir IN LISTS ARG_INCLUDE_DIRS)
    target_include_directories(${target} PUBLIC $<BUILD_INTERFACE:${dir}>)
  endforeach()
  target_include_directories(${target} PUBLIC $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}/QtColor>)
  qtcolor_warnings(${target})
  install(TARGETS ${target} EXPORT QtColorTargets
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
    ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
    RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
  install(FILES ${ARG_HEADERS} DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/QtColor)
  # The API reference covers exactly the installed headers.
  foreach(header IN LISTS ARG_HEADERS)
    get_filename_component(header ${header} ABSOLUTE)
    set_property(GLOBAL APPEND PROPERTY QTCOLOR_PUBLIC_HEADERS ${header})
  endforeach()
endfunction()
