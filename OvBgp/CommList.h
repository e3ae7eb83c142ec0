// The list of standard communities that a path carries (RFC 1997).
#ifndef OVBGP_COMMLIST_H
#define OVBGP_COMMLIST_H

#include <iosfwd>
#include <span>
#include <string_view>

#include "Dorn/DedupContentHandle.h"
#include "Dorn/DedupHandle.h"
#include "Kiv/Export.h"
#include "Kiv/String.h"
#include "Kiv/Types.h"
#include "KivStash/Vector.h"
#include "OvBgp/CommListDedupTable.h"
#include "OvFmt/DynamicBuffer.h"

namespace Routing::RouteMap {
class PosixRegex;
}

namespace Routing::Bgp {

// The contents of a list as they stand in a path attribute, borrowed: big-endian
// communities, four octets each. With it a list can be looked up before there is
// one. Contents that do not ascend strictly are those of no list.
class OV_EXPORT CommListContent : public Dorn::DedupContentHandle {
 public:
  // Requires: a length that is a multiple of four.
  explicit CommListContent(std::span<const U8> octets) noexcept : octets_(octets) {}

  std::span<const U8> octets() const noexcept { return octets_; }
  U32 comms() const noexcept { return static_cast<U32>(octets_.size() / sizeof(U32)); }
  // What lists of this content probe their table with.
  U32 probeHash() const noexcept;

 private:
  std::span<const U8> octets_;
};

// A list is built by one thread: commIs in any order, repeats allowed; then
// interned once by dedup; and from then on is sorted, unique, read-only and
// shared by any thread.  Routes that carry the same set share one list.
//
// A community is 32 bits in host byte order: AS part above, local part below.
//
// Invariant once sorted: strictly ascending, and no spare storage (unless there
// was no memory to give it back).
class OV_EXPORT CommList final : public Dorn::DedupHandle {
  KIV_OBJECT(CommList)

 public:
  // A path attribute's value has at most 65,535 octets, so this many fit.
  static constexpr U32 maxSerializableComms = 0xFFFF / sizeof(U32);

  CommList() noexcept = default;

  // Appends.  Requires: not interned, nor given to dedup, before.
  void commIs(U32 community);
  // Whether the list has `community`; a binary search.  Requires: sorted.
  bool comm(U32 community) const;
  U32 comms() const noexcept { return commVector_.size(); }
  bool empty() const noexcept { return commVector_.empty(); }

  const KivStash::Vector<U32>* commVectorRawPtr() const noexcept { return &commVector_; }
  KivStash::Vector<U32>* commVectorRawPtrNonConst() noexcept { return &commVector_; }
  bool commVectorSorted() const noexcept { return commVectorSorted_; }

  // Whether the list has NO_EXPORT, NO_ADVERTISE, NO_EXPORT_SUBCONFED (RFC 1997);
  // noted when the list is interned.  Requires: interned once.
  bool noExport() const;
  bool noAdvertise() const;
  bool noExportSubconfed() const;

  // The name under which policies and show commands know `community`; empty if it
  // has none.  The long-lived graceful restart communities (RFC 9494) have names
  // unless the toggle OvBgpLlgr of "BgpCommon.json" is off, read on the first call.
  static Kiv::String wellKnownName(U32 community);
  // "AS:local", both in decimal.
  static Kiv::String getStringValue(U32 community);

  // The communities in list order, by name or as numbers, one blank between.
  Kiv::String toStrep() const;
  void appendText(OvFmt::DynamicBufferInterface& to) const;

  // The COMMUNITIES path attribute, header included, communities in list order.
  // Requires: fitsAttribute(), which lists of wire origin fulfil by themselves.
  Kiv::String serialize() const;
  bool fitsAttribute() const noexcept { return comms() <= maxSerializableComms; }

  // Whether `regex` matches the list's text, in numbers or else with names.  The
  // expression sees the whole list as one line.
  bool matchCommunitiesRegex(const RouteMap::PosixRegex* regex) const;

  // The one-at-a-time hash of the communities (BgpCommon/BgpHashMixImpl.h).
  // hash and compare require: sorted.
  U32 hash() const override;
  bool compare(Dorn::DedupHandle::RawPtrConst other) const override;
  bool compareByContent(const Dorn::DedupContentHandle& key) const override;
  U32 probeHash() const override;

  // Sorts and interns this list: returns it, or the equal list that `table` has
  // already.  Requires: the caller holds the list by a counted pointer.
  PtrConst dedup(CommListDedupTable::RawPtrConst table);

  // The interned list of the value octets of a received COMMUNITIES attribute, in
  // any order, repeats allowed. One hash and one probe, and nothing is decoded or
  // built, if there is one and the octets ascend, as they do from most senders.
  // Throws Kiv::RangeException for a length that is no multiple of four.
  static PtrConst dedupAttributeValue(CommListDedupTable::RawPtrConst table,
                                      std::span<const U8> value);

 private:
  static PtrConst lookup(CommListDedupTable::RawPtrConst table, const CommListContent& content);
  static PtrConst dedupDecoded(CommListDedupTable::RawPtrConst table, std::span<const U8> value);
  static PtrConst dedupAscending(CommListDedupTable::RawPtrConst table, std::span<const U32> comms);
  void sort();
  void flagsIs();

  KivStash::Vector<U32> commVector_;
  bool commVectorSorted_ = false;
  bool noExport_ = false;
  bool noAdvertise_ = false;
  bool noExportSubconfed_ = false;
};

// A new, empty list.  Throws std::bad_alloc.
OV_EXPORT CommList::Ptr commListFactory();

// Writes the list's text, whatever the stream's format; nothing for a null list.
OV_EXPORT std::ostream& operator<<(std::ostream& out, const CommList* list);

}  // namespace Routing::Bgp

#endif
