// Dynamic libraries, with and without the table.
#include <dlfcn.h>

#include <cerrno>
#include <string>

#include "tests/portable/tables_in_use.h"
#include "tests/reliability/sweep.h"
#include "tests/support/expected_leak.h"
#include "zebcomn/portable/dynamic_library.h"
#include "zebcomn/portable/shared_object.h"

namespace {

/// What the observed module's "DllMain" has been told in this run, and what it says to a load.
struct EntryRoutine {
  int loads = 0;
  int frees = 0;
  BOOL accepts = TRUE;
};
EntryRoutine g_entry_routine;

constexpr int32_t kLoadedString = 7;

}  // namespace

extern "C" ZEBCOMN_EXPORT int32_t observe_dll_main(void* /*module*/, uint32_t reason,
                                                   void* /*reserved*/) {
  ++(reason == TIV_PROCESS_ATTACH ? g_entry_routine.loads : g_entry_routine.frees);
  return g_entry_routine.accepts;
}

extern "C" ZEBCOMN_EXPORT int32_t observe_load_string(void* /*module*/, uint32_t /*id*/,
                                                      char* /*buffer*/, int32_t /*size*/) {
  return kLoadedString;
}

namespace {

using zebcomn_test::ExpectedLeak;
using zebcomn_test::kErrorLeftAlone;
using zebcomn_test::LibrariesInTable;
using zebcomn_test::Trial;

constexpr char kModule[] = ZEBCOMN_SWEPT_MODULE;
// With a "DllMain" and a "loadString".
constexpr char kObservedModule[] = ZEBCOMN_OBSERVED_MODULE;

void ExpectLoadErrorSlot(const Trial& trial) {
  EXPECT_EQ(trial.ErrorSlot(), trial.FailedIn("pthread_mutex_lock") ? EBUSY : kErrorLeftAlone);
}

// The module has no "DllMain", so that a failing look for it makes no difference.
ZEBCOMN_USE(LoaderFailures, Load, "tivLoadLibrary") {
  const ExpectedLeak record_of_a_failed_load;
  const char* message = nullptr;
  void* module = nullptr;
  trial.Call([&] { module = tivLoadLibrary(kModule, &message); });
  const bool fails =
      trial.FailedIn("pthread_mutex_lock") || trial.FailedIn("calloc") || trial.FailedIn("dlopen");
  EXPECT_EQ(module == nullptr, fails);
  ExpectLoadErrorSlot(trial);
  if (trial.FailedIn("pthread_mutex_lock")) {
    EXPECT_STREQ(message, "locked");
  } else if (trial.FailedIn("calloc")) {
    EXPECT_STREQ(message, "out of memory");
  } else {
    EXPECT_STREQ(message, "") << "the failure has no text of the loader's";
  }
  if (trial.FailedIn("dlopen")) trial.Leaves({1, 0, 0}, "the record of a failed load");
  EXPECT_EQ(LibrariesInTable(), fails ? 0 : 1);
  if (!fails) {
    EXPECT_EQ(tivFreeLibrary(module), TRUE);
  }
}

ZEBCOMN_USE(LoaderFailures, LoadOfAnAbsentFile, "tivLoadLibrary") {
  const ExpectedLeak record_of_a_failed_load;
  const char* message = nullptr;
  trial.Call([&] { EXPECT_EQ(tivLoadLibrary("/nowhere/absent.so", &message), nullptr); });
  ExpectLoadErrorSlot(trial);
  if (!trial.FailedIn("pthread_mutex_lock") && !trial.FailedIn("calloc")) {
    trial.Leaves({1, 0, 0}, "the record of a failed load");
  }
  EXPECT_EQ(LibrariesInTable(), 0);
}

ZEBCOMN_USE(LoaderFailures, LoadByAWideName, "tivLoadLibraryW") {
  const ExpectedLeak record_of_a_failed_load;
  const std::string narrow(kModule);
  const std::wstring name(narrow.begin(), narrow.end());
  const wchar_t* message = nullptr;
  void* module = nullptr;
  trial.Call([&] { module = tivLoadLibraryW(name.c_str(), &message); });
  ExpectLoadErrorSlot(trial);
  EXPECT_EQ(LibrariesInTable(), module == nullptr ? 0 : 1);
  if (module == nullptr) {
    EXPECT_TRUE(trial.Failed());
    if (trial.FailedIn("dlopen")) {
      EXPECT_STREQ(message, L"");
      trial.Leaves({1, 0, 0}, "the record of a failed load");
    } else {
      EXPECT_STREQ(message, trial.FailedIn("pthread_mutex_lock") ? L"locked" : L"out of memory");
    }
    return;
  }
  EXPECT_FALSE(trial.FailedIn("pthread_mutex_lock") || trial.FailedIn("calloc") ||
               trial.FailedIn("dlopen"));
  EXPECT_NE(dlsym(module, "answer"), nullptr) << "what is loaded is the named library";
  EXPECT_EQ(tivFreeLibrary(module), TRUE);
}

ZEBCOMN_USE(LoaderFailures, LoadOfAnAbsentFileByAWideName, "tivLoadLibraryW") {
  const ExpectedLeak record_of_a_failed_load;
  const wchar_t* message = nullptr;
  trial.Call([&] { EXPECT_EQ(tivLoadLibraryW(L"/nowhere/absent.so", &message), nullptr); });
  ExpectLoadErrorSlot(trial);
  EXPECT_EQ(LibrariesInTable(), 0);
  const std::wstring text = message;
  if (text == L"locked" || text == L"out of memory") {
    EXPECT_TRUE(trial.Failed());
    return;
  }
  trial.Leaves({1, 0, 0}, "the record of a failed load");
  if (text.empty()) {
    EXPECT_TRUE(trial.Failed()) << "a text that cannot be widened is left out";
  } else {
    EXPECT_NE(text.find(L"/nowhere/absent.so"), std::wstring::npos);
  }
}

ZEBCOMN_USE(LoaderFailures, Free, "tivFreeLibrary") {
  void* module = tivLoadLibrary(kModule, nullptr);
  BOOL freed = FALSE;
  trial.Call([&] { freed = tivFreeLibrary(module); });
  // The library's own lock is taken anyhow; the second lock is the table's.
  const bool locked_out = trial.FailedIn("pthread_mutex_lock", 2);
  EXPECT_EQ(freed, locked_out || trial.FailedIn("dlclose") ? FALSE : TRUE);
  EXPECT_EQ(trial.ErrorSlot(), locked_out ? EBUSY : kErrorLeftAlone);
  EXPECT_EQ(LibrariesInTable(), locked_out ? 1 : 0);
  if (locked_out) {
    EXPECT_EQ(tivFreeLibrary(module), TRUE);
  }
}

// A module in the table, for a use of what is in it.
class LoadedModule {
 public:
  explicit LoadedModule(const char* path = kModule) : module_(tivLoadLibrary(path, nullptr)) {}
  ~LoadedModule() { EXPECT_EQ(tivFreeLibrary(module_), TRUE); }
  LoadedModule(const LoadedModule&) = delete;
  LoadedModule& operator=(const LoadedModule&) = delete;
  void* get() const { return module_; }

 private:
  void* module_;
};

// A load that cannot find the "DllMain" goes on without.
ZEBCOMN_USE(LoaderFailures, LoadOfAModuleThatIsTold, "tivLoadLibrary") {
  const ExpectedLeak record_of_a_failed_load;
  g_entry_routine = {};
  void* module = nullptr;
  trial.Call([&] { module = tivLoadLibrary(kObservedModule, nullptr); });
  const bool fails =
      trial.FailedIn("pthread_mutex_lock") || trial.FailedIn("calloc") || trial.FailedIn("dlopen");
  EXPECT_EQ(module == nullptr, fails);
  ExpectLoadErrorSlot(trial);
  const int told = fails || trial.FailedIn("dlsym") ? 0 : 1;
  EXPECT_EQ(g_entry_routine.loads, told);
  if (trial.FailedIn("dlopen")) trial.Leaves({1, 0, 0}, "the record of a failed load");
  if (module == nullptr) return;
  EXPECT_EQ(tivFreeLibrary(module), TRUE);
  EXPECT_EQ(g_entry_routine.frees, told);
}

/// Gives back the load of a refused module that the library keeps, so that runs are alike.
void GiveBackWhatStaysLoaded() {
  void* const module = dlopen(kObservedModule, RTLD_LAZY | RTLD_NOLOAD);
  EXPECT_NE(module, nullptr);
  if (module == nullptr) return;
  dlclose(module);
  dlclose(module);
}

ZEBCOMN_USE(LoaderFailures, LoadThatIsRefused, "tivLoadLibrary") {
  const ExpectedLeak record_of_a_failed_load;
  g_entry_routine = {};
  g_entry_routine.accepts = FALSE;
  const char* message = nullptr;
  void* module = &trial;
  trial.Call([&] { module = tivLoadLibrary(kObservedModule, &message); });
  // The second lock is the library's own, which is taken anyhow.
  EXPECT_EQ(trial.ErrorSlot(), trial.FailedIn("pthread_mutex_lock", 1) ? EBUSY : kErrorLeftAlone);
  EXPECT_EQ(module != nullptr, trial.FailedIn("dlsym"));
  EXPECT_EQ(LibrariesInTable(), module != nullptr ? 1 : 0);
  if (trial.FailedIn("dlopen")) trial.Leaves({1, 0, 0}, "the record of a failed load");
  if (module != nullptr) {
    EXPECT_EQ(tivFreeLibrary(module), TRUE);
  } else if (g_entry_routine.loads != 0) {
    EXPECT_STREQ(message, "dllmain returned false");
    GiveBackWhatStaysLoaded();
  } else {
    EXPECT_TRUE(trial.Failed());
  }
}

ZEBCOMN_USE(LoaderFailures, FreeOfAModuleThatIsTold, "tivFreeLibrary") {
  g_entry_routine = {};
  void* const module = tivLoadLibrary(kObservedModule, nullptr);
  BOOL freed = FALSE;
  trial.Call([&] { freed = tivFreeLibrary(module); });
  const bool locked_out = trial.FailedIn("pthread_mutex_lock", 2);
  EXPECT_EQ(freed, locked_out || trial.FailedIn("dlclose") ? FALSE : TRUE);
  EXPECT_EQ(trial.ErrorSlot(), locked_out ? EBUSY : kErrorLeftAlone);
  EXPECT_EQ(g_entry_routine.frees, locked_out ? 0 : 1);
  if (locked_out) {
    EXPECT_EQ(tivFreeLibrary(module), TRUE);
  }
  EXPECT_EQ(LibrariesInTable(), 0);
}

ZEBCOMN_USE(LoaderFailures, SecondLoadAndFree, "tivLoadLibrary", "tivFreeLibrary") {
  const LoadedModule first;
  void* again = nullptr;
  trial.Call([&] { again = tivLoadLibrary(kModule, nullptr); });
  EXPECT_EQ(again, trial.FailedIn("pthread_mutex_lock") ? nullptr : first.get());
  ExpectLoadErrorSlot(trial);
  if (again == nullptr) return;
  EXPECT_EQ(pDynamicLibraryList[0]->reference_count, 2);
  BOOL freed = FALSE;
  trial.Call([&] { freed = tivFreeLibrary(again); });
  EXPECT_EQ(freed, trial.FailedIn("pthread_mutex_lock", 3) ? FALSE : TRUE);
  EXPECT_EQ(trial.ErrorSlot(), freed == FALSE ? EBUSY : kErrorLeftAlone);
  if (freed == FALSE) {
    EXPECT_EQ(tivFreeLibrary(again), TRUE);
  }
  EXPECT_EQ(pDynamicLibraryList[0]->reference_count, 1);
}

ZEBCOMN_USE(LoaderFailures, Symbol, "tivGetProcAddress") {
  const LoadedModule module;
  const char* message = nullptr;
  void* address = nullptr;
  trial.Call([&] { address = tivGetProcAddress(module.get(), "answer", &message); });
  EXPECT_EQ(address == nullptr, trial.FailedIn("dlsym"));
  EXPECT_STREQ(message, "");
  EXPECT_EQ(trial.ErrorSlot(), kErrorLeftAlone);
}

ZEBCOMN_USE(LoaderFailures, AbsentSymbol, "tivGetProcAddress") {
  const LoadedModule module;
  const char* message = nullptr;
  trial.Call([&] { EXPECT_EQ(tivGetProcAddress(module.get(), "absent", &message), nullptr); });
  if (!trial.Failed()) {
    EXPECT_STRNE(message, "");
  }
  EXPECT_EQ(trial.ErrorSlot(), kErrorLeftAlone);
}

ZEBCOMN_USE(LoaderFailures, ThreadCalls, "tivDisableThreadLibraryCalls") {
  const LoadedModule module;
  BOOL disabled = FALSE;
  trial.Call([&] { disabled = tivDisableThreadLibraryCalls(module.get()); });
  EXPECT_EQ(disabled, TRUE) << "the library's own lock is taken anyhow";
  EXPECT_EQ(pDynamicLibraryList[0]->thread_calls_disabled, 1);
  EXPECT_EQ(trial.ErrorSlot(), kErrorLeftAlone);
}

ZEBCOMN_USE(LoaderFailures, Text, "tivLoadString") {
  g_entry_routine = {};
  const LoadedModule module(kObservedModule);
  char text[8] = "";
  int32_t result = -1;
  trial.Call([&] { result = tivLoadString(module.get(), 1, text, 8); });
  EXPECT_EQ(result, trial.FailedIn("dlsym") ? 0 : kLoadedString);
  EXPECT_EQ(trial.ErrorSlot(), kErrorLeftAlone);
}

ZEBCOMN_USE(LoaderFailures, TextOfAModuleWithoutTexts, "tivLoadString") {
  const LoadedModule module;
  char text[8] = "";
  trial.Call([&] { EXPECT_EQ(tivLoadString(module.get(), 1, text, 8), 0); });
  EXPECT_EQ(trial.ErrorSlot(), kErrorLeftAlone);
}

ZEBCOMN_USE(LoaderFailures, WithoutTheTable, "load_shared_object_image",
            "unload_shared_object_image") {
  void* module = nullptr;
  BOOL loaded = FALSE;
  BOOL unloaded = FALSE;
  char message[512] = "";
  trial.Call([&] { loaded = load_shared_object_image(&module, kModule, message); });
  EXPECT_EQ(loaded, trial.FailedIn("dlopen") ? FALSE : TRUE);
  EXPECT_EQ(module == nullptr, loaded == FALSE);
  if (loaded == FALSE) return;
  trial.Call([&] { unloaded = unload_shared_object_image(module); });
  EXPECT_EQ(unloaded, trial.FailedIn("dlclose") ? FALSE : TRUE);
  EXPECT_EQ(trial.ErrorSlot(), kErrorLeftAlone);
}

// The message is what is appended to the caller's text.
ZEBCOMN_USE(LoaderFailures, AbsentFileWithoutTheTable, "load_shared_object_image") {
  void* module = &trial;
  BOOL loaded = 77;
  char message[512] = "reason: ";
  trial.Call([&] { loaded = load_shared_object_image(&module, "/nowhere/absent.so", message); });
  EXPECT_EQ(loaded, FALSE);
  EXPECT_EQ(module, &trial) << "as it was";
  const std::string text = message;
  EXPECT_EQ(text.rfind("reason: ", 0), 0U) << text;
  EXPECT_EQ(text == "reason: ", trial.Failed());
  EXPECT_EQ(trial.ErrorSlot(), kErrorLeftAlone);
}

}  // namespace
