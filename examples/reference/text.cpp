// UTF-8 to wide characters and back, and small changes of a text.
#include <zebcomn/util/byte_order.h>
#include <zebcomn/util/string_helpers.h>
#include <zebcomn/util/text_conversion.h>

#include <iostream>

using namespace quenty_com::pelu;

int main() {
  const std::wstring wide = tivmcomn_ansi_to_wide("gr\xC3\xBC\xC3\x9F");
  const std::string narrow = tivmcomn_wide_to_ansi(wide);
  std::cout << narrow << ": " << wide.size() << " characters, " << narrow.size() << " bytes\n";

  char buffer[64];
  unsigned int size = sizeof buffer;  // room for the worst case: 6 bytes a character, and a NUL
  const bool fits = tivmcomn_unicode_to_utf8(wide.c_str(), buffer, &size) == 0;

  const std::string word = tivmcomn_strip_leading_whitespace("  word");
  std::cout << tivmcomn_convert_to_upper(word) << (isBigEndian() ? ", big" : ", little")
            << " endian\n";
  return fits && narrow == buffer && wide.size() == 4 && word == "word" ? 0 : 1;
}
