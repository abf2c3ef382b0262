// Loads, frees and version stamps of made-up modules by any names, in any order: the table, the
// messages and what the modules are told are those of a plain model. Each line of the input is an
// operation: "l" and a name loads it, "w" and a name loads it in wide characters, "f" and a letter
// frees a module, "s" and "d", a letter for the size of the buffer and a name ask for a stamp.
#include <algorithm>
#include <array>
#include <cstdio>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "fuzz/fake_loader.h"
#include "fuzz/fuzz_input.h"
#include "zebcomn/portable/dynamic_library.h"
#include "zebcomn/portable/error.h"
#include "zebcomn/util/plugin_version.h"
#include "zebcomn/util/text_conversion.h"

namespace {

using namespace zebcomn_fuzz;

constexpr size_t kKeptName = 260;
constexpr size_t kKeptReason = 510;
constexpr uint32_t kAttach = 1;
constexpr uint32_t kDetach = 0;
/// Stands in a wide name for a character that UTF-8 does not have.
constexpr char kSurrogate = '\x7f';

/// What a load gives, by the steps: a module or none, and a message.
struct Loaded {
  std::optional<size_t> module;
  std::string message;
  int32_t error = 0;
};

/// The table of loaded names, and what the modules have been told.
class Model {
 public:
  Loaded Load(const std::string& name) {
    Entry* free_entry = nullptr;
    for (Entry& entry : entries_) {
      if (entry.used && entry.name == name) {
        ++entry.count;
        return {entry.module, "", 0};
      }
      if (!entry.used && free_entry == nullptr) free_entry = &entry;
    }
    if (free_entry == nullptr) return {std::nullopt, "library list full", 12};
    const size_t module = FakeModuleOf(name);
    if (module == kFakeModules) {
      return {std::nullopt, FakeReason(name).substr(0, kKeptReason), 0};
    }
    ++loads[module];
    if (TraitsOf(module).has_dllmain) told.emplace_back(module, kAttach);
    if (TraitsOf(module).has_dllmain && !TraitsOf(module).accepts) {
      return {std::nullopt, "dllmain returned false", 0};
    }
    *free_entry = {true, name.substr(0, kKeptName), module, 1};
    return {module, "", 0};
  }

  /// Gives back a load of the first name of a module.
  BOOL Free(size_t module, int32_t& error) {
    for (Entry& entry : entries_) {
      if (!entry.used || entry.module != module) continue;
      if (--entry.count >= 1) return TRUE;
      entry.used = false;
      if (TraitsOf(module).has_dllmain) told.emplace_back(module, kDetach);
      --loads[module];
      return TraitsOf(module).unloads ? TRUE : FALSE;
    }
    error = 22;
    return FALSE;
  }

  /// A module that is still loaded under some name.
  std::optional<size_t> AnyModule() const {
    for (const Entry& entry : entries_) {
      if (entry.used) return entry.module;
    }
    return std::nullopt;
  }

  /// Whether the library's own table says the same.
  void Compare() const {
    for (size_t i = 0; i < entries_.size(); ++i) {
      const TivLibraryRecord* record = pDynamicLibraryList[i];
      Require((record != nullptr) == entries_[i].used);
      if (record == nullptr) continue;
      Require(entries_[i].name == record->name && record->reference_count == entries_[i].count);
      Require(record->module == FakeLoader::HandleOf(entries_[i].module));
      Require((record->entry_routine != nullptr) == TraitsOf(entries_[i].module).has_dllmain);
      Require(record->thread_calls_disabled == 0);
    }
  }

  int loads[kFakeModules] = {};
  std::vector<std::pair<size_t, uint32_t>> told;

 private:
  struct Entry {
    bool used = false;
    std::string name;
    size_t module = 0;
    int count = 0;
  };
  std::array<Entry, TIV_LIBRARY_COUNT> entries_;
};

void* HandleOf(const Loaded& loaded) {
  return loaded.module ? FakeLoader::HandleOf(*loaded.module) : nullptr;
}

void CheckLoad(Model& model, const std::string& name) {
  const Loaded expected = model.Load(name);
  const char* message = nullptr;
  Require(tivLoadLibrary(name.c_str(), &message) == HandleOf(expected));
  Require(message != nullptr && message == expected.message && nErrno == expected.error);
}

/// A name as wide text: the bytes as characters, one of them as a surrogate.
std::wstring WideNameOf(const std::string& name) {
  std::wstring wide;
  for (const char c : name) {
    wide += c == kSurrogate ? static_cast<wchar_t>(0xD800)
                            : static_cast<wchar_t>(static_cast<unsigned char>(c));
  }
  return wide;
}

void CheckWideLoad(Model& model, const std::string& name) {
  const std::wstring wide = WideNameOf(name);
  const std::string narrow = quenty_com::pelu::tivmcomn_wide_to_ansi(wide);
  Loaded expected{std::nullopt, "out of memory", 0};
  if (!narrow.empty() || wide.empty()) expected = model.Load(narrow);
  const wchar_t* message = nullptr;
  Require(tivLoadLibraryW(wide.c_str(), &message) == HandleOf(expected));
  Require(message != nullptr && nErrno == expected.error);
  Require(message == quenty_com::pelu::tivmcomn_ansi_to_wide(expected.message));
}

void CheckFree(Model& model, size_t module) {
  int32_t error = 0;
  const BOOL expected = model.Free(module, error);
  Require(tivFreeLibrary(FakeLoader::HandleOf(module)) == expected);
  Require(nErrno == error);
}

std::string StampOf(const FakeTraits& traits, bool dotted) {
  char text[64];
  const uint16_t(&v)[4] = traits.version;
  if (dotted) {
    std::snprintf(text, sizeof text, "%d.%d.%d.%d", v[0], v[1], v[2], v[3]);
  } else {
    std::snprintf(text, sizeof text, "%04x%04x%04x%04x", v[0], v[1], v[2], v[3]);
  }
  return text;
}

void CheckStamp(Model& model, bool dotted, size_t size, const std::string& name) {
  const Loaded loaded = model.Load(name);
  std::string stamp;
  bool known = false;
  if (loaded.module) {
    const FakeTraits traits = TraitsOf(*loaded.module);
    known = traits.has_version && traits.tells_version;
    if (known && size > 0) stamp = StampOf(traits, dotted).substr(0, size - 1);
    int32_t error = 0;
    model.Free(*loaded.module, error);
  }
  const auto ask =
      dotted ? tivmcomn_GetFileResourceStringVersionStamp : tivmcomn_GetFileResourceVersionStamp;
  std::vector<char> path(name.c_str(), name.c_str() + name.size() + 1);
  // Not a vector: a buffer of no size has an address all the same.
  const std::unique_ptr<char[]> out(new char[size]);
  Require(ask(path.data(), out.get(), static_cast<unsigned>(size)) == (known ? 1 : 0));
  stamp.resize(size, '\0');
  Require(std::string(out.get(), size) == stamp);
  Require(nErrno == loaded.error);
}

void Run(Model& model, const std::string& line) {
  if (line.empty()) return;
  nErrno = 0;
  const std::string argument = UpToNul(line.substr(1));
  const auto letter = static_cast<uint8_t>(argument.empty() ? 'a' : argument[0]);
  const std::string name = argument.empty() ? "" : argument.substr(1);
  switch (line[0]) {
    case 'l':
      return CheckLoad(model, argument);
    case 'w':
      return CheckWideLoad(model, argument);
    case 'f':
      return CheckFree(model, letter % kFakeModules);
    case 's':
    case 'd':
      return CheckStamp(model, line[0] == 'd', letter % 40, name);
    default:
      return;
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  FakeLoader loader;
  Model model;
  for (const std::string& line : LinesOf(TextOf(data, size))) {
    Run(model, line);
  }
  model.Compare();
  while (const std::optional<size_t> module = model.AnyModule()) {
    nErrno = 0;
    CheckFree(model, *module);
  }
  model.Compare();
  Require(loader.told() == model.told);
  for (size_t i = 0; i < kFakeModules; ++i) Require(loader.LoadsOf(i) == model.loads[i]);
  return 0;
}
