#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

#include "tools/zebinfo/commands.h"
#include "tools/zebinfo/text.h"
#include "zebcomn/portable/dynamic_library.h"
#include "zebcomn/portable/shared_object.h"
#include "zebcomn/util/agent_identity.h"
#include "zebcomn/util/platform_match.h"
#include "zebcomn/util/plugin_version.h"

namespace zebinfo {
namespace {

constexpr std::size_t kGuidCapacity = 39;
constexpr unsigned kSoftwareIdCapacity = 32;
constexpr unsigned kStampCapacity = 100;
constexpr std::size_t kMessageCapacity = 512;
constexpr const char* kVersionEntryPoint = "ZUPLUGIN_GetVersion";
constexpr const char* kGiveAModule = "Give the path of a plug-in module.";

// How many characters, blanks aside, tivmcomn_IsPlatformMatch looks at.
constexpr std::ptrdiff_t kMostPlatformCharacters = ZEBCOMN_PATH_CAPACITY - 1;

// What tivmcomn_IsPlatformMatch answers for a platform whose version no range holds.
constexpr uint32_t kVersionOutOfRange = 1;

// A module that stays loaded, and told of it, while the object lives. The loader is asked without
// the library's table first: the table keeps a record of each load that the loader refuses.
class LoadedModule {
 public:
  explicit LoadedModule(const std::string& file) {
    char reason[kMessageCapacity] = "";
    if (!load_shared_object_image(&image_, file.c_str(), reason)) {
      reason_ = reason;
      return;
    }
    const char* message = nullptr;
    module_ = tivLoadLibrary(file.c_str(), &message);
    if (module_ == nullptr && message != nullptr) reason_ = message;
  }
  ~LoadedModule() {
    if (module_ != nullptr) tivFreeLibrary(module_);
    if (image_ != nullptr) unload_shared_object_image(image_);
  }
  LoadedModule(const LoadedModule&) = delete;
  LoadedModule& operator=(const LoadedModule&) = delete;

  bool IsLoaded() const { return module_ != nullptr; }
  // Why it is not.
  const std::string& reason() const { return reason_; }
  bool Exports(const char* name) const {
    return tivGetProcAddress(module_, name, nullptr) != nullptr;
  }

 private:
  void* image_ = nullptr;
  void* module_ = nullptr;
  std::string reason_;
};

[[noreturn]] void NoStamp(const std::string& file, const std::string& why,
                          const std::string& advice) {
  throw CommandError(kFailure, Quoted(file) + " has no version stamp: " + why, advice);
}

void RequireFile(const std::string& file) {
  struct stat status;
  if (stat(file.c_str(), &status) != 0) {
    const int error = errno;
    NoStamp(file, std::strerror(error), error == EACCES ? kRunAsAnotherUser : kGiveAModule);
  }
  // The loader would wait for a writer of a pipe.
  if (!S_ISREG(status.st_mode)) NoStamp(file, "it is not a regular file", kGiveAModule);
  if (access(file.c_str(), R_OK) != 0) NoStamp(file, std::strerror(errno), kRunAsAnotherUser);
}

using StampCall = int (*)(char*, char*, unsigned);

std::string Stamp(StampCall call, const std::string& file) {
  std::string path = file;
  char stamp[kStampCapacity];
  if (call(path.data(), stamp, kStampCapacity) == 0) {
    NoStamp(file, std::string("its ") + kVersionEntryPoint + " reports a failure",
            "Ask the maker of the module.");
  }
  return stamp;
}

// A verdict on the beginning of a text would be none on the text.
void RequireJudgeable(const char* argument, const std::string& text, const char* advice) {
  const auto blanks = std::count(text.begin(), text.end(), ' ');
  if (static_cast<std::ptrdiff_t>(text.size()) - blanks <= kMostPlatformCharacters) return;
  throw CommandError(kUsage,
                     std::string(argument) + " has more than " +
                         std::to_string(kMostPlatformCharacters) + " characters without its blanks",
                     advice);
}

struct Verdict {
  const char* word;
  std::string sentence;
  ExitStatus status;
};

Verdict Judge(const std::string& platform, const std::string& list) {
  const uint32_t result = tivmcomn_IsPlatformMatch(platform.c_str(), list.c_str());
  if (result == 0) {
    return {"supported", Quoted(platform) + " is supported by " + Quoted(list), kSuccess};
  }
  if (result == kVersionOutOfRange) {
    return {"version-not-supported",
            Quoted(platform) + " is not supported: " + Quoted(list) +
                " lists the platform, but not its version",
            kVersionNotSupported};
  }
  return {"platform-not-listed",
          Quoted(platform) + " is not supported: " + Quoted(list) + " does not list the platform",
          kPlatformNotListed};
}

}  // namespace

void MakeGuid(Format format) {
  char guid[kGuidCapacity];
  if (!tivmcomn_create_guid(nullptr, guid, kGuidCapacity)) {
    throw CommandError(kFailure, "cannot make a GUID", "Try again.");
  }
  if (format != Format::kText) {
    PrintJson({{"guid", guid}}, format);
  } else {
    PrintLine(guid);
  }
}

void ShowSoftwareId(Format format) {
  char id[kSoftwareIdCapacity] = {};
  tivmcomn_get_agent_softwareid(id, kSoftwareIdCapacity);
  if (format != Format::kText) {
    PrintJson({{"softwareId", id}}, format);
  } else {
    PrintLine(id);
  }
}

void ShowPluginVersion(const std::string& file, Format format) {
  RequireFile(file);
  // Without a slash the loader would search its own directories.
  const std::string path = file.find('/') == std::string::npos ? "./" + file : file;
  const LoadedModule module(path);
  if (!module.IsLoaded()) {
    NoStamp(file, "it cannot be loaded: " + Printable(module.reason()),
            "Give a shared object of this machine's kind whose own needs are met.");
  }
  if (!module.Exports(kVersionEntryPoint)) {
    NoStamp(file, std::string("it exports no ") + kVersionEntryPoint,
            "Give the path of a plug-in of the agent; this is another shared object.");
  }
  const std::string hexadecimal = Stamp(tivmcomn_GetFileResourceVersionStamp, path);
  const std::string dotted = Stamp(tivmcomn_GetFileResourceStringVersionStamp, path);
  if (format != Format::kText) {
    PrintJson({{"file", file}, {"hexadecimal", hexadecimal}, {"dotted", dotted}}, format);
  } else {
    PrintPairs({{"Hexadecimal", hexadecimal}, {"Dotted", dotted}});
  }
}

ExitStatus JudgePlatform(const std::string& platform, const std::string& list, Format format) {
  RequireJudgeable("PLATFORM", platform, "The library looks at no more of it; shorten the name.");
  RequireJudgeable("LIST", list, "The library looks at no more of it; ask for parts of the list.");
  const Verdict verdict = Judge(platform, list);
  if (format != Format::kText) {
    PrintJson({{"platform", platform}, {"list", list}, {"verdict", verdict.word}}, format);
  } else {
    PrintLine(verdict.sentence);
  }
  return verdict.status;
}

}  // namespace zebinfo
