# Serial flash data: the checked-in table must be exactly what its checked-in generator
# writes from the facts table. (The database file itself is built by tools/gen_flash.)
find_package(Python3 COMPONENTS Interpreter QUIET)
if(BUILD_TESTING AND Python3_Interpreter_FOUND)
  add_test(NAME flash_csv_generator_reproduces_table
    COMMAND "${Python3_EXECUTABLE}" "${PROJECT_SOURCE_DIR}/data/make_flash_csv.py" --check)
endif()
