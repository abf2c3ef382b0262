#include "zebcomn/portable/shared_object.h"

#include <dlfcn.h>
#include <gtest/gtest.h>

#include <array>
#include <string>

#include "tests/portable/module_fixture.h"
#include "tests/portable/tables_in_use.h"
#include "tests/support/next_function.h"

namespace {

/// How the loader was last asked to load.
int last_mode = -1;

}  // namespace

extern "C" void* dlopen(const char* name, int mode) noexcept {
  static auto* const next = zebcomn_test::NextFunction<void*(const char*, int)>("dlopen");
  last_mode = mode;
  return next(name, mode);
}

namespace {

class SharedObjectTest : public zebcomn_test::ModuleTest {};

TEST_F(SharedObjectTest, LoadsAndUnloadsWithoutTableAndEntryRoutine) {
  const std::string path = ObservedModule();
  void* handle = nullptr;
  std::array<char, 600> message = {'u'};
  EXPECT_EQ(load_shared_object_image(&handle, path.c_str(), message.data()), 1);
  ASSERT_NE(handle, nullptr);
  EXPECT_STREQ(message.data(), "u");
  EXPECT_TRUE(IsLoaded(path));
  EXPECT_EQ(zebcomn_test::LibrariesInTable(), 0);
  EXPECT_EQ(unload_shared_object_image(handle), 1);
  EXPECT_FALSE(IsLoaded(path));
  EXPECT_TRUE(zebcomn_test::DllMainCalls().empty());
}

TEST_F(SharedObjectTest, SymbolsAreBoundLateAndSeenByNoOtherObject) {
  void* handle = nullptr;
  EXPECT_EQ(load_shared_object_image(&handle, PlainModule().c_str(), nullptr), 1);
  EXPECT_EQ(last_mode, RTLD_LAZY);
  EXPECT_EQ(dlsym(RTLD_DEFAULT, "answer"), nullptr);
  EXPECT_NE(dlsym(handle, "answer"), nullptr);
  EXPECT_EQ(unload_shared_object_image(handle), 1);
}

TEST_F(SharedObjectTest, FailureAppendsTheLoadersText) {
  void* handle = &handle;
  std::array<char, 600> message = {"before: "};
  EXPECT_EQ(load_shared_object_image(&handle, (scratch_ / "absent.so").c_str(), message.data()), 0);
  EXPECT_EQ(handle, &handle) << "the handle is left alone";
  EXPECT_EQ(std::string(message.data()).find("before: " + scratch_.path()), 0u) << message.data();
}

TEST_F(SharedObjectTest, FailureAppendsAtMost510Bytes) {
  void* handle = nullptr;
  std::array<char, 600> message = {"1234"};
  const std::string name = scratch_ / std::string(700, 'n');
  EXPECT_EQ(load_shared_object_image(&handle, name.c_str(), message.data()), 0);
  EXPECT_EQ(message.data(), "1234" + name.substr(0, 510));
}

TEST_F(SharedObjectTest, MessageBufferMayBeNull) {
  void* handle = nullptr;
  EXPECT_EQ(load_shared_object_image(&handle, (scratch_ / "absent.so").c_str(), nullptr), 0);
}

TEST_F(SharedObjectTest, NullHandlePointerOrNameFailsWithoutAMessage) {
  void* handle = nullptr;
  std::array<char, 600> message = {'u'};
  EXPECT_EQ(load_shared_object_image(nullptr, PlainModule().c_str(), message.data()), 0);
  EXPECT_EQ(load_shared_object_image(&handle, nullptr, message.data()), 0);
  EXPECT_STREQ(message.data(), "u");
}

TEST_F(SharedObjectTest, UnloadingNullFails) {
  EXPECT_EQ(unload_shared_object_image(nullptr), 0);
}

}  // namespace
