#include "zebcomn/util/platform_match.h"

#include <array>
#include <cctype>
#include <cstddef>
#include <cstring>
#include <limits>

#include "zebcomn/portable/number_text.h"
#include "zebcomn/portable/types.h"

namespace {

constexpr uint32_t kMatch = ZEBCOMN_STATUS_OK;
constexpr uint32_t kVersionOutsideEveryRange = 1;
constexpr uint32_t kNoNameMatches = ZEBCOMN_STATUS_FAILURE;
/// The high bound that stands until an entry gives one; it exceeds every real version.
constexpr int32_t kHighestPart = 65535;

using Text = std::array<char, ZEBCOMN_PATH_CAPACITY>;

struct Version {
  std::array<int32_t, 3> parts;

  /// The parts as one number, in arithmetic that wraps.
  int64_t Number() const {
    uint64_t number = 0;
    for (const int32_t part : parts) {
      number = (number << 16) + static_cast<uint64_t>(static_cast<int64_t>(part));
    }
    return static_cast<int64_t>(number);
  }
};

/// Both bounds of a range, inclusive.
struct Range {
  Version low{{0, 0, 0}};
  Version high{{kHighestPart, -1, kHighestPart}};

  bool Holds(const Version& version) const {
    const int64_t number = version.Number();
    return low.Number() <= number && number <= high.Number();
  }
};

/// Copies what fits of `source`, without its blanks.
Text WithoutBlanks(const char* source) {
  Text text{};
  std::size_t length = 0;
  for (; *source != '\0' && length < text.size() - 1; ++source) {
    if (*source != ' ') text[length++] = *source;
  }
  return text;
}

/// `value` with one more digit, held within 32 bits.
int64_t WithDigit(int64_t value, int digit) {
  constexpr int64_t kLimit = int64_t{std::numeric_limits<int32_t>::max()} + 1;
  const int64_t longer = value * 10 + digit;
  return longer < kLimit ? longer : kLimit;
}

/// Reads a number as "%d" does: white space, a sign, digits. Out of range it is the nearest one.
bool ScanNumber(const char*& text, int32_t& number) {
  const char* at = text;
  while (std::isspace(static_cast<unsigned char>(*at)) != 0) ++at;
  const bool negative = *at == '-';
  if (*at == '-' || *at == '+') ++at;
  if (*at < '0' || *at > '9') return false;
  int64_t value = 0;
  for (; *at >= '0' && *at <= '9'; ++at) value = WithDigit(value, *at - '0');
  if (negative) value = -value;
  if (value > std::numeric_limits<int32_t>::max()) value = std::numeric_limits<int32_t>::max();
  number = static_cast<int32_t>(value);
  text = at;
  return true;
}

/// Reads as "%d:%d:%d" does: what comes after the first fault keeps its value.
void ScanVersion(const char* text, Version& version) {
  for (std::size_t i = 0; i < version.parts.size(); ++i) {
    if (i > 0 && *text++ != ':') return;
    if (!ScanNumber(text, version.parts[i])) return;
  }
}

/// What has been learnt from the entries of one list.
class Judgement {
 public:
  explicit Judgement(const Text& local) : local_(local) {
    if (const char* version = std::strchr(local.data(), ':')) ScanVersion(version + 1, version_);
  }

  /// Takes one entry, which it cuts at the first ":"; true for a full match.
  bool Takes(char* entry) {
    char* const colon = std::strchr(entry, ':');
    if (colon != nullptr) *colon = '\0';
    if (std::strstr(local_.data(), entry) == nullptr) return false;
    a_name_matched_ = true;
    if (colon == nullptr) return true;
    const char* const range = colon + 1;
    // Kept: numbers that are left out are inherited; lists state a bound once for several entries.
    ScanVersion(range, range_.low);
    if (const char* dash = std::strchr(range, '-')) ScanVersion(dash + 1, range_.high);
    return range_.Holds(version_);
  }

  uint32_t WithoutMatch() const {
    return a_name_matched_ ? kVersionOutsideEveryRange : kNoNameMatches;
  }

 private:
  const Text& local_;
  Version version_{{0, 0, 0}};
  Range range_;
  bool a_name_matched_ = false;
};

}  // namespace

uint32_t tivmcomn_IsPlatformMatch(const char* platform, const char* supportedList) {
  if (platform == nullptr || supportedList == nullptr) return kNoNameMatches;
  const Text local = WithoutBlanks(platform);
  Text list = WithoutBlanks(supportedList);
  Judgement judgement(local);
  char* rest = nullptr;
  for (char* entry = tivTstrtok_r(list.data(), "|", &rest); entry != nullptr;
       entry = tivTstrtok_r(nullptr, "|", &rest)) {
    if (judgement.Takes(entry)) return kMatch;
  }
  return judgement.WithoutMatch();
}
