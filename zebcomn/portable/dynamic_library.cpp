#include "zebcomn/portable/dynamic_library.h"

#include <dlfcn.h>

#include <cstdlib>
#include <cstring>
#include <exception>
#include <new>
#include <string>

#include "zebcomn/portable/bounded_text_internal.h"
#include "zebcomn/portable/cancellation_internal.h"
#include "zebcomn/portable/error_internal.h"
#include "zebcomn/portable/global_mutexes.h"
#include "zebcomn/portable/held_mutex_internal.h"
#include "zebcomn/portable/loader_message_internal.h"
#include "zebcomn/portable/plain_atomic_internal.h"
#include "zebcomn/portable/shared_object.h"
#include "zebcomn/util/text_conversion.h"

TivLibraryRecord* pDynamicLibraryList[TIV_LIBRARY_COUNT];

namespace {

/// How much of a name a record keeps, with the NUL.
constexpr size_t kKeptNameCapacity = ZEBCOMN_PATH_CAPACITY + 1;

static_assert(offsetof(TivLibraryRecord, name) == 0 && offsetof(TivLibraryRecord, module) == 264 &&
                  offsetof(TivLibraryRecord, entry_routine) == 264 + sizeof(void*) &&
                  offsetof(TivLibraryRecord, reference_count) == 264 + 2 * sizeof(void*) &&
                  offsetof(TivLibraryRecord, thread_calls_disabled) ==
                      offsetof(TivLibraryRecord, reference_count) + 4 &&
                  sizeof(TivLibraryRecord) == 272 + 2 * sizeof(void*),
              "The fields stand in this order on every target.");

/// Held by whoever looks through the table without `MutexDynamicLibraryList`, and taken before a
/// record is freed: no walk ever meets a freed one. It is taken last and for the walk alone, never
/// around a "DllMain".
pthread_mutex_t record_guard = PTHREAD_MUTEX_INITIALIZER;

zebcomn::LoaderMessage<char> load_message;
zebcomn::LoaderMessage<wchar_t> wide_load_message;
zebcomn::LoaderMessage<char> symbol_message;

BOOL Refuse(int32_t error) {
  zebcomn::StoreError(error);
  return FALSE;
}

// REQUIRES of the functions from here to LoadIntoEntry(): `MutexDynamicLibraryList` is held.

void ClearTableOnFirstCall() {
  static bool bFirstCall = true;
  if (!bFirstCall) return;
  bFirstCall = false;
  for (TivLibraryRecord*& entry : pDynamicLibraryList) {
    zebcomn::StoreRelaxed<TivLibraryRecord*>(&entry, nullptr);
  }
}

TivLibraryRecord* FindName(const char* name) {
  if (name == nullptr) return nullptr;
  for (TivLibraryRecord* record : pDynamicLibraryList) {
    if (record != nullptr && std::strcmp(record->name, name) == 0) return record;
  }
  return nullptr;
}

/// Adds `change` to the loads that have not been given back, wrapping; the new count.
int32_t CountLoads(TivLibraryRecord& record, uint32_t change) {
  const auto count = static_cast<uint32_t>(record.reference_count);
  record.reference_count = static_cast<int32_t>(count + change);
  return record.reference_count;
}

TivLibraryRecord** FindFreeEntry() {
  for (TivLibraryRecord*& entry : pDynamicLibraryList) {
    if (entry == nullptr) return &entry;
  }
  return nullptr;
}

/// Frees an entry's record, which no walk is at, and clears the entry.
void Retire(TivLibraryRecord** entry) {
  const zebcomn::HeldMutex no_walk(record_guard, zebcomn::HeldMutex::Insist{});
  std::free(*entry);
  zebcomn::StoreRelease<TivLibraryRecord*>(entry, nullptr);
}

void FillRecord(TivLibraryRecord& record, const char* name, void* module, TivEntryRoutine entry) {
  record.reference_count = 1;
  // Kept: a longer name is cut here and so never found again; each load of it takes an entry, which
  // is found under the name's beginning.
  zebcomn::CopyBounded(record.name, kKeptNameCapacity, name);
  record.entry_routine = entry;
  zebcomn::StoreRelease(&record.module, module);
}

/// Loads the module of an entry whose record is still empty.
void* LoadIntoEntry(TivLibraryRecord** entry, const char* name) {
  // The module's code runs from here on. A cancellation in it would leave the entry taken for good.
  const zebcomn::CancellationHeldOff no_cancellation;
  void* module = nullptr;
  char reason[zebcomn::kMessageCapacity] = "";
  if (name == nullptr || load_shared_object_image(&module, name, reason) != TRUE) {
    load_message.Set(reason);
    // Kept: the entry is cleared before its record could be freed, so the record is never freed.
    zebcomn::StoreRelease<TivLibraryRecord*>(entry, nullptr);
    return nullptr;
  }
  auto routine = reinterpret_cast<TivEntryRoutine>(tivGetProcAddress(module, "DllMain", nullptr));
  if (routine != nullptr && routine(module, TIV_PROCESS_ATTACH, nullptr) != TRUE) {
    // Kept: the shared object stays loaded; code that "DllMain" has started may still run in it.
    Retire(entry);
    load_message.Set("dllmain returned false");
    return nullptr;
  }
  // Kept: the record is filled after "DllMain" has run, which therefore cannot find itself in the
  // table; callers that want thread calls disabled ask after the load.
  FillRecord(**entry, name, module, routine);
  return module;
}

/// The entry of a module; null when it has none.
/// REQUIRES: `MutexDynamicLibraryList` or `record_guard` is held, `module` is not null.
TivLibraryRecord** FindModule(const void* module) {
  for (TivLibraryRecord*& entry : pDynamicLibraryList) {
    const TivLibraryRecord* record = zebcomn::LoadAcquire(&entry);
    if (record != nullptr && zebcomn::LoadAcquire(&record->module) == module) return &entry;
  }
  return nullptr;
}

/// Whether a module has an entry, asked without `MutexDynamicLibraryList`.
bool IsListed(const void* module) {
  const zebcomn::HeldMutex walk(record_guard, zebcomn::HeldMutex::Insist{});
  return module != nullptr && FindModule(module) != nullptr;
}

/// Gives back one load. REQUIRES: `MutexDynamicLibraryList` is held.
BOOL ReleaseEntry(TivLibraryRecord** entry) {
  TivLibraryRecord& record = **entry;
  if (CountLoads(record, static_cast<uint32_t>(-1)) >= 1) return TRUE;
  // A cancellation in the module's code would leave it loaded with no load to give back.
  const zebcomn::CancellationHeldOff no_cancellation;
  if (record.entry_routine != nullptr) {
    record.entry_routine(record.module, TIV_PROCESS_DETACH, nullptr);
  }
  const BOOL unloaded = unload_shared_object_image(record.module);
  Retire(entry);
  return unloaded;
}

/// Converts a name to UTF-8; false when that gives nothing, because an empty name would load the
/// program itself.
bool NarrowName(const wchar_t* name, std::string& narrow) try {
  narrow = quenty_com::pelu::tivmcomn_wide_to_ansi(name);
  return !narrow.empty() || *name == L'\0';
} catch (const std::exception&) {  // No memory, or a name too long for any text.
  return false;
}

/// Gives the wide message the text of the narrow one.
void WidenLoadMessage() try {
  const std::string text = load_message.Snapshot();
  wide_load_message.Set(quenty_com::pelu::tivmcomn_ansi_to_wide(text));
} catch (const std::bad_alloc&) {
  wide_load_message.Clear();
}

}  // namespace

void* tivLoadLibrary(const char* lpLibFileName, const char** ppMessage) {
  load_message.Clear();
  if (ppMessage != nullptr) *ppMessage = load_message.text();
  const zebcomn::HeldMutex lock(MutexDynamicLibraryList);
  if (!lock.held()) {
    zebcomn::StoreError(EBUSY);
    load_message.Set("locked");
    return nullptr;
  }
  ClearTableOnFirstCall();
  if (TivLibraryRecord* loaded = FindName(lpLibFileName); loaded != nullptr) {
    CountLoads(*loaded, 1);
    return loaded->module;
  }
  TivLibraryRecord** entry = FindFreeEntry();
  if (entry == nullptr) {
    zebcomn::StoreError(ENOMEM);
    load_message.Set("library list full");
    return nullptr;
  }
  auto* record = static_cast<TivLibraryRecord*>(std::calloc(1, sizeof(TivLibraryRecord)));
  if (record == nullptr) {
    load_message.Set("out of memory");
    return nullptr;
  }
  zebcomn::StoreRelease(entry, record);
  return LoadIntoEntry(entry, lpLibFileName);
}

void* tivLoadLibraryW(const wchar_t* lpLibFileName, const wchar_t** ppMessage) {
  wide_load_message.Clear();
  if (ppMessage != nullptr) *ppMessage = wide_load_message.text();
  std::string narrow;
  if (lpLibFileName != nullptr && !NarrowName(lpLibFileName, narrow)) {
    wide_load_message.Set(L"out of memory");
    return nullptr;
  }
  const char* message = nullptr;
  void* module = tivLoadLibrary(lpLibFileName == nullptr ? nullptr : narrow.c_str(), &message);
  if (message != nullptr && ppMessage != nullptr) WidenLoadMessage();
  return module;
}

void* tivGetProcAddress(void* hModule, const char* lpProcName, const char** ppMessage) {
  symbol_message.Clear();
  if (ppMessage != nullptr) *ppMessage = symbol_message.text();
  if (hModule == nullptr || lpProcName == nullptr) {
    Refuse(EINVAL);
    return nullptr;
  }
  void* address = dlsym(hModule, lpProcName);
  if (address != nullptr) return address;
  const char* reason = dlerror();
  if (reason != nullptr)
    symbol_message.Set(std::string_view(reason).substr(0, zebcomn::kLongestLoaderText));
  return nullptr;
}

BOOL tivFreeLibrary(void* hLibModule) {
  if (!IsListed(hLibModule)) return Refuse(EINVAL);
  const zebcomn::HeldMutex lock(MutexDynamicLibraryList);
  if (!lock.held()) return Refuse(EBUSY);
  // Another thread may have given the last load back since the look without the lock.
  TivLibraryRecord** entry = FindModule(hLibModule);
  return entry == nullptr ? Refuse(EINVAL) : ReleaseEntry(entry);
}

int32_t tivLoadString(void* hInstance, UINT uID, char* lpBuffer, int32_t nBufferMax) {
  using LoadString = int32_t (*)(void*, UINT, char*, int32_t);
  auto load_string =
      reinterpret_cast<LoadString>(tivGetProcAddress(hInstance, "loadString", nullptr));
  return load_string == nullptr ? 0 : load_string(hInstance, uID, lpBuffer, nBufferMax);
}

BOOL tivDisableThreadLibraryCalls(void* hLibModule) {
  if (hLibModule == nullptr) return FALSE;
  const zebcomn::HeldMutex walk(record_guard, zebcomn::HeldMutex::Insist{});
  TivLibraryRecord** entry = FindModule(hLibModule);
  if (entry == nullptr) return FALSE;
  zebcomn::StoreRelaxed(&(*entry)->thread_calls_disabled, 1);
  return TRUE;
}
