// The common base of the interning tables of extended communities. Each has a Dorn::DedupHashTable
// and the rule tree that makes its members.
#ifndef OVBGP_VALUETABLE_EXTCOMMDEDUPTABLEBASE_H
#define OVBGP_VALUETABLE_EXTCOMMDEDUPTABLEBASE_H

#include <utility>

#include "Dorn/DedupHashTable.h"
#include "Dorn/DumpContext.h"
#include "Kiv/Export.h"
#include "Kiv/PtrInterface.h"

namespace Routing::Bgp {

class BgpParseExtendedCommunityRule;

// A table of interned values and the rule tree that makes them. The rule tree is fixed for the life
// of the table.
//
// Threads: if OvBgpGlobals::multiThreaded() is true when the table is constructed, the table locks
// and any thread may intern. Otherwise the table takes no lock and is for one thread.
class OV_EXPORT ExtCommDedupTableBase : public Kiv::PtrInterface {
 public:
  KIV_POINTERS(ExtCommDedupTableBase)

  // The root of the rule tree; null if the table was made without one.
  Kiv::Ptr<const BgpParseExtendedCommunityRule> parseExtCommRule() const;
  // The table inside, for registering an observer.
  const Kiv::Ptr<Dorn::DedupHashTable>& dedupTable() const noexcept { return dedupTable_; }
  // The member that `key` describes, or null. `hash` is the hash by which members of this content
  // probe. Never makes an object. Any thread if the table is for several.
  Dorn::DedupHandle::Ptr lookupByContent(const Dorn::DedupContentHandle& key, U32 hash) const {
    return dedupTable_->lookupByContent(key, hash);
  }
  // Interns `handle`, an object of this table's type that was never interned. Returns it, or the
  // equal member that the table already has. Throws std::bad_alloc, and what an observer throws.
  Dorn::DedupHandle::Ptr dedup(Dorn::DedupHandle::Ptr handle) const {
    return dedupTable_->dedup(std::move(handle));
  }
  // The number of values interned now. No snapshot while other threads work.
  U32 size() const { return dedupTable_->size(); }

  // Prints the dump of the table inside.
  void dumpState(const Kiv::Ptr<const Dorn::DumpContext>& context, unsigned int indent) const;

 protected:
  // An empty table. A null `rule` is allowed; the process then stops when the table has to make a
  // value.
  explicit ExtCommDedupTableBase(const Kiv::Ptr<const BgpParseExtendedCommunityRule>& rule);
  // Destroys the table inside unless others hold it.
  ~ExtCommDedupTableBase() override;

  // The state of a failed lookup, which spares the insertion after it a second probe.
  using Miss = Dorn::DedupHashTable::Miss;

  // Returns the predicate that accepts the member with this content. `content` must outlive the
  // predicate. The comparison of class `Value` is named, so that the call is not virtual.
  template <class Value, class Content>
  static auto describedBy(const Content& content) {
    return [&content](const Value& member) { return member.Value::compareByContent(content); };
  }
  // Makes and interns a value after a lookup that set `miss`. `parse(rule, content)` makes the
  // object. Returns that object, the equal one that another thread interned meanwhile, or null if
  // `parse` returns null.
  template <class Value, class Content, class Parse>
  Kiv::Ptr<const Value> dedupNew(const Content& content, const Miss& miss,
                                 const Parse& parse) const {
    Kiv::Ptr<Value> made = parse(rule(), content);
    if (!made) return nullptr;
    return Kiv::staticPtrCast<const Value>(dedupTable_->dedup(std::move(made), miss));
  }

 private:
  // The rule tree, borrowed. Stops the process if there is none.
  const BgpParseExtendedCommunityRule& rule() const;

  const Kiv::Ptr<Dorn::DedupHashTable> dedupTable_;
  const Kiv::Ptr<const BgpParseExtendedCommunityRule> parseExtCommRule_;
};

}  // namespace Routing::Bgp

#endif
