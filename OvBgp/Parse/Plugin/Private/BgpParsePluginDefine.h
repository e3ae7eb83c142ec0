// Macros that define the functions of the library's plugin classes.
//
// All plugins have the same functions and differ in names only. The names are arguments, so that a
// text search for a name finds the plugin's source file. Private to the library.
#ifndef OVBGP_PARSE_PLUGIN_PRIVATE_BGPPARSEPLUGINDEFINE_H
#define OVBGP_PARSE_PLUGIN_PRIVATE_BGPPARSEPLUGINDEFINE_H

#include "OvBgp/Parse/Plugin/BgpParseExtCommPluginBaseSm.h"
#include "OvBgp/Parse/Plugin/Private/BgpParseTrace.h"

// Defines the type record and the two factories of `Plugin`.
#define BGP_PARSE_PLUGIN_DEFINE(Plugin, PluginIs, pluginFactory)                                 \
  KIV_OBJECT_DEFINE(Plugin)                                                                      \
  Plugin::Ptr PluginIs(const Kiv::Ptr<const BgpParseExtCommRuleCollections>& collections) {      \
    return bgpParseExtCommPluginIs<Plugin>(collections);                                         \
  }                                                                                              \
  Plugin::Ptr pluginFactory(const Kiv::Ptr<const BgpParseExtCommRuleCollections>& collections) { \
    return PluginIs(collections);                                                                \
  }

// Defines the type record of `Leaf`, and the operation `instantiate` of `Plugin`: it traces its
// name, builds a leaf and adds it to the node with the function `add`. The trace line shows the
// source file that uses this macro.
#define BGP_PARSE_PLUGIN_LEAF_DEFINE(Plugin, Kind, instantiate, add, Leaf)                      \
  KIV_OBJECT_DEFINE(Leaf)                                                                       \
  void Plugin::instantiate(const Kind::Key& key, const BgpParseExtCommControl& control) const { \
    BGP_PARSE_TRACE_OPERATION();                                                                \
    add(key, bgpParseExtCommRuleIs<Leaf>(control));                                             \
  }

#endif
