#ifndef ZEBCOMN_TESTS_SYSPROPS_MADE_UP_HOST_H_
#define ZEBCOMN_TESTS_SYSPROPS_MADE_UP_HOST_H_

#include <map>
#include <string>

#include "tests/support/private_host.h"
#include "zebcomn/sysprops/sysprops.h"

namespace zebcomn_test {

/// Puts a whole made-up machine into a private host: system files, names, no links. The file system
/// sizes come from this unit's own statfs, so a test that uses it is marked INTERPOSES.
void PutMadeUpFiles(PrivateHost& host);

/// Adds "port0" (192.0.2.7/24, 192.0.2.200/25) and "port1" (198.51.100.9/16, 2001:db8::9/32).
void AddMadeUpLinks(PrivateHost& host);

/// Property name to value, in UTF-8.
using Values = std::map<std::string, std::string>;

/// What the made-up host's properties are, but for the time, the user and the time zone.
const Values& MadeUpValues();

/// One line "name=value" for each property, for a body to return.
std::string Lines(const quenty_com::pelu::sysprops::PropertyMap& props);

/// The value in a line that Lines wrote; "missing" when there is none.
std::string ValueIn(const std::string& lines, const std::string& name);

}  // namespace zebcomn_test

#endif  // ZEBCOMN_TESTS_SYSPROPS_MADE_UP_HOST_H_
