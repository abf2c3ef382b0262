#include "zebcomn/portable/guid.h"

#include <net/if.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <sys/time.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdlib>
#include <cstring>

#include "zebcomn/portable/held_mutex_internal.h"
#include "zebcomn/portable/unique_fd_internal.h"

namespace {

constexpr std::size_t kNodeBytes = 6;
constexpr std::size_t kInterfaceListBytes = 1024;
constexpr std::uint8_t kRandomNodeMark = 0x80;
constexpr std::uint16_t kClockSequenceMask = 0x1FFF;
constexpr std::uint16_t kClockSequenceMark = 0x8000;
constexpr std::uint64_t kTimeVersionMark = 0x1000;
constexpr std::uint32_t kMaxAdjustment = 9;
constexpr std::uint64_t kTicksPerSecond = 10'000'000;
constexpr std::uint64_t kTicksPerMicrosecond = 10;
// 1582-10-15 to 1970-01-01, in units of 100 ns.
constexpr std::uint64_t kTicksBeforeEpoch = 0x01B21DD213814000;

using Node = std::array<std::uint8_t, kNodeBytes>;

// What the process's GUIDs share.
struct State {
  bool has_init = false;
  timeval last{};
  std::uint16_t clock_seq = 0;
  std::uint32_t adjustment = 0;
};

pthread_mutex_t state_mutex = PTHREAD_MUTEX_INITIALIZER;  // Guards `state`.
State state;

// Stores the low `bytes` bytes of `value`, the highest first.
void StoreBigEndian(std::uint64_t value, std::size_t bytes, std::uint8_t* out) {
  for (std::size_t i = bytes; i-- > 0; value >>= 8) out[i] = static_cast<std::uint8_t>(value);
}

bool IsZero(const Node& node) {
  return node == Node{};
}

// The first hardware address that is not all zero; all zero when there is none.
Node HardwareNode() {
  const zebcomn::UniqueFd socket(::socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0));
  if (!socket.IsOpen()) return {};
  alignas(ifreq) std::array<char, kInterfaceListBytes> list{};
  ifconf request{};
  request.ifc_len = static_cast<int>(list.size());
  request.ifc_buf = list.data();
  if (ioctl(socket.get(), SIOCGIFCONF, &request) < 0) return {};
  const std::size_t length = std::min(static_cast<std::size_t>(request.ifc_len), list.size());
  for (std::size_t offset = 0; offset + sizeof(ifreq) <= length; offset += sizeof(ifreq)) {
    ifreq interface;
    std::memcpy(&interface, list.data() + offset, sizeof interface);
    if (ioctl(socket.get(), SIOCGIFHWADDR, &interface) < 0) continue;
    Node node;
    std::memcpy(node.data(), interface.ifr_hwaddr.sa_data, node.size());
    if (!IsZero(node)) return node;
  }
  return {};
}

Node RandomNode() {
  Node node;
  for (std::uint8_t& byte : node) byte = static_cast<std::uint8_t>(std::rand());
  node[0] |= kRandomNodeMark;
  return node;
}

std::uint16_t RandomClockSequence() {
  const auto high = static_cast<unsigned>(std::rand()) << 8;
  const auto low = static_cast<unsigned>(std::rand()) & 0xFF;
  return static_cast<std::uint16_t>(((high & 0xFFFF) + low) & kClockSequenceMask);
}

bool Equal(const timeval& a, const timeval& b) {
  return a.tv_sec == b.tv_sec && a.tv_usec == b.tv_usec;
}

bool Earlier(const timeval& a, const timeval& b) {
  return a.tv_sec < b.tv_sec || (a.tv_sec == b.tv_sec && a.tv_usec < b.tv_usec);
}

// Reads the time and moves the shared state on by one GUID.
timeval NextTime() {
  for (;;) {
    timeval now{};
    gettimeofday(&now, nullptr);
    if (Equal(state.last, timeval{})) {
      state.clock_seq = RandomClockSequence();
      state.last = now;
      --state.last.tv_sec;
    }
    // Kept: `last` never moves on after the first call, so two GUIDs of one microsecond are equal.
    if (Earlier(now, state.last)) {
      state.clock_seq = (state.clock_seq + 1) & kClockSequenceMask;
      state.adjustment = 0;
      return now;
    }
    if (!Equal(now, state.last)) {
      state.adjustment = 0;
      return now;
    }
    if (state.adjustment <= kMaxAdjustment) {
      ++state.adjustment;
      return now;
    }
  }
}

std::uint64_t Timestamp(const timeval& now) {
  return static_cast<std::uint64_t>(now.tv_sec) * kTicksPerSecond +
         static_cast<std::uint64_t>(now.tv_usec) * kTicksPerMicrosecond + state.adjustment +
         kTicksBeforeEpoch;
}

// The node of this GUID. Kept: it is looked up once and not remembered, so it is zero later on.
Node NextNode() {
  if (state.has_init) return {};
  Node node = HardwareNode();
  if (IsZero(node)) node = RandomNode();
  state.has_init = true;
  return node;
}

}  // namespace

uint8_t* tivCoCreateGuid(uint8_t* guid) {
  if (guid == nullptr) return nullptr;
  const zebcomn::HeldMutex held(state_mutex, zebcomn::HeldMutex::Insist{});
  const Node node = NextNode();
  const std::uint64_t timestamp = Timestamp(NextTime());
  StoreBigEndian(timestamp, 4, guid);
  StoreBigEndian(timestamp >> 32, 2, guid + 4);
  StoreBigEndian(timestamp >> 48 | kTimeVersionMark, 2, guid + 6);
  StoreBigEndian(state.clock_seq | kClockSequenceMark, 2, guid + 8);
  std::copy(node.begin(), node.end(), guid + 10);
  return guid;
}

char* tivUuidToStringA(const uint8_t* guid, char* buffer) {
  static constexpr char kDigits[] = "0123456789abcdef";
  if (guid == nullptr || buffer == nullptr) return nullptr;
  char* out = buffer;
  for (int i = 0; i < 16; ++i) {
    if (i == 4 || i == 6 || i == 8 || i == 10) *out++ = '-';
    *out++ = kDigits[guid[i] >> 4];
    *out++ = kDigits[guid[i] & 0xF];
  }
  *out = '\0';
  return buffer;
}
