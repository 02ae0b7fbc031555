// Look-ups over the compiled-in catalogue: binary searches of the generated name indexes.
#include "pgm_dev_catalog_data.h"

#include <algorithm>

namespace pgmdev::catalog {
namespace {

char upper(char c) { return (c >= 'a' && c <= 'z') ? static_cast<char>(c - 'a' + 'A') : c; }

// Address constants only: initialised before any code runs.
constexpr CatalogTables kTables{
    {family_rows, generated::kFamilyRows + 1},   {device_rows, generated::kDeviceRows + 1},
    {part_rows, generated::kPartRows + 1},       {family_index_rows, generated::kFamilyRows},
    {device_index_rows, generated::kDeviceRows}, {part_index_rows, generated::kPartRows}};

bool key_less(const NameEntry& entry, std::string_view key) { return entry.key.view() < key; }

}  // namespace

const CatalogTables& tables() { return kTables; }

int find_name(const NameIndex& index, const char* name) {
  if (name == nullptr) return 0;
  // No catalogue name is longer than the longest, so a longer one is unknown unread.
  char key[generated::kLongestName + 1];
  std::size_t length = 0;
  for (; name[length] != '\0'; ++length) {
    if (length == generated::kLongestName) return 0;
    key[length] = upper(name[length]);
  }
  const std::string_view wanted(key, length);
  const NameEntry* found = std::lower_bound(index.begin(), index.end(), wanted, key_less);
  return found != index.end() && found->key.view() == wanted ? found->value : 0;
}

NameIndex find_prefix(const NameIndex& index, std::string_view prefix) {
  const NameEntry* first = std::lower_bound(index.begin(), index.end(), prefix, key_less);
  const NameEntry* last = std::find_if(first, index.end(), [prefix](const NameEntry& entry) {
    return entry.key.view().substr(0, prefix.size()) != prefix;
  });
  return {first, static_cast<std::size_t>(last - first)};
}

bool ascii_iequals(std::string_view a, std::string_view b) {
  return a.size() == b.size() && std::equal(a.begin(), a.end(), b.begin(),
                                            [](char x, char y) { return upper(x) == upper(y); });
}

bool ascii_icontains(std::string_view text, std::string_view needle) {
  return std::search(text.begin(), text.end(), needle.begin(), needle.end(),
                     [](char x, char y) { return upper(x) == upper(y); }) != text.end();
}

}  // namespace pgmdev::catalog
