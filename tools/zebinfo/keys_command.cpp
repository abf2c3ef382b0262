#include <algorithm>
#include <iostream>

#include "tools/zebinfo/commands.h"
#include "tools/zebinfo/key_vocabulary.h"
#include "tools/zebinfo/nearest.h"
#include "tools/zebinfo/text.h"

namespace zebinfo {
namespace {

std::vector<Section> Selected(const std::optional<std::string>& name) {
  std::vector<Section> sections = ConfigurationSections();
  if (!name) return sections;
  std::vector<std::string> names;
  names.reserve(sections.size());
  for (const Section& section : sections) names.push_back(section.name.text);
  const auto is_other = [&name](const Section& section) { return section.name.text != *name; };
  sections.erase(std::remove_if(sections.begin(), sections.end(), is_other), sections.end());
  if (!sections.empty()) return sections;
  const std::string nearest = Nearest(*name, names);
  throw CommandError(kUsage, Quoted(*name) + " is no configuration section",
                     (nearest.empty() ? "" : "Did you mean " + Quoted(nearest) + "? ") +
                         std::string("\"zebinfo keys\" shows every section."));
}

Json AsJson(const std::vector<Section>& sections) {
  Json list = Json::array();
  for (const Section& section : sections) {
    Json keys = Json::array();
    for (const Key& key : section.keys) {
      keys.push_back({{"name", key.text}, {"constant", key.constant}});
    }
    const std::string& constant = section.name.constant;
    list.push_back({{"section", section.name.text},
                    {"store", section.store},
                    {"constant", constant.empty() ? Json() : Json(constant)},
                    {"keys", keys}});
  }
  return list;
}

void Print(const Section& section) {
  std::cout << section.name.text << " (" << section.store;
  if (!section.name.constant.empty()) std::cout << ", " << section.name.constant;
  std::cout << ")\n";
  std::vector<Row> rows;
  rows.reserve(section.keys.size());
  for (const Key& key : section.keys) rows.push_back({key.text, key.constant});
  PrintTable(rows, {Align::kLeft, Align::kLeft}, "  ");
}

}  // namespace

void ShowKeys(const std::optional<std::string>& section, Format format) {
  const std::vector<Section> sections = Selected(section);
  if (format == Format::kJson) {
    PrintJson(AsJson(sections));
    return;
  }
  bool first = true;
  for (const Section& one : sections) {
    if (!first) std::cout << '\n';
    first = false;
    Print(one);
  }
}

}  // namespace zebinfo
