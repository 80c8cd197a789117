# Installs the built library into a scratch prefix and builds a consumer project against it.
file(REMOVE_RECURSE ${WORK_DIR})
set(prefix ${WORK_DIR}/prefix)

function(run)
  execute_process(COMMAND ${ARGN} RESULT_VARIABLE rc OUTPUT_VARIABLE out ERROR_VARIABLE err)
  if(NOT rc EQUAL 0)
    message(FATAL_ERROR "command failed (${rc}): ${ARGN}\n${out}\n${err}")
  endif()
endfunction()

if(CONFIG)
  run(${CMAKE_COMMAND} --install ${NUMORIX_BINARY_DIR} --prefix ${prefix} --config ${CONFIG})
else()
  run(${CMAKE_COMMAND} --install ${NUMORIX_BINARY_DIR} --prefix ${prefix})
endif()
run(${CMAKE_COMMAND} -S ${CONSUMER_SOURCE_DIR} -B ${WORK_DIR}/build
    -DCMAKE_PREFIX_PATH=${prefix} -DCMAKE_BUILD_TYPE=Release)
run(${CMAKE_COMMAND} --build ${WORK_DIR}/build)
run(${WORK_DIR}/build/consumer)
message(STATUS "consumer built and ran against ${prefix}")
