#ifndef ZEBCOMN_TOOLS_ZEBINFO_KEY_VOCABULARY_H_
#define ZEBCOMN_TOOLS_ZEBINFO_KEY_VOCABULARY_H_

#include <string>
#include <vector>

namespace zebinfo {

/// A name as the configuration stores spell it, and the constant that callers write instead.
struct Key {
  std::string text;
  std::string constant;
};

/// One section of a store with its keys. The task scheduler's names are one section called "Tasks",
/// which is no name of theirs: its constant is empty.
struct Section {
  std::string store;
  Key name;
  std::vector<Key> keys;
};

/// Every section, in the order of the library's tables.
std::vector<Section> ConfigurationSections();

}  // namespace zebinfo

#endif  // ZEBCOMN_TOOLS_ZEBINFO_KEY_VOCABULARY_H_
