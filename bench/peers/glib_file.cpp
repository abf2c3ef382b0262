#include <gio/gio.h>
#include <glib/gstdio.h>

#include <memory>
#include <string>

#include "bench/file_bench.h"

namespace zebcomn_bench {
namespace {

struct Unreference {
  void operator()(gpointer object) const { g_object_unref(object); }
};
template <typename Object>
using Owned = std::unique_ptr<Object, Unreference>;

Owned<GFile> FileOf(const char* path) {
  return Owned<GFile>(g_file_new_for_path(path));
}

Owned<GFileInputStream> OpenToRead(const char* path) {
  Owned<GFileInputStream> stream(g_file_read(FileOf(path).get(), nullptr, nullptr));
  Require(stream != nullptr);
  return stream;
}

void OpenClose(benchmark::State& state) {
  MeasureOpenClose(state, [](const char* path) { OpenToRead(path); });
}
BENCHMARK(OpenClose)->Name("file_open_close/glib");

void Read(benchmark::State& state) {
  MeasureRead(state, [](const char* path, char* block) {
    const auto stream = OpenToRead(path);
    std::size_t all = 0;
    gssize got = 0;
    while ((got = g_input_stream_read(G_INPUT_STREAM(stream.get()), block, kBlock, nullptr,
                                      nullptr)) > 0) {
      all += static_cast<std::size_t>(got);
    }
    return all;
  });
}
BENCHMARK(Read)->Name("file_read/glib")->Apply(Transfer);

void Write(benchmark::State& state) {
  MeasureWrite(state, [](const char* path, const char* block, std::size_t count) {
    g_unlink(path);
    const Owned<GFileOutputStream> stream(
        g_file_create(FileOf(path).get(), G_FILE_CREATE_NONE, nullptr, nullptr));
    Require(stream != nullptr);
    for (std::size_t i = 0; i < count; ++i) {
      Require(g_output_stream_write(G_OUTPUT_STREAM(stream.get()), block, kBlock, nullptr,
                                    nullptr) == static_cast<gssize>(kBlock));
    }
  });
}
BENCHMARK(Write)->Name("file_write/glib")->Apply(Transfer);

void SearchFolder(benchmark::State& state) {
  MeasureSearch(state, [](const char* folder) {
    GDir* const stream = g_dir_open(folder, 0, nullptr);
    Require(stream != nullptr);
    GPatternSpec* const pattern = g_pattern_spec_new(kPattern);
    std::size_t found = 0;
    while (const char* name = g_dir_read_name(stream)) {
      if (!g_pattern_spec_match_string(pattern, name)) continue;
      GStatBuf status;
      Require(g_stat((std::string(folder) + "/" + name).c_str(), &status) == 0);
      benchmark::DoNotOptimize(status);
      ++found;
    }
    g_pattern_spec_free(pattern);
    g_dir_close(stream);
    return found;
  });
}
BENCHMARK(SearchFolder)->Name("directory_search/glib")->Apply(Search);

void CopyFile(benchmark::State& state) {
  MeasureCopy(state, [](const char* from, const char* to) {
    Require(g_file_copy(FileOf(from).get(), FileOf(to).get(), G_FILE_COPY_NONE, nullptr, nullptr,
                        nullptr, nullptr));
  });
}
BENCHMARK(CopyFile)->Name("file_copy/glib")->Apply(Copy);

}  // namespace
}  // namespace zebcomn_bench
