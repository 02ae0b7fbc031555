// Reading and checking the naming sources of data/naming/ (format: data/naming/README.md).
#pragma once

#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "pgm_types.h"

namespace naming_packer {

using GRAMMAR_ENTRY = std::pair<std::string, std::vector<std::string>>;
using GRAMMAR_SECTION = std::vector<GRAMMAR_ENTRY>;

constexpr int GRAMMAR_SECTION_COUNT = 8;

// Thrown with a message naming the file and line of a bad source.
struct SOURCE_ERROR : std::runtime_error {
  using std::runtime_error::runtime_error;
};

// The entries of "grammar_<section>_*.txt" in `directory`, in file order, checked against
// the rules the loader enforces and the naming rules of the shipped data.
GRAMMAR_SECTION read_grammar_section(const std::string& directory, int section);

// The slot table of "opn_slots.txt": part enumerations by slot, 0 for unassigned slots.
std::vector<DWORD> read_opn_slots(const std::string& directory);

}  // namespace naming_packer
