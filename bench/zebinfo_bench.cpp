// zebinfo as a process beside a program that makes only the calls that its output requires, and
// beside the tools of a Linux system that tell similar things, where they are installed. The time
// is the processor time of the process and of what it started.
#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <string>
#include <vector>

namespace {

struct Program {
  const char* subject;
  std::vector<const char*> words;
  bool is_slow = false;
};

const Program kPrograms[] = {
    {"zebcomn", {ZEBINFO_PATH}},
    {"floor", {FLOOR_ZEBINFO_PATH}},
    {"free", {"free"}},
    {"lscpu", {"lscpu"}},
    {"ip", {"ip", "-j", "addr"}},
    {"lshw", {"lshw", "-json", "-quiet"}, true},
    {"inxi", {"inxi", "-F"}, true},
};

constexpr int kNoSuchProgram = 127;

double Seconds(const timeval& time) {
  return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
}

/// Runs the program with its output thrown away; its processor time, negative when it cannot be
/// run.
double RunOnce(const Program& program, const posix_spawn_file_actions_t& output) {
  std::vector<const char*> words = program.words;
  words.push_back(nullptr);
  pid_t child = 0;
  if (posix_spawnp(&child, words[0], &output, nullptr, const_cast<char**>(words.data()), environ) !=
      0) {
    return -1;
  }
  int status = 0;
  rusage usage{};
  if (wait4(child, &status, 0, &usage) != child || !WIFEXITED(status)) return -1;
  if (WEXITSTATUS(status) == kNoSuchProgram) return -1;
  return Seconds(usage.ru_utime) + Seconds(usage.ru_stime);
}

void Measure(benchmark::State& state, const Program& program) {
  posix_spawn_file_actions_t output;
  posix_spawn_file_actions_init(&output);
  for (const int stream : {STDOUT_FILENO, STDERR_FILENO}) {
    posix_spawn_file_actions_addopen(&output, stream, "/dev/null", O_WRONLY, 0);
  }
  for (auto _ : state) {
    const double seconds = RunOnce(program, output);
    if (seconds < 0) {
      state.SkipWithError("it cannot be run");
      break;
    }
    state.SetIterationTime(seconds);
  }
  posix_spawn_file_actions_destroy(&output);
}

/// Whether a program of this name is on the path.
bool IsInstalled(const Program& program) {
  const std::string name = program.words[0];
  if (name.find('/') != std::string::npos) return access(name.c_str(), X_OK) == 0;
  for (const char* folder : {"/usr/bin/", "/usr/sbin/", "/bin/", "/sbin/"}) {
    if (access((folder + name).c_str(), X_OK) == 0) return true;
  }
  return false;
}

const bool g_registered = [] {
  for (const Program& program : kPrograms) {
    if (!IsInstalled(program)) continue;
    benchmark::RegisterBenchmark((std::string("zebinfo_process/") + program.subject).c_str(),
                                 Measure, program)
        ->UseManualTime()
        ->Unit(benchmark::kMillisecond)
        ->Iterations(program.is_slow ? 1 : 40);
  }
  return true;
}();

}  // namespace
