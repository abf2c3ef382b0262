#include "zebcomn/portable/dynamic_library.h"

#include <dlfcn.h>
#include <gtest/gtest.h>
#include <pthread.h>

#include <array>
#include <cerrno>
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include "tests/portable/module_fixture.h"
#include "tests/portable/tables_in_use.h"
#include "tests/support/error_slot.h"
#include "tests/support/scratch_dir.h"
#include "zebcomn/portable/global_mutexes.h"

namespace {

using zebcomn_test::ClearErrorSlot;
using zebcomn_test::DllMainCall;
using zebcomn_test::DllMainCalls;
using zebcomn_test::kErrorLeftAlone;
using zebcomn_test::LibrariesInTable;
using zebcomn_test::OnDllMain;

/// The first load of this process, made before any test on a table that is full of something else.
struct FirstLoad {
  FirstLoad() {
    static TivLibraryRecord stale = {};
    for (TivLibraryRecord*& entry : pDynamicLibraryList) entry = &stale;
    void* module = tivLoadLibrary(ZEBCOMN_PLAIN_MODULE, nullptr);
    in_first_entry = pDynamicLibraryList[0] != &stale && pDynamicLibraryList[0] != nullptr;
    others_clear = pDynamicLibraryList[1] == nullptr && pDynamicLibraryList[49] == nullptr;
    tivFreeLibrary(module);
  }

  bool in_first_entry = false;
  bool others_clear = false;
};
const FirstLoad first_load;

using DynamicLibraryTest = zebcomn_test::ModuleTest;

TEST_F(DynamicLibraryTest, FirstLoadOfTheProcessClearsTheTable) {
  EXPECT_TRUE(first_load.in_first_entry);
  EXPECT_TRUE(first_load.others_clear);
}

TEST_F(DynamicLibraryTest, LoadedModuleIsToldOfItsLoadAndOfItsUnload) {
  const std::string path = ObservedModule();
  void* module = tivLoadLibrary(path.c_str(), nullptr);
  ASSERT_NE(module, nullptr);
  EXPECT_EQ(DllMainCalls(), (std::vector<DllMainCall>{{module, 1, nullptr}}));
  EXPECT_TRUE(IsLoaded(path));
  EXPECT_EQ(tivFreeLibrary(module), TRUE);
  EXPECT_EQ(DllMainCalls(), (std::vector<DllMainCall>{{module, 1, nullptr}, {module, 0, nullptr}}));
  EXPECT_FALSE(IsLoaded(path));
  EXPECT_EQ(nErrno, kErrorLeftAlone);
}

TEST_F(DynamicLibraryTest, RecordHoldsWhatTheLoadWasGiven) {
  const std::string path = ObservedModule();
  void* module = tivLoadLibrary(path.c_str(), nullptr);
  const TivLibraryRecord* record = pDynamicLibraryList[0];
  ASSERT_NE(record, nullptr);
  EXPECT_EQ(record->name, path);
  EXPECT_EQ(record->module, module);
  EXPECT_EQ(reinterpret_cast<void*>(record->entry_routine), dlsym(module, "DllMain"));
  EXPECT_EQ(record->reference_count, 1);
  EXPECT_EQ(record->thread_calls_disabled, 0);
  EXPECT_EQ(tivFreeLibrary(module), TRUE);
}

TEST_F(DynamicLibraryTest, LoadingANameTwiceGivesOneHandleAndUnloadsAtTheSecondFree) {
  const std::string path = ObservedModule();
  void* module = tivLoadLibrary(path.c_str(), nullptr);
  EXPECT_EQ(tivLoadLibrary(path.c_str(), nullptr), module);
  EXPECT_EQ(DllMainCalls().size(), 1u) << "the entry routine is not called again";
  EXPECT_EQ(LibrariesInTable(), 1);
  EXPECT_EQ(pDynamicLibraryList[0]->reference_count, 2);
  EXPECT_EQ(tivFreeLibrary(module), TRUE);
  EXPECT_TRUE(IsLoaded(path));
  EXPECT_EQ(DllMainCalls().size(), 1u);
  EXPECT_EQ(tivFreeLibrary(module), TRUE);
  EXPECT_FALSE(IsLoaded(path));
  EXPECT_EQ(DllMainCalls().size(), 2u);
}

TEST_F(DynamicLibraryTest, ModuleWithoutDllMainLoads) {
  const std::string path = PlainModule();
  void* module = tivLoadLibrary(path.c_str(), nullptr);
  ASSERT_NE(module, nullptr);
  EXPECT_EQ(pDynamicLibraryList[0]->entry_routine, nullptr);
  EXPECT_EQ(tivFreeLibrary(module), TRUE);
  EXPECT_FALSE(IsLoaded(path));
}

TEST_F(DynamicLibraryTest, ModuleThatRefusesItsLoadGivesNullAndStaysLoaded) {
  const std::string path = ObservedModule();
  for (const int32_t refusal : {0, 2, -1}) {
    void* given = nullptr;
    OnDllMain() = [&given, refusal](void* module, uint32_t) {
      given = module;
      return refusal;
    };
    const char* message = nullptr;
    EXPECT_EQ(tivLoadLibrary(path.c_str(), &message), nullptr) << refusal;
    EXPECT_STREQ(message, "dllmain returned false");
    EXPECT_EQ(LibrariesInTable(), 0);
    EXPECT_TRUE(IsLoaded(path)) << "the shared object stays loaded";
    dlclose(given);
    EXPECT_FALSE(IsLoaded(path)) << "by one reference";
  }
  EXPECT_EQ(DllMainCalls().size(), 3u) << "nobody is told of an unload";
  EXPECT_EQ(nErrno, kErrorLeftAlone);
}

TEST_F(DynamicLibraryTest, DllMainRunsWithTheTablesMutexHeld) {
  std::vector<int> results;
  OnDllMain() = [&results](void*, uint32_t) {
    results.push_back(pthread_mutex_trylock(&MutexDynamicLibraryList));
    if (results.back() == 0) pthread_mutex_unlock(&MutexDynamicLibraryList);
    return 1;
  };
  EXPECT_EQ(tivFreeLibrary(tivLoadLibrary(ObservedModule().c_str(), nullptr)), TRUE);
  EXPECT_EQ(results, (std::vector<int>{EBUSY, EBUSY}));
  EXPECT_EQ(pthread_mutex_trylock(&MutexDynamicLibraryList), 0) << "given back afterwards";
  EXPECT_EQ(pthread_mutex_unlock(&MutexDynamicLibraryList), 0);
}

TEST_F(DynamicLibraryTest, CountOfLoadsBelowOneUnloads) {
  const std::string path = ObservedModule();
  void* module = tivLoadLibrary(path.c_str(), nullptr);
  pDynamicLibraryList[0]->reference_count = 0;
  EXPECT_EQ(tivFreeLibrary(module), TRUE);
  EXPECT_FALSE(IsLoaded(path));
  EXPECT_EQ(LibrariesInTable(), 0);
}

TEST_F(DynamicLibraryTest, CountOfLoadsWraps) {
  void* module = tivLoadLibrary(PlainModule().c_str(), nullptr);
  TivLibraryRecord* record = pDynamicLibraryList[0];
  record->reference_count = INT32_MAX;
  EXPECT_EQ(tivLoadLibrary(record->name, nullptr), module);
  EXPECT_EQ(record->reference_count, INT32_MIN);
  EXPECT_EQ(tivFreeLibrary(module), TRUE);
  EXPECT_EQ(record->reference_count, INT32_MAX);
  record->reference_count = 1;
  EXPECT_EQ(tivFreeLibrary(module), TRUE);
}

TEST_F(DynamicLibraryTest, ResultOfTheUnloadCallIsIgnored) {
  OnDllMain() = [](void*, uint32_t reason) { return reason == 1 ? 1 : 0; };
  const std::string path = ObservedModule();
  EXPECT_EQ(tivFreeLibrary(tivLoadLibrary(path.c_str(), nullptr)), TRUE);
  EXPECT_FALSE(IsLoaded(path));
}

TEST_F(DynamicLibraryTest, FiftyFirstNameIsRefusedWith12) {
  std::vector<void*> modules;
  for (int i = 0; i < 50; ++i) {
    modules.push_back(
        tivLoadLibrary(PlainModule("plain" + std::to_string(i) + ".so").c_str(), nullptr));
    ASSERT_NE(modules.back(), nullptr);
  }
  EXPECT_EQ(LibrariesInTable(), 50);
  const std::string last = PlainModule("last.so");
  EXPECT_EQ(MessageOfFailedLoad(last.c_str()), "library list full");
  EXPECT_EQ(nErrno, ENOMEM);
  EXPECT_FALSE(IsLoaded(last));
  ClearErrorSlot();
  EXPECT_EQ(MessageOfFailedLoad(nullptr), "library list full");
  EXPECT_EQ(nErrno, ENOMEM);

  ClearErrorSlot();
  EXPECT_EQ(tivLoadLibrary((scratch_ / "plain49.so").c_str(), nullptr), modules[49])
      << "a loaded name needs no entry";
  EXPECT_EQ(tivFreeLibrary(modules[49]), TRUE);
  EXPECT_EQ(tivFreeLibrary(modules[7]), TRUE);
  modules[7] = tivLoadLibrary(last.c_str(), nullptr);
  ASSERT_NE(modules[7], nullptr);
  EXPECT_EQ(pDynamicLibraryList[7]->name, last) << "the lowest free entry is taken";
  EXPECT_EQ(nErrno, kErrorLeftAlone);
  for (void* module : modules) EXPECT_EQ(tivFreeLibrary(module), TRUE);
}

TEST_F(DynamicLibraryTest, TwoNamesOfOneFileHaveAnEntryEach) {
  const std::string path = ObservedModule();
  const std::string other_name = scratch_ / "./observed.so";
  void* module = tivLoadLibrary(path.c_str(), nullptr);
  EXPECT_EQ(tivLoadLibrary(other_name.c_str(), nullptr), module);
  EXPECT_EQ(LibrariesInTable(), 2);
  EXPECT_EQ(DllMainCalls().size(), 2u);
  EXPECT_EQ(tivFreeLibrary(module), TRUE);
  EXPECT_EQ(pDynamicLibraryList[0], nullptr) << "the first entry of the handle is given back";
  EXPECT_TRUE(IsLoaded(path));
  EXPECT_EQ(tivFreeLibrary(module), TRUE);
  EXPECT_FALSE(IsLoaded(path));
  EXPECT_EQ(DllMainCalls().size(), 4u);
}

TEST_F(DynamicLibraryTest, FileThatDoesNotLoadGivesTheLoadersText) {
  EXPECT_NE(MessageOfFailedLoad((scratch_ / "absent.so").c_str()).find("absent.so"),
            std::string::npos);
  const std::string text_file = scratch_.Write("text.so", "no module");
  EXPECT_NE(MessageOfFailedLoad(text_file.c_str()).find("text.so"), std::string::npos);
  EXPECT_EQ(nErrno, kErrorLeftAlone);
  EXPECT_EQ(LibrariesInTable(), 0);
}

TEST_F(DynamicLibraryTest, LoadersTextIsCutAt510Bytes) {
  const std::string name = scratch_ / (std::string(600, 'n') + ".so");
  const std::string message = MessageOfFailedLoad(name.c_str());
  EXPECT_EQ(message, name.substr(0, 510));
}

TEST_F(DynamicLibraryTest, NullNameFailsToLoadWithoutAMessage) {
  EXPECT_EQ(MessageOfFailedLoad(nullptr), "");
  EXPECT_EQ(nErrno, kErrorLeftAlone);
  EXPECT_EQ(LibrariesInTable(), 0);
}

TEST_F(DynamicLibraryTest, NullNameIsNotComparedWithLoadedNames) {
  void* module = tivLoadLibrary(PlainModule().c_str(), nullptr);
  EXPECT_EQ(MessageOfFailedLoad(nullptr), "");
  EXPECT_EQ(tivFreeLibrary(module), TRUE);
}

TEST_F(DynamicLibraryTest, MessageIsGivenOnSuccessTooAndIsThenEmpty) {
  const std::string path = PlainModule();
  EXPECT_NE(MessageOfFailedLoad("absent.so"), "");
  const char* message = "the caller's own";
  void* module = tivLoadLibrary(path.c_str(), &message);
  EXPECT_STREQ(message, "");
  const char* same_message = nullptr;
  tivLoadLibrary(path.c_str(), &same_message);
  EXPECT_EQ(message, same_message) << "there is one buffer";
  EXPECT_EQ(tivFreeLibrary(module), TRUE);
  EXPECT_EQ(tivFreeLibrary(module), TRUE);
}

TEST_F(DynamicLibraryTest, HandleThatIsNotInTheTableIsRefusedWith22) {
  void* module = tivLoadLibrary(PlainModule().c_str(), nullptr);
  EXPECT_EQ(tivFreeLibrary(module), TRUE);
  int unknown = 0;
  for (void* handle : {static_cast<void*>(nullptr), static_cast<void*>(&unknown), module,
                       static_cast<void*>(TIV_INVALID_HANDLE)}) {
    ClearErrorSlot();
    EXPECT_EQ(tivFreeLibrary(handle), FALSE);
    EXPECT_EQ(nErrno, EINVAL);
  }
}

TEST_F(DynamicLibraryTest, SymbolsAreFoundInAnyObjectOfTheLoader) {
  const std::string path = PlainModule();
  void* handle = dlopen(path.c_str(), RTLD_LAZY);
  ASSERT_NE(handle, nullptr);
  const char* message = nullptr;
  auto answer = reinterpret_cast<int32_t (*)()>(tivGetProcAddress(handle, "answer", &message));
  ASSERT_NE(answer, nullptr);
  EXPECT_EQ(answer(), 17);
  EXPECT_STREQ(message, "");
  EXPECT_EQ(LibrariesInTable(), 0);
  dlclose(handle);
}

TEST_F(DynamicLibraryTest, AbsentSymbolGivesNullAndTheLoadersText) {
  void* module = tivLoadLibrary(PlainModule().c_str(), nullptr);
  const char* message = nullptr;
  EXPECT_EQ(tivGetProcAddress(module, "no_such_symbol", &message), nullptr);
  EXPECT_NE(std::string(message).find("no_such_symbol"), std::string::npos);
  EXPECT_EQ(tivGetProcAddress(module, std::string(700, 's').c_str(), &message), nullptr);
  EXPECT_EQ(std::strlen(message), 510u);
  EXPECT_EQ(nErrno, kErrorLeftAlone);
  EXPECT_NE(tivGetProcAddress(module, "answer", nullptr), nullptr);
  EXPECT_STREQ(message, "") << "each call empties the buffer";
  EXPECT_EQ(tivFreeLibrary(module), TRUE);
}

TEST_F(DynamicLibraryTest, LoadsAndLoadStringLookSymbolsUpAndSoOverwriteTheirMessage) {
  const char* message = nullptr;
  void* plain = tivLoadLibrary(PlainModule().c_str(), nullptr);
  EXPECT_EQ(tivGetProcAddress(plain, "no_such_symbol", &message), nullptr);
  void* observed = tivLoadLibrary(ObservedModule().c_str(), nullptr);
  EXPECT_STREQ(message, "") << "the \"DllMain\" of the module was found";
  EXPECT_EQ(tivLoadString(plain, 1, nullptr, 0), 0);
  EXPECT_NE(std::string(message).find("loadString"), std::string::npos);
  void* other = tivLoadLibrary(PlainModule("other.so").c_str(), nullptr);
  EXPECT_NE(std::string(message).find("DllMain"), std::string::npos);
  for (void* module : {plain, observed, other}) EXPECT_EQ(tivFreeLibrary(module), TRUE);
}

TEST_F(DynamicLibraryTest, SymbolWhoseAddressIsNullGivesNullWithoutAMessage) {
  void* module = tivLoadLibrary(PlainModule().c_str(), nullptr);
  const char* message = nullptr;
  EXPECT_EQ(tivGetProcAddress(module, "symbol_at_null", &message), nullptr);
  EXPECT_STREQ(message, "");
  EXPECT_EQ(tivFreeLibrary(module), TRUE);
}

TEST_F(DynamicLibraryTest, SymbolOfANullHandleOrNameIsRefusedWith22) {
  void* module = tivLoadLibrary(PlainModule().c_str(), nullptr);
  const char* message = nullptr;
  EXPECT_EQ(tivGetProcAddress(nullptr, "answer", &message), nullptr);
  EXPECT_STREQ(message, "");
  EXPECT_EQ(nErrno, EINVAL);
  ClearErrorSlot();
  EXPECT_EQ(tivGetProcAddress(module, nullptr, nullptr), nullptr);
  EXPECT_EQ(nErrno, EINVAL);
  EXPECT_EQ(tivFreeLibrary(module), TRUE);
}

TEST_F(DynamicLibraryTest, LoadStringForwardsItsFourArguments) {
  void* module = tivLoadLibrary(ObservedModule().c_str(), nullptr);
  std::array<char, 20> buffer{};
  EXPECT_EQ(tivLoadString(module, 4000000000u, buffer.data(), 20), 20);
  EXPECT_STREQ(buffer.data(), "module 4000000000 2");
  EXPECT_EQ(tivFreeLibrary(module), TRUE);
}

TEST_F(DynamicLibraryTest, LoadStringOfAModuleWithoutOneIsZero) {
  void* module = tivLoadLibrary(PlainModule().c_str(), nullptr);
  std::array<char, 20> buffer = {'u'};
  EXPECT_EQ(tivLoadString(module, 1, buffer.data(), 20), 0);
  EXPECT_EQ(tivLoadString(nullptr, 1, buffer.data(), 20), 0);
  EXPECT_STREQ(buffer.data(), "u");
  EXPECT_EQ(tivFreeLibrary(module), TRUE);
}

TEST_F(DynamicLibraryTest, DisablingThreadCallsSetsTheFlagOfTheRecord) {
  void* module = tivLoadLibrary(PlainModule().c_str(), nullptr);
  EXPECT_EQ(tivDisableThreadLibraryCalls(module), TRUE);
  EXPECT_EQ(pDynamicLibraryList[0]->thread_calls_disabled, 1);
  EXPECT_EQ(tivDisableThreadLibraryCalls(module), TRUE);
  EXPECT_EQ(tivFreeLibrary(module), TRUE);
}

TEST_F(DynamicLibraryTest, DisablingThreadCallsIsForTheFirstEntryOfTheModuleAndLasts) {
  const std::string path = PlainModule();
  void* module = tivLoadLibrary(path.c_str(), nullptr);
  tivLoadLibrary((scratch_ / "./plain.so").c_str(), nullptr);
  EXPECT_EQ(tivDisableThreadLibraryCalls(module), TRUE);
  EXPECT_EQ(tivLoadLibrary(path.c_str(), nullptr), module);
  EXPECT_EQ(pDynamicLibraryList[0]->thread_calls_disabled, 1) << "one more load changes nothing";
  EXPECT_EQ(pDynamicLibraryList[1]->thread_calls_disabled, 0);
  for (int i = 0; i < 3; ++i) EXPECT_EQ(tivFreeLibrary(module), TRUE);
}

TEST_F(DynamicLibraryTest, DisablingThreadCallsOfAnUnknownOrNullModuleFails) {
  int unknown = 0;
  EXPECT_EQ(tivDisableThreadLibraryCalls(nullptr), FALSE);
  EXPECT_EQ(tivDisableThreadLibraryCalls(&unknown), FALSE);
  EXPECT_EQ(nErrno, kErrorLeftAlone);
}

TEST_F(DynamicLibraryTest, DllMainCannotDisableThreadCallsAtItsLoadButAtItsUnload) {
  std::vector<BOOL> results;
  OnDllMain() = [&results](void* module, uint32_t) {
    results.push_back(tivDisableThreadLibraryCalls(module));
    return 1;
  };
  EXPECT_EQ(tivFreeLibrary(tivLoadLibrary(ObservedModule().c_str(), nullptr)), TRUE);
  EXPECT_EQ(results, (std::vector<BOOL>{FALSE, TRUE}));
}

}  // namespace
