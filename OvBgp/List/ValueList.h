// What the lists of plain values have in common: standard communities (RFC 1997)
// and large ones (RFC 8092).  Users include OvBgp/List/CommList.h or
// OvBgp/List/LargeCommList.h.
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

// A list is built by one thread: commIs in any order, repeats allowed; then
// interned once by dedup; and from then on is sorted, unique, read-only and
// shared by any thread.  Routes that carry the same set share one list.  Texts
// and attribute may be asked for at any time and have the order of the list.
//
// Invariant once sorted: strictly ascending, and no spare storage (unless there
// was no memory to give it back).
//
// A Family is all that tells one such list from another:
//   List      the class that derives from this one; it adds appendText, textOf for
//             the same as a string, and flagsIs if it remembers anything of its members
//   Element   a community; in memory its words on the wire, in host byte order
//   Table     where the lists are interned
//   attrType, attributeName
//             the path attribute, and its name in messages
//   commIsFunction, commFunction, hashFunction, compareFunction
//             what a failed assertion calls the function that checked
// The bodies are in OvBgp/List/Private/ValueListImpl.h, which List's source instantiates.
template <class Family>
class OV_EXPORT ValueList : public Dorn::DedupHandle {
 public:
  using List = typename Family::List;
  using Element = typename Family::Element;
  using Table = typename Family::Table;
  // Passed as is convenient.
  using Value = std::conditional_t<sizeof(Element) <= sizeof(void*), Element, const Element&>;

  // A path attribute's value has at most 65,535 octets, so this many fit.
  static constexpr U32 maxSerializableComms = 0xFFFF / sizeof(Element);

  // Appends.  Requires: not interned, nor given to dedup, before.
  void commIs(Value community);
  // Whether the list has `community`; a binary search.  Requires: sorted.
  bool comm(Value community) const;
  U32 comms() const noexcept { return commVector_.size(); }
  bool empty() const noexcept { return commVector_.empty(); }

  const KivStash::Vector<Element>* commVectorRawPtr() const noexcept { return &commVector_; }
  KivStash::Vector<Element>* commVectorRawPtrNonConst() noexcept { return &commVector_; }
  bool commVectorSorted() const noexcept { return commVectorSorted_; }

  // The communities in list order, one blank between.
  Kiv::String toStrep() const { return List::textOf(members()); }

  // The path attribute, header included, communities in list order.
  // Requires: fitsAttribute(), which lists of wire origin fulfil by themselves.
  Kiv::String serialize() const;
  bool fitsAttribute() const noexcept { return comms() <= maxSerializableComms; }

  // The one-at-a-time hash of the communities' words (BgpCommon/BgpHashMixImpl.h).
  // hash and compare require: sorted.
  U32 hash() const override;
  bool compare(Dorn::DedupHandle::RawPtrConst other) const override;
  // `key` is a CommListContent.
  bool compareByContent(const Dorn::DedupContentHandle& key) const override;
  U32 probeHash() const override;

  // Sorts and interns this list: returns it, or the equal list that `table` has
  // already.  Requires: the caller holds the list by a counted pointer.
  Kiv::Ptr<const List> dedup(const Table* table);

  void zeroReferencesIs() noexcept override;

  // The interned list of the value octets of a received attribute, in any order,
  // repeats allowed.  One hash and one probe, and nothing is decoded or built, if
  // there is one and the octets ascend, as they do from most senders.
  // Throws Kiv::RangeException for a length that is no multiple of a community's.
  static Kiv::Ptr<const List> dedupAttributeValue(const Table* table, std::span<const U8> value);

  // Writes the list's text, whatever the stream's format; nothing for a null list.
  friend std::ostream& operator<<(std::ostream& out, const ValueList* list) {
    if (list) list->print(out);
    return out;
  }

 protected:
  ValueList() noexcept = default;

  std::span<const Element> members() const noexcept {
    return {commVector_.data(), commVector_.size()};
  }
  // Notes what List remembers of its members; called before a list is interned.
  void flagsIs() noexcept {}
  // Where it notes that: seven bits.
  U8 notes() const noexcept { return notes_; }
  void notesIs(U8 notes) noexcept { notes_ = notes & 0x7F; }

 private:
  template <class ListType, class ElementType>
  friend Kiv::Ptr<ListType> destashCommList(const void*, KivStash::StoreManager*);

  const List& self() const noexcept { return static_cast<const List&>(*this); }
  void print(std::ostream& out) const;
  void sort();

  using Miss = Dorn::DedupHashTable::Miss;

  // Whether these are the octets of the list's attribute.
  KIV_INLINE bool equalsWire(std::span<const U8> octets) const noexcept;

  // Parts of dedupAttributeValue: what is rarer than finding the list of these octets at
  // once; building the list of members that ascend; sorting what does not, and finding or
  // building its list.
  static Kiv::Ptr<const List> dedupOutOfLine(Dorn::DedupHashTable& table, std::span<const U8> value,
                                             U32 hash);
  static Kiv::Ptr<const List> dedupNew(Dorn::DedupHashTable& table,
                                       std::span<const Element> members, const Miss& miss);
  static Kiv::Ptr<const List> dedupUnordered(Dorn::DedupHashTable& table,
                                             std::span<Element> received);
  [[noreturn]] static void lengthRefuse(std::size_t octets);

  // One octet, which the handle has left over.
  bool commVectorSorted_ : 1 = false;
  U8 notes_ : 7 = 0;
  // Last, as the communities of received lists stand behind the object.
  KivStash::Vector<Element> commVector_;
};

}  // namespace Routing::Bgp

#endif
