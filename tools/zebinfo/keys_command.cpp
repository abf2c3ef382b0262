#include <algorithm>

#include "tools/zebinfo/commands.h"
#include "tools/zebinfo/key_vocabulary.h"
#include "tools/zebinfo/nearest.h"
#include "tools/zebinfo/text.h"

namespace zebinfo {
namespace {

bool EndsWith(const std::string& text, const std::string& end) {
  return text.size() >= end.size() && text.compare(text.size() - end.size(), end.size(), end) == 0;
}

// Whether a store names a section by one of the keys that are shown under a title of our own.
bool StandsAmongKeys(const std::string& name, const std::vector<Section>& sections) {
  for (const Section& section : sections) {
    for (const Key& key : section.keys) {
      if (key.text == name && EndsWith(key.constant, "Section")) return true;
    }
  }
  return false;
}

std::vector<Section> Selected(const std::optional<std::string>& name) {
  std::vector<Section> sections = ConfigurationSections();
  if (!name) return sections;
  std::vector<std::string> names;
  names.reserve(sections.size());
  for (const Section& section : sections) names.push_back(section.name.text);
  const bool is_of_tasks = StandsAmongKeys(*name, sections);
  const auto is_other = [&name](const Section& section) { return section.name.text != *name; };
  sections.erase(std::remove_if(sections.begin(), sections.end(), is_other), sections.end());
  if (!sections.empty()) return sections;
  if (is_of_tasks) {
    throw CommandError(kUsage,
                       Quoted(*name) +
                           " is a section of the task scheduler, whose keys are not "
                           "told apart by section",
                       "\"zebinfo keys Tasks\" shows them all.");
  }
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

void PrintSection(const Section& section) {
  const std::string& constant = section.name.constant;
  PrintTitle(section.name.text,
             " (" + section.store + (constant.empty() ? "" : ", " + constant) + ")");
  std::vector<Row> rows;
  rows.reserve(section.keys.size());
  for (const Key& key : section.keys) rows.push_back({key.text, key.constant});
  PrintTable(rows, {Align::kLeft, Align::kLeft}, Head::kNone, "  ");
}

}  // namespace

void ShowKeys(const std::optional<std::string>& section, Format format) {
  const std::vector<Section> sections = Selected(section);
  if (format != Format::kText) {
    PrintJson({{"sections", AsJson(sections)}}, format);
    return;
  }
  bool first = true;
  for (const Section& one : sections) {
    if (!first) Print("\n");
    first = false;
    PrintSection(one);
  }
}

}  // namespace zebinfo
