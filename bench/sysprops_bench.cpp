// The catalogue of system properties beside the calls that it cannot do without: on this machine as
// it is, and with made-up system files, which only root can bind.
#include "bench/sysprops_bench.h"

#include "bench/support/catalogue_floor.h"
#include "zebcomn/sysprops/property_names.h"
#include "zebcomn/sysprops/sysprops.h"

namespace zebcomn_bench {
namespace {

namespace sysprops = quenty_com::pelu::sysprops;

void Keep(const char* text) {
  benchmark::DoNotOptimize(text);
}

void CollectAll() {
  sysprops::ISysProps properties;
  sysprops::PropertyMap catalogue;
  benchmark::DoNotOptimize(properties.GetAllSystemProperties(catalogue));
}

void CollectOne(const std::wstring& name) {
  sysprops::ISysProps properties;
  benchmark::DoNotOptimize(properties.GetOneSystemProperty(name));
}

void Catalogue_Zebcomn(benchmark::State& state) {
  for (auto _ : state) CollectAll();
}
BENCHMARK(Catalogue_Zebcomn)->Name("full_catalogue/zebcomn");

void Catalogue_Floor(benchmark::State& state) {
  for (auto _ : state) AskForCatalogue(Keep);
}
BENCHMARK(Catalogue_Floor)->Name("full_catalogue/floor");

void ManyProcessors_Zebcomn(benchmark::State& state) {
  MeasureInView(state, PrivateView::OfProcessors, CollectAll);
}
BENCHMARK(ManyProcessors_Zebcomn)
    ->Name("catalogue_many_processors/zebcomn")
    ->Apply(Processors)
    ->Arg(64)
    ->Arg(16);

void ManyProcessors_Floor(benchmark::State& state) {
  MeasureInView(state, PrivateView::OfProcessors, [] { AskForCatalogue(Keep); });
}
BENCHMARK(ManyProcessors_Floor)->Name("catalogue_many_processors/floor")->Apply(Processors);

void ManyMounts_Zebcomn(benchmark::State& state) {
  MeasureInView(state, PrivateView::OfMounts, CollectAll);
}
BENCHMARK(ManyMounts_Zebcomn)->Name("catalogue_many_mounts/zebcomn")->Apply(Mounts);

void ManyMounts_Floor(benchmark::State& state) {
  MeasureInView(state, PrivateView::OfMounts, [] { AskForCatalogue(Keep); });
}
BENCHMARK(ManyMounts_Floor)->Name("catalogue_many_mounts/floor")->Apply(Mounts);

void Memory_Zebcomn(benchmark::State& state) {
  for (auto _ : state) CollectOne(sysprops::TotalPhysicalMemory_Key);
}
BENCHMARK(Memory_Zebcomn)->Name("one_property_memory/zebcomn");

void Memory_Floor(benchmark::State& state) {
  for (auto _ : state) ReadWholeFile("/proc/meminfo", Keep);
}
BENCHMARK(Memory_Floor)->Name("one_property_memory/floor");

void Processor_Zebcomn(benchmark::State& state) {
  for (auto _ : state) CollectOne(sysprops::CPUType_Key);
}
BENCHMARK(Processor_Zebcomn)->Name("one_property_processor/zebcomn");

void Processor_Floor(benchmark::State& state) {
  for (auto _ : state) {
    ReadWholeFile("/proc/cpuinfo", Keep);
    for (int i = 0; i < 2; ++i) ConvertBare(" Intel(R) Xeon(R) Processor");
  }
}
BENCHMARK(Processor_Floor)->Name("one_property_processor/floor");

void Address_Zebcomn(benchmark::State& state) {
  for (auto _ : state) CollectOne(sysprops::IPAddress_Key);
}
BENCHMARK(Address_Zebcomn)->Name("one_property_address/zebcomn");

/// The whole group is collected for any one of its properties.
void Address_Floor(benchmark::State& state) {
  for (auto _ : state) {
    AskForNames(Keep);
    AskForInterfaces(Keep);
    for (int i = 0; i < 7; ++i) ConvertBare("192.168.100.200");
  }
}
BENCHMARK(Address_Floor)->Name("one_property_address/floor");

}  // namespace
}  // namespace zebcomn_bench
