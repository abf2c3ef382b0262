// Reading system files in blocks of whole lines, against a reader of single lines.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sched.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <fstream>
#include <random>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "tests/support/descriptors.h"
#include "tests/support/failing_call.h"
#include "tests/support/fresh_process.h"
#include "tests/support/scratch_dir.h"
#include "zebcomn/sysprops/system_file_internal.h"

namespace {

using zebcomn_test::ScratchDir;

/// What the three tests of a line give over a whole file.
struct Found {
  std::size_t count = 0;
  std::string first = "unset";
  std::string second = "unset";

  bool operator==(const Found& other) const {
    return count == other.count && first == other.first && second == other.second;
  }
};

Found Blockwise(const std::string& path) {
  Found found;
  zebcomn::ForEachLineBlock(path.c_str(), [&](std::string_view block) {
    found.count += zebcomn::CountLinesWith(block, "key");
    zebcomn::TakeLastValue(block, "key", found.first);
    zebcomn::TakeLastValue(block, "MHz", found.second);
  });
  return found;
}

void TakeFromLine(const std::string& line, const std::string& word, std::string& value) {
  if (line.find(word) == std::string::npos) return;
  const std::size_t colon = line.find(':');
  value = colon == std::string::npos ? "" : line.substr(colon + 1);
}

Found LineByLine(const std::string& text) {
  Found found;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line) && line.size() <= 2047;) {
    if (line.find("key") != std::string::npos) ++found.count;
    TakeFromLine(line, "key", found.first);
    TakeFromLine(line, "MHz", found.second);
  }
  return found;
}

std::string RandomLine(std::mt19937& random) {
  static const std::vector<std::string> kPieces = {"key", "MHz", ":",  " ",    "ke",
                                                   "yk",  "MH",  "\t", "mkey", "keykey"};
  std::string line;
  for (auto pieces = random() % 12; pieces > 0; --pieces) {
    line += kPieces[random() % kPieces.size()];
  }
  if (random() % 8 == 0) line += std::string(random() % 2049, 'x');
  if (random() % 16 == 0)
    line.insert(0, std::string(2047 - std::min<size_t>(line.size(), 2047), 'y'));
  return line;
}

TEST(SystemFile, BlocksGiveWhatSingleLinesGive) {
  const ScratchDir dir;
  std::mt19937 random(20240305);
  for (int round = 0; round < 60; ++round) {
    std::string text;
    for (auto lines = random() % 1500; lines > 0; --lines) text += RandomLine(random) + '\n';
    if (round % 2 == 0) text += RandomLine(random);
    EXPECT_EQ(Blockwise(dir.Write("file", text)), LineByLine(text)) << "round " << round;
  }
}

/// Writes `text` to the pipe at `path` in pieces of random sizes.
void WriteInPieces(const std::string& path, const std::string& text, std::mt19937& random) {
  const int pipe = open(path.c_str(), O_WRONLY);
  for (std::size_t at = 0; at < text.size();) {
    const ssize_t put =
        write(pipe, text.data() + at, std::min<std::size_t>(random() % 400 + 1, text.size() - at));
    if (put <= 0) break;
    at += static_cast<std::size_t>(put);
  }
  close(pipe);
}

TEST(SystemFile, ReadsThatEndWithinALineGiveTheSame) {
  const ScratchDir dir;
  const std::string path = dir / "pipe";
  ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
  std::mt19937 random(20240306);
  for (int round = 0; round < 20; ++round) {
    std::string text;
    for (auto lines = random() % 300; lines > 0; --lines) {
      text += RandomLine(random).substr(0, 2047) + '\n';
    }
    if (round % 2 == 0) text += "key: last";
    std::thread writer([&] { WriteInPieces(path, text, random); });
    const Found found = Blockwise(path);
    writer.join();
    EXPECT_EQ(found, LineByLine(text)) << "round " << round;
  }
}

TEST(SystemFile, WholeLinesInFrontOfAReadThatFailsAreTaken) {
  const ScratchDir dir;
  const std::string path = dir / "pipe";
  ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
  std::thread writer([&] { std::ofstream(path) << "key:1\nkey:2\nkey:3"; });
  const zebcomn_test::FailingCall failing("read", 2);
  const Found found = Blockwise(path);
  writer.join();
  EXPECT_TRUE(failing.Happened());
  EXPECT_EQ(found.count, 2u);
  EXPECT_EQ(found.first, "2");
}

TEST(SystemFile, LineOf2047CharactersIsTakenAndOneMoreEndsTheReading) {
  const ScratchDir dir;
  for (const bool newline : {true, false}) {
    const std::string end = newline ? "\n" : "";
    const std::string fits = "key:" + std::string(2043, 'v');
    EXPECT_EQ(Blockwise(dir.Write("f", "key:1\n" + fits + end)).count, 2u);
    EXPECT_EQ(Blockwise(dir.Write("f", "key:1\n" + fits + end)).first, fits.substr(4));
    const Found cut = Blockwise(dir.Write("f", "key:1\n" + fits + "v" + end + "\nkey:3\n"));
    EXPECT_EQ(cut.count, 1u);
    EXPECT_EQ(cut.first, "1");
  }
}

TEST(SystemFile, LongLineIsSeenWhereverItStandsInABlock) {
  const ScratchDir dir;
  for (std::size_t before : {0u, 1u, 2046u, 63u * 1024u, 64u * 1024u - 1u, 64u * 1024u, 200000u}) {
    std::string text;
    while (text.size() < before)
      text += std::string(std::min<size_t>(before - text.size(), 60), 'x') + "\n";
    text += "key:kept\n" + std::string(2048, 'y') + "\nkey:lost\n";
    EXPECT_EQ(Blockwise(dir.Write("f", text)).first, "kept") << before;
  }
}

TEST(SystemFile, LinesThatEndAroundTheEdgeOfABlockAreWhole) {
  constexpr std::size_t kEdge = 32 * 1024;
  const ScratchDir dir;
  for (std::size_t edge : {kEdge, 2 * kEdge, 3 * kEdge}) {
    for (std::size_t before = edge - 12; before <= edge + 2; ++before) {
      std::string text;
      while (text.size() < before)
        text += std::string(std::min<std::size_t>(before - text.size(), 1500) - 1, 'x') + "\n";
      for (const std::string tail : {"key:v", "key:v\n", "key:v\nkey:MHz", "key:v\n\nMHz:2:3\n"}) {
        EXPECT_EQ(Blockwise(dir.Write("f", text + tail)), LineByLine(text + tail))
            << before << " " << tail;
      }
    }
  }
}

TEST(SystemFile, InterruptedReadIsMadeAgain) {
  const ScratchDir dir;
  const std::string text = "key:1\n" + std::string(1000, 'x') + "\nMHz:2\n";
  const std::string path = dir.Write("f", text);
  for (const int nth : {1, 2}) {
    const zebcomn_test::FailingCall interrupted("read", nth, EINTR);
    EXPECT_EQ(Blockwise(path), LineByLine(text)) << nth;
    EXPECT_TRUE(interrupted.Happened()) << nth;
  }
  const zebcomn_test::FailingCall interrupted("read", 1, EINTR);
  EXPECT_EQ(zebcomn::ReadSystemFile(path.c_str()), text);
  EXPECT_TRUE(interrupted.Happened());
}

TEST(SystemFile, ReadThatFailsInALaterBlockLosesNoWholeLine) {
  constexpr int kLines = 5000;
  const ScratchDir dir;
  std::string text;
  for (int line = 1; line <= kLines; ++line) text += "key:" + std::to_string(line) + "\n";
  ASSERT_GT(text.size(), 32u * 1024u);
  ASSERT_LT(text.size(), 60u * 1024u);
  const std::string path = dir.Write("f", text + "key:cut");
  // A block, the rest, and the end of the file.
  const zebcomn_test::FailingCall failing("read", 3);
  const Found found = Blockwise(path);
  EXPECT_TRUE(failing.Happened());
  EXPECT_EQ(found.count, std::size_t{kLines});
  EXPECT_EQ(found.first, std::to_string(kLines));
}

TEST(SystemFile, MissingUnreadableAndEndlessFilesEndQuietly) {
  const ScratchDir dir;
  const int open_before = zebcomn_test::OpenDescriptorCount();
  for (const std::string& path : {dir / "none", dir.path(), std::string("/dev/null"),
                                  std::string("/dev/zero"), std::string("/proc/self/mem")}) {
    EXPECT_EQ(Blockwise(path), Found()) << path;
  }
  EXPECT_EQ(zebcomn::ReadSystemFile((dir / "none").c_str()), "");
  EXPECT_EQ(zebcomn::ReadSystemFile(dir.path().c_str()), "");
  EXPECT_EQ(zebcomn::ReadSystemFile("/dev/zero"), std::string(1024 * 1024, '\0'));
  EXPECT_EQ(zebcomn_test::OpenDescriptorCount(), open_before);
}

/// Writes `text` to the pipe at `path`, the rest once somebody has read the first byte.
void WriteAfterTheFirstByte(const std::string& path, const std::string& text) {
  const int pipe = open(path.c_str(), O_WRONLY);
  ssize_t put = write(pipe, text.data(), 1);
  for (int unread = 1; unread > 0 && ioctl(pipe, FIONREAD, &unread) == 0;) sched_yield();
  for (std::size_t at = 1; put > 0 && at < text.size(); at += static_cast<std::size_t>(put)) {
    put = write(pipe, text.data() + at, text.size() - at);
  }
  close(pipe);
}

TEST(SystemFile, NoMoreThanTheFirstMebibyteIsReadWhateverThePieces) {
  constexpr std::size_t kMebibyte = 1024 * 1024;
  const ScratchDir dir;
  const std::string path = dir / "pipe";
  ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
  std::string text(kMebibyte + 5000, 'z');
  text[kMebibyte - 1] = 'l';
  // The reader may go before all is written.
  auto* const before = signal(SIGPIPE, SIG_IGN);
  std::thread writer([&] { WriteAfterTheFirstByte(path, text); });
  const std::string read = zebcomn::ReadSystemFile(path.c_str());
  writer.join();
  signal(SIGPIPE, before);
  EXPECT_EQ(read.size(), kMebibyte);
  EXPECT_EQ(read.back(), 'l');
}

TEST(SystemFile, WholeTextIsRead) {
  const ScratchDir dir;
  for (const size_t size : {0u, 1u, 4095u, 4096u, 4097u, 100000u}) {
    std::string text(size, 'z');
    if (size > 2) text[1] = '\n';
    EXPECT_EQ(zebcomn::ReadSystemFile(dir.Write("f", text).c_str()), text);
  }
}

// A service may have closed its standard input.
TEST(SystemFile, IsReadUnderDescriptorZeroToo) {
  const ScratchDir dir;
  const std::string path = dir.Write("f", "key: 1\n");
  const std::string read = zebcomn_test::RunInFreshProcess([&path] {
    close(0);
    return zebcomn::ReadSystemFile(path.c_str()) + Blockwise(path).first;
  });
  EXPECT_EQ(read, "key: 1\n 1");
}

TEST(SystemFile, LastLineWithTheWordGivesTheValue) {
  std::string value = "before";
  zebcomn::TakeLastValue("a: 1\nb: 2\n", "zz", value);
  EXPECT_EQ(value, "before");
  zebcomn::TakeLastValue("aa: 1\nb: 2\naa: 3:4\nb", "aa", value);
  EXPECT_EQ(value, " 3:4");
  zebcomn::TakeLastValue("x aa", "aa", value);
  EXPECT_EQ(value, "") << "a line without a colon has an empty value";
  zebcomn::TakeLastValue("", "aa", value);
  EXPECT_EQ(value, "");
}

TEST(SystemFile, LineThatHoldsTheWordTwiceCountsOnce) {
  EXPECT_EQ(zebcomn::CountLinesWith("key key\nxkeyx\nke\ny\n", "key"), 2u);
  EXPECT_EQ(zebcomn::CountLinesWith("", "key"), 0u);
  EXPECT_EQ(zebcomn::CountLinesWith("key", "key"), 1u);
}

}  // namespace
