// What the agent says of itself, plug-in versions, the system log and the signal handler.
#include <pthread.h>

#include <cerrno>
#include <csignal>
#include <cstdarg>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "tests/portable/tables_in_use.h"
#include "tests/reliability/sweep.h"
#include "tests/support/expected_leak.h"
#include "tests/support/system_log_receiver.h"
#include "zebcomn/portable/dynamic_library.h"
#include "zebcomn/util/agent_identity.h"
#include "zebcomn/util/platform_match.h"
#include "zebcomn/util/plugin_version.h"
#include "zebcomn/util/sighandler.h"
#include "zebcomn/util/system_log.h"

namespace {

using quenty_com::pelu::LogInSystemLog;
using quenty_com::pelu::PriorityError;
using quenty_com::pelu::SignalHandler;
using quenty_com::pelu::vLogInSystemLog;
using zebcomn_test::ExpectedLeak;
using zebcomn_test::kErrorLeftAlone;
using zebcomn_test::LibrariesInTable;
using zebcomn_test::PrivateHost;
using zebcomn_test::SystemLogReceiver;
using zebcomn_test::Trial;

// The first one looks for a hardware address, and does without.
ZEBCOMN_FRESH_USE(AgentFailures, Guid, "tivmcomn_create_guid") {
  unsigned char guid[16] = {};
  char text[39] = "";
  BOOL created = FALSE;
  trial.Call([&] { created = tivmcomn_create_guid(guid, text, sizeof text); });
  EXPECT_EQ(created, TRUE);
  EXPECT_EQ(std::string_view(text).size(), 38U);
  EXPECT_EQ(trial.ErrorSlot(), kErrorLeftAlone);
}

ZEBCOMN_USE_WITHOUT_CALLS(AgentFailures, Identity, "tivmcomn_get_agent_softwareid",
                          "tivmcomn_get_agent_softwareid_W", "tivmcomn_delay",
                          "tivmcomn_IsPlatformMatch") {
  char narrow[32] = "";
  wchar_t wide[32] = L"";
  trial.Call([&] {
    tivmcomn_get_agent_softwareid(narrow, sizeof narrow);
    tivmcomn_get_agent_softwareid_W(wide, 32);
    tivmcomn_delay();
    EXPECT_EQ(tivmcomn_IsPlatformMatch("WRLNX:4:3:0", "LINUX|WRLNX:4:0:0-5:0:0"), 0U);
  });
  EXPECT_STREQ(narrow, "KZUAGENT4600WRLX");
  EXPECT_STREQ(wide, L"KZUAGENT4600WRLX");
}

// A table that cannot be locked keeps its module, as it does when a library alone is given back.
void ExpectGivenBack(const Trial& trial, const std::string& module) {
  const bool stays = LibrariesInTable() != 0;
  const bool locked_out = stays || trial.FailedIn("pthread_mutex_lock", 1);
  EXPECT_EQ(trial.ErrorSlot(), locked_out ? EBUSY : kErrorLeftAlone);
  if (!stays) return;
  EXPECT_TRUE(trial.FailedIn("pthread_mutex_lock"));
  void* const loaded = tivLoadLibrary(module.c_str(), nullptr);
  EXPECT_EQ(tivFreeLibrary(loaded), TRUE);
  EXPECT_EQ(tivFreeLibrary(loaded), TRUE);
  EXPECT_EQ(LibrariesInTable(), 0);
}

// The module has no "DllMain", so that a failing look for it makes no difference.
void CheckStamp(Trial& trial, int (*read)(char*, char*, unsigned), const std::string& expected) {
  const ExpectedLeak record_of_a_failed_load;
  std::string module = ZEBCOMN_SWEPT_PLUGIN;
  char stamp[32] = "as it was";
  int result = 77;
  trial.Call([&] { result = read(module.data(), stamp, sizeof stamp); });
  const bool not_loaded = trial.FailedIn("pthread_mutex_lock", 1) || trial.FailedIn("calloc") ||
                          trial.FailedIn("dlopen");
  EXPECT_EQ(result, not_loaded || trial.FailedIn("dlsym", 2) ? 0 : 1);
  EXPECT_EQ(stamp, result == 1 ? expected : "");
  if (trial.FailedIn("dlopen")) trial.Leaves({1, 0, 0}, "the record of a failed load");
  ExpectGivenBack(trial, module);
}

ZEBCOMN_USE(PluginFailures, HexadecimalStamp, "tivmcomn_GetFileResourceVersionStamp") {
  CheckStamp(trial, tivmcomn_GetFileResourceVersionStamp, "0001000200030004");
}

ZEBCOMN_USE(PluginFailures, DottedStamp, "tivmcomn_GetFileResourceStringVersionStamp") {
  CheckStamp(trial, tivmcomn_GetFileResourceStringVersionStamp, "1.2.3.4");
}

// A module without the entry point is given back.
ZEBCOMN_USE(PluginFailures, ModuleWithoutAVersion, "tivmcomn_GetFileResourceStringVersionStamp") {
  const ExpectedLeak record_of_a_failed_load;
  std::string module = ZEBCOMN_SWEPT_MODULE;
  char stamp[32] = "as it was";
  int result = 77;
  trial.Call([&] {
    result = tivmcomn_GetFileResourceStringVersionStamp(module.data(), stamp, sizeof stamp);
  });
  EXPECT_EQ(result, 0);
  EXPECT_STREQ(stamp, "");
  if (trial.FailedIn("dlopen")) trial.Leaves({1, 0, 0}, "the record of a failed load");
  ExpectGivenBack(trial, module);
}

ZEBCOMN_USE(PluginFailures, AbsentModule, "tivmcomn_GetFileResourceVersionStamp") {
  const ExpectedLeak record_of_a_failed_load;
  std::string module = "/nowhere/absent.so";
  char stamp[32] = "as it was";
  int result = 77;
  trial.Call(
      [&] { result = tivmcomn_GetFileResourceVersionStamp(module.data(), stamp, sizeof stamp); });
  EXPECT_EQ(result, 0);
  EXPECT_STREQ(stamp, "");
  EXPECT_EQ(trial.ErrorSlot(), trial.FailedIn("pthread_mutex_lock") ? EBUSY : kErrorLeftAlone);
  if (!trial.FailedIn("pthread_mutex_lock") && !trial.FailedIn("calloc")) {
    trial.Leaves({1, 0, 0}, "the record of a failed load");
  }
  EXPECT_EQ(LibrariesInTable(), 0);
}

/// The log of the private host in which a use runs.
std::unique_ptr<SystemLogReceiver>& Log() {
  static std::unique_ptr<SystemLogReceiver> log;
  return log;
}

void PutLog(PrivateHost& host) {
  Log() = std::make_unique<SystemLogReceiver>(host);
}

/// How many of the lines end with `text`.
int CountLines(const std::vector<std::string>& lines, std::string_view text) {
  int count = 0;
  for (const std::string& line : lines) {
    if (line.size() >= text.size() && line.substr(line.size() - text.size()) == text) ++count;
  }
  return count;
}

unsigned LogThrough(const char* format, ...) __attribute__((format(printf, 1, 2)));
unsigned LogThrough(const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  const unsigned logged = vLogInSystemLog(3, format, arguments);
  va_end(arguments);
  return logged;
}

ZEBCOMN_HOST_USE(LogFailures, Line, PutLog, "LogInSystemLog", "vLogInSystemLog") {
  unsigned logged[2] = {77, 77};
  trial.Call([&] { logged[0] = LogInSystemLog(PriorityError, "number %d", 1); });
  trial.Call([&] { logged[1] = LogThrough("number %d", 2); });
  EXPECT_EQ(logged[0], 1U);
  EXPECT_EQ(logged[1], 1U);
  const std::vector<std::string> lines = Log()->Arrived();
  EXPECT_EQ(CountLines(lines, "number 1"), 1);
  EXPECT_EQ(CountLines(lines, "number 2"), 1);
  EXPECT_EQ(trial.ErrorSlot(), kErrorLeftAlone);
}

/// Restores the calling thread's signal mask.
class SavedMask {
 public:
  SavedMask() { pthread_sigmask(SIG_SETMASK, nullptr, &mask_); }
  ~SavedMask() { pthread_sigmask(SIG_SETMASK, &mask_, nullptr); }
  SavedMask(const SavedMask&) = delete;
  SavedMask& operator=(const SavedMask&) = delete;

 private:
  sigset_t mask_{};
};

bool IsBlocked(int signo) {
  sigset_t mask;
  pthread_sigmask(SIG_SETMASK, nullptr, &mask);
  return sigismember(&mask, signo) == 1;
}

void Block(int signo) {
  sigset_t only;
  sigemptyset(&only);
  sigaddset(&only, signo);
  pthread_sigmask(SIG_BLOCK, &only, nullptr);
}

/// Whether the signal was waiting for the calling thread; it is not after this.
bool TakePending(int signo) {
  sigset_t only;
  sigemptyset(&only);
  sigaddset(&only, signo);
  const timespec at_once = {};
  return sigtimedwait(&only, nullptr, &at_once) == signo;
}

// No failure is reported: the mask stays as it was.
ZEBCOMN_USE(SignalFailures, Mask, "SignalHandler::SignalHandler", "SignalHandler::~SignalHandler",
            "SignalHandler::addSignalToBlock", "SignalHandler::unblockSignal") {
  const SavedMask saved;
  int results[2] = {77, 77};
  bool was_blocked = false;
  trial.Call([&] {
    SignalHandler handler;
    results[0] = handler.addSignalToBlock(SIGUSR1);
  });
  was_blocked = IsBlocked(SIGUSR1);
  Block(SIGUSR2);
  SignalHandler other;
  trial.Call([&] { results[1] = other.unblockSignal(SIGUSR2); });
  EXPECT_EQ(results[0], 0);
  EXPECT_EQ(results[1], 0);
  EXPECT_EQ(was_blocked, !trial.FailedIn("pthread_sigmask", 1));
  EXPECT_EQ(IsBlocked(SIGUSR2), trial.FailedIn("pthread_sigmask", 2));
  EXPECT_EQ(trial.ErrorSlot(), kErrorLeftAlone);
}

int callbacks_run = 0;

// A signal whose callback could not be registered stops the handler; a wait that fails is logged as
// an unknown signal, and made again.
ZEBCOMN_HOST_USE(SignalFailures, Handler, PutLog, "SignalHandler::registerOnSignalCallback",
                 "SignalHandler::operator()") {
  const SavedMask saved;
  SignalHandler handler;
  handler.addSignalToBlock(SIGUSR1);
  handler.addSignalToBlock(SIGUSR2);
  callbacks_run = 0;
  int result = 77;
  trial.Call([&] { result = handler.registerOnSignalCallback(SIGUSR1, [] { ++callbacks_run; }); });
  EXPECT_EQ(result, 0);
  pthread_kill(pthread_self(), SIGUSR1);
  pthread_kill(pthread_self(), SIGUSR2);
  trial.Call([&] { handler(); });
  const bool unregistered = trial.FailedInAllocation();
  EXPECT_EQ(callbacks_run, unregistered ? 0 : 1);
  EXPECT_EQ(TakePending(SIGUSR2), unregistered) << "the handler stopped before it";
  const std::vector<std::string> lines = Log()->Arrived();
  EXPECT_EQ(CountLines(lines, "Received signal to stop PELU"), 1);
  EXPECT_EQ(CountLines(lines, "PELU received unknown signal, ignoring signal..."),
            trial.FailedIn("sigwait") ? 1 : 0);
  EXPECT_EQ(trial.ErrorSlot(), kErrorLeftAlone);
}

ZEBCOMN_USE_WITHOUT_CALLS(SignalFailures, Flag, "CatchSIGTERM") {
  const int before = bSigTermReceived;
  trial.Call([] { CatchSIGTERM(SIGTERM); });
  EXPECT_EQ(bSigTermReceived, 1);
  bSigTermReceived = before;
}

}  // namespace
