// A program with one fault, chosen by its argument, for the tests of the checkers.
#include <sys/wait.h>
#include <unistd.h>

#include <climits>
#include <cstdlib>
#include <string>
#include <thread>

namespace {

// Out of the compiler's sight, so that no fault is optimised away.
char* volatile g_block = nullptr;
volatile int g_number = INT_MAX;
int g_shared = 0;

void LoseABlock() {
  g_block = static_cast<char*>(std::malloc(64));
  g_block = nullptr;
}

void WritePastABlock() {
  g_block = static_cast<char*>(std::malloc(64));
  g_block[64] = 1;
  std::free(g_block);
}

void Overflow() {
  g_number = g_number + 1;
}

void WriteOnTwoThreads() {
  std::thread other([] { ++g_shared; });
  ++g_shared;
  other.join();
}

int LoseABlockInAChild() {
  const pid_t child = fork();
  if (child == 0) {
    LoseABlock();
    std::exit(0);
  }
  int status = 0;
  waitpid(child, &status, 0);
  return WIFEXITED(status) ? WEXITSTATUS(status) : 1;
}

}  // namespace

int main(int argc, char** argv) {
  const std::string fault = argc == 2 ? argv[1] : "";
  if (fault == "leak") LoseABlock();
  if (fault == "leak in a child") return LoseABlockInAChild();
  if (fault == "write") WritePastABlock();
  if (fault == "overflow") Overflow();
  if (fault == "race") WriteOnTwoThreads();
  return 0;
}
