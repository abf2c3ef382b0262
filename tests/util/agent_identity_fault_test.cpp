// A GUID that cannot be made or rendered. The two calls that do so are replaced by this program's.
#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "zebcomn/portable/guid.h"
#include "zebcomn/util/agent_identity.h"

namespace {

bool creation_fails = false;
bool rendering_fails = false;
int rendered = 0;

}  // namespace

uint8_t* tivCoCreateGuid(uint8_t* guid) {
  std::memset(guid, 0xAB, 16);
  return creation_fails ? nullptr : guid;
}

char* tivUuidToStringA(const uint8_t*, char* buffer) {
  ++rendered;
  std::strcpy(buffer, "abcdefz-0189-{}[]@`");
  return rendering_fails ? nullptr : buffer;
}

namespace {

TEST(CreateGuidFault, OnlyTheLettersAreFolded) {
  creation_fails = rendering_fails = false;
  char text[64];
  ASSERT_EQ(tivmcomn_create_guid(nullptr, text, sizeof text), 1);
  EXPECT_STREQ(text, "{ABCDEFZ-0189-{}[]@`}");
}

TEST(CreateGuidFault, FailedCreationLeavesBothOutputs) {
  creation_fails = true;
  rendering_fails = false;
  unsigned char guid[16] = {};
  char text[64] = "keep";
  EXPECT_EQ(tivmcomn_create_guid(guid, text, sizeof text), 0);
  EXPECT_STREQ(text, "keep");
  EXPECT_EQ(guid[0], 0);
}

TEST(CreateGuidFault, FailedRenderingLeavesBothOutputs) {
  creation_fails = false;
  rendering_fails = true;
  const int before = rendered;
  unsigned char guid[16] = {};
  char text[64] = "keep";
  EXPECT_EQ(tivmcomn_create_guid(guid, text, sizeof text), 0);
  EXPECT_EQ(rendered, before + 1);
  EXPECT_STREQ(text, "keep");
  EXPECT_EQ(guid[0], 0);
}

}  // namespace
