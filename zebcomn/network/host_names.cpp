#include "zebcomn/network/host_names.h"

#include <netdb.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <new>
#include <optional>
#include <vector>

#include "zebcomn/sysprops/property_names.h"
#include "zebcomn/sysprops/sysprops_comn.h"

namespace {

using quenty_com::pelu::sysprops::DefaultProp_Val;
using quenty_com::pelu::sysprops::sysprops_ansi_to_wide;

constexpr size_t kNameCapacity = 2048;

/// The text that gethostname or getdomainname gives; nothing when it fails.
std::optional<std::string> AskSystem(int (*ask)(char*, size_t)) {
  std::array<char, kNameCapacity> name{};
  if (ask(name.data(), name.size()) != 0) return std::nullopt;
  name.back() = '\0';
  return std::string(name.data());
}

/// The official name of a host as the resolver knows it; nothing when it knows none.
std::optional<std::string> OfficialName(const std::string& host) {
  constexpr size_t kFirstWorkSpace = 1024;
  constexpr size_t kMostWorkSpace = 1024 * kFirstWorkSpace;
  std::array<char, kFirstWorkSpace> few;
  std::vector<char> many;
  char* work = few.data();
  for (size_t size = few.size(); size <= kMostWorkSpace; size *= 2) {
    hostent record{};
    hostent* found = nullptr;
    int failure = 0;
    if (size > few.size()) {
      many.resize(size);
      work = many.data();
    }
    const int error = gethostbyname_r(host.c_str(), &record, work, size, &found, &failure);
    if (error == ERANGE) continue;
    if (error != 0 || found == nullptr) return std::nullopt;
    return std::string(found->h_name);
  }
  return std::nullopt;
}

/// What follows the host name and the separator after it; "" when the name does not hold it.
std::string DomainPart(const std::string& official_name, const std::string& host) {
  const size_t at = official_name.find(host);
  if (at == std::string::npos) return {};
  const size_t domain = at + host.size() + 1;
  return domain < official_name.size() ? official_name.substr(domain) : std::string();
}

}  // namespace

std::wstring getDomainName() try {
  const auto system_domain = AskSystem(getdomainname);
  if (system_domain && !system_domain->empty()) return sysprops_ansi_to_wide(*system_domain);
  const auto host = AskSystem(gethostname);
  if (!host) return DefaultProp_Val;
  const auto official_name = OfficialName(*host);
  if (!official_name) return DefaultProp_Val;
  return sysprops_ansi_to_wide(DomainPart(official_name->substr(0, kNameCapacity - 1), *host));
} catch (const std::bad_alloc&) {
  return {};
}

std::wstring getFqdnAddress() try {
  auto host = AskSystem(gethostname);
  if (!host) return DefaultProp_Val;
  if (const auto official_name = OfficialName(*host)) return sysprops_ansi_to_wide(*official_name);
  std::string name = *host;
  // Kept: an empty domain name leaves the "." at the end.
  if (const auto domain = AskSystem(getdomainname)) name += "." + *domain;
  return sysprops_ansi_to_wide(name);
} catch (const std::bad_alloc&) {
  return {};
}
