# Installation: the shared library, its public headers, the pgmdev tool, the generated
# databases and a CMake package so that clients can find_package(pgmdev).
# Included at the end of the top-level build, once every target exists.
include(CMakePackageConfigHelpers)

set(PGMDEV_INSTALL_CMAKE_DIR "${CMAKE_INSTALL_LIBDIR}/cmake/pgmdev")
set(PGMDEV_INSTALL_SHARE_DIR "${CMAKE_INSTALL_DATADIR}/pgmdev")

install(TARGETS pgmdev EXPORT pgmdevTargets
  LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}" COMPONENT runtime
  RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}" COMPONENT runtime)

# The exported headers and the platform declarations (platform.h and what it includes),
# side by side, so that one include directory serves both. Other platform headers are the
# platform's own business.
file(GLOB PGMDEV_PUBLIC_HEADERS CONFIGURE_DEPENDS "${PROJECT_SOURCE_DIR}/h/*.h")
set(platform_header "${PROJECT_SOURCE_DIR}/platform/platform.h")
file(STRINGS "${platform_header}" platform_includes REGEX "^#include \"[^\"]+\"")
list(APPEND PGMDEV_PUBLIC_HEADERS "${platform_header}")
foreach(line IN LISTS platform_includes)
  string(REGEX REPLACE "^#include \"([^\"]+)\".*" "\\1" name "${line}")
  list(APPEND PGMDEV_PUBLIC_HEADERS "${PROJECT_SOURCE_DIR}/platform/${name}")
endforeach()
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${platform_header}")
install(FILES ${PGMDEV_PUBLIC_HEADERS}
  DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}/pgmdev" COMPONENT development)

# The databases the build generated; the library finds them relative to its own folder.
install(DIRECTORY "${PGMDEV_BUILD_SHARE_DIR}/"
  DESTINATION "${PGMDEV_INSTALL_SHARE_DIR}" COMPONENT runtime)

install(EXPORT pgmdevTargets NAMESPACE pgmdev::
  DESTINATION "${PGMDEV_INSTALL_CMAKE_DIR}" COMPONENT development)
configure_package_config_file("${PROJECT_SOURCE_DIR}/cmake/pgmdevConfig.cmake.in"
  "${PROJECT_BINARY_DIR}/pgmdevConfig.cmake"
  INSTALL_DESTINATION "${PGMDEV_INSTALL_CMAKE_DIR}"
  PATH_VARS PGMDEV_INSTALL_SHARE_DIR)
write_basic_package_version_file("${PROJECT_BINARY_DIR}/pgmdevConfigVersion.cmake"
  VERSION "${PROJECT_VERSION}" COMPATIBILITY SameMajorVersion)
install(FILES "${PROJECT_BINARY_DIR}/pgmdevConfig.cmake"
  "${PROJECT_BINARY_DIR}/pgmdevConfigVersion.cmake"
  DESTINATION "${PGMDEV_INSTALL_CMAKE_DIR}" COMPONENT development)

# The example client is built against an installed copy by a test; the end-to-end tests of
# the tool drive the built program.
if(BUILD_TESTING AND TARGET pgmdev_tests)
  set(PGMDEV_EXAMPLE_FLAGS "")
  if(PGMDEV_SANITIZE)
    set(PGMDEV_EXAMPLE_FLAGS "-fsanitize=address,undefined")
  endif()
  add_test(NAME install_example
    COMMAND "${CMAKE_COMMAND}"
      "-DPGMDEV_BINARY_DIR=${PROJECT_BINARY_DIR}"
      "-DPGMDEV_EXAMPLE_DIR=${PROJECT_SOURCE_DIR}/examples"
      "-DPGMDEV_WORK_DIR=${PROJECT_BINARY_DIR}/install_example"
      "-DPGMDEV_GENERATOR=${CMAKE_GENERATOR}"
      "-DPGMDEV_CXX_COMPILER=${CMAKE_CXX_COMPILER}"
      "-DPGMDEV_EXAMPLE_FLAGS=${PGMDEV_EXAMPLE_FLAGS}"
      -P "${PROJECT_SOURCE_DIR}/tests/install_example.cmake")
  set_tests_properties(install_example PROPERTIES TIMEOUT 300 RUN_SERIAL TRUE)
  if(TARGET pgmdev_cli)
    add_dependencies(pgmdev_tests pgmdev_cli)
    target_compile_definitions(pgmdev_tests PRIVATE
      PGMDEV_CLI_PATH="$<TARGET_FILE:pgmdev_cli>")
  endif()
endif()
