#ifndef ZEBCOMN_EXAMPLES_PLUGIN_PLUGIN_STRINGS_H_
#define ZEBCOMN_EXAMPLES_PLUGIN_PLUGIN_STRINGS_H_

/// What the agent and its plug-ins agree on: the numbers of the texts that a plug-in's "loadString"
/// gives.
enum {
  PLUGIN_STRING_NAME = 1,      ///< The plug-in's name, for people.
  PLUGIN_STRING_PLATFORMS = 2  ///< The platforms that it supports, as for a platform match.
};

#endif  // ZEBCOMN_EXAMPLES_PLUGIN_PLUGIN_STRINGS_H_
