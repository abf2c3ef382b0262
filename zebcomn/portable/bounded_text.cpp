#include "zebcomn/portable/bounded_text_internal.h"

size_t zebcomn::CopyBounded(char* buffer, size_t capacity, std::string_view text) {
  const size_t length = text.copy(buffer, capacity - 1);
  buffer[length] = '\0';
  return length;
}
