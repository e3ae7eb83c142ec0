// Umbrella header of the extended community parser: container, rule tree, registry, plugins, typed
// communities, and the cache of show commands. Most applications need only
// BgpParseExtCommContainerSm.h; plugins of an application need this header.
//
// The parser turns the octets of an extended community into an object of the right class:
//
//   BgpParseExtCommContainerSm                   owns all objects below
//    |
//    +- extCommParser(): the rule tree
//    |    root        BgpParseExtendedCommunityRule              selects by type octet
//    |    type rules  BgpParseExtComm<Kind>Rule, 13 kinds        select by subtype octet
//    |    leaves      BgpParseExtComSubType<Kind><Name>Rule      build the typed object
//    |
//    +- parseExtCommRuleCollections(): the registry, 14 sets of keys
//    |    A key is the address of a root or type rule that accepts children.
//    |    Control and rules hold references to the registry.
//    |
//    +- extCommParserSms(): the plugins, BgpParseExtComm<Name>Sm
//    |    Each plugin observes the registry and adds leaves to the type rules of its kinds.
//    |
//    +- extCommCache(): texts for show commands, filled by the application
//
// How a leaf gets into the tree:
//
//   type rule constructed
//     -> handleInitialized()                 hook of the rule, called by its constructor
//     -> registry: ...RuleInstanceIs(key)    inserts the key and notifies each plugin
//     -> plugin: handle...RuleInstance(key)  called by the registry's notification
//     -> instantiate...SubRule(key, control) the plugin's override; builds the leaf
//     -> add...SubRule(key, leaf)            called by the operation
//     -> key.rule()->subTypeRuleIs(leaf)     stores the leaf in the type rule
//
// A plugin that is created after the tree calls its own handleStartup() at the end of its
// construction, which calls handle...RuleInstance(key) for every key in the registry. When the last
// reference to a rule is released, the reference count calls the hook handleDel(), which withdraws
// the key and releases the children; the destructor follows.
//
// `Sm` in a class name stands for state machine: an object that observes others and reacts to their
// changes. Functions named handle... are such reactions. The list above shows their callers;
// applications call only handleStartup().
//
// To parse, the root looks up the type rule by the type octet, and the type rule looks up the leaf
// by the subtype octet. If a rule is missing or returns null, the level above builds a generic
// object: the root an ExtComm or ExtCommIp6, a type rule the most specific class that the type
// alone determines. Parsing interns nothing; ExtComm::dedupContent() parses and interns.
//
// Threads: one thread owns container, plugins, registry and tree, and changes them. Any number of
// threads may parse as long as the owner changes nothing.
#ifndef OVBGP_PARSE_EXTCOMM_H
#define OVBGP_PARSE_EXTCOMM_H

#include "OvBgp/Parse/Container/BgpParseExtCommContainerSm.h"
#include "OvBgp/Parse/Container/ExtCommCache.h"
#include "OvBgp/Parse/Plugin/BgpParseExtCommPluginBaseSm.h"
#include "OvBgp/Parse/Plugin/ExtCommColorSm.h"
#include "OvBgp/Parse/Plugin/ExtCommDefaultGatewaySm.h"
#include "OvBgp/Parse/Plugin/ExtCommLinkBandwidthSm.h"
#include "OvBgp/Parse/Plugin/ExtCommOriginValidationStateSm.h"
#include "OvBgp/Parse/Plugin/ExtCommRouteOriginSm.h"
#include "OvBgp/Parse/Plugin/ExtCommRouteTargetSm.h"
#include "OvBgp/Parse/Plugin/ExtCommTunnelEncapSm.h"
#include "OvBgp/Parse/Rule/BgpParseExtCommControl.h"
#include "OvBgp/Parse/Rule/BgpParseExtCommKinds.h"
#include "OvBgp/Parse/Rule/BgpParseExtCommRuleBase.h"
#include "OvBgp/Parse/Rule/BgpParseExtCommRuleCollections.h"
#include "OvBgp/Parse/Rule/BgpParseExtCommRuleKeys.h"
#include "OvBgp/Parse/Rule/BgpParseExtCommSubtypeRules.h"
#include "OvBgp/Parse/Rule/BgpParseExtCommTypeRules.h"
#include "OvBgp/Parse/Rule/BgpParseExtendedCommunityRule.h"

#endif
