// C++20: the headers under its rules, and the library's values in its library's hands.
#include <zebcomn/zebcomn.h>

#include <algorithm>
#include <array>
#include <concepts>
#include <cstdio>
#include <memory>
#include <ranges>
#include <span>
#include <string>

namespace {

struct HandleCloser {
  void operator()(HANDLE handle) const { tivCloseHandle(handle); }
};
using UniqueHandle = std::unique_ptr<void, HandleCloser>;

static_assert(std::same_as<decltype(tivGetTickCount()), uint32_t>);

bool SecondEventAnswers() {
  const std::array<UniqueHandle, 2> events = {
      UniqueHandle(tivCreateEvent(nullptr, TRUE, FALSE, nullptr)),
      UniqueHandle(tivCreateEvent(nullptr, TRUE, TRUE, nullptr))};
  const auto is_set = [](const UniqueHandle& event) {
    return tivWaitForSingleObject(event.get(), 0) == TIV_WAIT_SIGNALLED;
  };
  const std::span<const UniqueHandle> both(events);
  return std::ranges::find_if(both, is_set) - both.begin() == 1;
}

bool AddressExpands() {
  const std::string address = expandIPV6Address("fd00::2");
  return std::ranges::count(address, ':') == 7;
}

}  // namespace

int main() {
  if (!SecondEventAnswers()) return 1;
  if (!AddressExpands()) return 2;
  std::puts("C++20 is served");
  return 0;
}
