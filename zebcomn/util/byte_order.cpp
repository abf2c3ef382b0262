#include "zebcomn/util/byte_order.h"

#include <cstdint>
#include <cstring>

namespace quenty_com::pelu {

bool isBigEndian() {
  const std::uint32_t one = 1;
  unsigned char first_byte;
  std::memcpy(&first_byte, &one, sizeof first_byte);
  return first_byte != 1;
}

}  // namespace quenty_com::pelu
