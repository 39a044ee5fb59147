# cmake -P script: builds the consumer program with nothing but the flags
# `pkg-config --cflags --libs <PACKAGE>` gives for an installation under
# PREFIX, as a qmake, Meson or Makefile project would, then runs it.
# With BUILD_DIR set, first installs that build tree into PREFIX.
foreach(var PREFIX LIBDIR PACKAGE CONSUMER_SOURCE WORK_DIR CXX_COMPILER)
  if(NOT DEFINED ${var})
    message(FATAL_ERROR "BuildPkgConfigConsumer.cmake needs -D${var}=...")
  endif()
endforeach()

include(${CMAKE_CURRENT_LIST_DIR}/../RunStep.cmake)

file(REMOVE_RECURSE ${WORK_DIR})
file(MAKE_DIRECTORY ${WORK_DIR})
if(DEFINED BUILD_DIR)
  run_step("install" ${CMAKE_COMMAND} --install ${BUILD_DIR} --prefix ${PREFIX})
endif()

# Only our own .pc file comes from PREFIX; Qt's come from the system.
set(ENV{PKG_CONFIG_PATH} ${PREFIX}/${LIBDIR}/pkgconfig)
execute_process(COMMAND pkg-config --cflags --libs ${PACKAGE}
  OUTPUT_VARIABLE flags OUTPUT_STRIP_TRAILING_WHITESPACE RESULT_VARIABLE result)
if(NOT result EQUAL 0)
  message(FATAL_ERROR "pkg-config --cflags --libs ${PACKAGE} failed (${result})")
endif()
message(STATUS "pkg-config ${PACKAGE}: ${flags}")
# The flags must point into PREFIX, not at the prefix the tree was configured with.
string(FIND "${flags}" "-I${PREFIX}/" includeInPrefix)
string(FIND "${flags}" "-L${PREFIX}/" libraryInPrefix)
if(includeInPrefix EQUAL -1 OR libraryInPrefix EQUAL -1)
  message(FATAL_ERROR "pkg-config flags do not point into ${PREFIX}: ${flags}")
endif()

separate_arguments(flags UNIX_COMMAND "${flags}")
separate_arguments(extraFlags UNIX_COMMAND "${CXX_FLAGS} ${LINKER_FLAGS}")
# Qt, built with reduced relocations, needs position-independent code of its
# users; qmake and Meson add -fPIC themselves, a Makefile project adds it so.
run_step("build consumer" ${CXX_COMPILER} -std=c++17 -fPIC ${extraFlags}
  ${CONSUMER_SOURCE} -o ${WORK_DIR}/consumer ${flags})

set(ENV{LD_LIBRARY_PATH} ${PREFIX}/${LIBDIR})
run_step("run consumer" ${WORK_DIR}/consumer)
