# Every fuzz target also builds with the standalone driver (any compiler), and CTest replays
# its seed corpus and every past finding: fuzz/corpus/<target>/ and fuzz/findings/<target>/.
file(GLOB PGMDEV_FUZZ_SOURCES CONFIGURE_DEPENDS "${PROJECT_SOURCE_DIR}/fuzz/fuzz_*.cpp")
foreach(source IN LISTS PGMDEV_FUZZ_SOURCES)
  get_filename_component(name "${source}" NAME_WE)
  string(REGEX REPLACE "^fuzz_" "" target "${name}")
  add_executable(replay_${target} "${source}" "${PROJECT_SOURCE_DIR}/fuzz/replay_main.cpp")
  target_link_libraries(replay_${target} PRIVATE pgmdev_static)
  target_include_directories(replay_${target} PRIVATE "${PROJECT_SOURCE_DIR}/fuzz")
  target_compile_definitions(replay_${target} PRIVATE PGMDEV_SOURCE_DIR="${PROJECT_SOURCE_DIR}")
  target_compile_options(replay_${target} PRIVATE ${PGMDEV_WARNINGS})
  add_test(NAME fuzz_replay.${target}
           COMMAND replay_${target} "${PROJECT_SOURCE_DIR}/fuzz/corpus/${target}"
                   "${PROJECT_SOURCE_DIR}/fuzz/findings/${target}")
  set_tests_properties(fuzz_replay.${target} PROPERTIES
    ENVIRONMENT "PGMDEV_DEBUG_LEVEL=0;PGMDEV_SOURCE_DIR=${PROJECT_SOURCE_DIR}"
    LABELS fuzz_replay)
endforeach()

# The seed maker (scripts/fuzz_seeds.sh): seeds of every target from the shipped data.
add_executable(pgmdev_fuzz_seeds EXCLUDE_FROM_ALL "${PROJECT_SOURCE_DIR}/fuzz/make_seeds.cpp")
target_link_libraries(pgmdev_fuzz_seeds PRIVATE pgmdev_static)
target_include_directories(pgmdev_fuzz_seeds PRIVATE "${PROJECT_SOURCE_DIR}/fuzz")
target_compile_definitions(pgmdev_fuzz_seeds PRIVATE
  PGMDEV_SOURCE_DIR="${PROJECT_SOURCE_DIR}" PGMDEV_BINARY_DIR="${PROJECT_BINARY_DIR}")
target_compile_options(pgmdev_fuzz_seeds PRIVATE ${PGMDEV_WARNINGS})
