#include <strings.h>

#include <algorithm>

#include "tools/zebinfo/catalogue.h"
#include "tools/zebinfo/commands.h"
#include "tools/zebinfo/nearest.h"
#include "tools/zebinfo/text.h"

namespace zebinfo {
namespace {

using Pairs = std::vector<std::pair<std::string, std::string>>;

Pairs AsPairs(const std::vector<Property>& properties) {
  Pairs pairs;
  for (const Property& property : properties) pairs.emplace_back(property.name, property.value);
  return pairs;
}

void PrintFileSystems(const std::vector<FileSystem>& file_systems) {
  std::vector<Row> rows = {{"File system", "Total MB", "Free MB"}};
  for (const FileSystem& file_system : file_systems) {
    rows.push_back({file_system.mount_point, file_system.total_mb, file_system.free_mb});
  }
  PrintTable(rows, {Align::kLeft, Align::kRight, Align::kRight}, Head::kFirstRow, "  ");
}

void PrintCatalogue(const Catalogue& catalogue) {
  std::size_t name_width = 0;
  for (const std::string& name : PropertyNames()) name_width = std::max(name_width, name.size());
  bool first = true;
  for (const CollectedGroup& group : catalogue.groups) {
    if (!first) Print("\n");
    first = false;
    PrintTitle(group.title);
    PrintPairs(AsPairs(group.properties), "  ", name_width);
    if (group.title == "Disks" && !catalogue.file_systems.empty()) {
      Print("\n");
      PrintFileSystems(catalogue.file_systems);
    }
  }
}

Json AsJson(const std::vector<Property>& properties) {
  Json values = Json::object();
  for (const Property& property : properties) values[property.name] = property.value;
  return values;
}

Json AsJson(const Catalogue& catalogue) {
  Json properties = Json::object();
  for (const CollectedGroup& group : catalogue.groups) properties.update(AsJson(group.properties));
  Json file_systems = Json::array();
  for (const FileSystem& file_system : catalogue.file_systems) {
    file_systems.push_back({{"mountPoint", file_system.mount_point},
                            {"totalMB", file_system.total_mb},
                            {"freeMB", file_system.free_mb}});
  }
  return {{"properties", properties}, {"fileSystems", file_systems}};
}

// What a word that is no property is likely to stand for; empty when nothing is near.
std::string LikelyMeaning(const std::string& word) {
  for (const char* const option : {"help", "json", "list", "version", "watch"}) {
    if (word == option) return "--" + word;
  }
  std::vector<std::string> words = PropertyNames();
  for (std::string& command : CommandNames()) words.push_back(std::move(command));
  return Nearest(word, words);
}

// A title of the printed catalogue is easily taken for a name.
void RefuseTitle(const std::string& word) {
  for (const Group& group : Groups()) {
    if (strcasecmp(group.title.c_str(), word.c_str()) != 0) continue;
    std::string names;
    for (const std::string& name : group.names) names += ' ' + name;
    throw CommandError(kUsage, Quoted(word) + " is the title of a group, not a property",
                       "Name its properties:" + names + '.');
  }
}

// A command comes here only from behind a "--", where every word is a name.
void RefuseCommand(const std::string& word) {
  const std::vector<std::string> commands = CommandNames();
  if (std::find(commands.begin(), commands.end(), word) == commands.end()) return;
  throw CommandError(kUsage, Quoted(word) + " is a command, and no property behind \"--\"",
                     "Leave the \"--\" out, or put it behind the command.");
}

void RequireKnown(const std::string& name) {
  const std::vector<std::string> names = PropertyNames();
  if (std::find(names.begin(), names.end(), name) != names.end()) return;
  RefuseTitle(name);
  RefuseCommand(name);
  const std::string meaning = LikelyMeaning(name);
  throw CommandError(
      kUsage, Quoted(name) + " is neither a property nor a command",
      (meaning.empty() ? "" : "Did you mean " + Quoted(meaning) + "? ") +
          std::string("\"zebinfo --list\" lists the properties, \"zebinfo --help\" the commands."));
}

}  // namespace

void ShowCatalogue(Format format) {
  const Catalogue catalogue = CollectCatalogue();
  if (format == Format::kText) {
    PrintCatalogue(catalogue);
  } else {
    PrintJson(AsJson(catalogue), format);
  }
}

void ShowProperties(const std::vector<std::string>& names, Format format) {
  for (const std::string& name : names) RequireKnown(name);
  const std::vector<Property> properties = CollectProperties(names);
  if (format != Format::kText) {
    PrintJson({{"properties", AsJson(properties)}}, format);
  } else if (properties.size() == 1) {
    PrintLine(properties.front().value);
  } else {
    PrintPairs(AsPairs(properties));
  }
}

void ListProperties(Format format) {
  if (format != Format::kText) {
    Json groups = Json::object();
    for (const Group& group : Groups()) groups[group.title] = group.names;
    PrintJson({{"groups", groups}}, format);
    return;
  }
  std::vector<Row> rows;
  for (const Group& group : Groups()) {
    for (const std::string& name : group.names) rows.push_back({group.title, name});
  }
  PrintTable(rows, {Align::kLeft, Align::kLeft}, Head::kNone);
}

}  // namespace zebinfo
