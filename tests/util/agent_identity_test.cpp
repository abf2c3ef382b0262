// The agent's GUIDs and its software identifier, in buffers of every size.
#include "zebcomn/util/agent_identity.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <climits>
#include <cstdio>
#include <string>
#include <vector>

namespace {

constexpr size_t kGuidTextLength = 38;
const std::string kSoftwareId = "KZUAGENT4600WRLX";

using GuidBytes = std::array<unsigned char, 16>;

/// The registry form of a GUID, from its bytes.
std::string RegistryForm(const GuidBytes& bytes) {
  std::string text = "{";
  for (size_t i = 0; i < bytes.size(); ++i) {
    char pair[3] = "";
    std::snprintf(pair, sizeof pair, "%02X", bytes[i]);
    text += pair;
    if (i == 3 || i == 5 || i == 7 || i == 9) text += "-";
  }
  return text + "}";
}

TEST(CreateGuid, TextIsUpperCaseAndBraced) {
  char text[64];
  ASSERT_EQ(tivmcomn_create_guid(nullptr, text, sizeof text), 1);
  const std::string h = "[0-9A-F]";
  const std::string four = h + h + h + h;
  EXPECT_THAT(text, ::testing::MatchesRegex("\\{" + four + four + "-" + four + "-" + four + "-" +
                                            four + "-" + four + four + four + "\\}"));
}

TEST(CreateGuid, TextIsThatOfTheBytes) {
  for (int round = 0; round < 100; ++round) {
    GuidBytes bytes{};
    char text[64];
    ASSERT_EQ(tivmcomn_create_guid(bytes.data(), text, sizeof text), 1);
    EXPECT_EQ(text, RegistryForm(bytes));
  }
}

TEST(CreateGuid, BufferIsFilledToItsEndAndNoFurther) {
  for (int size = 1; size <= 300; ++size) {
    const auto capacity = static_cast<size_t>(size);
    GuidBytes bytes{};
    std::vector<char> text(capacity + 1, '#');
    ASSERT_EQ(tivmcomn_create_guid(bytes.data(), text.data(), size), 1);
    std::string expected = RegistryForm(bytes);
    expected.resize(capacity, '\0');
    EXPECT_EQ(std::string(text.data(), text.size()), expected + "#") << size;
  }
}

TEST(CreateGuid, TextThatFillsTheBufferIsNotTerminated) {
  char text[kGuidTextLength + 1];
  std::fill(std::begin(text), std::end(text), '#');
  ASSERT_EQ(tivmcomn_create_guid(nullptr, text, kGuidTextLength), 1);
  EXPECT_EQ(text[kGuidTextLength - 1], '}');
  EXPECT_EQ(text[kGuidTextLength], '#');
}

TEST(CreateGuid, WithoutASizeNoTextIsCopied) {
  for (const int size : {0, -1, INT_MIN}) {
    GuidBytes bytes{};
    char text[64] = "keep";
    EXPECT_EQ(tivmcomn_create_guid(bytes.data(), text, size), 1);
    EXPECT_STREQ(text, "keep");
    EXPECT_NE(bytes, GuidBytes{});
    EXPECT_EQ(tivmcomn_create_guid(nullptr, nullptr, size), 1);
  }
}

TEST(CreateGuid, NullTextWithASizeFails) {
  GuidBytes bytes{};
  EXPECT_EQ(tivmcomn_create_guid(bytes.data(), nullptr, 64), 0);
  EXPECT_EQ(bytes, GuidBytes{});
}

TEST(SoftwareId, IsWrittenWholeOrNotAtAll) {
  ASSERT_EQ(kSoftwareId.size(), 16u);
  for (unsigned size = 0; size <= 40; ++size) {
    std::string out(size + 1, '#');
    std::string expected = out;
    if (size >= 17) {
      expected.replace(0, size - 1, kSoftwareId + std::string(size - 17, '\0'));
      expected[16] = '\0';
    }
    tivmcomn_get_agent_softwareid(out.data(), size);
    EXPECT_EQ(out, expected) << size;
  }
}

TEST(SoftwareId, WideFormIsWrittenWholeOrNotAtAll) {
  for (unsigned size = 0; size <= 40; ++size) {
    std::wstring out(size + 1, L'#');
    std::wstring expected = out;
    if (size >= 17) expected.replace(0, 17, L"KZUAGENT4600WRLX", 17);
    tivmcomn_get_agent_softwareid_W(out.data(), size);
    EXPECT_EQ(out, expected) << size;
  }
}

TEST(SoftwareId, NullBufferIsLeftAlone) {
  tivmcomn_get_agent_softwareid(nullptr, 100);
  tivmcomn_get_agent_softwareid_W(nullptr, 100);
}

TEST(Delay, ReturnsAtOnce) {
  tivmcomn_delay();
}

}  // namespace
