#include "examples/agent/agent.h"

#include <time.h>

#include <array>
#include <stdexcept>
#include <utility>

#include "examples/plugin/plugin_strings.h"
#include "zebcomn/portable/event.h"
#include "zebcomn/portable/wait.h"
#include "zebcomn/util/agent_identity.h"
#include "zebcomn/util/system_log.h"
#include "zebcomn/util/text_conversion.h"

namespace example {
namespace {

using quenty_com::pelu::LogInSystemLog;
using quenty_com::pelu::PriorityError;
using quenty_com::pelu::PriorityInfo;

constexpr int kStopped = 0;
/// This platform, as plug-ins name it.
constexpr const char* kPlatform = "WRLX:4:6:0";
constexpr timespec kPause = {0, 10'000'000};

std::string SoftwareId() {
  std::array<char, 17> text{};
  tivmcomn_get_agent_softwareid(text.data(), text.size());
  return text.data();
}

std::string NewGuid() {
  std::array<char, 39> text{};
  tivmcomn_create_guid(nullptr, text.data(), text.size());
  return text.data();
}

}  // namespace

Agent::Agent(std::string plug_in_path) : plug_in_path_(std::move(plug_in_path)) {}

int Agent::Run() {
  LogInSystemLog(PriorityInfo, "%s %s starts", SoftwareId().c_str(), NewGuid().c_str());
  const std::string why = LoadPlugIn();
  if (!why.empty()) throw std::runtime_error(why);
  if (!signals_.Start()) throw std::runtime_error("cannot start the signal thread");
  worker_.Start();
  for (Happening happening = Await(); happening != Happening::kStopAsked; happening = Await()) {
    if (happening == Happening::kReloadAsked) Reload();
    if (happening == Happening::kCatalogueComplete) LogCatalogue();
  }
  worker_.Finish();
  LogInSystemLog(PriorityInfo, "%s stopped", SoftwareId().c_str());
  return kStopped;
}

Agent::Happening Agent::Await() {
  const std::array<HANDLE, 3> handles = {signals_.reload_asked(), signals_.thread(),
                                         worker_.thread()};
  const DWORD count = worker_.is_running() ? 3 : 2;
  for (;;) {
    // The second handle gives the result of a time-out, so the wait must be one without an end.
    switch (tivWaitForMultipleObjects(count, handles.data(), FALSE, TIV_WAIT_INFINITE)) {
      case TIV_WAIT_SIGNALLED:
        return Happening::kReloadAsked;
      case TIV_WAIT_SIGNALLED + 1:
        return Happening::kStopAsked;
      case TIV_WAIT_SIGNALLED + 2:
        return Happening::kCatalogueComplete;
      default:
        // In the last 10 ms of a second the wait fails; it succeeds a little later.
        nanosleep(&kPause, nullptr);
    }
  }
}

std::string Agent::LoadPlugIn() {
  // The old module goes first, so that its file is read anew.
  plug_in_.reset();
  std::string why;
  auto plug_in = std::make_unique<PlugIn>(plug_in_path_, why);
  if (plug_in->is_loaded() && !plug_in->Supports(kPlatform)) {
    why = std::string("no support for ") + kPlatform;
  }
  if (!why.empty()) {
    why.insert(0, "plug-in " + plug_in_path_ + ": ");
    LogInSystemLog(PriorityError, "%s", why.c_str());
    return why;
  }
  LogInSystemLog(PriorityInfo, "plug-in %s %s loaded", plug_in->Text(PLUGIN_STRING_NAME).c_str(),
                 plug_in->Version().c_str());
  plug_in_ = std::move(plug_in);
  return why;
}

void Agent::Reload() {
  // Reset before the work: a signal that comes during it asks for one more reload.
  tivResetEvent(signals_.reload_asked());
  LogInSystemLog(PriorityInfo, "reloading");
  LoadPlugIn();
  worker_.Start();
}

void Agent::LogCatalogue() {
  const auto& catalogue = worker_.Finish();
  const auto host = catalogue.find(quenty_com::pelu::sysprops::ComputerName_Key);
  const std::string name = host == catalogue.end()
                               ? std::string("unknown")
                               : quenty_com::pelu::tivmcomn_wide_to_ansi(host->second);
  LogInSystemLog(PriorityInfo, "catalogue of %s: %zu properties", name.c_str(), catalogue.size());
}

}  // namespace example
