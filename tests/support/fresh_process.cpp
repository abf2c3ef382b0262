#include "tests/support/fresh_process.h"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstring>
#include <exception>
#include <stdexcept>

namespace zebcomn_test {
namespace {

constexpr char kSuccess = '+';
constexpr char kFailure = '-';

[[noreturn]] void Fail(const std::string& what) {
  throw std::runtime_error(what + ": " + std::strerror(errno));
}

std::string ChildMain(const std::function<std::string()>& body) {
  try {
    return kSuccess + body();
  } catch (const std::exception& error) {
    return kFailure + std::string(error.what());
  }
}

void WriteAll(int fd, const std::string& text) {
  size_t done = 0;
  while (done < text.size()) {
    const ssize_t wrote = write(fd, text.data() + done, text.size() - done);
    if (wrote <= 0) _exit(3);
    done += static_cast<size_t>(wrote);
  }
}

std::string ReadAll(int fd) {
  std::string text;
  std::array<char, 4096> block{};
  for (ssize_t got = 0; (got = read(fd, block.data(), block.size())) != 0;) {
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) Fail("read");
    text.append(block.data(), static_cast<size_t>(got));
  }
  return text;
}

}  // namespace

ChildDied::ChildDied(int status)
    : std::runtime_error("the child process ended with status " + std::to_string(status)),
      signal_(WIFSIGNALED(status) ? WTERMSIG(status) : 0) {}

std::string RunInFreshProcess(const std::function<std::string()>& body) {
  std::array<int, 2> ends{};
  if (pipe2(ends.data(), O_CLOEXEC) != 0) Fail("pipe2");
  const pid_t child = fork();
  if (child < 0) Fail("fork");
  if (child == 0) {
    close(ends[0]);
    WriteAll(ends[1], ChildMain(body));
    _exit(0);
  }
  close(ends[1]);
  const std::string answer = ReadAll(ends[0]);
  close(ends[0]);
  int status = 0;
  waitpid(child, &status, 0);
  if (!WIFEXITED(status) || WEXITSTATUS(status) != 0 || answer.empty()) {
    throw ChildDied(status);
  }
  if (answer[0] != kSuccess) throw std::runtime_error(answer.substr(1));
  return answer.substr(1);
}

}  // namespace zebcomn_test
