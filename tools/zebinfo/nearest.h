#ifndef ZEBCOMN_TOOLS_ZEBINFO_NEAREST_H_
#define ZEBCOMN_TOOLS_ZEBINFO_NEAREST_H_

#include <string>
#include <vector>

namespace zebinfo {

/// The candidate that is most likely meant by a misspelt word, the case of letters aside; empty
/// when none is near. Of several that are equally near, the first.
std::string Nearest(const std::string& word, const std::vector<std::string>& candidates);

}  // namespace zebinfo

#endif  // ZEBCOMN_TOOLS_ZEBINFO_NEAREST_H_
