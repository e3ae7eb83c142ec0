// Lists of all kinds for fuzz targets: one set of tables, and of each kind what it is,
// said in the slowest and plainest way.
#ifndef FUZZ_SUPPORT_LISTS_H
#define FUZZ_SUPPORT_LISTS_H

#include <array>
#include <set>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "OvBgp/ExtCommIp6DedupTable.h"
#include "OvBgp/OvBgpCommunityList.h"
#include "OvBgp/Parse/ExtComm.h"
#include "OvBgp/ValueTable/ExtCommDedupTable.h"

namespace Fuzz {

using Octets = std::span<const U8>;

// The tables that an agent builds when it starts.
struct Tables {
  const Routing::Bgp::BgpParseExtCommContainerSm::Ptr parser =
      Routing::Bgp::bgpParseExtCommContainerSmFactory();
  const Routing::Bgp::ExtCommDedupTable::Ptr values =
      Routing::Bgp::extCommDedupTableFactory(parser->extCommParser());
  const Routing::Bgp::ExtCommIp6DedupTable::Ptr ip6Values =
      Routing::Bgp::extCommIp6DedupTableFactory(parser->extCommParser());
  const Routing::Bgp::CommListDedupTable::Ptr standard = Routing::Bgp::commListDedupTableFactory();
  const Routing::Bgp::LargeCommListDedupTable::Ptr large =
      Routing::Bgp::largeCommListDedupTableFactory();
  const Routing::Bgp::ExtCommListDedupTable::Ptr extended =
      Routing::Bgp::extCommListDedupTableFactory();
  const Routing::Bgp::ExtCommIp6ListDedupTable::Ptr ip6 =
      Routing::Bgp::extCommIp6ListDedupTableFactory();

  // Everything that is interned.
  U32 members() const {
    return values->size() + ip6Values->size() + standard->size() + large->size() +
           extended->size() + extended->extCommClassificationListDedupTable()->size() +
           extended->rtExtCommClassificationListDedupTable()->size() + ip6->size() +
           ip6->extCommClassificationListDedupTable()->size();
  }
};

// Those that a target keeps from one input to the next.
inline const Tables& tables() {
  static const Tables all;
  return all;
}

// A community as it is on the wire. They order as the communities do.
using Wire = std::string;

inline U64 numberOf(std::string_view octets) {
  U64 number = 0;
  for (const char octet : octets) number = number << 8 | static_cast<U8>(octet);
  return number;
}
inline Wire wireOf(U64 number, std::size_t size) {
  Wire octets(size, '\0');
  for (std::size_t i = 0; i < size; ++i) octets[size - 1 - i] = static_cast<char>(number >> 8 * i);
  return octets;
}

// The kinds.  All members are said once:
//   memberSize, attributeType       of the path attribute
//   member(in, wire), wire(member)  there and back
//   key(wire)                       what it is looked up by
//   ofAttribute(in, octets)         the interned list of the octets
//   empty(), dedup(in, list)        a list to be built, and then interned
//   membersOf(list)                 what can be walked
//   has(list, wire)                 whether the list says that it has the member
//   attribute(list)                 the path attribute of all members
// `in` are the tables.
struct Standard {
  using List = Routing::Bgp::CommList;
  static constexpr std::size_t memberSize = 4;
  static constexpr U8 attributeType = 8;

  static U32 key(const Wire& wire) { return static_cast<U32>(numberOf(wire)); }
  static U32 member(const Tables&, const Wire& wire) { return key(wire); }
  static Wire wire(U32 member) { return wireOf(member, memberSize); }
  static List::PtrConst ofAttribute(const Tables& in, Octets octets) {
    return List::dedupAttributeValue(in.standard.ptr(), octets);
  }
  static List::Ptr empty() { return Routing::Bgp::commListFactory(); }
  static List::PtrConst dedup(const Tables& in, List& list) {
    return list.dedup(in.standard.ptr());
  }
  static const auto& membersOf(const List& list) { return *list.commVectorRawPtr(); }
  static bool has(const List& list, const Wire& wire) { return list.comm(key(wire)); }
  static std::string attribute(const List& list) { return list.serialize(); }
};

struct Large {
  using List = Routing::Bgp::LargeCommList;
  static constexpr std::size_t memberSize = 12;
  static constexpr U8 attributeType = 32;

  static Acl::CommunityValue key(const Wire& wire) {
    const auto word = [&wire](std::size_t at) {
      return static_cast<U32>(numberOf(std::string_view(wire).substr(at, 4)));
    };
    return {word(0), word(4), word(8)};
  }
  static Acl::CommunityValue member(const Tables&, const Wire& wire) { return key(wire); }
  static Wire wire(const Acl::CommunityValue& member) {
    return wireOf(member.globalAdmin(), 4) + wireOf(member.localData1(), 4) +
           wireOf(member.localData2(), 4);
  }
  static List::PtrConst ofAttribute(const Tables& in, Octets octets) {
    return List::dedupAttributeValue(in.large.ptr(), octets);
  }
  static List::Ptr empty() { return Routing::Bgp::largeCommListFactory(); }
  static List::PtrConst dedup(const Tables& in, List& list) { return list.dedup(in.large.ptr()); }
  static const auto& membersOf(const List& list) { return *list.commVectorRawPtr(); }
  static bool has(const List& list, const Wire& wire) { return list.comm(key(wire)); }
  static std::string attribute(const List& list) { return list.serialize(); }
};

struct Extended {
  using List = Routing::Bgp::ExtCommList;
  using Value = Routing::Bgp::ExtComm;
  static constexpr std::size_t memberSize = 8;
  static constexpr U8 attributeType = 16;

  static U64 key(const Wire& wire) { return numberOf(wire); }
  static Value::PtrConst member(const Tables& in, const Wire& wire) {
    return Value::dedupContent(in.values.ptr(), Routing::Bgp::ExtCommContent(key(wire)));
  }
  static Wire wire(const Value::PtrConst& member) {
    return wireOf(member->getContent().value(), memberSize);
  }
  static List::PtrConst ofAttribute(const Tables& in, Octets octets) {
    return List::dedupAttributeValue(in.extended.ptr(), in.values.ptr(), octets);
  }
  static List::Ptr empty() { return Routing::Bgp::extCommListFactory(); }
  static List::PtrConst dedup(const Tables& in, List& list) {
    return list.dedup(in.extended.ptr());
  }
  static const auto& membersOf(const List& list) { return list.commVector(); }
  static bool has(const List& list, const Wire& wire) { return list.comm(key(wire)); }
  static std::string attribute(const List& list) {
    return list.serialize(List::serialization(true, false, false));
  }
};

struct Ip6Extended {
  using List = Routing::Bgp::ExtCommIp6List;
  using Value = Routing::Bgp::ExtCommIp6;
  using Content = Routing::Bgp::ExtCommIp6Content;
  static constexpr std::size_t memberSize = 20;
  static constexpr U8 attributeType = 25;

  static Content key(const Wire& wire) {
    Ovnet::Ip6Addr::Octets address{};
    for (std::size_t i = 0; i < address.size(); ++i) address[i] = static_cast<U8>(wire[2 + i]);
    return {static_cast<U8>(wire[0]), static_cast<U8>(wire[1]), Ovnet::Ip6Addr(address),
            static_cast<U16>(numberOf(std::string_view(wire).substr(18)))};
  }
  static Value::PtrConst member(const Tables& in, const Wire& wire) {
    return Value::dedupContent(in.ip6Values.ptr(), key(wire));
  }
  static Wire wire(const Value::PtrConst& member) {
    const Content content = member->getContent();
    Wire octets = wireOf(content.type(), 1) + wireOf(content.subtype(), 1);
    for (const U8 octet : content.addr().octets()) octets.push_back(static_cast<char>(octet));
    return octets + wireOf(content.localAdmin(), 2);
  }
  static List::PtrConst ofAttribute(const Tables& in, Octets octets) {
    return List::dedupAttributeValue(in.ip6.ptr(), in.ip6Values.ptr(), octets);
  }
  static List::Ptr empty() { return Routing::Bgp::extCommIp6ListFactory(); }
  static List::PtrConst dedup(const Tables& in, List& list) { return list.dedup(in.ip6.ptr()); }
  static const auto& membersOf(const List& list) { return list.commVector(); }
  static bool has(const List& list, const Wire& wire) {
    return static_cast<bool>(list.comm(key(wire)));
  }
  static std::string attribute(const List& list) { return list.serialize(true); }
};

// The whole members of `octets`, in their order.
template <class Kind>
std::vector<Wire> wiresOf(Octets octets) {
  std::vector<Wire> wires;
  for (; octets.size() >= Kind::memberSize; octets = octets.subspan(Kind::memberSize)) {
    wires.emplace_back(octets.begin(), octets.begin() + Kind::memberSize);
  }
  return wires;
}

// The expected members of a list of `wires`.
inline std::vector<Wire> sortedUnique(const std::vector<Wire>& wires) {
  const std::set<Wire> distinct(wires.begin(), wires.end());
  return {distinct.begin(), distinct.end()};
}

template <class Kind>
std::vector<Wire> wiresOf(const typename Kind::List& list) {
  std::vector<Wire> wires;
  for (const auto& member : Kind::membersOf(list)) wires.push_back(Kind::wire(member));
  return wires;
}

// The interned list, built member by member.
template <class Kind>
typename Kind::List::PtrConst built(const Tables& in, const std::vector<Wire>& wires) {
  const auto list = Kind::empty();
  for (const Wire& wire : wires) list->commIs(Kind::member(in, wire));
  return Kind::dedup(in, *list);
}

inline std::string joined(const std::vector<std::string>& texts) {
  std::string all;
  for (std::size_t i = 0; i < texts.size(); ++i) all.append(i == 0 ? "" : " ").append(texts[i]);
  return all;
}

// The list's members in a form of text, one blank between.
template <class Kind, class Text>
std::string textOf(const typename Kind::List& list, const Text& text) {
  std::vector<std::string> texts;
  for (const auto& member : Kind::membersOf(list)) texts.push_back(text(member));
  return joined(texts);
}

}  // namespace Fuzz

#endif
