// The peer that a first version would use: a std::unordered_set of plain pointers to objects that
// std::shared_ptr owns. The deleter of the last pointer erases the object from the set. One
// thread only.
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
  // `self` lets a hit create a new std::shared_ptr from the plain pointer in the set.
  struct Entry {
    Content content;
    std::weak_ptr<Entry> self;
  };
  // Hashes and compares entries and bare contents, so a lookup creates no entry.
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
