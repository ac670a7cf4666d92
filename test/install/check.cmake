# Installs a build into a folder of its own and builds and runs a host against it.
set(work ${BUILD_DIR}/install_check)
file(REMOVE_RECURSE ${work})

function(run)
  execute_process(COMMAND ${ARGV} RESULT_VARIABLE result OUTPUT_VARIABLE output
    ERROR_VARIABLE output)
  if(NOT result EQUAL 0)
    message(FATAL_ERROR "${ARGV}:\n${output}")
  endif()
endfunction()

run(${CMAKE_COMMAND} --install ${BUILD_DIR} --prefix ${work}/prefix)
set(ENV{PKG_CONFIG_PATH} ${work}/prefix/${LIBDIR}/pkgconfig)
run(${CMAKE_COMMAND} -S ${CMAKE_CURRENT_LIST_DIR} -B ${work}/host
  -G ${GENERATOR} -D CMAKE_MAKE_PROGRAM=${MAKE_PROGRAM}
  -D CMAKE_PREFIX_PATH=${work}/prefix -D CMAKE_C_COMPILER=${C_COMPILER}
  -D CMAKE_C_FLAGS=${C_FLAGS})
run(${CMAKE_COMMAND} --build ${work}/host)
run(${CMAKE_CTEST_COMMAND} --test-dir ${work}/host --output-on-failure)
