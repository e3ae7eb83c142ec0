// The common base of the plain lists: standard communities (RFC 1997) and large
// communities (RFC 8092). Users include OvBgp/List/CommList.h or
// OvBgp/List/LargeCommList.h.
//
// The interface gives three operations names that are shorter than their meaning. `commIs(x)`
// appends x, `comm(x)` says whether x is a member, and `comms()` is the number of members.
#ifndef OVBGP_LIST_VALUELIST_H
#define OVBGP_LIST_VALUELIST_H

#include <ostream>
#include <span>
#include <type_traits>

#include "Dorn/DedupHandle.h"
#include "Dorn/DedupHashTable.h"
#include "Kiv/Export.h"
#include "Kiv/Inline.h"
#include "Kiv/String.h"
#include "Kiv/Types.h"
#include "KivStash/Vector.h"
#include "OvBgp/List/CommListContent.h"

namespace KivStash {
class StoreManager;
}

namespace Routing::Bgp {

// A list of plain communities. Routes that carry the same set of communities share one
// list object.
//
// Life of a list: one thread builds it with commIs, in any order, and may append a
// community twice. `dedup` sorts the list, drops repeated members and interns it. From
// then on the list is read-only, and any number of threads may read it without a lock.
// A received list is usually made by dedupAttributeValue in one step. Text and attribute
// can be produced before and after `dedup`; they follow the order of the list.
//
// Invariant of a sorted list: the members ascend strictly, and the list holds no spare
// storage (unless memory ran out when the spare storage was to be returned).
//
// A list that dedupAttributeValue made is one allocation. The members begin right
// behind their count, and continue behind the object. Offsets in octets, x86-64:
//
//   0        8            12       14      15             16      20                   32
//   +--------+------------+--------+-------+--------------+-------+--------------------+-----
//   | vtable | reference  | table  | state | sorted flag, | count | members, in host   | more
//   |        | count      | number |       | notes        |       | byte order ...     | ...
//   +--------+------------+--------+-------+--------------+-------+--------------------+-----
//   | Dorn::DedupHandle                    | ValueList                                 |
//
// A list that was built with commIs has, from offset 20, the capacity of its array and
// the array's address instead (KivStash/Vector.h).
//
// `Family` has everything in which one kind of plain list differs from another:
//   List      the class that derives from this template. It adds appendText, and textOf,
//             which returns the same text as a string. It adds flagsIs if it keeps notes
//             about its members.
//   Element   one community. Its memory consists of the 32-bit words of the wire format,
//             each in host byte order.
//   Table     the class of the table that interns the lists
//   attrType, attributeName
//             the path attribute, and its name in messages
//   commIsFunction, commFunction, hashFunction, compareFunction
//             the function names that failed assertions print
// The function bodies are in OvBgp/List/Private/ValueListImpl.h; the source of each List
// instantiates them.
template <class Family>
class OV_EXPORT ValueList : public Dorn::DedupHandle {
 public:
  // The class of the whole list, for example CommList.
  using List = typename Family::List;
  // One community, in host byte order.
  using Element = typename Family::Element;
  // The table in which these lists are interned.
  using Table = typename Family::Table;
  // The parameter type for one community: by value if it fits a register, else by reference.
  using Value = std::conditional_t<sizeof(Element) <= sizeof(void*), Element, const Element&>;

  // The most communities that fit in one path attribute, whose value is limited to 65,535
  // octets by its 16-bit length (RFC 4271, section 4.3).
  static constexpr U32 maxSerializableComms = 0xFFFF / sizeof(Element);

  // Appends `community`; neither sorts nor looks for repeats. Amortized constant cost.
  // Throws std::bad_alloc. Requires: the list is not sorted, that is, `dedup` was never
  // called; otherwise the process stops by an assertion.
  void commIs(Value community);
  // Whether `community` is a member; a binary search. Requires: sorted.
  bool comm(Value community) const;
  // The number of members; before the list is sorted, repeated members count each time.
  U32 comms() const noexcept { return commVector_.size(); }
  // Whether the list has no members.
  bool empty() const noexcept { return commVector_.empty(); }

  // The members in list order. The list owns the array, and the pointer is never null.
  const KivStash::Vector<Element>* commVectorRawPtr() const noexcept { return &commVector_; }
  // The members, for writing. Only the thread that builds the list may call this, and only before
  // `dedup`, because an interned list is shared, and its table has hashed the members.
  KivStash::Vector<Element>* commVectorRawPtrNonConst() noexcept { return &commVector_; }
  // Whether the members ascend strictly. `dedup` sets this flag; `destash` takes it from
  // the image without checking it (OvBgp/Store/Destash.h).
  bool commVectorSorted() const noexcept { return (ownOctet() & sortedBit) != 0; }

  // The text of the list: the members in list order, separated by one blank.
  Kiv::String toStrep() const { return List::textOf(members()); }

  // The whole path attribute in wire format: flags, type, length (RFC 4271, section 4.3),
  // then the members in list order, big-endian. Requires: fitsAttribute(). A list that was
  // made of a received attribute always fits.
  Kiv::String serialize() const;
  // Whether all members fit in one path attribute.
  bool fitsAttribute() const noexcept { return comms() <= maxSerializableComms; }

  // The one-at-a-time hash of the members' words (BgpCommon/BgpHashMixImpl.h). It is the
  // same in every process. Requires: sorted.
  U32 hash() const override;
  // Whether `other`, a list of the same class, has the same members. Requires: sorted.
  bool compare(Dorn::DedupHandle::RawPtrConst other) const override;
  // Whether the members are those of `key`, which must be a CommListContent.
  bool compareByContent(const Dorn::DedupContentHandle& key) const override;
  // The hash that the table probes with. It is keyed per process, and computed from the wire
  // format, so that a received attribute need not be decoded for a lookup.
  U32 probeHash() const override;

  // Sorts the list, drops repeated members and interns it. Returns this list, or the equal
  // list that is already in `table`. A list that was interned before is not written again.
  // Throws std::bad_alloc; then the list can be given to `dedup` once more. Requires: the
  // caller holds the list by a counted pointer.
  Kiv::Ptr<const List> dedup(const Table* table);

  // Destroys the list and frees its memory; called when the last reference is dropped.
  void zeroReferencesIs() noexcept override;

  // Returns the interned list of a received attribute's value: `value` is big-endian, in any
  // order, and may repeat communities. If the list exists and the octets ascend, as they do
  // from most senders, the cost is one hash and one probe, and nothing is decoded, built or
  // allocated. Octets that do not ascend are decoded, sorted and looked up again.
  // Throws Kiv::RangeException if the length is no multiple of a community's length, and
  // std::bad_alloc.
  static Kiv::Ptr<const List> dedupAttributeValue(const Table* table, std::span<const U8> value);

  // Writes the text of `list` unformatted: width, fill and base of the stream are ignored.
  // Writes nothing for a null pointer.
  friend std::ostream& operator<<(std::ostream& out, const ValueList* list) {
    if (list) list->print(out);
    return out;
  }

 protected:
  // An empty list, not interned.
  ValueList() noexcept = default;

  // The members in list order; valid until the list changes.
  std::span<const Element> members() const noexcept {
    return {commVector_.data(), commVector_.size()};
  }
  // A hook, which List may hide with its own. It computes the notes from the sorted members. It is
  // called before the list enters a table, because nothing may be written afterwards.
  void flagsIs() noexcept {}
  // Seven bits that List uses as it likes, see flagsIs; zero if it never writes them.
  U8 notes() const noexcept { return ownOctet() >> 1; }
  // Replaces the notes; the top bit of `notes` is dropped.
  void notesIs(U8 notes) noexcept {
    ownOctetIs(static_cast<U8>(notes << 1 | (ownOctet() & sortedBit)));
  }

 private:
  template <class ListType, class ElementType>
  friend Kiv::Ptr<ListType> destashCommList(const void*, KivStash::StoreManager*);

  void commVectorSortedIs(bool sorted) noexcept {
    ownOctetIs(static_cast<U8>(sorted ? ownOctet() | sortedBit : ownOctet() & ~sortedBit));
  }
  const List& self() const noexcept { return static_cast<const List&>(*this); }
  void print(std::ostream& out) const;
  void sort();

  using Miss = Dorn::DedupHashTable::Miss;

  // Whether `octets` are the list's members in wire format.
  KIV_INLINE bool equalsWire(std::span<const U8> octets) const noexcept;

  // Slow path of dedupAttributeValue: everything after a miss in the home bucket.
  static Kiv::Ptr<const List> dedupOutOfLine(Dorn::DedupHashTable& table, std::span<const U8> value,
                                             U32 hash);
  // Builds and interns the list of `members`, which ascend strictly and have just been looked
  // up in vain.
  static Kiv::Ptr<const List> dedupNew(Dorn::DedupHashTable& table,
                                       std::span<const Element> members, const Miss& miss);
  // Sorts `received` in place; finds or builds the list of these members.
  static Kiv::Ptr<const List> dedupUnordered(Dorn::DedupHashTable& table,
                                             std::span<Element> received);
  // Throws the Kiv::RangeException of an attribute value of `octets` octets.
  [[noreturn]] static void lengthRefuse(std::size_t octets);

  // The fields of ownOctet(): this bit, and the notes above it.
  static constexpr U8 sortedBit = 1;
  // Must be the last data member, because in-place members continue behind the object.
  KivStash::Vector<Element> commVector_;
};

}  // namespace Routing::Bgp

#endif
