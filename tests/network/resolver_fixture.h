#ifndef ZEBCOMN_TESTS_NETWORK_RESOLVER_FIXTURE_H_
#define ZEBCOMN_TESTS_NETWORK_RESOLVER_FIXTURE_H_

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "tests/network/fake_network.h"
#include "tests/support/descriptors.h"
#include "zebcomn/network/network_util.h"

namespace zebcomn_test {

using Texts = std::vector<std::string>;

/// One question to the resolver.
struct Question {
  std::string node;
  std::string service;  ///< "(null)" for none.
  addrinfo hints;
};

/// A resolver that gives `answer` to everybody, or fails with `error`.
class ResolverTest : public ::testing::Test {
 protected:
  void SetUp() override {
    Network() = FakeNetwork();
    Network().Serve(chain_, {{"eth0", 2}, {"eth1", 5}, {"eth2", 9}});
    Network().getaddrinfo = [this](const char* node, const char* service, const addrinfo* hints,
                                   addrinfo** list) {
      questions_.push_back({node, service == nullptr ? "(null)" : service, *hints});
      if (error_ != 0) return error_;
      *list = Network().NewList(answer_, service);
      return 0;
    };
    descriptors_ = OpenDescriptorCount();
  }
  void TearDown() override {
    EXPECT_TRUE(Network().live_lists.empty());
    EXPECT_EQ(OpenDescriptorCount(), descriptors_);
    Network() = FakeNetwork();
  }

  Texts Nodes() const {
    Texts nodes;
    for (const Question& question : questions_) nodes.push_back(question.node);
    return nodes;
  }
  void AddInterfaces() {
    chain_.Add("eth1", IFF_UP, "10.0.0.5", "255.0.0.0");
    chain_.Add("eth2", IFF_UP, "10.0.0.9", "255.0.0.0");
    chain_.Add("eth0", IFF_UP, "10.0.0.2", "255.0.0.0");
  }
  /// getaddrinfo refuses this many scoped texts before it accepts one.
  void RefuseScopes(int refused) {
    const auto plain = Network().getaddrinfo;
    Network().getaddrinfo = [plain, refused](const char* node, const char* service,
                                             const addrinfo* hints, addrinfo** list) mutable {
      const int result = plain(node, service, hints, list);
      if (std::strchr(node, '%') == nullptr || refused-- <= 0) return result;
      if (result == 0) freeaddrinfo(*list);
      return EAI_NONAME;
    };
  }

  ANetworkUtil util_;
  FakeChain chain_;
  Texts answer_ = {"192.0.2.1"};
  int error_ = 0;
  std::vector<Question> questions_;
  int descriptors_ = 0;
};

}  // namespace zebcomn_test

#endif  // ZEBCOMN_TESTS_NETWORK_RESOLVER_FIXTURE_H_
