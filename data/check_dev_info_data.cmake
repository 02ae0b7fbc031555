# cmake -P script: reruns make_dev_info.py and compares its output with the checked-in files
# (the test dev_info_script_reproduces_data).
file(REMOVE_RECURSE "${WORK_DIR}")
file(MAKE_DIRECTORY "${WORK_DIR}")
execute_process(COMMAND "${PYTHON}" "${SOURCE_DIR}/make_dev_info.py" "${WORK_DIR}"
                RESULT_VARIABLE result)
if(NOT result EQUAL 0)
  message(FATAL_ERROR "make_dev_info.py failed: ${result}")
endif()
foreach(file pgm_dev_info.csv pgm_parts.txt)
  file(SHA256 "${SOURCE_DIR}/${file}" checked_in)
  file(SHA256 "${WORK_DIR}/${file}" fresh)
  if(NOT checked_in STREQUAL fresh)
    message(FATAL_ERROR "data/${file} differs from what make_dev_info.py writes")
  endif()
endforeach()
message(STATUS "device information data match their script")
