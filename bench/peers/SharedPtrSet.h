// P4: an unordered set that owns nothing; the last std::shared_ptr takes its
// content out.  One thread.
#ifndef BENCH_PEERS_SHAREDPTRSET_H
#define BENCH_PEERS_SHAREDPTRSET_H

#include <memory>
#include <unordered_set>
#include <utility>

namespace Bench {

template <class Content, class Hash>
class SharedPtrSet {
 public:
  using Handle = std::shared_ptr<const Content>;

  Handle intern(Content content) {
    const auto found = entries_.find(content);
    if (found != entries_.end()) return {(*found)->self.lock(), &(*found)->content};
    const std::shared_ptr<Entry> entry(new Entry{std::move(content), {}},
                                       [this](Entry* gone) { leave(gone); });
    entry->self = entry;
    entries_.insert(entry.get());
    return {entry, &entry->content};
  }

 private:
  struct Entry {
    Content content;
    std::weak_ptr<Entry> self;
  };
  struct ByContent {
    using is_transparent = void;
    static const Content& of(const Entry* entry) { return entry->content; }
    static const Content& of(const Content& content) { return content; }
    std::size_t operator()(const auto& a) const { return Hash{}(of(a)); }
    bool operator()(const auto& a, const auto& b) const { return of(a) == of(b); }
  };

  void leave(Entry* gone) {
    entries_.erase(gone);
    delete gone;
  }

  std::unordered_set<Entry*, ByContent, ByContent> entries_;
};

}  // namespace Bench

#endif
