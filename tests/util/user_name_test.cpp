#include "zebcomn/util/user_name.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <array>
#include <cstring>
#include <optional>
#include <string>

#include "tests/support/error_slot.h"
#include "tests/support/next_function.h"
#include "tests/support/private_host.h"

namespace {

std::optional<uid_t> made_up_real_user;

}  // namespace

extern "C" uid_t getuid() noexcept {
  static auto* const next = zebcomn_test::NextFunction<uid_t()>("getuid");
  return made_up_real_user ? *made_up_real_user : next();
}

namespace {

using zebcomn_test::PrivateHost;

constexpr uint32_t kFailure = 0x80000008;

/// The call's status and text in a host with this password file, whose user id is this process's.
std::string NameIn(const std::string& passwd, unsigned int size) {
  return zebcomn_test::RunInPrivateHost([&](PrivateHost& host) {
    host.PutFile("/etc/nsswitch.conf", "passwd: files\n");
    host.PutFile("/etc/passwd", passwd);
    std::string buffer(70000, 'u');
    const uint32_t status = tivmcomn_get_user_name(buffer.data(), size);
    return std::to_string(status) + " " + std::string(buffer.c_str()).substr(0, 20);
  });
}

std::string Untouched() {
  return std::to_string(kFailure) + " " + std::string(20, 'u');
}

class UserNameTest : public ::testing::Test {
 protected:
  void SetUp() override {
    if (const std::string why = zebcomn_test::WhyNoPrivateHost(); !why.empty()) {
      GTEST_SKIP() << why;
    }
  }
};

TEST_F(UserNameTest, NameIsThatOfTheRealUserId) {
  EXPECT_EQ(NameIn("other:x:4711:0::/:\nchief:x:0:0::/root:\n", 100), "0 chief");
}

TEST_F(UserNameTest, NameIsNotThatOfTheEffectiveUserId) {
  made_up_real_user = 4711;
  EXPECT_EQ(NameIn("chief:x:0:0::/root:\nother:x:4711:0::/:\n", 100), "0 other");
  made_up_real_user.reset();
}

TEST_F(UserNameTest, BufferMustHoldTheNameAndItsNul) {
  const std::string passwd = "chief:x:0:0::/root:\n";
  EXPECT_EQ(NameIn(passwd, 6), "0 chief");
  EXPECT_EQ(NameIn(passwd, 5), Untouched());
  EXPECT_EQ(NameIn(passwd, 0), Untouched());
}

TEST_F(UserNameTest, UserWithoutAnEntryFails) {
  EXPECT_EQ(NameIn("other:x:4711:0::/:\n", 100), Untouched());
  EXPECT_EQ(NameIn("", 100), Untouched());
}

TEST_F(UserNameTest, LongEntryIsRead) {
  EXPECT_EQ(NameIn("chief:x:0:0:" + std::string(20000, 'g') + ":/root:\n", 100), "0 chief");
}

TEST_F(UserNameTest, EntryOfMoreThanAMebibyteFails) {
  EXPECT_EQ(NameIn("chief:x:0:0:" + std::string(1048576, 'g') + ":/root:\n", 100), Untouched());
}

TEST(UserName, NullBufferFails) {
  zebcomn_test::ClearErrorSlot();
  EXPECT_EQ(tivmcomn_get_user_name(nullptr, 100), kFailure);
  EXPECT_EQ(nErrno, zebcomn_test::kErrorLeftAlone);
}

}  // namespace
