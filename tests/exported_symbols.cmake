# The shared library exports its public API and nothing of the internal pgmdev:: namespace:
# fails on any such symbol in `nm -DC`, and when a known public symbol is missing. With
# MODULE, the Python module must hold the answers alone: nothing of the command line (CLI11,
# the tool's commands).
foreach(var LIBRARY NM)
  if(NOT ${var})
    message(FATAL_ERROR "exported_symbols: ${var} is not set")
  endif()
endforeach()

execute_process(COMMAND "${NM}" -DC --defined-only "${LIBRARY}" RESULT_VARIABLE result
                OUTPUT_VARIABLE symbols ERROR_VARIABLE errors)
if(NOT result EQUAL 0)
  message(FATAL_ERROR "exported_symbols: ${NM} failed (${result}): ${errors}")
endif()
string(REPLACE "\n" ";" lines "${symbols}")

set(internal "")
foreach(line IN LISTS lines)
  # "<address> <type> <name>"; vtables and type information read "... for pgmdev::X".
  if(line MATCHES "^[0-9a-fA-F]+ [A-Za-z] (.* for )?pgmdev::")
    string(APPEND internal "\n  ${line}")
  endif()
endforeach()
if(internal)
  message(FATAL_ERROR "exported_symbols: internal symbols exported by ${LIBRARY}:${internal}")
endif()

# A hidden public API would pass the check above: the managers and the platform must be there.
foreach(public "PGMDEV_FLASH_MANAGER::PGMDEV_FLASH_MANAGER" "PGMDEV_DEV_INFO_MANAGER::"
               "PGMDEV_MGR::" "PGMDEV_FLASH_INI::" "cfg_get_value" "typeinfo for MSG_INTERNAL_ERROR_EXCEPTION"
               "PGMDEV_FLASH_MANAGER::broken_user_flash_rule")
  string(FIND "${symbols}" "${public}" at)
  if(at EQUAL -1)
    message(FATAL_ERROR "exported_symbols: ${LIBRARY} does not export ${public}")
  endif()
endforeach()
message(STATUS "exported_symbols: no internal symbol among the exports of ${LIBRARY}")

if(MODULE)
  execute_process(COMMAND "${NM}" -C "${MODULE}" RESULT_VARIABLE result
                  OUTPUT_VARIABLE module_symbols ERROR_VARIABLE errors)
  if(NOT result EQUAL 0)
    message(FATAL_ERROR "exported_symbols: ${NM} failed (${result}): ${errors}")
  endif()
  string(REGEX MATCHALL "[^\n]*(CLI::|pgmdev::cli::)[^\n]*" command_line "${module_symbols}")
  if(command_line)
    list(GET command_line 0 first)
    message(FATAL_ERROR "exported_symbols: ${MODULE} holds the command line, e.g. ${first}")
  endif()
  message(STATUS "exported_symbols: nothing of the command line in ${MODULE}")
endif()
