// A path followed to the regular file that it names, through the class and the flat routines.
#include "zebcomn/util/filenameresolver.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <string>
#include <vector>

#include "tests/support/huge_text.h"
#include "tests/support/private_host.h"
#include "tests/support/scratch_dir.h"

namespace {

using zebcomn_test::PrivateHost;
using zebcomn_test::RunInPrivateHost;
using zebcomn_test::ScratchDir;
using zebcomn_test::WhyNoPrivateHost;

constexpr const char* kUnresolved = "(unresolved)";
constexpr unsigned kFailure = 0x80000008u;

std::string Resolved(const std::string& path) {
  std::string absolute = "untouched";
  FileNameResolver resolver(path);
  if (resolver.GetAbsolutePath(absolute)) return absolute;
  return absolute == "untouched" ? kUnresolved : "a failure wrote: " + absolute;
}

/// A scratch directory whose own path goes through no link, with a regular file "file" in it.
class FileNameResolverTest : public ::testing::Test {
 protected:
  std::string At(const std::string& name) const { return root_ + "/" + name; }

  std::string Link(const std::string& name, const std::string& target) const {
    EXPECT_EQ(symlink(target.c_str(), At(name).c_str()), 0) << name;
    return At(name);
  }

  /// Links "chain1" to "chain<length>", each to the one before, the first to "file".
  std::string Chain(int length) const {
    for (int i = 1; i <= length; ++i) {
      Link("chain" + std::to_string(i), i == 1 ? "file" : "chain" + std::to_string(i - 1));
    }
    return At("chain" + std::to_string(length));
  }

  ScratchDir scratch_;
  std::string root_ = std::filesystem::canonical(scratch_.path());
  std::string file_ = (scratch_.Write("file", "content"), At("file"));
};

TEST_F(FileNameResolverTest, RegularFileIsItsOwnResult) {
  EXPECT_EQ(Resolved(file_), file_);
  EXPECT_EQ(Resolved(root_ + "/./none/../file"), file_);
  EXPECT_EQ(Resolved(file_ + "/"), file_);
}

TEST_F(FileNameResolverTest, EverythingElseIsUnresolved) {
  ASSERT_EQ(mkfifo(At("fifo").c_str(), 0600), 0);
  Link("to-directory", root_);
  Link("to-nothing", "nothing");
  Link("to-fifo", "fifo");
  Link("below-file", "file/below");
  for (const std::string& path :
       {root_, At("nothing"), At("fifo"), At("to-directory"), At("to-nothing"), At("to-fifo"),
        At("below-file"), At("file/below"), std::string("/dev/null"), std::string("/../x"),
        std::string("/a/.."), std::string("/"), std::string()}) {
    EXPECT_EQ(Resolved(path), kUnresolved) << path;
  }
}

TEST_F(FileNameResolverTest, RelativeTargetIsTakenAgainstTheLinksDirectory) {
  scratch_.Write("a/b/other", "");
  Link("a/b/up", "../../file");
  Link("a/b/same", "other");
  EXPECT_EQ(Resolved(At("a/b/up")), file_);
  EXPECT_EQ(Resolved(At("a/b/same")), At("a/b/other"));
  Link("two", "a/b/up");
  EXPECT_EQ(Resolved(At("two")), file_);
}

TEST_F(FileNameResolverTest, AbsoluteTargetStandsAsItIs) {
  Link("absolute", root_ + "/./file");
  EXPECT_EQ(Resolved(At("absolute")), file_);
}

TEST_F(FileNameResolverTest, LinksAmongTheDirectoriesStay) {
  ASSERT_EQ(mkdir(At("real").c_str(), 0700), 0);
  scratch_.Write("real/inside", "");
  Link("alias", "real");
  EXPECT_EQ(Resolved(At("alias/inside")), At("alias/inside"));
  // By the text alone, "..": the directory that holds "alias", not the one that holds "real".
  EXPECT_EQ(Resolved(At("alias/../file")), file_);
}

TEST_F(FileNameResolverTest, FiftyHopsResolveAndTheFiftyFirstFails) {
  const std::string last = Chain(51);
  EXPECT_EQ(Resolved(At("chain50")), file_);
  EXPECT_EQ(Resolved(last), kUnresolved);
}

TEST_F(FileNameResolverTest, CyclesEnd) {
  Link("self", "self");
  Link("ping", "pong");
  Link("pong", "ping");
  EXPECT_EQ(Resolved(At("self")), kUnresolved);
  EXPECT_EQ(Resolved(At("ping")), kUnresolved);
}

TEST_F(FileNameResolverTest, TargetAboveTheRootEnds) {
  std::string above;
  for (int i = 0; i < 60; ++i) above += "../";
  Link("above", above + "etc/passwd");
  EXPECT_EQ(Resolved(At("above")), kUnresolved);
}

TEST_F(FileNameResolverTest, TargetThatDoesNotFitIsNotCut) {
  std::string target = file_;
  while (target.size() + 2 <= 1023) target.insert(0, "/.");
  if (target.size() < 1023) target += '/';
  EXPECT_EQ(Resolved(Link("fits", target)), file_);
  target += '/';
  EXPECT_EQ(Resolved(Link("does-not", target)), kUnresolved);
}

TEST_F(FileNameResolverTest, PathWithANulInItIsUnresolved) {
  EXPECT_EQ(Resolved(file_ + std::string(1, '\0') + "x"), kUnresolved);
}

TEST(FileNameResolverAtTheRoot, RelativeTargetIsTakenAgainstTheRoot) {
  if (const std::string why = WhyNoPrivateHost(); !why.empty()) GTEST_SKIP() << why;
  const ScratchDir scratch;
  scratch.Write("file", "");
  scratch.Write("sub/file", "the wrong one");
  ASSERT_EQ(symlink("file", (scratch / "link").c_str()), 0);
  const std::string seen = RunInPrivateHost([&](PrivateHost&) {
    if (chroot(scratch.path().c_str()) != 0 || chdir("/sub") != 0) return std::string("chroot");
    return Resolved("/link") + " " + Resolved("//link") + " " + Resolved("../link");
  });
  EXPECT_EQ(seen, "/file /file /file");
}

/// A resolver of the flat routines, given back at the end.
class FlatResolver {
 public:
  explicit FlatResolver(const std::string& path)
      : created_(tivmcomn_filenameresolver_create(path.c_str(), &resolver_)) {}
  ~FlatResolver() { EXPECT_EQ(tivmcomn_filenameresolver_destroy(resolver_), 0u); }
  FlatResolver(const FlatResolver&) = delete;
  FlatResolver& operator=(const FlatResolver&) = delete;

  unsigned created() const { return created_; }
  void* get() const { return resolver_; }

 private:
  void* resolver_ = nullptr;
  unsigned created_;
};

TEST_F(FileNameResolverTest, FlatCreateRefusesNullArguments) {
  void* resolver = &scratch_;
  EXPECT_EQ(tivmcomn_filenameresolver_create(nullptr, &resolver), kFailure);
  EXPECT_EQ(resolver, &scratch_);
  EXPECT_EQ(tivmcomn_filenameresolver_create("x", nullptr), kFailure);
  EXPECT_EQ(tivmcomn_filenameresolver_create(nullptr, nullptr), kFailure);
}

TEST_F(FileNameResolverTest, FlatDestroyAcceptsNull) {
  EXPECT_EQ(tivmcomn_filenameresolver_destroy(nullptr), 0u);
}

TEST_F(FileNameResolverTest, FlatCreateSucceedsForAPathThatDoesNotResolve) {
  const FlatResolver flat(At("nothing"));
  EXPECT_EQ(flat.created(), 0u);
  ASSERT_NE(flat.get(), nullptr);
  char buffer[8] = "keep";
  unsigned size = sizeof buffer;
  EXPECT_EQ(tivmcomn_filenameresolver_get_absolute_filename(flat.get(), buffer, &size), kFailure);
  EXPECT_EQ(size, sizeof buffer);
  EXPECT_STREQ(buffer, "keep");
}

TEST_F(FileNameResolverTest, FlatGetRefusesNullArguments) {
  const FlatResolver flat(file_);
  char buffer[512] = "keep";
  unsigned size = sizeof buffer;
  EXPECT_EQ(tivmcomn_filenameresolver_get_absolute_filename(nullptr, buffer, &size), kFailure);
  EXPECT_EQ(tivmcomn_filenameresolver_get_absolute_filename(flat.get(), nullptr, &size), kFailure);
  EXPECT_EQ(tivmcomn_filenameresolver_get_absolute_filename(flat.get(), buffer, nullptr), kFailure);
  EXPECT_EQ(size, sizeof buffer);
  EXPECT_STREQ(buffer, "keep");
}

TEST_F(FileNameResolverTest, FlatGetReportsTheSizeNeededAndOverrunsNoBuffer) {
  const FlatResolver flat(Link("link", "file"));
  const auto needed = static_cast<unsigned>(file_.size() + 1);
  for (unsigned capacity = 0; capacity < needed + 3; ++capacity) {
    // Exactly as large as it is said to be, for the memory checkers.
    std::vector<char> buffer(capacity + 1, '#');
    unsigned size = capacity;
    const unsigned status =
        tivmcomn_filenameresolver_get_absolute_filename(flat.get(), buffer.data(), &size);
    EXPECT_EQ(size, needed);
    if (capacity < needed) {
      EXPECT_EQ(status, kFailure) << capacity;
      EXPECT_EQ(buffer, std::vector<char>(capacity + 1, '#')) << capacity;
    } else {
      EXPECT_EQ(status, 0u) << capacity;
      EXPECT_STREQ(buffer.data(), file_.c_str());
      EXPECT_EQ(buffer[needed], '#');
    }
  }
}

TEST_F(FileNameResolverTest, FlatCreateOfAPathThatNoTextTakesFails) {
  if (sizeof(void*) != 4) GTEST_SKIP() << "a text takes every name that there is in 64 bits";
  const zebcomn_test::HugeText text(zebcomn_test::kLongerThanAnyText);
  if (!text.IsMapped()) GTEST_SKIP() << "no room for it between what the process has mapped";
  void* resolver = nullptr;
  EXPECT_NO_THROW(EXPECT_EQ(tivmcomn_filenameresolver_create(text.c_str(), &resolver), kFailure));
  EXPECT_EQ(resolver, nullptr);
}

}  // namespace
