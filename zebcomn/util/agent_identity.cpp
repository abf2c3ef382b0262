#include "zebcomn/util/agent_identity.h"

#include <array>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <cwchar>

#include "zebcomn/portable/guid.h"

namespace {

constexpr std::size_t kGuidBytes = 16;
constexpr std::size_t kGuidWorkArea = 255;
constexpr std::size_t kSoftwareIdArea = 32;
constexpr int kVersionDigits[] = {4, 6, 0};

char UpperCase(char letter) {
  return letter >= 'a' && letter <= 'z' ? static_cast<char>(letter - 'a' + 'A') : letter;
}

}  // namespace

BOOL tivmcomn_create_guid(unsigned char* guid, char* text, int textSize) {
  if (text == nullptr && textSize > 0) return FALSE;
  std::array<uint8_t, kGuidBytes> bytes{};
  std::array<char, kGuidWorkArea> rendered{};
  if (tivCoCreateGuid(bytes.data()) != bytes.data()) return FALSE;
  if (tivUuidToStringA(bytes.data(), rendered.data()) != rendered.data()) return FALSE;
  for (char& letter : rendered) letter = UpperCase(letter);
  std::array<char, kGuidWorkArea + 2> braced{};
  std::snprintf(braced.data(), braced.size(), "{%s}", rendered.data());
  // Kept: a text that fills the buffer has no terminator; callers pass the 38 characters' room.
  if (textSize > 0) std::strncpy(text, braced.data(), static_cast<std::size_t>(textSize));
  if (guid != nullptr) std::memcpy(guid, bytes.data(), bytes.size());
  return TRUE;
}

void tivmcomn_get_agent_softwareid(char* out, unsigned size) {
  std::array<char, kSoftwareIdArea> id{};
  std::snprintf(id.data(), id.size(), "KZUAGENT%1d%1d%1d0WRLX", kVersionDigits[0],
                kVersionDigits[1], kVersionDigits[2]);
  const std::size_t length = std::strlen(id.data());
  // Kept: nothing is written for want of room; callers look at a buffer that they cleared.
  if (out == nullptr || size <= length) return;
  std::strncpy(out, id.data(), size - 1);
  out[length] = '\0';
}

void tivmcomn_get_agent_softwareid_W(wchar_t* out, unsigned size) {
  std::array<wchar_t, kSoftwareIdArea> id{};
  std::swprintf(id.data(), id.size(), L"KZUAGENT%1d%1d%1d0WRLX", kVersionDigits[0],
                kVersionDigits[1], kVersionDigits[2]);
  if (out == nullptr || size <= std::wcslen(id.data())) return;
  std::wcscpy(out, id.data());
}

// Kept: a pause of no length; callers only need the name to be there.
void tivmcomn_delay() {}
