// Ranks known names by their edit distance to a mistyped one.
#include "suggest.h"

#include <algorithm>
#include <cctype>
#include <set>
#include <tuple>

namespace pgmdev::answers {

namespace {

char fold(char c) { return static_cast<char>(std::tolower(static_cast<unsigned char>(c))); }

bool starts_like(const std::string& candidate, const std::string& word) {
  const size_t n = std::min<size_t>(3, word.size());
  if (candidate.size() < n) return false;
  for (size_t i = 0; i < n; ++i) {
    if (fold(candidate[i]) != fold(word[i])) return false;
  }
  return true;
}

}  // namespace

size_t edit_distance(const std::string& a, const std::string& b, size_t limit) {
  const size_t n = a.size(), m = b.size();
  if ((n > m ? n - m : m - n) > limit) return limit + 1;
  // Three rows of the optimal-string-alignment table: two back, one back, current.
  std::vector<size_t> before(m + 1), previous(m + 1), current(m + 1);
  for (size_t j = 0; j <= m; ++j) previous[j] = j;
  for (size_t i = 1; i <= n; ++i) {
    current[0] = i;
    size_t row_best = current[0];
    for (size_t j = 1; j <= m; ++j) {
      const size_t cost = fold(a[i - 1]) == fold(b[j - 1]) ? 0 : 1;
      size_t best = std::min({previous[j] + 1, current[j - 1] + 1, previous[j - 1] + cost});
      if (i > 1 && j > 1 && fold(a[i - 1]) == fold(b[j - 2]) && fold(a[i - 2]) == fold(b[j - 1])) {
        best = std::min(best, before[j - 2] + 1);
      }
      current[j] = best;
      row_best = std::min(row_best, best);
    }
    if (row_best > limit) return limit + 1;
    std::swap(before, previous);
    std::swap(previous, current);
  }
  return std::min(previous[m], limit + 1);
}

std::vector<std::string> suggest(const std::string& word,
                                 const std::vector<std::string>& candidates, size_t count) {
  // A third of the word may be wrong, at least one letter, at most four.
  const size_t limit = std::clamp<size_t>(word.size() / 3, 1, 4);
  std::vector<std::tuple<size_t, bool, std::string>> ranked;
  std::set<std::string> seen;
  for (const std::string& candidate : candidates) {
    if (candidate.empty() || !seen.insert(candidate).second) continue;
    size_t distance = edit_distance(word, candidate, limit);
    // A longer name that begins with the whole word is a likely target too.
    if (distance > limit && word.size() >= 2 && candidate.size() > word.size() &&
        edit_distance(word, candidate.substr(0, word.size()), 0) == 0) {
      distance = limit;
    }
    if (distance <= limit) ranked.emplace_back(distance, !starts_like(candidate, word), candidate);
  }
  std::sort(ranked.begin(), ranked.end());
  std::vector<std::string> best;
  for (size_t i = 0; i < ranked.size() && i < count; ++i) best.push_back(std::get<2>(ranked[i]));
  return best;
}

std::string did_you_mean(const std::vector<std::string>& suggestions) {
  if (suggestions.empty()) return "";
  std::string text = "; did you mean ";
  for (size_t i = 0; i < suggestions.size(); ++i) {
    if (i > 0) text += i + 1 == suggestions.size() ? " or " : ", ";
    text += suggestions[i];
  }
  return text + "?";
}

}  // namespace pgmdev::answers
