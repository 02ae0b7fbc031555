# Naming blobs: the packer turns data/naming/ into a generated source of the library, re-run
# whenever a naming source or the packer changes.
set(PGMDEV_NAMING_SOURCE_DIR "${PROJECT_SOURCE_DIR}/data/naming")
file(GLOB PGMDEV_NAMING_SOURCES CONFIGURE_DEPENDS "${PGMDEV_NAMING_SOURCE_DIR}/*.txt")

# Links the platform services only (CRC, zlib), never the library it feeds.
add_executable(pgmdev_naming_packer
  "${PROJECT_SOURCE_DIR}/tools/naming_packer/main.cpp"
  "${PROJECT_SOURCE_DIR}/tools/naming_packer/naming_sources.cpp")
target_include_directories(pgmdev_naming_packer PRIVATE "${PROJECT_SOURCE_DIR}/pgm/pgmdev")
target_link_libraries(pgmdev_naming_packer PRIVATE pgmdev_platform)
target_compile_options(pgmdev_naming_packer PRIVATE ${PGMDEV_WARNINGS})
target_include_directories(pgmdev_naming_packer PRIVATE "${PROJECT_SOURCE_DIR}/tools/build_output")

set(PGMDEV_NAMING_GENERATED "${PGMDEV_GENERATED_DIR}/pgmddb_naming_data.cpp")
add_custom_command(
  OUTPUT "${PGMDEV_NAMING_GENERATED}"
  COMMAND pgmdev_naming_packer "${PGMDEV_NAMING_SOURCE_DIR}" "${PGMDEV_NAMING_GENERATED}"
  DEPENDS pgmdev_naming_packer ${PGMDEV_NAMING_SOURCES}
  COMMENT "Packing the naming blobs from data/naming"
  VERBATIM)
target_sources(pgmdev_core PRIVATE "${PGMDEV_NAMING_GENERATED}")
