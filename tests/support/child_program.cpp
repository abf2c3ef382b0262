#include "tests/support/child_program.h"

#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <stdexcept>

namespace zebcomn_test {

ChildProgram::ChildProgram(const std::vector<std::string>& arguments, int output) : pid_(-1) {
  std::vector<char*> words;
  for (const std::string& word : arguments) words.push_back(const_cast<char*>(word.c_str()));
  words.push_back(nullptr);
  pid_ = fork();
  if (pid_ < 0) throw std::runtime_error("fork failed");
  if (pid_ == 0) {
    signal(SIGINT, SIG_DFL);
    dup2(output, STDOUT_FILENO);
    execvp(words[0], words.data());
    _exit(127);
  }
}

ChildProgram::~ChildProgram() {
  if (pid_ < 0) return;
  kill(pid_, SIGKILL);
  Wait();
}

void ChildProgram::Send(int signo) {
  kill(pid_, signo);
}

int ChildProgram::Wait() {
  int status = 0;
  while (waitpid(pid_, &status, 0) < 0) {
    if (errno != EINTR) throw std::runtime_error("waitpid failed");
  }
  pid_ = -1;
  return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

}  // namespace zebcomn_test
