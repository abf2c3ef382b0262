#ifndef ZEBCOMN_EXAMPLES_AGENT_PLUG_IN_H_
#define ZEBCOMN_EXAMPLES_AGENT_PLUG_IN_H_

#include <string>

#include "zebcomn/portable/types.h"

namespace example {

/// A plug-in module, loaded for as long as this object lives.
class PlugIn {
 public:
  /// Loads the module; on failure the object is empty and `why` tells the reason.
  PlugIn(const std::string& path, std::string& why);
  ~PlugIn();
  PlugIn(const PlugIn&) = delete;
  PlugIn& operator=(const PlugIn&) = delete;

  bool is_loaded() const { return module_ != nullptr; }
  /// A text of the module by its number; empty when it has none.
  std::string Text(UINT id) const;
  /// The dotted version stamp; empty when the module has none.
  std::string Version() const;
  /// Whether the module supports this platform, such as "WRLX:4:6:0".
  bool Supports(const std::string& platform) const;

 private:
  std::string path_;
  void* module_;
};

}  // namespace example

#endif  // ZEBCOMN_EXAMPLES_AGENT_PLUG_IN_H_
