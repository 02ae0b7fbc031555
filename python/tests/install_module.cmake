# Installs the build into a fresh prefix and imports the installed Python module from there:
# it must answer from the prefix's own share/pgmdev, with no configuration at all.
foreach(var PGMDEV_BINARY_DIR PGMDEV_WORK_DIR PGMDEV_PYTHON PGMDEV_PYTHON_DIR)
  if(NOT ${var})
    message(FATAL_ERROR "install_module: ${var} is not set")
  endif()
endforeach()

set(prefix "${PGMDEV_WORK_DIR}/prefix")
file(REMOVE_RECURSE "${PGMDEV_WORK_DIR}")
file(MAKE_DIRECTORY "${PGMDEV_WORK_DIR}")

execute_process(COMMAND "${CMAKE_COMMAND}" --install "${PGMDEV_BINARY_DIR}" --prefix "${prefix}"
                RESULT_VARIABLE result OUTPUT_QUIET ERROR_VARIABLE err)
if(NOT result EQUAL 0)
  message(FATAL_ERROR "install_module: install failed (${result})\n${err}")
endif()

string(CONCAT script "import pgmdev; print(pgmdev.device(part='ZQ160M8C6')['cfg_dev']); "
       "print(pgmdev.paths()['device_db']); print(pgmdev.__file__)")
execute_process(
  COMMAND "${CMAKE_COMMAND}" -E env "PYTHONPATH=${prefix}/${PGMDEV_PYTHON_DIR}"
          --unset=PGMDEV_DEVICE_DB_DIR --unset=PGMDEV_INSTALL_DIR --unset=PGMDEV_MODULE_DIR
          --unset=PGMDEV_CONFIG_FILE "${PGMDEV_PYTHON}" -c "${script}"
  WORKING_DIRECTORY "${PGMDEV_WORK_DIR}" RESULT_VARIABLE result OUTPUT_VARIABLE out
  ERROR_VARIABLE err)
if(NOT result EQUAL 0)
  message(FATAL_ERROR "install_module: the installed module failed (${result})\n${out}\n${err}")
endif()
message(STATUS "installed module said:\n${out}")
file(REAL_PATH "${prefix}" real_prefix)
string(FIND "${out}" "${real_prefix}/share/pgmdev" data_at)
string(FIND "${out}" "${real_prefix}/${PGMDEV_PYTHON_DIR}/pgmdev" module_at)
if(data_at EQUAL -1 OR module_at EQUAL -1)
  message(FATAL_ERROR "install_module: the module or its data did not come from ${real_prefix}")
endif()

# A folder the user names wins over the prefix's own.
execute_process(
  COMMAND "${CMAKE_COMMAND}" -E env "PYTHONPATH=${prefix}/${PGMDEV_PYTHON_DIR}"
          "PGMDEV_DEVICE_DB_DIR=${PGMDEV_WORK_DIR}/elsewhere" "${PGMDEV_PYTHON}" -c
          "import pgmdev; print(pgmdev.paths()['device_db'])"
  WORKING_DIRECTORY "${PGMDEV_WORK_DIR}" RESULT_VARIABLE result OUTPUT_VARIABLE out
  ERROR_VARIABLE err)
string(FIND "${out}" "${PGMDEV_WORK_DIR}/elsewhere" named_at)
if(NOT result EQUAL 0 OR named_at EQUAL -1)
  message(FATAL_ERROR "install_module: PGMDEV_DEVICE_DB_DIR was not followed (${result})\n"
                      "${out}\n${err}")
endif()
