#include "zebcomn/util/text_conversion.h"

#include <iconv.h>

#include <cstddef>
#include <cstring>
#include <cwchar>
#include <limits>
#include <memory>
#include <new>

#include "zebcomn/portable/types.h"
#include "zebcomn/util/byte_order.h"

namespace {

static_assert(sizeof(wchar_t) == 4, "wide text holds 32-bit code points");

// The longest form that UTF-8 has for one 31-bit code point.
constexpr std::size_t kMaxUtf8Bytes = 6;

// The longest wide text whose worst case still is a positive 32-bit capacity.
constexpr std::size_t kMaxWideLength =
    (std::numeric_limits<std::int32_t>::max() - 1) / kMaxUtf8Bytes;

const char* WideEncoding() {
  return quenty_com::pelu::isBigEndian() ? "UCS-4BE" : "UCS-4LE";
}

// Owns one open iconv converter.
class Converter {
 public:
  Converter(const char* to, const char* from) : descriptor_(iconv_open(to, from)) {}
  ~Converter() {
    if (IsOpen()) iconv_close(descriptor_);
  }
  Converter(const Converter&) = delete;
  Converter& operator=(const Converter&) = delete;

  // Converts as much of `in` as it can and returns where the output ends; at its start when there
  // is no converter.
  char* Convert(char* in, std::size_t in_bytes, char* out, std::size_t out_bytes) const {
    if (IsOpen()) iconv(descriptor_, &in, &in_bytes, &out, &out_bytes);
    return out;
  }

 private:
  // iconv_open answers the all-ones value when it fails; the type is opaque.
  bool IsOpen() const { return reinterpret_cast<std::intptr_t>(descriptor_) != -1; }

  iconv_t descriptor_;
};

// So many characters, the first one a NUL and the others not set: clearing work buffers of the
// worst case's size would cost more than a quarter of a long conversion. Null when there is no
// memory.
template <typename Character>
std::unique_ptr<Character[]> Allocate(std::size_t count) {
  // A size that does not fit makes the nothrow form throw too: 512 MiB of text in 32 bits.
  if (count > std::numeric_limits<std::ptrdiff_t>::max() / sizeof(Character)) return nullptr;
  std::unique_ptr<Character[]> buffer(new (std::nothrow) Character[count]);
  if (buffer != nullptr) buffer[0] = Character();
  return buffer;
}

}  // namespace

uint32_t tivmcomn_unicode_to_utf8(const wchar_t* src, char* dst, unsigned int* dstSize) {
  if (src == nullptr || dst == nullptr || dstSize == nullptr || *dstSize == 0) {
    return ZEBCOMN_STATUS_FAILURE;
  }
  const std::size_t length = std::wcslen(src);
  const auto capacity = static_cast<std::int32_t>(*dstSize);
  // Kept: the worst case is asked for even of plain ASCII; callers size their buffers by it.
  if (length > kMaxWideLength || static_cast<std::int32_t>(length * kMaxUtf8Bytes + 1) > capacity) {
    return ZEBCOMN_STATUS_FAILURE;
  }
  const auto out = Allocate<char>(length * kMaxUtf8Bytes + 1);
  const auto in = Allocate<wchar_t>(length + 1);
  if (out == nullptr || in == nullptr) return ZEBCOMN_STATUS_FAILURE;
  std::wmemcpy(in.get(), src, length + 1);

  const Converter converter("UTF8", WideEncoding());
  *converter.Convert(reinterpret_cast<char*>(in.get()), length * sizeof(wchar_t), out.get(),
                     length * kMaxUtf8Bytes) = '\0';
  std::strcpy(dst, out.get());
  return ZEBCOMN_STATUS_OK;
}

uint32_t tivmcomn_utf8_to_unicode(const char* src, wchar_t* dst, int* dstSize) {
  if (src == nullptr || dst == nullptr || dstSize == nullptr) return ZEBCOMN_STATUS_FAILURE;
  const std::size_t bytes = std::strlen(src) + 1;
  if (*dstSize < 0 || static_cast<std::size_t>(*dstSize) < bytes) return ZEBCOMN_STATUS_FAILURE;
  // One character more than can be produced: it terminates whatever is produced.
  const auto out = Allocate<wchar_t>(bytes + 1);
  const auto in = Allocate<char>(bytes);
  if (out == nullptr || in == nullptr) return ZEBCOMN_STATUS_FAILURE;
  std::memcpy(in.get(), src, bytes);

  const Converter converter(WideEncoding(), "UTF8");
  const char* const start = reinterpret_cast<const char*>(out.get());
  const char* const end = converter.Convert(in.get(), bytes, reinterpret_cast<char*>(out.get()),
                                            bytes * sizeof(wchar_t));
  out[static_cast<std::size_t>(end - start) / sizeof(wchar_t)] = L'\0';
  std::wcscpy(dst, out.get());
  return ZEBCOMN_STATUS_OK;
}

namespace quenty_com::pelu {

std::string tivmcomn_wide_to_ansi(const std::wstring& text) {
  if (text.length() > kMaxWideLength) return {};
  auto capacity = static_cast<unsigned int>(text.length() * kMaxUtf8Bytes + 1);
  const auto buffer = Allocate<char>(capacity);
  if (buffer == nullptr) return {};
  tivmcomn_unicode_to_utf8(text.c_str(), buffer.get(), &capacity);
  try {
    return std::string(buffer.get());
  } catch (const std::bad_alloc&) {
    return {};
  }
}

std::wstring tivmcomn_ansi_to_wide(const std::string& text) {
  if (text.length() >= static_cast<std::size_t>(std::numeric_limits<int>::max())) return {};
  auto capacity = static_cast<int>(text.length() + 1);
  const auto buffer = Allocate<wchar_t>(text.length() + 1);
  if (buffer == nullptr) return {};
  tivmcomn_utf8_to_unicode(text.c_str(), buffer.get(), &capacity);
  try {
    return std::wstring(buffer.get());
  } catch (const std::bad_alloc&) {
    return {};
  }
}

}  // namespace quenty_com::pelu
