#include <uv.h>

#include <array>

#include "bench/network_bench.h"

namespace zebcomn_bench {
namespace {

void Interfaces(benchmark::State& state) {
  MeasureInterfaces(state, [] {
    uv_interface_address_t* addresses = nullptr;
    int count = 0;
    std::size_t found = 0;
    if (uv_interface_addresses(&addresses, &count) != 0) return found;
    std::array<char, INET6_ADDRSTRLEN> text;
    for (int i = 0; i < count; ++i) {
      if (addresses[i].is_internal != 0) continue;
      if (addresses[i].address.address4.sin_family == AF_INET) {
        uv_ip4_name(&addresses[i].address.address4, text.data(), text.size());
        uv_ip4_name(&addresses[i].netmask.netmask4, text.data(), text.size());
      } else {
        uv_ip6_name(&addresses[i].address.address6, text.data(), text.size());
        uv_ip6_name(&addresses[i].netmask.netmask6, text.data(), text.size());
      }
      benchmark::DoNotOptimize(text);
      ++found;
    }
    uv_free_interface_addresses(addresses, count);
    return found;
  });
}
BENCHMARK(Interfaces)->Name("interfaces/libuv")->Apply(Addresses);

}  // namespace
}  // namespace zebcomn_bench
