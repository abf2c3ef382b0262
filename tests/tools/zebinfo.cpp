#include "tests/tools/zebinfo.h"

#include <sstream>
#include <stdexcept>

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

std::vector<std::string> ZebinfoWords(const std::vector<std::string>& arguments) {
  std::vector<std::string> words = EmulatorWords();
  words.emplace_back(ZEBINFO);
  words.insert(words.end(), arguments.begin(), arguments.end());
  return words;
}

std::vector<std::string> ZebinfoWordsInShell(const std::string& script,
                                             const std::vector<std::string>& arguments,
                                             const std::string& name) {
  std::vector<std::string> words = {"sh", "-c", script, name};
  for (const std::string& word : ZebinfoWords(arguments)) words.push_back(word);
  return words;
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

nlohmann::json Members(const std::string& text) {
  nlohmann::json object = nlohmann::json::parse(text);
  if (object.at("version") != 1) throw std::runtime_error("another version: " + text);
  object.erase("version");
  return object;
}

Words Lines(const std::string& text) {
  std::istringstream stream(text);
  Words lines;
  for (std::string line; std::getline(stream, line);) {
    if (!line.empty()) lines.insert(line);
  }
  return lines;
}

Words OptionsOf(const std::string& help) {
  Words options;
  for (const std::string& line : Lines(help)) {
    if (line.rfind("  -", 0) != 0) continue;
    std::istringstream names(line.substr(2, line.find(' ', 2) - 2));
    for (std::string name; std::getline(names, name, ',');) options.insert(name);
  }
  return options;
}

void UseHostsFile(PrivateHost& host, const std::string& text) {
  host.PutFile("/etc/nsswitch.conf", "hosts: files\n");
  host.PutFile("/etc/host.conf", "multi on\n");
  host.PutFile("/etc/hosts", text);
}

}  // namespace zebcomn_test
