# cmake -P script: install the build tree into WORK_DIR/prefix, configure and
# build the consumer project against it, then run the consumer.
foreach(var BUILD_DIR CONSUMER_SOURCE WORK_DIR GENERATOR CXX_COMPILER PACKAGE)
  if(NOT DEFINED ${var})
    message(FATAL_ERROR "RunConsumer.cmake needs -D${var}=...")
  endif()
endforeach()

set(prefix ${WORK_DIR}/prefix)
set(consumer_build ${WORK_DIR}/build)
file(REMOVE_RECURSE ${WORK_DIR})

include(${CMAKE_CURRENT_LIST_DIR}/../RunStep.cmake)

run_step("install" ${CMAKE_COMMAND} --install ${BUILD_DIR} --prefix ${prefix})
run_step("configure consumer" ${CMAKE_COMMAND} -S ${CONSUMER_SOURCE} -B ${consumer_build}
  -G ${GENERATOR}
  -DCMAKE_CXX_COMPILER=${CXX_COMPILER}
  "-DCMAKE_CXX_FLAGS=${CXX_FLAGS}"
  "-DCMAKE_EXE_LINKER_FLAGS=${LINKER_FLAGS}"
  -DCMAKE_PREFIX_PATH=${prefix}
  -DQTCOLOR_PACKAGE=${PACKAGE})
run_step("build consumer" ${CMAKE_COMMAND} --build ${consumer_build})
run_step("run consumer" ${consumer_build}/consumer)
