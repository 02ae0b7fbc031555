# Installs the build into a fresh prefix, builds examples/ against the installed package
# and runs it: the package, the headers and the databases must all be found from there.
foreach(var PGMDEV_BINARY_DIR PGMDEV_EXAMPLE_DIR PGMDEV_WORK_DIR PGMDEV_GENERATOR)
  if(NOT ${var})
    message(FATAL_ERROR "install_example: ${var} is not set")
  endif()
endforeach()

set(prefix "${PGMDEV_WORK_DIR}/prefix")
set(build "${PGMDEV_WORK_DIR}/build")
file(REMOVE_RECURSE "${PGMDEV_WORK_DIR}")

function(run_step what)
  execute_process(COMMAND ${ARGN} RESULT_VARIABLE result OUTPUT_VARIABLE out
                  ERROR_VARIABLE err)
  if(NOT result EQUAL 0)
    message(FATAL_ERROR "install_example: ${what} failed (${result})\n${out}\n${err}")
  endif()
  set(step_output "${out}" PARENT_SCOPE)
endfunction()

run_step("install" "${CMAKE_COMMAND}" --install "${PGMDEV_BINARY_DIR}" --prefix "${prefix}")
run_step("configure" "${CMAKE_COMMAND}" -S "${PGMDEV_EXAMPLE_DIR}" -B "${build}"
         -G "${PGMDEV_GENERATOR}" "-DCMAKE_PREFIX_PATH=${prefix}"
         "-DCMAKE_CXX_COMPILER=${PGMDEV_CXX_COMPILER}"
         "-DCMAKE_CXX_FLAGS=${PGMDEV_EXAMPLE_FLAGS}"
         "-DCMAKE_EXE_LINKER_FLAGS=${PGMDEV_EXAMPLE_FLAGS}")
run_step("build" "${CMAKE_COMMAND}" --build "${build}")

# Run without any configuration: the installed library must find its own databases.
set(clean_env --unset=PGMDEV_DEVICE_DB_DIR --unset=PGMDEV_INSTALL_DIR
    --unset=PGMDEV_MODULE_DIR --unset=PGMDEV_CONFIG_FILE)
run_step("example" "${CMAKE_COMMAND}" -E env ${clean_env} "${build}/pgmdev_example")
message(STATUS "example output:\n${step_output}")
file(REAL_PATH "${prefix}" real_prefix)
string(FIND "${step_output}" "${real_prefix}/share/pgmdev" at)
if(at EQUAL -1)
  message(FATAL_ERROR "install_example: the example did not use ${real_prefix}/share/pgmdev")
endif()

# The installed tool runs from its own folder as well.
if(EXISTS "${prefix}/bin/pgmdev")
  run_step("installed pgmdev" "${CMAKE_COMMAND}" -E env ${clean_env} "${prefix}/bin/pgmdev"
           --version)
endif()
