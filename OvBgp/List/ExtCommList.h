// The list of extended communities that a path carries (RFC 4360).
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

// See ExtCommListBase for its life.  Besides, it notes of its members what the
// writer of updates and the matching of policies want to know.
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
  class CommVectorAttrs : public Kiv::FlagSet<CommVectorAttrs> {
   public:
    using FlagSet::FlagSet;
    KIV_FLAG_SET_BODY("Routing::Bgp::ExtCommList::CommVectorAttrs", FLAG_ROWS)
  };
#undef FLAG_ROWS

#define FLAG_ROWS(flagRow)                      \
  flagRow(all, allIs, 0x01)                     \
  flagRow(transitive, transitiveIs, 0x02)       \
  flagRow(linkBandwidth, linkBandwidthIs, 0x04) \
  flagRow(originAsValidity, originAsValidityIs, 0x08)
  // Which members go on the wire.
  class Serialization : public Kiv::FlagSet<Serialization> {
   public:
    using FlagSet::FlagSet;
    KIV_FLAG_SET_BODY("Routing::Bgp::ExtCommList::Serialization", FLAG_ROWS)
  };
#undef FLAG_ROWS

  ExtCommList() noexcept = default;

  U32 comms() const noexcept { return commVector().size(); }
  // Whether there is a member of this value, and which.  Require: sorted.
  bool comm(const U64& value) const { return static_cast<bool>(lookupExtComm(value)); }
  ExtComm::PtrConst lookupExtComm(const U64& value) const {
    return ExtCommListBase::lookupExtComm(ExtCommContent(value));
  }

  // What is noted; all but the first when the list is interned.
  CommVectorAttrs commVectorAttrs() const noexcept { return commVectorAttrs_; }
  bool commVectorSorted() const noexcept { return commVectorAttrs_.sorted(); }
  bool hasLinkBandwidth() const noexcept { return commVectorAttrs_.hasLinkBandwidth(); }
  bool hasLinkBandwidthWithUnspecifiedAsNumber() const noexcept {
    return commVectorAttrs_.hasLinkBandwidthWithUnspecifiedAsNumber();
  }
  bool hasOriginValidationState() const noexcept {
    return commVectorAttrs_.hasOriginValidationState();
  }
  bool hasPolicyMatchStrepUICommunities() const noexcept {
    return commVectorAttrs_.hasPolicyMatchStrepUICommunities();
  }
  bool hasPrunableValues() const noexcept { return commVectorAttrs_.hasPrunableValues(); }

  // All members, or the transitive ones and what else is asked for.
  static Serialization serialization(bool includeNonTransitive, bool includeLinkBandwidth,
                                     bool includeOriginAsValidity);
  // Whether this member goes on the wire.
  static bool serializable(const ExtComm::PtrConst& comm, Serialization which);
  // How many go on the wire.  Link bandwidths and validation states count for one
  // each, as they do in a list made of pruned sub-lists.  Requires: sorted.
  U32 serializableCommunities(Serialization which) const;
  // The EXTENDED COMMUNITIES path attribute, header included, members in list
  // order; nothing at all if none goes on the wire.
  //
  // Requires: fitsAttribute(which).  A list that was not pruned need not: with two
  // link bandwidths or two validation states, under anything but `all`, more would
  // be written than announced.  Lists of foreign origin are asked first.
  Kiv::String serialize(Serialization which) const;
  // Whether as many members go on the wire as are announced, and the attribute can
  // hold them (maxSerializableComms).  Requires: sorted.
  bool fitsAttribute(Serialization which) const;

  // Whether `regex` matches one of the list's texts: as policies are written, else
  // with classifications, else the user-interface text of those members that are
  // matched by it.  The expression sees the whole list as one line.
  bool matchCommunitiesRegex(const RouteMap::PosixRegex* regex) const;

  // A copy to edit and to watch.
  Kiv::Ptr<ExtCommListSnapshot> commSnapshot() const;
  Kiv::Ptr<ExtCommListSnapshot> snapshot() const;

  // The list that the writer of a store has at `stored`, rebuilt for reading; to
  // intern it, dedupDestashed.  OvBgp/Store/Destash.h.
  static Ptr destash(const void* stored, KivStash::StoreManager* storeManager);

 private:
  template <class>
  friend class ExtCommListBase;

  // What the grouping tells: that the members are sorted, that it starts, of each
  // member, and of each sub-list.
  void commVectorSortedIs() noexcept { commVectorAttrs_.sortedIs(true); }
  void groupingStarts() noexcept;
  void commGrouped(const ExtComm& comm, bool dedupMode) {
    if (!comm.isPlain()) commAsked(comm, dedupMode);
  }
  void commAsked(const ExtComm& comm, bool dedupMode);
  void partFinished(const ExtCommClassificationList& part);

  CommVectorAttrs commVectorAttrs_;
};

// The texts that a list is matched by.
enum class MatchMode : U8 {
  policy = 0,          // each member's text as policies are written
  classification = 1,  // with the classification in front
  ui = 2,              // the user-interface text of the members that have use for it
};

// Whether `regex` matches that text of the list.  Requires of MatchMode::ui: that
// there is some text (ExtCommList::hasPolicyMatchStrepUICommunities).
OV_EXPORT bool matchExtCommList(const ExtCommList* list, MatchMode matchMode,
                                const RouteMap::PosixRegex* regex);

// A new, empty list with notification switched on.  Throws std::bad_alloc.
OV_EXPORT ExtCommList::Ptr extCommListFactory();

// The list's text, whatever the stream's format; "NULL" for null.
OV_EXPORT std::ostream& operator<<(std::ostream& out, const ExtCommList* list);
OV_EXPORT std::ostream& operator<<(std::ostream& out, const ExtCommList& list);

}  // namespace Routing::Bgp

#endif
