// Reading and checking the naming sources of data/naming/.
#include "naming_sources.h"

#include <filesystem>
#include <fstream>
#include <map>
#include <set>
#include <sstream>
#include <stdexcept>

namespace naming_packer {
namespace {

constexpr size_t MAX_NAME_LENGTH = 37;

[[noreturn]] void fail(const std::string& path, int line, const std::string& what) {
  throw SOURCE_ERROR(path + ":" + std::to_string(line) + ": " + what);
}

std::string find_section_file(const std::string& directory, int section) {
  const std::string prefix = "grammar_" + std::to_string(section) + "_";
  std::vector<std::string> found;
  for (const auto& item : std::filesystem::directory_iterator(directory)) {
    const std::string name = item.path().filename().string();
    if (name.rfind(prefix, 0) == 0 && item.path().extension() == ".txt") {
      found.push_back(item.path().string());
    }
  }
  if (found.size() != 1) {
    throw SOURCE_ERROR(directory + ": expected one " + prefix + "*.txt, found " +
                       std::to_string(found.size()));
  }
  return found.front();
}

// Upper-case letters, digits and "_"; section 0 (full part names) also "-".
bool valid_name(const std::string& name, bool allow_hyphen) {
  if (name.empty() || name.size() > MAX_NAME_LENGTH) return false;
  for (char c : name) {
    const bool ok =
        (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_' || (allow_hyphen && c == '-');
    if (!ok) return false;
  }
  return true;
}

// Lines without comments and blank lines, with their line numbers.
std::vector<std::pair<int, std::string>> content_lines(const std::string& path) {
  std::ifstream in(path);
  if (!in) throw SOURCE_ERROR(path + ": cannot be read");
  std::vector<std::pair<int, std::string>> lines;
  std::string text;
  for (int number = 1; std::getline(in, text); ++number) {
    if (!text.empty() && text.back() == '\r') text.pop_back();
    if (text.empty() || text[0] == '#') continue;
    lines.emplace_back(number, text);
  }
  return lines;
}

std::vector<std::string> split_blanks(const std::string& text) {
  std::istringstream in(text);
  std::vector<std::string> words;
  for (std::string word; in >> word;) words.push_back(word);
  return words;
}

DWORD parse_number(const std::string& path, int line, const std::string& text) {
  if (text.empty() || text.size() > 10 ||
      text.find_first_not_of("0123456789") != std::string::npos) {
    fail(path, line, "not a number: " + text);
  }
  const unsigned long long value = std::stoull(text);
  if (value > 0xFFFFFFFFull) fail(path, line, "number too large: " + text);
  return DWORD(value);
}

}  // namespace

GRAMMAR_SECTION read_grammar_section(const std::string& directory, int section) {
  const std::string path = find_section_file(directory, section);
  GRAMMAR_SECTION entries;
  std::set<std::string> keys;
  std::map<std::string, std::string> owner;  // list string -> its key
  for (const auto& [line, text] : content_lines(path)) {
    std::vector<std::string> words = split_blanks(text);
    if (words.size() < 2) fail(path, line, "a key needs at least one list string");
    for (const std::string& word : words) {
      if (!valid_name(word, section == 0)) fail(path, line, "invalid name: " + word);
    }
    const std::string key = words.front();
    if (!keys.insert(key).second) fail(path, line, "key listed twice: " + key);
    std::vector<std::string> list(words.begin() + 1, words.end());
    for (const std::string& text_item : list) {
      const auto [it, fresh] = owner.emplace(text_item, key);
      if (!fresh) fail(path, line, text_item + " already listed under " + it->second);
    }
    entries.emplace_back(key, std::move(list));
  }
  if (entries.empty()) fail(path, 0, "a section needs at least one entry");
  return entries;
}

std::vector<DWORD> read_opn_slots(const std::string& directory) {
  const std::string path = directory + "/opn_slots.txt";
  const auto lines = content_lines(path);
  if (lines.empty()) fail(path, 0, "missing 'slots N'");
  const std::vector<std::string> head = split_blanks(lines.front().second);
  if (head.size() != 2 || head[0] != "slots") fail(path, lines.front().first, "expected 'slots N'");
  const DWORD count = parse_number(path, lines.front().first, head[1]);
  if (count == 0) fail(path, lines.front().first, "the table needs at least one slot");
  std::vector<DWORD> slots(count, 0);
  std::set<DWORD> parts;
  for (size_t i = 1; i < lines.size(); ++i) {
    const auto& [line, text] = lines[i];
    const std::vector<std::string> words = split_blanks(text);
    if (words.size() != 3) fail(path, line, "expected 'slot part_enum part_name'");
    const DWORD slot = parse_number(path, line, words[0]);
    const DWORD part = parse_number(path, line, words[1]);
    if (slot >= count) fail(path, line, "slot beyond the table");
    if (slots[slot] != 0) fail(path, line, "slot assigned twice");
    if (part == 0) fail(path, line, "part enumeration 0 means unassigned");
    if (!parts.insert(part).second) fail(path, line, "part in two slots: " + words[2]);
    slots[slot] = part;
  }
  return slots;
}

}  // namespace naming_packer
