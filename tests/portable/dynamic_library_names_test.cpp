// The names that libraries are loaded by: long ones, the empty one, wide ones.
#include <dlfcn.h>
#include <gtest/gtest.h>

#include <string>

#include "tests/portable/module_fixture.h"
#include "tests/portable/tables_in_use.h"
#include "tests/support/expected_leak.h"
#include "tests/support/huge_text.h"
#include "zebcomn/portable/dynamic_library.h"
#include "zebcomn/util/text_conversion.h"

namespace {

using zebcomn_test::ExpectedLeak;
using zebcomn_test::LibrariesInTable;

std::wstring Wide(const std::string& text) {
  return quenty_com::pelu::tivmcomn_ansi_to_wide(text);
}

class DynamicLibraryTest : public zebcomn_test::ModuleTest {
 protected:
  /// A path of `length` bytes to a file of the scratch directory.
  std::string PathOfLength(const std::string& name, size_t length) const {
    std::string path = scratch_.path();
    while (path.size() + 2 + 1 + name.size() <= length) path += "/.";
    if (path.size() + 1 + name.size() < length) path += "/";
    return path + "/" + name;
  }
};

TEST_F(DynamicLibraryTest, NamesOf259And260BytesAreFoundAgain) {
  PlainModule("plain.so");
  for (const size_t length : {259u, 260u}) {
    const std::string name = PathOfLength("plain.so", length);
    ASSERT_EQ(name.size(), length);
    void* module = tivLoadLibrary(name.c_str(), nullptr);
    ASSERT_NE(module, nullptr);
    EXPECT_EQ(pDynamicLibraryList[0]->name, name);
    EXPECT_EQ(tivLoadLibrary(name.c_str(), nullptr), module);
    EXPECT_EQ(LibrariesInTable(), 1);
    EXPECT_EQ(tivFreeLibrary(module), TRUE);
    EXPECT_EQ(tivFreeLibrary(module), TRUE);
  }
}

TEST_F(DynamicLibraryTest, LongerNameTakesAnEntryForEachLoad) {
  PlainModule("plain.so");
  for (const size_t length : {261u, 300u}) {
    const std::string name = PathOfLength("plain.so", length);
    ASSERT_EQ(name.size(), length);
    void* module = tivLoadLibrary(name.c_str(), nullptr);
    ASSERT_NE(module, nullptr);
    EXPECT_EQ(pDynamicLibraryList[0]->name, name.substr(0, 260));
    EXPECT_EQ(tivLoadLibrary(name.c_str(), nullptr), module);
    EXPECT_EQ(LibrariesInTable(), 2);
    EXPECT_EQ(tivFreeLibrary(module), TRUE);
    EXPECT_EQ(tivFreeLibrary(module), TRUE);
  }
}

TEST_F(DynamicLibraryTest, BeginningOfALongerNameIsTakenForIt) {
  PlainModule("plain.so");
  const std::string name = PathOfLength("plain.so", 300);
  void* module = tivLoadLibrary(name.c_str(), nullptr);
  ASSERT_NE(module, nullptr);
  EXPECT_EQ(tivLoadLibrary(name.substr(0, 260).c_str(), nullptr), module);
  EXPECT_EQ(LibrariesInTable(), 1);
  EXPECT_EQ(pDynamicLibraryList[0]->reference_count, 2);
  EXPECT_EQ(tivFreeLibrary(module), TRUE);
  EXPECT_EQ(tivFreeLibrary(module), TRUE);
}

TEST_F(DynamicLibraryTest, EmptyNameIsTheProgramItself) {
  void* program = dlopen(nullptr, RTLD_LAZY);
  void* module = tivLoadLibrary("", nullptr);
  EXPECT_EQ(module, program);
  EXPECT_EQ(tivLoadLibraryW(L"", nullptr), program);
  EXPECT_EQ(LibrariesInTable(), 1);
  EXPECT_EQ(tivFreeLibrary(module), TRUE);
  EXPECT_EQ(tivFreeLibrary(module), TRUE);
  EXPECT_EQ(LibrariesInTable(), 0);
  dlclose(program);
}

TEST_F(DynamicLibraryTest, WideNameLoadsWhatItsNarrowFormLoads) {
  const std::string path = PlainModule("pl\xC3\xA4in.so");
  const wchar_t* message = nullptr;
  void* module = tivLoadLibraryW(Wide(path).c_str(), &message);
  ASSERT_NE(module, nullptr);
  EXPECT_STREQ(message, L"");
  EXPECT_EQ(pDynamicLibraryList[0]->name, path);
  EXPECT_EQ(tivLoadLibrary(path.c_str(), nullptr), module);
  EXPECT_EQ(tivLoadLibraryW(Wide(path).c_str(), nullptr), module);
  for (int i = 0; i < 3; ++i) EXPECT_EQ(tivFreeLibrary(module), TRUE);
}

TEST_F(DynamicLibraryTest, WideMessageIsTheWideFormOfTheNarrowOne) {
  const std::string name = scratch_ / "\xC3\xBC.so";
  const std::wstring narrow_message = Wide(MessageOfFailedLoad(name.c_str()));
  // A failed load leaves its record behind.
  const ExpectedLeak record;
  const wchar_t* message = nullptr;
  EXPECT_EQ(tivLoadLibraryW(Wide(name).c_str(), &message), nullptr);
  EXPECT_EQ(message, narrow_message);
  EXPECT_NE(narrow_message.find(L"\xFC.so"), std::wstring::npos);
}

TEST_F(DynamicLibraryTest, WideMessageStaysInItsBuffer) {
  // A failed load leaves its record behind.
  const ExpectedLeak record;
  const std::string name = scratch_ / (std::string(600, 'n') + ".so");
  const wchar_t* message = nullptr;
  EXPECT_EQ(tivLoadLibraryW(Wide(name).c_str(), &message), nullptr);
  EXPECT_EQ(message, Wide(name.substr(0, 510)));
}

TEST_F(DynamicLibraryTest, WideMessageIsEmptiedByEveryCallAndSetOnlyForTheCallerThatAsks) {
  // Failed loads leave their records behind.
  const ExpectedLeak records;
  const std::wstring name = Wide(scratch_ / "absent.so");
  const wchar_t* message = L"the caller's own";
  EXPECT_EQ(tivLoadLibraryW(name.c_str(), &message), nullptr);
  EXPECT_NE(std::wstring(message).find(L"absent.so"), std::wstring::npos);
  EXPECT_EQ(tivLoadLibraryW(name.c_str(), nullptr), nullptr);
  EXPECT_STREQ(message, L"");
}

TEST_F(DynamicLibraryTest, WideNameIsLoadedAsFarAsItCanBeConverted) {
  const std::string path = PlainModule();
  const std::wstring name = Wide(path) + static_cast<wchar_t>(0xD800) + L"x";
  const wchar_t* message = nullptr;
  void* module = tivLoadLibraryW(name.c_str(), &message);
  ASSERT_NE(module, nullptr);
  EXPECT_EQ(pDynamicLibraryList[0]->name, path);
  EXPECT_EQ(tivFreeLibrary(module), TRUE);
}

TEST_F(DynamicLibraryTest, NullWideNameFailsToLoadWithoutAMessage) {
  // A failed load leaves its record behind.
  const ExpectedLeak record;
  const wchar_t* message = nullptr;
  EXPECT_EQ(tivLoadLibraryW(nullptr, &message), nullptr);
  EXPECT_STREQ(message, L"");
}

TEST_F(DynamicLibraryTest, WideNameThatCannotBeConvertedDoesNotLoadTheProgramItself) {
  const wchar_t name[] = {static_cast<wchar_t>(0xD800), L'x', L'\0'};
  const wchar_t* message = nullptr;
  EXPECT_EQ(tivLoadLibraryW(name, &message), nullptr);
  EXPECT_STREQ(message, L"out of memory");
  EXPECT_EQ(LibrariesInTable(), 0);
}

TEST_F(DynamicLibraryTest, AWideNameThatNoTextTakesIsNotLoaded) {
  if (sizeof(void*) != 4) GTEST_SKIP() << "a text takes every name that there is in 64 bits";
  const zebcomn_test::HugeText text(zebcomn_test::kLongerThanAnyText);
  if (!text.IsMapped()) GTEST_SKIP() << "no room for it between what the process has mapped";
  const auto* const name = reinterpret_cast<const wchar_t*>(text.c_str());
  const wchar_t* message = nullptr;
  EXPECT_NO_THROW(EXPECT_EQ(tivLoadLibraryW(name, &message), nullptr));
  EXPECT_STREQ(message, L"out of memory");
}

}  // namespace
