#include "tests/support/command.h"

#include <fcntl.h>
#include <poll.h>
#include <stdlib.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <sstream>
#include <stdexcept>

namespace zebcomn_test {
namespace {

struct Pipe {
  int read_end = -1;
  int write_end = -1;
};

Pipe OpenPipe() {
  std::array<int, 2> ends{};
  if (pipe2(ends.data(), O_CLOEXEC) != 0) throw std::runtime_error("pipe2 failed");
  return {ends[0], ends[1]};
}

[[noreturn]] void ExecChild(const std::vector<std::string>& arguments,
                            const std::vector<std::pair<std::string, std::string>>& environment,
                            int out, int err) {
  const int null = open("/dev/null", O_RDONLY);
  dup2(null, STDIN_FILENO);
  dup2(out, STDOUT_FILENO);
  dup2(err, STDERR_FILENO);
  for (const auto& [name, value] : environment) {
    if (value.empty()) {
      unsetenv(name.c_str());
    } else {
      setenv(name.c_str(), value.c_str(), 1);
    }
  }
  std::vector<char*> words;
  for (const std::string& word : arguments) words.push_back(const_cast<char*>(word.c_str()));
  words.push_back(nullptr);
  execvp(words[0], words.data());
  _exit(127);
}

/// Appends what can be read; false at the end of the stream.
bool Drain(int fd, std::string& text) {
  std::array<char, 4096> block{};
  const ssize_t got = read(fd, block.data(), block.size());
  if (got > 0) text.append(block.data(), static_cast<size_t>(got));
  return got > 0;
}

void ReadBoth(int out, int err, CommandResult& result) {
  std::array<pollfd, 2> watched = {pollfd{out, POLLIN, 0}, pollfd{err, POLLIN, 0}};
  while (watched[0].fd >= 0 || watched[1].fd >= 0) {
    if (poll(watched.data(), watched.size(), -1) < 0) continue;
    if (watched[0].revents != 0 && !Drain(out, result.out)) watched[0].fd = -1;
    if (watched[1].revents != 0 && !Drain(err, result.err)) watched[1].fd = -1;
  }
}

}  // namespace

CommandResult RunCommand(const std::vector<std::string>& arguments,
                         const std::vector<std::pair<std::string, std::string>>& environment) {
  const Pipe out = OpenPipe();
  const Pipe err = OpenPipe();
  const pid_t child = fork();
  if (child < 0) throw std::runtime_error("fork failed");
  if (child == 0) ExecChild(arguments, environment, out.write_end, err.write_end);
  close(out.write_end);
  close(err.write_end);
  CommandResult result;
  ReadBoth(out.read_end, err.read_end, result);
  close(out.read_end);
  close(err.read_end);
  int status = 0;
  waitpid(child, &status, 0);
  result.exit_status = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
  return result;
}

CommandResult RunTargetCommand(
    std::vector<std::string> arguments,
    const std::vector<std::pair<std::string, std::string>>& environment) {
  const std::vector<std::string> emulator = EmulatorWords();
  arguments.insert(arguments.begin(), emulator.begin(), emulator.end());
  return RunCommand(arguments, environment);
}

std::vector<std::string> EmulatorWords() {
  std::istringstream text(ZEBCOMN_EMULATOR);
  std::vector<std::string> words;
  for (std::string word; text >> word;) words.push_back(word);
  return words;
}

}  // namespace zebcomn_test
