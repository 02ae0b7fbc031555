# The device catalogue: data/catalog/*.csv written as constant C++ tables at build time.
set(PGMDEV_CATALOG_DIR "${PROJECT_SOURCE_DIR}/data/catalog")
add_executable(pgmdev_catalog_tables
               "${PROJECT_SOURCE_DIR}/tools/catalog_tables/catalog_tables.cpp")
target_compile_options(pgmdev_catalog_tables PRIVATE ${PGMDEV_WARNINGS})
target_include_directories(pgmdev_catalog_tables PRIVATE "${PROJECT_SOURCE_DIR}/tools/build_output")

set(PGMDEV_CATALOG_TABLES "${PGMDEV_GENERATED_DIR}/catalog_tables.cpp")
set(PGMDEV_CATALOG_TABLES_SIZE "${PGMDEV_GENERATED_DIR}/catalog_tables_size.h")
add_custom_command(
  OUTPUT "${PGMDEV_CATALOG_TABLES}" "${PGMDEV_CATALOG_TABLES_SIZE}"
  COMMAND pgmdev_catalog_tables "${PGMDEV_CATALOG_DIR}/families.csv"
          "${PGMDEV_CATALOG_DIR}/devices.csv" "${PGMDEV_CATALOG_DIR}/parts.csv"
          "${PGMDEV_CATALOG_TABLES}" "${PGMDEV_CATALOG_TABLES_SIZE}"
  DEPENDS pgmdev_catalog_tables "${PGMDEV_CATALOG_DIR}/families.csv"
          "${PGMDEV_CATALOG_DIR}/devices.csv" "${PGMDEV_CATALOG_DIR}/parts.csv"
  COMMENT "Writing the catalogue tables from data/catalog"
  VERBATIM)
target_sources(pgmdev_platform PRIVATE "${PGMDEV_CATALOG_TABLES}" "${PGMDEV_CATALOG_TABLES_SIZE}")

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

# The public family name tables and source digests (h/pgmdev_catalog_names.h), written from
# the same families table at build time so that a replaced catalogue leaves nothing stale.
set(PGMDEV_CATALOG_NAMES "${PGMDEV_GENERATED_DIR}/pgmdev_catalog_names.cpp")
set(PGMDEV_CATALOG_NAMES_SCRIPT "${CMAKE_CURRENT_LIST_DIR}/generate/catalog_names.cmake")
add_custom_command(
  OUTPUT "${PGMDEV_CATALOG_NAMES}"
  COMMAND "${CMAKE_COMMAND}" "-DFAMILIES=${PROJECT_SOURCE_DIR}/data/catalog/families.csv"
          "-DOUTPUT=${PGMDEV_CATALOG_NAMES}" "-DDEV_INFO_MD5=${PGMDEV_DEV_INFO_CSV_MD5}"
          "-DFLASH_MD5=${PGMDEV_FLASH_INFO_CSV_MD5}" -P "${PGMDEV_CATALOG_NAMES_SCRIPT}"
  DEPENDS "${PROJECT_SOURCE_DIR}/data/catalog/families.csv" "${PGMDEV_CATALOG_NAMES_SCRIPT}"
  COMMENT "Writing the family name tables from data/catalog/families.csv"
  VERBATIM)
target_sources(pgmdev_core PRIVATE "${PGMDEV_CATALOG_NAMES}")
