# cmake -P script: runs the catalogue generator afresh and compares its tables with the
# checked-in ones (the test catalog_generator_reproduces_tables).
file(REMOVE_RECURSE "${WORK_DIR}")
file(MAKE_DIRECTORY "${WORK_DIR}")
execute_process(COMMAND "${PYTHON}" "${SOURCE_DIR}/generate.py" "${WORK_DIR}"
                RESULT_VARIABLE result)
if(NOT result EQUAL 0)
  message(FATAL_ERROR "generate.py failed: ${result}")
endif()
foreach(table families devices parts)
  file(SHA256 "${SOURCE_DIR}/${table}.csv" checked_in)
  file(SHA256 "${WORK_DIR}/${table}.csv" fresh)
  if(NOT checked_in STREQUAL fresh)
    message(FATAL_ERROR "data/catalog/${table}.csv differs from what generate.py writes")
  endif()
endforeach()
message(STATUS "catalogue tables match their generator")
