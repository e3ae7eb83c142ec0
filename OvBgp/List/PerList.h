// Answers about interned lists, each worked out once.
//
// A list never changes, and neither does what an expression says of it: whoever puts
// a million routes through one policy can ask once a list.  The lists' own operations
// keep nothing, and answer afresh each time.
#ifndef OVBGP_LIST_PERLIST_H
#define OVBGP_LIST_PERLIST_H

#include <algorithm>
#include <cstddef>
#include <unordered_map>
#include <utility>

#include "Dorn/DedupHandle.h"
#include "Kiv/Ptr.h"

namespace Routing::Bgp {

// Answers by list: of one question, or one policy, whatever the kinds of the lists.
// Equal lists are one object, so its address is the key; and as an address may be used
// again, each entry holds a reference to its list.  Now and then the entries go whose
// list nobody else holds, so that there are at most twice as many as lists in use, or
// limitMin.  Long texts are not kept: whoever sends many such must not fill the memory.
//
// One thread at a time.  Requires: the lists are interned.
template <class Answer>
class PerList {
 public:
  static constexpr std::size_t limitMin = 2048;
  static constexpr std::size_t longText = 4096;

  // The answer for `list`, which lives until the next call; `make(list)` gives it the
  // first time.
  template <class List, class Make>
  const Answer& of(const List& list, const Make& make) {
    const auto found = entries_.find(&list);
    if (found != entries_.end()) return found->second.answer;
    Answer made = make(list);
    if (isLong(made)) {
      unkept_ = std::move(made);
      return unkept_;
    }
    if (entries_.size() >= limit_) sweep();
    Entry entry{Kiv::Ptr<const Dorn::DedupHandle>(&list), std::move(made)};
    return entries_.try_emplace(&list, std::move(entry)).first->second.answer;
  }

  void clear() { entries_.clear(); }
  std::size_t size() const { return entries_.size(); }

 private:
  struct Entry {
    Kiv::Ptr<const Dorn::DedupHandle> list;
    Answer answer;
  };

  // The table's and the entry's own.
  static constexpr U32 idleReferences = 2;

  static bool isLong(const Answer& answer) {
    if constexpr (requires { answer.size(); }) {
      return answer.size() > longText;
    } else {
      return false;
    }
  }

  void sweep() {
    std::erase_if(entries_, [](const auto& entry) {
      return entry.second.list->references() <= idleReferences;
    });
    limit_ = std::max(limitMin, 2 * entries_.size());
  }

  std::unordered_map<const Dorn::DedupHandle*, Entry> entries_;
  std::size_t limit_ = limitMin;
  Answer unkept_{};
};

}  // namespace Routing::Bgp

#endif
