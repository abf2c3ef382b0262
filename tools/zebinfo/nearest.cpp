#include "tools/zebinfo/nearest.h"

#include <algorithm>
#include <numeric>

#include "zebcomn/util/string_helpers.h"

namespace zebinfo {
namespace {

// How many letters must be inserted, removed or replaced to make one word of the other.
std::size_t EditDistance(const std::string& a, const std::string& b) {
  std::vector<std::size_t> row(b.size() + 1);
  std::iota(row.begin(), row.end(), std::size_t{0});
  for (std::size_t i = 1; i <= a.size(); ++i) {
    std::size_t diagonal = row[0];
    row[0] = i;
    for (std::size_t j = 1; j <= b.size(); ++j) {
      const std::size_t replaced = diagonal + (a[i - 1] == b[j - 1] ? 0 : 1);
      diagonal = row[j];
      row[j] = std::min({row[j] + 1, row[j - 1] + 1, replaced});
    }
  }
  return row.back();
}

}  // namespace

std::string Nearest(const std::string& word, const std::vector<std::string>& candidates) {
  using quenty_com::pelu::tivmcomn_convert_to_lower;
  const std::string lower = tivmcomn_convert_to_lower(word);
  std::string nearest;
  // A third of the word may be wrong; more is another word.
  std::size_t limit = std::max<std::size_t>(word.size() / 3, 1) + 1;
  for (const std::string& candidate : candidates) {
    const std::size_t longer = std::max(lower.size(), candidate.size());
    const std::size_t shorter = std::min(lower.size(), candidate.size());
    if (longer - shorter >= limit) continue;
    const std::size_t distance = EditDistance(lower, tivmcomn_convert_to_lower(candidate));
    if (distance >= limit) continue;
    limit = distance;
    nearest = candidate;
  }
  return nearest;
}

}  // namespace zebinfo
