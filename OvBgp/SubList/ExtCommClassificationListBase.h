// What the sub-lists of extended communities of eight octets and those of IPv6 have in
// common.
//
// A family (ExtCommFamily, ExtCommIp6Family) names the classes that belong together.
// The bodies are instantiated once a family, in ExtCommClassificationListImpl.cpp.
#ifndef OVBGP_SUBLIST_EXTCOMMCLASSIFICATIONLISTBASE_H
#define OVBGP_SUBLIST_EXTCOMMCLASSIFICATIONLISTBASE_H

#include <iosfwd>
#include <span>

#include "Dorn/DedupContentHandle.h"
#include "Dorn/DedupHandle.h"
#include "Kiv/Export.h"
#include "Kiv/Ptr.h"
#include "Kiv/String.h"
#include "Kiv/Types.h"
#include "OvBgp/SubList/ExtCommVector.h"
#include "OvBgp/Value/PacketTypes.h"

namespace Routing::Bgp {

// The members of a list or sub-list, borrowed: what one can be looked up by before
// it is built.  Interned communities, strictly ascending by content; contents that
// do not ascend are those of no list.
template <class Value>
class ExtCommListContent : public Dorn::DedupContentHandle {
 public:
  explicit ExtCommListContent(std::span<const Value* const> comms) noexcept : comms_(comms) {}
  std::span<const Value* const> comms() const noexcept { return comms_; }

 private:
  std::span<const Value* const> comms_;
};

// The members of a list that have one classification.  Routes whose other
// communities differ share it, as it is interned on its own.
//
// Built by one thread, interned by dedup, then shared by any.  Hash and equality
// are those of the members' identities, which is sound as they are interned.
template <class Family>
class OV_EXPORT ExtCommClassificationListBase : public Dorn::DedupHandle {
 public:
  using Value = typename Family::Value;
  using Content = typename Family::Content;
  using ValuePtr = Kiv::Ptr<const Value>;
  using ClassificationList = typename Family::ClassificationList;
  using ListTable = typename Family::ListTable;

  ExtCommClassification classification() const noexcept {
    return static_cast<ExtCommClassification>(classification_);
  }
  const ExtCommVector<Value>& commVector() const noexcept { return commVector_; }
  bool empty() const noexcept { return commVector_.empty(); }
  // Room for that many members.
  void expectedCommunityCountIs(U32 count) { commVector_.reserve(count); }

  // The classification's name, " : " and the members' diagnostic texts.
  Kiv::String toStrep() const;
  void writeText(std::ostream& out) const;

  // The one-at-a-time hash of the members' addresses, four octets each.  hash and
  // compare require: sorted.
  U32 hash() const override;
  bool compare(Dorn::DedupHandle::RawPtrConst other) const override;
  bool compareByContent(const Dorn::DedupContentHandle& key) const override;
  // By whole addresses; reads no member.
  U32 probeHash() const override;

  // Sorts and interns this sub-list: returns it, or the equal one that `table` has
  // already.  Requires: the caller holds the sub-list by a counted pointer.
  Kiv::Ptr<const ClassificationList> dedup(const ListTable* table);

 protected:
  explicit ExtCommClassificationListBase(ExtCommClassification classification) noexcept
      : classification_(classificationKept(classification) & classificationMask) {}
  ~ExtCommClassificationListBase() override;

  // What a sub-list notes of its members: two bits, sorted the first of them.
  static constexpr U8 sortedNote = 1;
  U8 notes() const noexcept { return notes_; }
  void noteIs(U8 note, bool on) noexcept { notes_ = (on ? notes_ | note : notes_ & ~note) & 3; }

  ValuePtr lookupExtComm(const Content& content) const {
    return ExtCommVectorLookup(commVector_, content);
  }
  // Appends.  Requires: interned, and never null.
  void commAdd(const ValuePtr& comm) { ExtCommVectorAdd(comm, commVector_); }

 private:
  template <class>
  friend class ExtCommListBase;
  template <class Part, class... Args>
  friend Kiv::Ptr<Part> partWith(std::span<const typename Part::Value* const> comms, Args... args);

  ClassificationList& self() noexcept { return static_cast<ClassificationList&>(*this); }
  const ClassificationList& self() const noexcept {
    return static_cast<const ClassificationList&>(*this);
  }
  // For a part of a list that will not be interned: nor will this one ever be.
  void neverInterned() noexcept { dedupStateIs(Dorn::DedupHandleState::rebuilt); }

  // One octet, which the handle has left over.
  const U8 classification_ : 6;
  U8 notes_ : 2 = 0;
  ExtCommVector<Value> commVector_;
};

}  // namespace Routing::Bgp

#endif
