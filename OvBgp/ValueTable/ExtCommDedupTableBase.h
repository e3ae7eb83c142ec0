// What the interning tables of extended communities have in common: each holds a
// Dorn::DedupHashTable and the rule tree that makes its members.
#ifndef OVBGP_VALUETABLE_EXTCOMMDEDUPTABLEBASE_H
#define OVBGP_VALUETABLE_EXTCOMMDEDUPTABLEBASE_H

#include <utility>

#include "Dorn/DedupHashTable.h"
#include "Dorn/DumpContext.h"
#include "Kiv/Export.h"
#include "Kiv/PtrInterface.h"

namespace Routing::Bgp {

class BgpParseExtendedCommunityRule;

// The table is locked exactly when OvBgpGlobals::multiThreaded() said so at
// construction; interning is then open to any thread. The rule tree is the one
// that the table was built with, for good.
class OV_EXPORT ExtCommDedupTableBase : public Kiv::PtrInterface {
 public:
  KIV_POINTERS(ExtCommDedupTableBase)

  Kiv::Ptr<const BgpParseExtendedCommunityRule> parseExtCommRule() const;
  const Kiv::Ptr<Dorn::DedupHashTable>& dedupTable() const noexcept { return dedupTable_; }
  // The table's own operations.
  Dorn::DedupHandle::Ptr lookupByContent(const Dorn::DedupContentHandle& key, U32 hash) const {
    return dedupTable_->lookupByContent(key, hash);
  }
  Dorn::DedupHandle::Ptr dedup(Dorn::DedupHandle::Ptr handle) const {
    return dedupTable_->dedup(std::move(handle));
  }
  // Values interned now.
  U32 size() const { return dedupTable_->size(); }

  // The dump of the Dorn::DedupHashTable, and nothing else.
  void dumpState(const Kiv::Ptr<const Dorn::DumpContext>& context, unsigned int indent) const;

 protected:
  // Null is no rule tree: such a table stops the process when it is to parse.
  explicit ExtCommDedupTableBase(const Kiv::Ptr<const BgpParseExtendedCommunityRule>& rule);
  ~ExtCommDedupTableBase() override;

  using Miss = Dorn::DedupHashTable::Miss;

  // Tells the member that `content` describes, which stays with the caller.
  template <class Value, class Content>
  static auto describedBy(const Content& content) {
    return [&content](const Value& member) { return member.Value::compareByContent(content); };
  }
  // What `parse(rule, content)` makes of content that was not found, or the equal one that
  // another thread was first with. Null if `parse` makes nothing.
  template <class Value, class Content, class Parse>
  Kiv::Ptr<const Value> dedupNew(const Content& content, const Miss& miss,
                                 const Parse& parse) const {
    Kiv::Ptr<Value> made = parse(rule(), content);
    if (!made) return nullptr;
    return Kiv::staticPtrCast<const Value>(dedupTable_->dedup(std::move(made), miss));
  }

 private:
  const BgpParseExtendedCommunityRule& rule() const;

  const Kiv::Ptr<Dorn::DedupHashTable> dedupTable_;
  const Kiv::Ptr<const BgpParseExtendedCommunityRule> parseExtCommRule_;
};

}  // namespace Routing::Bgp

#endif
