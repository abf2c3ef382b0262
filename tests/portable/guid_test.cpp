// GUIDs at every branch of their making. The C library's clock, random numbers and interface calls
// are replaced here, each case in a process of its own, because the first call counts; the shared
// library under test is the shipped one.
#include "zebcomn/portable/guid.h"

#include <dlfcn.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <net/if.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <sys/time.h>

#include <cerrno>
#include <cstdarg>
#include <cstring>
#include <deque>
#include <functional>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "tests/support/descriptors.h"
#include "tests/support/fresh_process.h"

namespace {

struct FakeInterface {
  std::string name;
  std::string address;  // Six bytes; empty for one whose address cannot be asked.
};

// What the replaced calls answer while `active`.
struct FakeHost {
  bool active = false;
  timeval now{};
  std::deque<timeval> times;  // Answered before `now`.
  std::deque<int> random;
  bool no_socket = false;
  bool no_list = false;
  int reported_list_length = -1;  // Instead of the true one.
  int offered_list_length = -1;   // What the caller had room for.
  std::vector<FakeInterface> interfaces;
  int sockets = 0;
  bool asked_with_ipv4_datagrams = false;
  int clock_reads = 0;
};

FakeHost fake;

template <typename Function>
Function* Next(const char* name) {
  return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

int ListInterfaces(ifconf* request) {
  fake.offered_list_length = request->ifc_len;
  if (fake.no_list) {
    errno = EINVAL;
    return -1;
  }
  int length = 0;
  for (const FakeInterface& interface : fake.interfaces) {
    if (length + static_cast<int>(sizeof(ifreq)) > request->ifc_len) break;
    ifreq entry{};
    std::strncpy(entry.ifr_name, interface.name.c_str(), IFNAMSIZ - 1);
    std::memcpy(request->ifc_buf + length, &entry, sizeof entry);
    length += static_cast<int>(sizeof entry);
  }
  request->ifc_len = fake.reported_list_length >= 0 ? fake.reported_list_length : length;
  return 0;
}

int HardwareAddress(ifreq* request) {
  for (const FakeInterface& interface : fake.interfaces) {
    if (interface.name == request->ifr_name && !interface.address.empty()) {
      std::memcpy(request->ifr_hwaddr.sa_data, interface.address.data(), 6);
      return 0;
    }
  }
  errno = ENODEV;
  return -1;
}

}  // namespace

#define INTERPOSED extern "C" __attribute__((visibility("default")))

INTERPOSED int gettimeofday(timeval* now, void* zone) noexcept {
  if (!fake.active) return Next<int(timeval*, void*)>("gettimeofday")(now, zone);
  ++fake.clock_reads;
  *now = fake.now;
  if (!fake.times.empty()) {
    *now = fake.times.front();
    fake.times.pop_front();
  }
  return 0;
}

INTERPOSED int rand() noexcept {
  if (!fake.active || fake.random.empty()) return Next<int()>("rand")();
  const int number = fake.random.front();
  fake.random.pop_front();
  return number;
}

INTERPOSED int socket(int family, int type, int protocol) noexcept {
  if (fake.active) {
    ++fake.sockets;
    fake.asked_with_ipv4_datagrams = family == AF_INET && (type & ~SOCK_CLOEXEC) == SOCK_DGRAM;
  }
  if (fake.active && fake.no_socket) {
    errno = EMFILE;
    return -1;
  }
  return Next<int(int, int, int)>("socket")(family, type, protocol);
}

INTERPOSED int ioctl(int fd, unsigned long request, ...) noexcept {
  va_list arguments;
  va_start(arguments, request);
  void* const argument = va_arg(arguments, void*);
  va_end(arguments);
  if (fake.active && request == SIOCGIFCONF) return ListInterfaces(static_cast<ifconf*>(argument));
  if (fake.active && request == SIOCGIFHWADDR)
    return HardwareAddress(static_cast<ifreq*>(argument));
  return Next<int(int, unsigned long, ...)>("ioctl")(fd, request, argument);
}

namespace {

constexpr timeval kFirst = {1700000000, 123456};
constexpr timeval kLater = {1700000100, 0};
constexpr timeval kLast = {kFirst.tv_sec - 1, kFirst.tv_usec};  // What the first call remembers.
const std::string kFirstTime = "04c29680-833b-11ee";
const std::string kLaterTime = "404a8a00-833b-11ee";
const std::string kZeroNode = "000000000000";

std::string NewGuid() {
  uint8_t guid[16];
  std::memset(guid, 0xEE, sizeof guid);
  char text[37];
  if (tivCoCreateGuid(guid) != guid) return "not the argument";
  return tivUuidToStringA(guid, text);
}

// A host with one interface, at kFirst, whose random numbers make the sequence number 0x1234.
FakeHost PlainHost() {
  FakeHost host;
  host.active = true;
  host.now = kFirst;
  host.random = {0x12, 0x34};
  host.interfaces = {{"eth0", "\x02\x11\x22\x33\x44\x55"}};
  return host;
}

// What `body` returns in a process in which no GUID was made yet.
std::string OnHost(const FakeHost& host, const std::function<std::string()>& body = NewGuid) {
  return zebcomn_test::RunInFreshProcess([&] {
    fake = host;
    const std::string found = body();
    fake.active = false;
    return found;
  });
}

// The first GUID and then one at each of these times, a blank between them.
std::string GuidsAt(const FakeHost& host, const std::vector<timeval>& times) {
  return OnHost(host, [&times] {
    std::string all = NewGuid();
    for (const timeval& now : times) {
      fake.now = now;
      all += " " + NewGuid();
    }
    return all;
  });
}

TEST(Guid, TheFirstHoldsTimeSequenceAndHardwareAddress) {
  EXPECT_EQ(OnHost(PlainHost()), kFirstTime + "-9234-021122334455");
}

TEST(Guid, EveryLaterOneHasAZeroNode) {
  EXPECT_EQ(GuidsAt(PlainHost(), {kLater}),
            kFirstTime + "-9234-021122334455 " + kLaterTime + "-9234-" + kZeroNode);
}

TEST(Guid, InterfacesAreSearchedByTheFirstCallOnly) {
  const std::string counts = OnHost(PlainHost(), [] {
    NewGuid();
    NewGuid();
    return std::to_string(fake.sockets) + "/" + std::to_string(fake.offered_list_length) +
           (fake.asked_with_ipv4_datagrams ? "/udp" : "/another");
  });
  EXPECT_EQ(counts, "1/1024/udp");
}

TEST(Guid, TheSearchClosesItsSocket) {
  for (const bool no_list : {false, true}) {
    FakeHost host = PlainHost();
    host.no_list = no_list;
    const std::string difference = OnHost(host, [] {
      const int before = zebcomn_test::OpenDescriptorCount();
      NewGuid();
      return std::to_string(zebcomn_test::OpenDescriptorCount() - before);
    });
    EXPECT_EQ(difference, "0");
  }
}

TEST(Guid, TheNodeIsTheFirstHardwareAddressThatIsNotZero) {
  FakeHost host = PlainHost();
  host.interfaces = {{"lo", std::string(6, '\0')},
                     {"eth0", std::string("\0\0\0\0\0\x01", 6)},
                     {"eth1", "\x02\x11\x22\x33\x44\x55"}};
  EXPECT_EQ(OnHost(host), kFirstTime + "-9234-000000000001");
}

TEST(Guid, AnInterfaceThatDoesNotAnswerIsPassedOver) {
  FakeHost host = PlainHost();
  host.interfaces.insert(host.interfaces.begin(), {"tun0", ""});
  EXPECT_EQ(OnHost(host), kFirstTime + "-9234-021122334455");
}

TEST(Guid, TheLastInterfaceOfAFullListIsAskedToo) {
  FakeHost host = PlainHost();
  const size_t room = 1024 / sizeof(ifreq);
  host.interfaces.assign(room, {"", ""});
  for (size_t i = 0; i < room; ++i) host.interfaces[i].name = "if" + std::to_string(i);
  host.interfaces.back().address = "\x02\x11\x22\x33\x44\x66";
  EXPECT_EQ(OnHost(host), kFirstTime + "-9234-021122334466");
}

TEST(Guid, AListLongerThanTheRoomIsNotReadBeyondIt) {
  FakeHost host = PlainHost();
  host.interfaces = {{"tun0", ""}};
  host.reported_list_length = 1 << 20;
  host.random = {1, 2, 3, 4, 5, 6, 0x12, 0x34};
  EXPECT_EQ(OnHost(host), kFirstTime + "-9234-810203040506");
}

TEST(Guid, WithoutAHardwareAddressTheNodeIsRandomInTheOrderDrawn) {
  FakeHost base = PlainHost();
  base.random = {0x101, 0x202, 0x303, 0x404, 0x505, 0x7FFFFFFF, 0x12, 0x34};
  FakeHost no_socket = base;
  no_socket.no_socket = true;
  FakeHost no_list = base;
  no_list.no_list = true;
  FakeHost none = base;
  none.interfaces.clear();
  FakeHost all_zero = base;
  all_zero.interfaces = {{"lo", std::string(6, '\0')}};
  for (const FakeHost& host : {no_socket, no_list, none, all_zero}) {
    EXPECT_EQ(OnHost(host), kFirstTime + "-9234-8102030405ff");
    EXPECT_EQ(GuidsAt(host, {kLater}).substr(37), kLaterTime + "-9234-" + kZeroNode);
  }
}

TEST(Guid, TheSequenceNumberIsDrawnHighByteFirstAndCutTo13Bits) {
  FakeHost host = PlainHost();
  host.random = {0x7FFFFFFF, 0x7FFFFFFF};
  EXPECT_EQ(OnHost(host).substr(19, 4), "9fff");
  host.random = {0x20, 0x101};
  EXPECT_EQ(OnHost(host).substr(19, 4), "8001");
}

TEST(Guid, TwoOfTheSameMicrosecondAreEqualAfterTheFirst) {
  const std::string all = GuidsAt(PlainHost(), {kLater, kLater});
  EXPECT_EQ(all.substr(37, 36), all.substr(74, 36));
}

TEST(Guid, AClockSetBackMovesTheSequenceNumberOnWithEachCall) {
  const std::string all =
      GuidsAt(PlainHost(), {{kLast.tv_sec, kLast.tv_usec - 1}, {kLast.tv_sec - 1, 999999}, kLater});
  EXPECT_EQ(all.substr(37 + 19, 4), "9235");
  EXPECT_EQ(all.substr(74 + 19, 4), "9236");
  EXPECT_EQ(all.substr(111 + 19, 4), "9236");
}

TEST(Guid, TheSequenceNumberWrapsAt13Bits) {
  FakeHost host = PlainHost();
  host.random = {0x1F, 0xFF};
  const std::string all = GuidsAt(host, {{1, 0}});
  EXPECT_EQ(all.substr(19, 4), "9fff");
  EXPECT_EQ(all.substr(37 + 19, 4), "8000");
}

TEST(Guid, BetweenTheRememberedTimeAndTheFirstCallNothingIsAdjusted) {
  // The first call's own time less one second is remembered; half a second back is not behind it.
  const std::string all = GuidsAt(PlainHost(), {{kFirst.tv_sec - 1, 999999}});
  EXPECT_EQ(all.substr(37 + 19, 4), "9234");
}

TEST(Guid, AtTheRememberedTimeTheStampIsAdjustedUpToTen) {
  const std::string all = GuidsAt(PlainHost(), std::vector<timeval>(10, kLast));
  std::istringstream words(all);
  std::string word;
  words >> word;
  const uint32_t unadjusted = 0x042a0000;
  for (uint32_t i = 1; i <= 10; ++i) {
    words >> word;
    EXPECT_EQ(std::stoul(word.substr(0, 8), nullptr, 16), unadjusted + i) << word;
  }
}

TEST(Guid, AfterTenAdjustmentsItWaitsForAnotherTime) {
  const std::string found = OnHost(PlainHost(), [] {
    NewGuid();
    fake.now = kLast;
    for (int i = 0; i < 10; ++i) NewGuid();
    fake.clock_reads = 0;
    fake.times = {kLast, kLast, kLast};
    fake.now = kLater;
    const std::string guid = NewGuid();
    return guid + " " + std::to_string(fake.clock_reads);
  });
  EXPECT_EQ(found, kLaterTime + "-9234-" + kZeroNode + " 4");
}

TEST(Guid, AnotherTimeAndAClockSetBackEndTheAdjustment) {
  for (const timeval& between : {kLater, timeval{1, 0}}) {
    const std::string all = GuidsAt(PlainHost(), {kLast, kLast, between, kLast});
    EXPECT_EQ(all.substr(37, 8), "042a0001");
    EXPECT_EQ(all.substr(74, 8), "042a0002");
    EXPECT_EQ(all.substr(148, 8), "042a0001");
  }
}

TEST(Guid, NullGivesNullAndIsNoFirstCall) {
  const std::string found = OnHost(PlainHost(), [] {
    if (tivCoCreateGuid(nullptr) != nullptr) return std::string("not null");
    return NewGuid();
  });
  EXPECT_EQ(found, kFirstTime + "-9234-021122334455");
}

// Without a fake host, but in a process of their own: this one must not have its first call yet.
TEST(Guid, RealOnesAreOfVersionOne) {
  const std::string both = OnHost(FakeHost{}, [] {
    const std::string first = NewGuid();
    return first + NewGuid();
  });
  const std::string one = "[0-9a-f]{8}-[0-9a-f]{4}-1[0-9a-f]{3}-[89][0-9a-f]{3}-[0-9a-f]{12}";
  EXPECT_THAT(both, ::testing::MatchesRegex(one + one));
}

TEST(Guid, ManyThreadsMayMakeThemAtOnce) {
  const std::string lengths = OnHost(FakeHost{}, [] {
    std::vector<std::thread> threads;
    std::vector<std::string> texts(4);
    for (std::string& text : texts) {
      threads.emplace_back([&text] {
        for (int i = 0; i < 200; ++i) text = NewGuid();
      });
    }
    for (std::thread& thread : threads) thread.join();
    std::string all;
    for (const std::string& text : texts) all += std::to_string(text.size()) + " ";
    return all;
  });
  EXPECT_EQ(lengths, "36 36 36 36 ");
}

TEST(UuidToString, PrintsTheBytesInTheirOrder) {
  uint8_t bytes[16];
  for (uint8_t i = 0; i < 16; ++i) bytes[i] = i;
  char text[40];
  std::memset(text, 'x', sizeof text);
  EXPECT_EQ(tivUuidToStringA(bytes, text), text);
  EXPECT_STREQ(text, "00010203-0405-0607-0809-0a0b0c0d0e0f");
  EXPECT_EQ(text[37], 'x');
}

TEST(UuidToString, PrintsHighBytesInLowerCase) {
  const std::vector<uint8_t> bytes(16, 0xFA);
  std::vector<char> text(37);
  EXPECT_STREQ(tivUuidToStringA(bytes.data(), text.data()), "fafafafa-fafa-fafa-fafa-fafafafafafa");
}

TEST(UuidToString, NullGivesNull) {
  uint8_t bytes[16] = {};
  char text[40] = "old";
  EXPECT_EQ(tivUuidToStringA(bytes, nullptr), nullptr);
  EXPECT_EQ(tivUuidToStringA(nullptr, text), nullptr);
  EXPECT_STREQ(text, "old");
}

}  // namespace
