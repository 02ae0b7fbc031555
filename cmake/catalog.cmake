# The device catalogue: data/catalog/*.csv compiled into the platform objects.
include("${CMAKE_CURRENT_LIST_DIR}/embed_text.cmake")

foreach(table families devices parts)
  pgmdev_embed_file("${PROJECT_SOURCE_DIR}/data/catalog/${table}.csv" "catalog_${table}_csv"
                    pgmdev_platform)
endforeach()

# The checked-in tables must be exactly what the checked-in generator writes.
find_package(Python3 COMPONENTS Interpreter QUIET)
if(BUILD_TESTING AND Python3_Interpreter_FOUND)
  add_test(NAME catalog_generator_reproduces_tables
    COMMAND "${CMAKE_COMMAND}"
      -DPYTHON=${Python3_EXECUTABLE}
      -DSOURCE_DIR=${PROJECT_SOURCE_DIR}/data/catalog
      -DWORK_DIR=${PROJECT_BINARY_DIR}/catalog_check
      -P "${PROJECT_SOURCE_DIR}/data/catalog/check_tables.cmake")
endif()
