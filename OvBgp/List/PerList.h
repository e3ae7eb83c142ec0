// A cache of answers about interned lists.
//
// An interned list never changes, so the result of a match on it does not change either.
// A policy that runs the same match on many routes can compute the result once per list.
// The lists themselves cache nothing; each call of their operations computes its answer.
#ifndef OVBGP_LIST_PERLIST_H
#define OVBGP_LIST_PERLIST_H

#include <algorithm>
#include <cstddef>
#include <unordered_map>
#include <utility>

#include "Dorn/DedupHandle.h"
#include "Kiv/Ptr.h"

namespace Routing::Bgp {

// The cached answers to one question, for lists of any kinds. The key of an entry is the
// list's address, because equal lists are one object. Each entry holds a reference to its
// list, so that the address cannot be reused for another list.
//
// Memory is bounded in two ways. When the cache is full, it drops the entries of lists that
// only the cache and the list's table still hold; it then allows twice the number of
// remaining entries, at least limitMin. Answers of more than longText octets are computed
// each time, so that a sender of long lists cannot fill the memory.
//
// Threads: one at a time. Requires: the lists are interned.
template <class Answer>
class PerList {
 public:
  // The number of entries that is always allowed.
  static constexpr std::size_t limitMin = 2048;
  // The largest size() of an answer that is kept, if Answer has a size, for example the
  // length of a string.
  static constexpr std::size_t longText = 4096;

  // The answer for `list`. If it is not in the cache, `make(list)` computes it. The reference is
  // valid until the next call of a function that is not const. Throws the exceptions of `make`, and
  // std::bad_alloc; no answer is stored then.
  template <class List, class Make>
  const Answer& of(const List& list, const Make& make) {
    const auto found = entries_.find(&list);
    if (found != entries_.end()) return found->second.answer;
    Answer made = make(list);
    if (tooLongToKeep(made)) {
      unkept_ = std::move(made);
      return unkept_;
    }
    if (entries_.size() >= limit_) sweep();
    Entry entry{Kiv::Ptr<const Dorn::DedupHandle>(&list), std::move(made)};
    return entries_.try_emplace(&list, std::move(entry)).first->second.answer;
  }

  // Drops all answers and the references to their lists.
  void clear() { entries_.clear(); }
  // The number of answers that are kept.
  std::size_t size() const { return entries_.size(); }

 private:
  struct Entry {
    Kiv::Ptr<const Dorn::DedupHandle> list;
    Answer answer;
  };

  // The references to a list that nobody else uses. Its table owns one, the entry the other.
  static constexpr U32 idleReferences = 2;

  // Answers without a size, such as bool, are always kept.
  static bool tooLongToKeep(const Answer& answer) {
    if constexpr (requires { answer.size(); }) {
      return answer.size() > longText;
    } else {
      return false;
    }
  }

  // Drops the entries of lists that are in use nowhere else. Doubling the limit afterwards
  // keeps the cost of sweeping constant per insertion.
  void sweep() {
    std::erase_if(entries_, [](const auto& entry) {
      return entry.second.list->references() <= idleReferences;
    });
    limit_ = std::max(limitMin, 2 * entries_.size());
  }

  std::unordered_map<const Dorn::DedupHandle*, Entry> entries_;
  std::size_t limit_ = limitMin;
  Answer unkept_{};  // the last answer that was too long
};

}  // namespace Routing::Bgp

#endif
