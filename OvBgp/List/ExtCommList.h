// The list of extended communities of a route (RFC 4360).
#ifndef OVBGP_LIST_EXTCOMMLIST_H
#define OVBGP_LIST_EXTCOMMLIST_H

#include <iosfwd>

#include "Kiv/Export.h"
#include "Kiv/FlagSet.h"
#include "Kiv/Ptr.h"
#include "Kiv/String.h"
#include "Kiv/Types.h"
#include "OvBgp/List/ExtCommListBase.h"
#include "OvBgp/SubList/ExtCommClassificationList.h"
#include "OvBgp/SubList/ExtCommFamily.h"

namespace KivStash {
class StoreManager;
}

namespace Routing::RouteMap {
class PosixRegex;
}

namespace Routing::Bgp {

class ExtCommListSnapshot;

extern template class OV_EXPORT ExtCommListBase<ExtCommFamily>;

// A list of extended communities of eight octets. ExtCommListBase says how a list is built,
// interned and shared, and what its sub-lists are for. This class adds flags that it computes
// once, when the list is interned, for the encoder of UPDATE messages and for policies.
class OV_EXPORT ExtCommList final : public ExtCommListBase<ExtCommFamily> {
  KIV_OBJECT(ExtCommList)

 public:
#define FLAG_ROWS(flagRow)                                                                    \
  flagRow(sorted, sortedIs, 0x01)                                                             \
  flagRow(hasLinkBandwidth, hasLinkBandwidthIs, 0x02)                                         \
  flagRow(hasLinkBandwidthWithUnspecifiedAsNumber, hasLinkBandwidthWithUnspecifiedAsNumberIs, \
          0x04)                                                                               \
  flagRow(hasOriginValidationState, hasOriginValidationStateIs, 0x08)                         \
  flagRow(hasPolicyMatchStrepUICommunities, hasPolicyMatchStrepUICommunitiesIs, 0x10)         \
  flagRow(hasPrunableValues, hasPrunableValuesIs, 0x20)
  // The facts that a list records about itself and its members:
  //   sorted             the members ascend strictly
  //   hasLinkBandwidth   some member is a link bandwidth
  //   hasLinkBandwidthWithUnspecifiedAsNumber
  //                      some link bandwidth has AS number 0, that is, none was given
  //   hasOriginValidationState
  //                      some member is an origin validation state (RFC 8097)
  //   hasPolicyMatchStrepUICommunities
  //                      policies match some member by its user-interface text
  //   hasPrunableValues  some sub-list has members that should not be advertised
  //                      (ExtCommClassificationList::prune)
  class CommVectorAttrs : public Kiv::FlagSet<CommVectorAttrs> {
   public:
    // The constructors of Kiv::FlagSet: an empty set, and the set of an octet or of a text.
    using FlagSet::FlagSet;
    KIV_FLAG_SET_BODY("Routing::Bgp::ExtCommList::CommVectorAttrs", FLAG_ROWS)
  };
#undef FLAG_ROWS

#define FLAG_ROWS(flagRow)                      \
  flagRow(all, allIs, 0x01)                     \
  flagRow(transitive, transitiveIs, 0x02)       \
  flagRow(linkBandwidth, linkBandwidthIs, 0x04) \
  flagRow(originAsValidity, originAsValidityIs, 0x08)
  // The selection of the members that an attribute contains:
  //   all               all members; the other flags are then ignored
  //   transitive        the transitive members
  //   linkBandwidth     the link bandwidths, also those that are not transitive
  //   originAsValidity  the origin validation states, which are not transitive
  class Serialization : public Kiv::FlagSet<Serialization> {
   public:
    // The constructors of Kiv::FlagSet: an empty set, and the set of an octet or of a text.
    using FlagSet::FlagSet;
    KIV_FLAG_SET_BODY("Routing::Bgp::ExtCommList::Serialization", FLAG_ROWS)
  };
#undef FLAG_ROWS

  // An empty list. Users call extCommListFactory() instead.
  ExtCommList() noexcept = default;

  // The number of members; before the list is sorted, repeated members count each time.
  U32 comms() const noexcept { return commVector().size(); }
  // Whether the community `value` is a member; a binary search. `value` is the eight octets as
  // one number in host byte order, type octet uppermost. Requires: sorted.
  bool comm(const U64& value) const { return static_cast<bool>(lookupExtComm(value)); }
  // The member that is the community `value`, or null; as comm.
  ExtComm::PtrConst lookupExtComm(const U64& value) const {
    return ExtCommListBase::lookupExtComm(ExtCommContent(value));
  }

  // All flags at once. Each of the next six functions returns one of them. `sorted` is right at
  // any time, the others once the list is interned.
  CommVectorAttrs commVectorAttrs() const noexcept { return commVectorAttrs_; }
  // Whether the members ascend strictly.
  bool commVectorSorted() const noexcept { return commVectorAttrs_.sorted(); }
  // Whether some member is a link bandwidth.
  bool hasLinkBandwidth() const noexcept { return commVectorAttrs_.hasLinkBandwidth(); }
  // Whether some link bandwidth has AS number 0.
  bool hasLinkBandwidthWithUnspecifiedAsNumber() const noexcept {
    return commVectorAttrs_.hasLinkBandwidthWithUnspecifiedAsNumber();
  }
  // Whether some member is an origin validation state.
  bool hasOriginValidationState() const noexcept {
    return commVectorAttrs_.hasOriginValidationState();
  }
  // Whether policies match some member by its user-interface text.
  bool hasPolicyMatchStrepUICommunities() const noexcept {
    return commVectorAttrs_.hasPolicyMatchStrepUICommunities();
  }
  // Whether some sub-list has members that should not be advertised.
  bool hasPrunableValues() const noexcept { return commVectorAttrs_.hasPrunableValues(); }

  // The selection of all members if `includeNonTransitive`; else of the transitive members
  // and, if asked for, of link bandwidths and of origin validation states.
  static Serialization serialization(bool includeNonTransitive, bool includeLinkBandwidth,
                                     bool includeOriginAsValidity);
  // Whether the selection `which` contains the value `comm`, which must not be null.
  static bool serializable(const ExtComm::PtrConst& comm, Serialization which);
  // The number of members in the selection `which`. Without `all`, the link bandwidths count
  // as one, and so do the origin validation states, because a list that was made of pruned
  // sub-lists has at most one of each. Requires: sorted if `all` is set, else interned.
  U32 serializableCommunities(Serialization which) const;
  // The EXTENDED COMMUNITIES path attribute in wire format (RFC 4360): flags, type, length,
  // then the selected members in list order. An empty string if no member is selected.
  //
  // Requires: fitsAttribute(which). Callers must check this for lists that were received and
  // not pruned: with two link bandwidths or two origin validation states, more members would
  // be written than the length field says.
  Kiv::String serialize(Serialization which) const;
  // Whether serialize(which) writes as many members as serializableCommunities(which) counts,
  // and at most maxSerializableComms. Without `all`, false for a list that was never interned,
  // because its members are not counted yet. Requires, of `all`: sorted.
  bool fitsAttribute(Serialization which) const;

  // Whether `regex` matches a text of the list. Up to three texts are tried, in the order of
  // MatchMode; the third only if some member has use for it. The whole list is one line. Throws
  // std::bad_alloc; lack of memory is never answered as "no match".
  bool matchCommunitiesRegex(const RouteMap::PosixRegex* regex) const;

  // A copy of members and sub-lists that belongs to the caller, who may edit and observe it.
  Kiv::Ptr<ExtCommListSnapshot> commSnapshot() const;
  // Returns what commSnapshot() returns. The interface has both names.
  Kiv::Ptr<ExtCommListSnapshot> snapshot() const;

  // Rebuilds a list from its image at address `stored` of a shared-memory store, for reading
  // only. The list is sorted and has its texts, and it can be written with Serialization::all.
  // The list was never interned, so classificationList() stops the process, and without `all`
  // serialize() writes nothing and fitsAttribute() is false. Its members are plain ExtComm
  // objects, so isBetterThan() of an interned link bandwidth stops the process if given one of
  // them; do not mix them in one list. dedupDestashed makes an interned list, which has none of
  // these limits. Errors and threads: OvBgp/Store/Destash.h.
  static Ptr destash(const void* stored, KivStash::StoreManager* storeManager);

 private:
  template <class>
  friend class ExtCommListBase;

  // The following functions are hooks that ExtCommListBase calls while it groups the members. They
  // compute the flags. The first hook is called when the members have been sorted.
  void commVectorSortedIs() noexcept { commVectorAttrs_.sortedIs(true); }
  // Grouping begins, perhaps once more.
  void groupingStarts() noexcept;
  // The member `comm` was added to a sub-list. Most values are plain, and nothing is recorded of
  // them. isPlain() says so without a virtual call.
  void commGrouped(const ExtComm& comm, bool dedupMode) {
    if (!comm.isPlain()) commAsked(comm, dedupMode);
  }
  // Records what a value that is not plain says about itself.
  void commAsked(const ExtComm& comm, bool dedupMode);
  // The sub-list `part` has all its members.
  void partFinished(const ExtCommClassificationList& part);

  CommVectorAttrs commVectorAttrs_;
};

// The three texts of a list that a regular expression can match.
enum class MatchMode : U8 {
  // The members' texts as in policies.
  policy = 0,
  // The texts of `policy`, each with its classification in front.
  classification = 1,
  // The user-interface texts of those members that policies match by that text.
  ui = 2,
};

// Whether `regex` matches the text of `list` that `matchMode` selects. Requires of
// MatchMode::ui: ExtCommList::hasPolicyMatchStrepUICommunities; otherwise there is no text,
// and the process stops. Throws std::bad_alloc; lack of memory is never answered as "no match".
OV_EXPORT bool matchExtCommList(const ExtCommList* list, MatchMode matchMode,
                                const RouteMap::PosixRegex* regex);

// A new, empty list, not interned, with notification switched on. Throws std::bad_alloc.
OV_EXPORT ExtCommList::Ptr extCommListFactory();

// Writes toStrep() of `list`, or "NULL" for a null pointer. The output is unformatted: width,
// fill and base of the stream are ignored.
OV_EXPORT std::ostream& operator<<(std::ostream& out, const ExtCommList* list);
// Writes toStrep() of `list`, unformatted.
OV_EXPORT std::ostream& operator<<(std::ostream& out, const ExtCommList& list);

}  // namespace Routing::Bgp

#endif
