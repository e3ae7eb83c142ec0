// What the extended community lists of eight octets and those of IPv6 have in
// common: all of it but their flags, texts and attributes.
//
// A family (ExtCommFamily, ExtCommIp6Family) names the classes that belong
// together.  The bodies are instantiated once a family, in ExtCommListImpl.cpp.
#ifndef OVBGP_LIST_EXTCOMMLISTBASE_H
#define OVBGP_LIST_EXTCOMMLISTBASE_H

#include <iosfwd>
#include <span>

#include "Dorn/DedupContentHandle.h"
#include "Dorn/DedupHandle.h"
#include "Dorn/DedupHashTable.h"
#include "Kiv/Export.h"
#include "Kiv/Ptr.h"
#include "Kiv/String.h"
#include "Kiv/Types.h"
#include "KivStash/Vector.h"
#include "OvBgp/SubList/ExtCommClassificationListBase.h"
#include "OvBgp/SubList/ExtCommVector.h"
#include "OvBgp/Value/PacketTypes.h"

namespace OvFmt {
class DynamicBufferInterface;
}

namespace Routing::Bgp {

// The extended communities of a path: all members, sorted, and the same grouped
// by classification into sub-lists.
//
// A list is built by one thread: members in any order, repeats allowed; then
// interned once by dedup; and from then on is read-only and shared by any thread.
// Lists are equal when their sub-lists are the same objects.
//
// Sub-lists and lists take exactly the storage that their members need (unless
// there was no memory to give the rest back).  Those that dedupComms makes stand in
// one piece of memory with their arrays; of others, the array of sub-lists has ten
// places.
template <class Family>
class OV_EXPORT ExtCommListBase : public Family::ListHandle {
 public:
  using Value = typename Family::Value;
  using Content = typename Family::Content;
  using ValuePtr = Kiv::Ptr<const Value>;
  using ValueTable = typename Family::ValueTable;
  using List = typename Family::List;
  using ListPtr = Kiv::Ptr<const List>;
  using ListTable = typename Family::ListTable;
  using ClassificationList = typename Family::ClassificationList;
  using ClassificationListPtr = Kiv::Ptr<const ClassificationList>;
  using ClassificationListVector = KivStash::Vector<ClassificationListPtr>;

  // A path attribute's value has at most 65,535 octets, so this many fit.
  static constexpr U32 maxSerializableComms = 0xFFFF / Family::wireSize;

  // Appends; neither sorts nor drops repeats.  Requires: interned, and never null;
  // and of this and what follows: the list itself was not interned before.
  void commIs(const ValuePtr& comm) { ExtCommVectorAdd(comm, commVector_); }
  // Append all members of another list, this one included, or of a sub-list;
  // nothing for null.
  void append(const ListPtr& other);
  void appendClassificationList(const ClassificationListPtr& other);
  // Room for that many members.
  void expectedCommunityCountIs(U32 count) { commVector_.reserve(count); }
  // Sorts and drops repeats.
  void sortComms();
  // Sorts and groups.  `dedupMode`: for a list that will be interned, with all that
  // it notes of its members.  Otherwise the sub-lists will never be interned, and
  // grouping twice gives each member twice.
  void createClassificationListVector(bool dedupMode);

  // Sorts, groups and interns this list: returns it, or the equal list that `table`
  // has already.  Requires: never interned; the caller holds the list by a counted
  // pointer.  Throws std::bad_alloc; the members are all there then.
  ListPtr dedup(const ListTable* table);

  // The interned list of interned members in any order, repeats allowed.  One hash
  // and one probe, and nothing is built or (up to 32 members) allocated, if there
  // is one.
  static ListPtr dedupComms(const ListTable* table, std::span<const ValuePtr> comms);
  // The interned list of the value octets of a received attribute: a probe a member
  // and then dedupComms.  Throws Kiv::RangeException for a length that is no
  // multiple of a community's.
  static ListPtr dedupAttributeValue(const ListTable* table, const ValueTable* values,
                                     std::span<const U8> octets);
  // The interned list of the values of a list that was rebuilt from a store: each
  // goes through Value::dedupContent, so the result has typed, interned members, is
  // classified by the rule tree, and owes nothing to the store.  `destashed` may be
  // wrong in any way that a store can be, and is left alone.
  static ListPtr dedupDestashed(const ListTable* table, const ValueTable* values,
                                const List& destashed);

  const ExtCommVector<Value>& commVector() const noexcept { return commVector_; }
  bool empty() const noexcept { return commVector_.empty(); }
  // Members, and those of them that may cross the border of an autonomous system,
  // which is known once the list is interned.  The former requires: sorted.
  U32 totalCommunities() const;
  U32 totalTransitiveCommunities() const noexcept { return totalTransitiveCommunities_; }

  // By classification; null where it is absent.  As long as the highest one needs.
  const ClassificationListVector& classificationListVector() const noexcept {
    return classificationListVector_;
  }
  // Null if there is none.  Requires: interned once.
  ClassificationListPtr classificationList(ExtCommClassification classification) const;

  // "[ ", the members' diagnostic texts with one blank between, " ]".
  Kiv::String toStrep() const;
  void writeText(std::ostream& out) const;
  // The members' policy texts with one blank between, those without text included.
  void appendPolicyText(OvFmt::DynamicBufferInterface& to,
                        typename Value::StrepFormat format) const;

  // The one-at-a-time hash of the sub-lists' addresses, four octets each.
  U32 hash() const override;
  bool compare(Dorn::DedupHandle::RawPtrConst other) const override;
  // The members say as much as the sub-lists that they determine.
  bool compareByContent(const Dorn::DedupContentHandle& key) const override;
  // By whole addresses of the members; reads none of them.
  U32 probeHash() const override;

  void zeroReferencesIs() noexcept override;

 protected:
  ExtCommListBase() noexcept = default;
  ~ExtCommListBase() override;

  ValuePtr lookupExtComm(const Content& content) const {
    return ExtCommVectorLookup(commVector_, content);
  }

 private:
  List& self() noexcept { return static_cast<List&>(*this); }
  const List& self() const noexcept { return static_cast<const List&>(*this); }

  // The sub-list for the member at `position`, which is made if there is none.
  ClassificationList& partFor(U32 position, bool dedupMode);
  ClassificationList& newPartFor(U32 position, bool dedupMode);
  void partsDedup(const ListTable* table);

  using Miss = Dorn::DedupHashTable::Miss;

  // The interned list of just these members, or null and what to make one with.
  static ListPtr lookup(const ListTable& table, std::span<const Value* const> comms, Miss& miss);
  // Makes the list of members that ascend and were not found.
  static ListPtr dedupNew(const ListTable* table, std::span<const Value* const> comms,
                          const Miss& miss);
  static ListPtr dedupByHand(const ListTable* table, std::span<const Value* const> comms);
  void membersAre(std::span<const Value* const> comms, std::span<ClassificationListPtr> parts);

  ExtCommVector<Value> commVector_;
  ClassificationListVector classificationListVector_;
  U32 totalTransitiveCommunities_ = 0;
};

}  // namespace Routing::Bgp

#endif
