// The common base of the sub-lists of both families of extended communities.
//
// A family (ExtCommFamily, ExtCommIp6Family) names the classes that belong together. The function
// bodies are instantiated once per family, in ExtCommClassificationListBase.cpp and, for dedup, in
// OvBgp/List/ExtCommClassificationListDedup.cpp.
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

// The key by which a table of lists or sub-lists is searched before such an object is built. It
// consists of the addresses of the members. The members must be interned and strictly ascending by
// content, as those of every interned list are; otherwise nothing is found.
template <class Value>
class ExtCommListContent : public Dorn::DedupContentHandle {
 public:
  // A key over `comms`, which is borrowed and must outlive the key.
  explicit ExtCommListContent(std::span<const Value* const> comms) noexcept : comms_(comms) {}
  // The members.
  std::span<const Value* const> comms() const noexcept { return comms_; }

 private:
  std::span<const Value* const> comms_;
};

// A sub-list has the members of a list that have the same classification. A sub-list is interned on
// its own, so routes that differ only in communities of other classifications share it.
//
// One thread builds a sub-list and interns it by dedup. From then on it is read-only, and any
// thread may share it. Hash and equality use the addresses of the members, not their contents;
// since the members are interned, equal addresses and equal contents mean the same.
template <class Family>
class OV_EXPORT ExtCommClassificationListBase : public Dorn::DedupHandle {
 public:
  // The class of the members.
  using Value = typename Family::Value;
  // The content of a member.
  using Content = typename Family::Content;
  // The counted pointer to a member.
  using ValuePtr = Kiv::Ptr<const Value>;
  // The class of sub-lists that derives from this base.
  using ClassificationList = typename Family::ClassificationList;
  // The tables in which sub-lists are interned.
  using ListTable = typename Family::ListTable;

  // The classification of all members.
  ExtCommClassification classification() const noexcept {
    return static_cast<ExtCommClassification>(ownOctet() & classificationMask);
  }
  // The members; in ascending order once the sub-list is sorted.
  const ExtCommVector<Value>& commVector() const noexcept { return commVector_; }
  // Whether there is no member.
  bool empty() const noexcept { return commVector_.empty(); }
  // Reserves room for `count` members in all. Throws std::bad_alloc.
  void expectedCommunityCountIs(U32 count) { commVector_.reserve(count); }

  // The text of writeText. Throws std::bad_alloc.
  Kiv::String toStrep() const;
  // Writes the classification's name, " : " and the members' diagnostic texts with one blank
  // between. The stream's format has no effect.
  void writeText(std::ostream& out) const;

  // The one-at-a-time hash of the members' addresses, four octets each; 0 without members. A
  // sub-list of communities of eight octets stops the process unless it is sorted. A sub-list of
  // IPv6 communities hashes its members in the order that they have.
  U32 hash() const override;
  // Whether `other`, a sub-list of this family, has the same members. Stops the process unless this
  // sub-list is sorted.
  bool compare(Dorn::DedupHandle::RawPtrConst other) const override;
  // Whether `key`, an ExtCommListContent, lists exactly these members.
  bool compareByContent(const Dorn::DedupContentHandle& key) const override;
  // The hash by which tables probe. It reads the addresses of the members as whole words, but no
  // member, and is about ten times as fast as hash().
  U32 probeHash() const override;

  // Sorts and interns this sub-list. Returns it, or the equal sub-list that `table` already has.
  // Requires: the caller holds a counted pointer to this sub-list. Throws std::bad_alloc.
  Kiv::Ptr<const ClassificationList> dedup(const ListTable* table);

 protected:
  // An empty sub-list.
  explicit ExtCommClassificationListBase(ExtCommClassification classification) noexcept
      : DedupHandle(classificationKept(classification)) {}
  // Releases the members.
  ~ExtCommClassificationListBase() override;

  // The bit of notes() that is set while the members are sorted and without duplicates.
  static constexpr U8 sortedNote = 1;
  // Two bits about the members: sortedNote and one that belongs to the subclass.
  U8 notes() const noexcept { return ownOctet() >> notesShift; }
  // Sets or clears one bit of notes().
  void noteIs(U8 note, bool on) noexcept {
    const int bits = note << notesShift;
    ownOctetIs(static_cast<U8>(on ? ownOctet() | bits : ownOctet() & ~bits));
  }

  // The member with this content, or null. Requires: sorted; that is not checked.
  ValuePtr lookupExtComm(const Content& content) const {
    return ExtCommVectorLookup(commVector_, content);
  }
  // Appends a member. Stops the process if `comm` is null or was never interned, or if this
  // sub-list is interned or was.
  void commAdd(const ValuePtr& comm) {
    ExtCommAssertGrowing(*this);
    ExtCommVectorAdd(comm, commVector_);
  }

 private:
  template <class>
  friend class ExtCommListBase;
  template <class Part, class... Args>
  friend Kiv::Ptr<Part> partWith(std::span<const typename Part::Value* const> comms, Args... args);

  ClassificationList& self() noexcept { return static_cast<ClassificationList&>(*this); }
  const ClassificationList& self() const noexcept {
    return static_cast<const ClassificationList&>(*this);
  }
  // Marks a sub-list of a list that will not be interned, so that it is never interned either.
  void neverInterned() noexcept { dedupStateIs(Dorn::DedupHandleState::rebuilt); }

  // The fields of ownOctet(): the classification in the lower six bits (classificationMask), and
  // the notes above it.
  static constexpr int notesShift = 6;
  ExtCommVector<Value> commVector_;
};

}  // namespace Routing::Bgp

#endif
