#include "tests/tools/terminal.h"

#include <pty.h>
#include <signal.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <stdexcept>

namespace zebcomn_test {
namespace {

constexpr cc_t kCtrlC = 3;

termios PlainTerminal() {
  termios settings = {};
  cfmakeraw(&settings);
  settings.c_lflag |= static_cast<tcflag_t>(ISIG);
  settings.c_cc[VINTR] = kCtrlC;
  settings.c_cc[VMIN] = 1;
  return settings;
}

bool EndsWith(const std::string& text, const std::string& end) {
  return text.size() >= end.size() && text.compare(text.size() - end.size(), end.size(), end) == 0;
}

}  // namespace

Terminal::Terminal(const std::vector<std::string>& arguments) {
  std::vector<char*> words;
  for (const std::string& word : arguments) words.push_back(const_cast<char*>(word.c_str()));
  words.push_back(nullptr);
  const termios settings = PlainTerminal();
  pid_ = forkpty(&keyboard_, nullptr, &settings, nullptr);
  if (pid_ < 0) throw std::runtime_error("forkpty failed");
  if (pid_ == 0) {
    signal(SIGINT, SIG_DFL);
    execvp(words[0], words.data());
    _exit(127);
  }
}

Terminal::~Terminal() {
  close(keyboard_);
  if (pid_ > 0) Wait();
}

bool Terminal::ReadMore() {
  std::array<char, 4096> block{};
  const ssize_t got = read(keyboard_, block.data(), block.size());
  if (got < 0 && errno == EINTR) return true;
  if (got > 0) shown_.append(block.data(), static_cast<std::size_t>(got));
  return got > 0;
}

const std::string& Terminal::ReadUntil(const std::string& end) {
  while (!EndsWith(shown_, end) && ReadMore()) {
  }
  return shown_;
}

const std::string& Terminal::ReadAll() {
  while (ReadMore()) {
  }
  return shown_;
}

void Terminal::Type(const std::string& keys) {
  if (write(keyboard_, keys.data(), keys.size()) != static_cast<ssize_t>(keys.size())) {
    throw std::runtime_error("the terminal takes no keys");
  }
}

int Terminal::Wait() {
  int status = 0;
  waitpid(pid_, &status, 0);
  pid_ = -1;
  return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

}  // namespace zebcomn_test
