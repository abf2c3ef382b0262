#include "tests/tools/zebinfo.h"

namespace zebcomn_test {

const std::vector<std::string> kCommands = {
    "interfaces",  "local-address",  "resolve",        "time", "guid",
    "software-id", "plugin-version", "platform-match", "path", "keys"};

CommandResult Zebinfo(std::vector<std::string> arguments,
                      const std::vector<std::pair<std::string, std::string>>& environment) {
  std::vector<std::pair<std::string, std::string>> all = {{"TZ", "UTC0"}, {"LANG", ""}};
  all.insert(all.end(), environment.begin(), environment.end());
  arguments.insert(arguments.begin(), ZEBINFO);
  return RunTargetCommand(std::move(arguments), all);
}

std::string Everything(const CommandResult& result) {
  if (result.exit_status == 0 && result.err.empty()) return result.out;
  return result.out + "exit status " + std::to_string(result.exit_status) + "\n" + result.err;
}

std::string ZebinfoOn(void (*prepare)(PrivateHost&), const std::vector<std::string>& arguments,
                      const std::vector<std::pair<std::string, std::string>>& environment) {
  return RunInPrivateHost([&](PrivateHost& host) {
    prepare(host);
    return Everything(Zebinfo(arguments, environment));
  });
}

void UseHostsFile(PrivateHost& host, const std::string& text) {
  host.PutFile("/etc/nsswitch.conf", "hosts: files\n");
  host.PutFile("/etc/host.conf", "multi on\n");
  host.PutFile("/etc/hosts", text);
}

}  // namespace zebcomn_test
