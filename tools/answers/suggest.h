// "Did you mean" suggestions: the known names closest to a mistyped one.
#pragma once

#include <string>
#include <vector>

namespace pgmdev::answers {

// Case-blind edit distance (insertions, deletions, substitutions and swaps of neighbours),
// or `limit + 1` as soon as it is known to exceed `limit`.
size_t edit_distance(const std::string& a, const std::string& b, size_t limit);

// Up to `count` candidates close enough to `word` to be what was meant, best first:
// smallest distance, then those that start like `word`, then by name.
std::vector<std::string> suggest(const std::string& word,
                                 const std::vector<std::string>& candidates, size_t count = 5);

// "; did you mean A, B or C?" or "" when there is nothing to suggest.
std::string did_you_mean(const std::vector<std::string>& suggestions);

}  // namespace pgmdev::answers
