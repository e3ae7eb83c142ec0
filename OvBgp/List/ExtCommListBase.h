// The common base of the two kinds of extended community lists: of eight octets (RFC 4360)
// and of IPv6 addresses (RFC 5701). It does everything except flags, texts and attributes.
//
// A family (ExtCommFamily, ExtCommIp6Family) names the classes that belong together. The
// function bodies are instantiated once for each family, in ExtCommListBase.cpp.
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

// A list of extended communities. Its members are values, that is, communities that are
// interned one by one. The list holds them in ascending order and also groups them, by
// classification (route targets, colors ...), into sub-lists, which are interned as well.
//
// Sub-lists have two purposes. Routes that differ in one classification still share the sub-lists
// of the other classifications. And policies ask for members by classification; the sub-list is the
// answer, without a search or a copy.
//
// Life of a list: one thread builds it with commIs and its siblings, in any order, and may
// append a value twice. `dedup` sorts, groups and interns the list. From then on the list is
// read-only, and any number of threads may read it without a lock. Lists are equal if their
// sub-lists are the same objects. Two equal sub-lists are always one object, so comparing
// addresses is enough.
//
// A list that dedupComms made is one allocation with its two arrays. For a list of n members
// in k places for sub-lists, with offsets in octets on x86-64:
//
//      0   vtable, reference count, table number, state   (Dorn::DedupHandle)
//     16   n, address of the members    -------------+
//     32   k, address of the sub-lists  ---------+   |
//     48   number of transitive members, flags   |   |
//     56   n counted pointers to members  <------|---+    in ascending order
//   56+8n  k counted pointers to sub-lists  <----+        index: classification; may be null
//
// Sub-lists are laid out alike: object, then counted pointers to members. A list that was
// built with commIs has its two arrays in memory of their own instead; the array of sub-lists
// then has room for every classification. Neither kind of list keeps spare room for members
// (unless memory ran out when the spare room was to be returned).
template <class Family>
class OV_EXPORT ExtCommListBase : public Family::ListHandle {
 public:
  // The class of one interned community: ExtComm or ExtCommIp6.
  using Value = typename Family::Value;
  // The octets of a community, from which its value is looked up.
  using Content = typename Family::Content;
  // A counted pointer to a value; values are read-only.
  using ValuePtr = Kiv::Ptr<const Value>;
  // The table that interns the values.
  using ValueTable = typename Family::ValueTable;
  // The class of the whole list, for example ExtCommList.
  using List = typename Family::List;
  // A counted pointer to an interned list.
  using ListPtr = Kiv::Ptr<const List>;
  // The table that interns the lists and their sub-lists.
  using ListTable = typename Family::ListTable;
  // The class of a sub-list.
  using ClassificationList = typename Family::ClassificationList;
  // A counted pointer to a sub-list.
  using ClassificationListPtr = Kiv::Ptr<const ClassificationList>;
  // The sub-lists of a list; the index is the classification.
  using ClassificationListVector = KivStash::Vector<ClassificationListPtr>;

  // The most communities that fit in one path attribute, whose value is limited to 65,535
  // octets by its 16-bit length (RFC 4271, section 4.3).
  static constexpr U32 maxSerializableComms = 0xFFFF / Family::wireSize;

  // Appends the value `comm`, with a new reference; neither sorts nor looks for repeats.
  // Throws std::bad_alloc. Stops the process if `comm` is null or was never interned. This
  // function and the three that follow also stop the process if the list is interned or was.
  void commIs(const ValuePtr& comm) {
    ExtCommAssertGrowing(*this);
    ExtCommVectorAdd(comm, commVector_);
  }
  // Appends all members of `other`, which may be this list; nothing if it is null. Throws
  // std::bad_alloc, and may have appended some of them then.
  void append(const ListPtr& other);
  // Appends all members of the sub-list `other`; nothing if it is null. Throws as append.
  void appendClassificationList(const ClassificationListPtr& other);
  // Makes room for `count` members in all, so that appending them allocates once. Throws
  // std::bad_alloc.
  void expectedCommunityCountIs(U32 count) {
    ExtCommAssertGrowing(*this);
    commVector_.reserve(count);
  }
  // Sorts the members ascending by content and drops repeated ones. Changes nothing in a list
  // that is sorted, so also nothing in an interned list.
  void sortComms();
  // Sorts the members and groups them into sub-lists. With `dedupMode`, the list will be interned,
  // and everything that it records about its members is computed. Without it, the list is only for
  // reading, and its sub-lists are never interned. Call this once, because a second call appends
  // each member to its sub-list again. Throws std::bad_alloc. Requires: the list was never
  // interned.
  void createClassificationListVector(bool dedupMode);

  // Sorts, groups and interns this list. Returns this list, or the equal list that is already
  // in `table`. Throws std::bad_alloc, or what an observer of a table throws. The list keeps
  // its members then and can be given to `dedup` again, unless it was in the table already
  // and left it because an observer threw. Requires: never interned; the caller holds the
  // list by a counted pointer.
  ListPtr dedup(const ListTable* table);

  // Returns the interned list of these members, which must be interned, in any order, with
  // repeats or without. If the list exists, the cost is one hash and one probe for members in
  // ascending order, and two of each for others; no object is built, and nothing is allocated
  // up to 32 members. If it does not exist, each sub-list is looked up as well. Throws
  // std::bad_alloc, or what an observer of the table throws.
  static ListPtr dedupComms(const ListTable* table, std::span<const ValuePtr> comms);
  // Returns the interned list of a received attribute's value: `octets` hold communities in
  // wire format, in any order, with repeats or without. For an existing list of n members
  // the cost is n probes for the values, and one or two for the list as in dedupComms. Throws
  // Kiv::RangeException if the length is no multiple of a community's length, else as
  // dedupComms.
  static ListPtr dedupAttributeValue(const ListTable* table, const ValueTable* values,
                                     std::span<const U8> octets);
  // Returns the interned list with the same communities as `destashed`, which was rebuilt
  // from a store. Only the contents of its members are used. Each of them is interned by
  // Value::dedupContent, so that the rule tree chooses class and classification. Therefore
  // `destashed` need not be sorted, and its stored classifications may be wrong. It is not
  // changed. Throws as dedupComms.
  static ListPtr dedupDestashed(const ListTable* table, const ValueTable* values,
                                const List& destashed);

  // All members in list order.
  const ExtCommVector<Value>& commVector() const noexcept { return commVector_; }
  // Whether the list has no members.
  bool empty() const noexcept { return commVector_.empty(); }
  // The number of members. Requires: sorted.
  U32 totalCommunities() const;
  // The number of transitive members, that is, of those that may be sent to another
  // autonomous system (RFC 4360, section 2). Zero until the list is interned.
  U32 totalTransitiveCommunities() const noexcept { return totalTransitiveCommunities_; }

  // The sub-lists, indexed by classification; null where the list has no member of it. The
  // size is the highest classification present plus one. Empty until the list is grouped.
  const ClassificationListVector& classificationListVector() const noexcept {
    return classificationListVector_;
  }
  // The sub-list of the members with this classification, or null if there is none. Stops the
  // process unless the list is interned or was, hence also for a destashed list, whose sub-lists
  // classificationListVector() gives.
  ClassificationListPtr classificationList(ExtCommClassification classification) const;

  // The diagnostic text, for logs and dumps: "[ ", the members' diagnostic texts separated by
  // one blank, " ]".
  Kiv::String toStrep() const;
  // Writes the text of toStrep().
  void writeText(std::ostream& out) const;
  // Appends the members' policy texts (toStrepForPolicy) in list order, separated by one
  // blank. A member with an empty text still gets its separator. `format` selects the text
  // (StrepFormat of Value).
  void appendPolicyText(OvFmt::DynamicBufferInterface& to,
                        typename Value::StrepFormat format) const;

  // The one-at-a-time hash of the sub-lists' addresses, of which the lower four octets are
  // used. It differs from process to process.
  U32 hash() const override;
  // Whether `other`, a list of the same class, has the same sub-list objects.
  bool compare(Dorn::DedupHandle::RawPtrConst other) const override;
  // Whether the members are those of `key`, an ExtCommListContent. For interned lists this is
  // equivalent to compare(), because the members determine the sub-lists.
  bool compareByContent(const Dorn::DedupContentHandle& key) const override;
  // The hash that the table probes with. It is computed from the members' whole addresses, without
  // reading the members, and is keyed per process.
  U32 probeHash() const override;

  // Destroys the list and frees its memory; called when the last reference is dropped.
  void zeroReferencesIs() noexcept override;

 protected:
  // An empty list, not interned.
  ExtCommListBase() noexcept = default;
  // Drops the references to sub-lists and members.
  ~ExtCommListBase() override;

  // The member with this content, or null; a binary search. Requires: sorted.
  ValuePtr lookupExtComm(const Content& content) const {
    return ExtCommVectorLookup(commVector_, content);
  }

 private:
  List& self() noexcept { return static_cast<List&>(*this); }
  const List& self() const noexcept { return static_cast<const List&>(*this); }

  // The sub-list for the member at `position`; a new one if this list has none yet.
  ClassificationList& partFor(U32 position, bool dedupMode);
  // Adds a sub-list with room for all members of the classification.
  ClassificationList& newPartFor(U32 position, bool dedupMode);
  // Replaces each sub-list by the interned one.
  void partsDedup(const ListTable* table);

  using Miss = Dorn::DedupHashTable::Miss;

  // The interned list of exactly these members in this order, or null. If it is null, `miss`
  // remembers the lookup for a later insertion. `comms` may be unsorted; then no list
  // matches, because members are compared in order.
  static ListPtr lookup(const ListTable& table, std::span<const Value* const> comms, Miss& miss);
  // Builds and interns the list of `comms`, which ascend and have just been looked up in vain.
  static ListPtr dedupNew(const ListTable* table, std::span<const Value* const> comms,
                          const Miss& miss);
  // Does the same with commIs and dedup, for members whose classification has no name.
  static ListPtr dedupByHand(const ListTable* table, std::span<const Value* const> comms);
  // Initializes a new list with its members and sub-lists, in the memory behind it.
  void membersAre(std::span<const Value* const> comms, std::span<ClassificationListPtr> subLists);

  ExtCommVector<Value> commVector_;
  ClassificationListVector classificationListVector_;
  U32 totalTransitiveCommunities_ = 0;
};

}  // namespace Routing::Bgp

#endif
