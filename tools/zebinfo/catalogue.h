#ifndef ZEBCOMN_TOOLS_ZEBINFO_CATALOGUE_H_
#define ZEBCOMN_TOOLS_ZEBINFO_CATALOGUE_H_

/// \file
/// The catalogue of system properties in the groups and the order in which zebinfo shows it.

#include <string>
#include <utility>
#include <vector>

namespace zebinfo {

struct Property {
  std::string name;
  std::string value;
};

struct FileSystem {
  std::string mount_point;
  std::string total_mb;
  std::string free_mb;
};

struct Group {
  std::string title;
  std::vector<std::string> names;
};

struct CollectedGroup {
  std::string title;
  std::vector<Property> properties;
};

struct Catalogue {
  std::vector<CollectedGroup> groups;
  std::vector<FileSystem> file_systems;
};

/// Every property name, in its group.
const std::vector<Group>& Groups();

/// Every property name.
std::vector<std::string> PropertyNames();

/// Collects everything from the running system.
Catalogue CollectCatalogue();

/// Collects the properties with these names, which are all known.
std::vector<Property> CollectProperties(const std::vector<std::string>& names);

}  // namespace zebinfo

#endif  // ZEBCOMN_TOOLS_ZEBINFO_CATALOGUE_H_
