#include <Poco/Net/NetworkInterface.h>

#include "bench/network_bench.h"

namespace zebcomn_bench {
namespace {

void Interfaces(benchmark::State& state) {
  MeasureInterfaces(state, [] {
    std::size_t found = 0;
    for (const auto& [index, interface] : Poco::Net::NetworkInterface::map(true, true)) {
      if (interface.isLoopback()) continue;
      for (const auto& tuple : interface.addressList()) {
        benchmark::DoNotOptimize(tuple.get<Poco::Net::NetworkInterface::IP_ADDRESS>().toString());
        benchmark::DoNotOptimize(tuple.get<Poco::Net::NetworkInterface::SUBNET_MASK>().toString());
        ++found;
      }
    }
    return found;
  });
}
BENCHMARK(Interfaces)->Name("interfaces/poco")->Apply(Addresses);

}  // namespace
}  // namespace zebcomn_bench
