// The parts of an extended community list, one a classification.
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

// See ExtCommClassificationListBase.  Besides, it notes whether some members had
// better not be advertised; prune() gives the others.
class OV_EXPORT ExtCommClassificationList : public ExtCommClassificationListBase<ExtCommFamily> {
  KIV_OBJECT(ExtCommClassificationList)

 public:
#define FLAG_ROWS(flagRow)        \
  flagRow(sorted, sortedIs, 0x01) \
  flagRow(hasPrunableValues, hasPrunableValuesIs, 0x02)
  class CommVectorAttrs : public Kiv::FlagSet<CommVectorAttrs> {
   public:
    using FlagSet::FlagSet;
    KIV_FLAG_SET_BODY("Routing::Bgp::ExtCommClassificationList::CommVectorAttrs", FLAG_ROWS)
  };
#undef FLAG_ROWS

  explicit ExtCommClassificationList(ExtCommClassification classification) noexcept;

  // Appends, and notes what that makes of the whole.  Requires: interned, never
  // null; this sub-list was not interned before.
  void commIs(const ExtComm::PtrConst& comm);
  U32 comms() const noexcept { return commVector().size(); }
  // Whether there is a member of this value, and which.  Require: sorted.
  bool comm(const U64& value) const { return static_cast<bool>(lookupExtComm(value)); }
  ExtComm::PtrConst lookupExtComm(const U64& value) const {
    return ExtCommClassificationListBase::lookupExtComm(ExtCommContent(value));
  }

  CommVectorAttrs commVectorAttrs() const { return CommVectorAttrs(notes()); }
  bool commVectorSorted() const noexcept { return (notes() & sortedNote) != 0; }
  void commVectorSortedIs(bool sorted) noexcept { noteIs(sortedNote, sorted); }
  bool hasPrunableValues() const noexcept { return (notes() & prunableNote) != 0; }

  // Notes whether, with `comm` (the last member), there is something to prune: here,
  // if it is not valid.
  virtual void checkPrunable(const ExtComm::PtrConst& comm);
  // What is left without those that had better not be advertised, in order.
  virtual std::vector<ExtComm::PtrConst> prune() const;

  // Whether hasPrunableValues() was to be said of these members, none of them twice;
  // a sub-list that was built of repeats may say it for no other reason.
  bool hasPrunableMembers() const;
  // Notes of all members at once what commIs notes of each.
  void commsNoted();

  // A copy to edit and to watch.
  Kiv::Ptr<ExtCommClassificationListSnapshot> commSnapshot() const;

  void zeroReferencesIs() noexcept override;

 protected:
  void hasPrunableValuesIs(bool has) noexcept { noteIs(prunableNote, has); }

 private:
  // The bits are those of CommVectorAttrs.
  static constexpr U8 prunableNote = 2;
};

// The route targets of a list.  While one is interned, its table keeps a notifier
// for it, by which others follow its life.
class OV_EXPORT RtExtCommClassificationList final : public ExtCommClassificationList {
  KIV_OBJECT(RtExtCommClassificationList)

 public:
  explicit RtExtCommClassificationList(ExtCommClassification classification) noexcept;
  ~RtExtCommClassificationList() override;

  // The notifier, which holds a reference on this sub-list: each keeps the other
  // until the notifier is taken away by null.  Changed, and to be read, under the
  // notification lock of the table, as in an observer of it; or by the only thread.
  // The one who gives null must hold a reference of his own if he goes on.
  void lifeTimeNotifierIs(const Kiv::Ptr<RtExtCommListLifeTimeNotifier>& notifier);
  Kiv::Ptr<RtExtCommListLifeTimeNotifier> lifeTimeNotifier() const;
  Kiv::Ptr<RtExtCommListLifeTimeNotifier> getLifeTimeNotifier() const;

  void zeroReferencesIs() noexcept override;

 private:
  Kiv::Ptr<RtExtCommListLifeTimeNotifier> lifeTimeNotifier_;
};

// The link bandwidths of a list.  A route is advertised with one at most: the best
// of those that are valid.
class OV_EXPORT LinkBandwidthExtCommClassificationList final : public ExtCommClassificationList {
  KIV_OBJECT(LinkBandwidthExtCommClassificationList)

 public:
  LinkBandwidthExtCommClassificationList() noexcept;

  // The best valid one, the first of equals; null if none is valid.
  const ExtComm::PtrConst& linkBandwidth() const noexcept { return linkBandwidth_; }

  // A second member is one to prune, and so is an invalid one.  Requires of each
  // that is valid: that it can be compared with its like (ExtComm::isBetterThan).
  void checkPrunable(const ExtComm::PtrConst& comm) override;
  // linkBandwidth() alone, if there is one.
  std::vector<ExtComm::PtrConst> prune() const override;

  void zeroReferencesIs() noexcept override;

 private:
  ExtComm::PtrConst linkBandwidth_;
};

// New, empty, with notification switched on.  Throw std::bad_alloc.  Route targets
// are interned in sub-lists of the second kind only.
OV_EXPORT ExtCommClassificationList::Ptr extCommClassificationListFactory(
    ExtCommClassification classification);
OV_EXPORT RtExtCommClassificationList::Ptr rtExtCommClassificationListFactory(
    ExtCommClassification classification);
OV_EXPORT LinkBandwidthExtCommClassificationList::Ptr
linkBandwidthExtCommClassificationListFactory();

// The sub-list's text, whatever the stream's format; nothing for null.
OV_EXPORT std::ostream& operator<<(std::ostream& out, const ExtCommClassificationList* list);
OV_EXPORT std::ostream& operator<<(std::ostream& out, const ExtCommClassificationList& list);

}  // namespace Routing::Bgp

#endif
