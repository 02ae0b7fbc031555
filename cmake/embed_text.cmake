# pgmdev_embed_file(): compiles any data file into the library as a constant char array.
include_guard(GLOBAL)

add_executable(pgmdev_embed_text "${PROJECT_SOURCE_DIR}/tools/embed_text/embed_text.cpp")
target_compile_options(pgmdev_embed_text PRIVATE ${PGMDEV_WARNINGS})
target_include_directories(pgmdev_embed_text PRIVATE "${PROJECT_SOURCE_DIR}/tools/build_output")

# pgmdev_embed_file(<input> <symbol> <target> [NAMESPACE <ns>])
# Generates ${PGMDEV_GENERATED_DIR}/<symbol>.cpp and <symbol>.h (see
# tools/embed_text/embed_text.cpp for what they declare) and adds both to <target>'s
# private sources, so the target's own files may include "<symbol>.h".
function(pgmdev_embed_file input symbol target)
  cmake_parse_arguments(PARSE_ARGV 3 arg "" "NAMESPACE" "")
  if(NOT arg_NAMESPACE)
    set(arg_NAMESPACE "pgmdev::embedded")
  endif()
  set(base "${PGMDEV_GENERATED_DIR}/${symbol}")
  add_custom_command(
    OUTPUT "${base}.cpp" "${base}.h"
    COMMAND pgmdev_embed_text "${input}" "${symbol}" "${base}.cpp" "${base}.h" "${arg_NAMESPACE}"
    DEPENDS pgmdev_embed_text "${input}"
    COMMENT "Embedding ${input}"
    VERBATIM)
  target_sources(${target} PRIVATE "${base}.cpp" "${base}.h")
  # The data is one long literal by design; compilers handle it, the warning is noise.
  set_source_files_properties("${base}.cpp" PROPERTIES COMPILE_OPTIONS "-Wno-overlength-strings")
endfunction()
