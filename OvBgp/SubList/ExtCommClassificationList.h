// The sub-lists of an extended community list, one for each classification: the general class, and
// those for route targets and link bandwidths.
#ifndef OVBGP_SUBLIST_EXTCOMMCLASSIFICATIONLIST_H
#define OVBGP_SUBLIST_EXTCOMMCLASSIFICATIONLIST_H

#include <iosfwd>
#include <vector>

#include "Kiv/Export.h"
#include "Kiv/FlagSet.h"
#include "Kiv/Ptr.h"
#include "Kiv/Types.h"
#include "OvBgp/SubList/ExtCommClassificationListBase.h"
#include "OvBgp/SubList/ExtCommFamily.h"
#include "OvBgp/Value/ExtComm.h"

namespace Routing::Bgp {

class ExtCommClassificationListSnapshot;
class RtExtCommListLifeTimeNotifier;

extern template class OV_EXPORT ExtCommClassificationListBase<ExtCommFamily>;

// A sub-list of communities of eight octets; ExtCommClassificationListBase describes its life.
//
// In addition to the base, the sub-list remembers whether some members should not be advertised
// (hasPrunableValues), and prune() returns the others.
class OV_EXPORT ExtCommClassificationList : public ExtCommClassificationListBase<ExtCommFamily> {
  KIV_OBJECT(ExtCommClassificationList)

 public:
// The rows of CommVectorAttrs.
#define FLAG_ROWS(flagRow)        \
  flagRow(sorted, sortedIs, 0x01) \
  flagRow(hasPrunableValues, hasPrunableValuesIs, 0x02)
  // Two flags about the members: whether they are sorted, and whether prune() may leave some out.
  class CommVectorAttrs : public Kiv::FlagSet<CommVectorAttrs> {
   public:
    // No flag, the flags of an octet, or those of a text (Kiv/FlagSet.h).
    using FlagSet::FlagSet;
    KIV_FLAG_SET_BODY("Routing::Bgp::ExtCommClassificationList::CommVectorAttrs", FLAG_ROWS)
  };
#undef FLAG_ROWS

  // An empty sub-list. Users call a factory instead.
  explicit ExtCommClassificationList(ExtCommClassification classification) noexcept;

  // Appends `comm` and updates hasPrunableValues(). Stops the process if this sub-list is interned
  // or was, and if `comm` is null or was never interned.
  //
  // The interface gives the name, although xIs sets elsewhere.
  void commIs(const ExtComm::PtrConst& comm);
  // The number of members. The interface gives the name.
  U32 comms() const noexcept { return commVector().size(); }
  // Whether there is a member with this value. Requires: sorted; that is not checked.
  bool comm(const U64& value) const { return static_cast<bool>(lookupExtComm(value)); }
  // The member with this value, or null. Requires: sorted; that is not checked.
  ExtComm::PtrConst lookupExtComm(const U64& value) const {
    return ExtCommClassificationListBase::lookupExtComm(ExtCommContent(value));
  }

  // The two flags of the sub-list.
  CommVectorAttrs commVectorAttrs() const { return CommVectorAttrs(notes()); }
  // Whether the members are sorted and without duplicates.
  bool commVectorSorted() const noexcept { return (notes() & sortedNote) != 0; }
  // Sets what commVectorSorted returns. Sorts nothing; the caller knows the order.
  void commVectorSortedIs(bool sorted) noexcept { noteIs(sortedNote, sorted); }
  // Whether prune() may leave members out. It can be true for no reason other than duplicates that
  // have been removed since; see hasPrunableMembers().
  bool hasPrunableValues() const noexcept { return (notes() & prunableNote) != 0; }

  // Sets hasPrunableValues() if `comm`, the last member, makes it true. In this class, a member
  // that is not valid makes it true.
  virtual void checkPrunable(const ExtComm::PtrConst& comm);
  // The members that should be advertised, in order. In this class, they are the valid members.
  // Throws std::bad_alloc.
  virtual std::vector<ExtComm::PtrConst> prune() const;

  // Recomputes hasPrunableValues() from the current members. The stored flag can be true merely
  // because duplicates were added before sorting removed them. For example, two equal link
  // bandwidths become one member.
  bool hasPrunableMembers() const;
  // Calls checkPrunable for all members that need it. For sub-lists whose members are stored all at
  // once instead of by commIs.
  void commsNoted();

  // A copy that can be edited and observed, see OvBgp/Snapshot/. Throws std::bad_alloc.
  Kiv::Ptr<ExtCommClassificationListSnapshot> commSnapshot() const;

  // Called for the last reference. Frees the object together with its members' array if both are in
  // one allocation.
  void zeroReferencesIs() noexcept override;

 protected:
  // Sets what hasPrunableValues returns.
  void hasPrunableValuesIs(bool has) noexcept { noteIs(prunableNote, has); }

 private:
  // The bits of notes() are those of CommVectorAttrs.
  static constexpr U8 prunableNote = 2;
};

// The route targets of a list. The table's observer makes a notifier for each interned sub-list of
// this class, and users follow through the notifiers which sets of route targets are in use.
class OV_EXPORT RtExtCommClassificationList final : public ExtCommClassificationList {
  KIV_OBJECT(RtExtCommClassificationList)

 public:
  // An empty sub-list. Users call a factory instead.
  explicit RtExtCommClassificationList(ExtCommClassification classification) noexcept;
  // Releases the members.
  ~RtExtCommClassificationList() override;

  // Sets the notifier, or removes it by null. Called by the table's observer.
  //
  // Sub-list and notifier own each other; null breaks the cycle. Access to the notifier, here and
  // below, is allowed only under the notification lock of the table (for example in its observer)
  // or in a single-threaded process. A caller that uses the sub-list after passing null must hold
  // its own reference.
  void lifeTimeNotifierIs(const Kiv::Ptr<RtExtCommListLifeTimeNotifier>& notifier);
  // The notifier; null before the sub-list is interned and after it has left its table. Locking as
  // for lifeTimeNotifierIs.
  Kiv::Ptr<RtExtCommListLifeTimeNotifier> lifeTimeNotifier() const;
  // Returns what lifeTimeNotifier() returns. The interface has both names.
  Kiv::Ptr<RtExtCommListLifeTimeNotifier> getLifeTimeNotifier() const;

  // As in the base class.
  void zeroReferencesIs() noexcept override;

 private:
  Kiv::Ptr<RtExtCommListLifeTimeNotifier> lifeTimeNotifier_;
};

// The link bandwidths of a list. A route should be advertised with at most one of them, the best of
// the valid ones.
class OV_EXPORT LinkBandwidthExtCommClassificationList final : public ExtCommClassificationList {
  KIV_OBJECT(LinkBandwidthExtCommClassificationList)

 public:
  // An empty sub-list. Users call a factory instead.
  LinkBandwidthExtCommClassificationList() noexcept;

  // The best valid member, the first one if several are equally good; null if none is valid.
  const ExtComm::PtrConst& linkBandwidth() const noexcept { return linkBandwidth_; }

  // Updates linkBandwidth(), and sets hasPrunableValues() if `comm` is not valid or is the second
  // member. Requires: valid members can be compared with one another (ExtComm::isBetterThan).
  void checkPrunable(const ExtComm::PtrConst& comm) override;
  // linkBandwidth() alone; nothing if it is null.
  std::vector<ExtComm::PtrConst> prune() const override;

  // As in the base class.
  void zeroReferencesIs() noexcept override;

 private:
  ExtComm::PtrConst linkBandwidth_;
};

// A new, empty sub-list with notification switched on. Throws std::bad_alloc. Not for route
// targets, which can only be interned in a RtExtCommClassificationList.
OV_EXPORT ExtCommClassificationList::Ptr extCommClassificationListFactory(
    ExtCommClassification classification);
// A new, empty sub-list for route targets with notification switched on. Throws std::bad_alloc.
OV_EXPORT RtExtCommClassificationList::Ptr rtExtCommClassificationListFactory(
    ExtCommClassification classification);
// A new, empty sub-list for link bandwidths with notification switched on. Throws std::bad_alloc.
OV_EXPORT LinkBandwidthExtCommClassificationList::Ptr
linkBandwidthExtCommClassificationListFactory();

// Writes the sub-list's text; nothing for null. The stream's format has no effect.
OV_EXPORT std::ostream& operator<<(std::ostream& out, const ExtCommClassificationList* list);
// Writes the sub-list's text. The stream's format has no effect.
OV_EXPORT std::ostream& operator<<(std::ostream& out, const ExtCommClassificationList& list);

}  // namespace Routing::Bgp

#endif
