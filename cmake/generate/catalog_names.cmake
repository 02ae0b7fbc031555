# Writes the definitions of h/pgmdev_catalog_names.h: the family names and the family
# enumeration names from the catalogue's families table, and the source digests.
# Run by the build (cmake -P) with FAMILIES, OUTPUT, DEV_INFO_MD5 and FLASH_MD5.
cmake_minimum_required(VERSION 3.25)
foreach(var FAMILIES OUTPUT DEV_INFO_MD5 FLASH_MD5)
  if(NOT DEFINED ${var})
    message(FATAL_ERROR "catalog_names: ${var} is not set")
  endif()
endforeach()

file(STRINGS "${FAMILIES}" rows)
list(POP_FRONT rows header)
if(NOT header MATCHES "^family_enum,family_name,line,")
  message(FATAL_ERROR "catalog_names: ${FAMILIES}: unexpected header ${header}")
endif()

# Family names in table order (the generic family is the table's last row); one enumeration
# name per product line in order of first appearance, the generic line as it is.
set(names "")
set(lines "")
foreach(row IN LISTS rows)
  string(REPLACE "," ";" cells "${row}")
  list(GET cells 1 name)
  list(GET cells 2 line)
  list(APPEND names "${name}")
  if(NOT line IN_LIST lines)
    list(APPEND lines "${line}")
  endif()
endforeach()
set(enum_names "DEV_FAMILY_INVALID")
foreach(line IN LISTS lines)
  if(line STREQUAL "GENERIC")
    list(APPEND enum_names "GENERIC")
  else()
    list(APPEND enum_names "DEV_FAMILY_${line}")
  endif()
endforeach()

function(cpp_array out_var type name values)
  list(LENGTH values count)
  set(text "const DWORD ${name}_COUNT = ${count};\nconst ${type} ${name}[] = {\n")
  foreach(value IN LISTS values)
    string(APPEND text "    \"${value}\",\n")
  endforeach()
  string(APPEND text "};\n")
  set(${out_var} "${text}" PARENT_SCOPE)
endfunction()
cpp_array(family_text "std::string" "PGMDEV_STATIC_FAMILY_NAME" "${names}")
string(REPLACE "PGMDEV_STATIC_FAMILY_NAME[]" "PGMDEV_STATIC_FAMILY_NAMES[]" family_text
       "${family_text}")
cpp_array(enum_text "std::string" "PGMDEV_STATIC_FAMILY_ENUM_NAME" "${enum_names}")
string(REPLACE "PGMDEV_STATIC_FAMILY_ENUM_NAME[]" "PGMDEV_STATIC_FAMILY_ENUM_NAMES[]" enum_text
       "${enum_text}")

set(content "// Generated from ${FAMILIES} by cmake/generate/catalog_names.cmake: do not edit.
#include \"pgmdev_catalog_names.h\"

${family_text}
${enum_text}
const std::string PGMDEV_STATIC_SOURCE_DIGESTS[2] = {\"${DEV_INFO_MD5}\", \"${FLASH_MD5}\"};
")
# Rewritten only when it changes, so that an unchanged table compiles nothing again.
file(CONFIGURE OUTPUT "${OUTPUT}" CONTENT "${content}" @ONLY)
