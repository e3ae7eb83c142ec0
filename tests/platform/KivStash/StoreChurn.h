// A random sequence of changes to a store, for tests that read while the store is changing.
#ifndef TESTS_PLATFORM_KIVSTASH_STORECHURN_H
#define TESTS_PLATFORM_KIVSTASH_STORECHURN_H

#include <random>
#include <utility>
#include <vector>

#include "KivStash/StoreWriter.h"

namespace StoreTest {

// Keeps about a hundred images of four kinds in the store. Each step puts, replaces or removes one
// image; the sequence is the same in every run. `Derived` must have put(kind, old), which puts a
// new image of the kind, or replaces the image `*old` if `old` is not null, and returns the image's
// id.
template <class Derived>
class ChurnerBase {
 public:
  // The writer must exist as long as this object.
  explicit ChurnerBase(KivStash::StoreWriter& writer) : writer_(writer) {}

  // Makes one change; mostly a replacement, and a removal whenever there are too many images.
  void step() {
    const U32 choice = next() % 8;
    if (ids_.size() > 100 || (choice == 0 && !ids_.empty())) {
      const std::size_t index = next() % ids_.size();
      writer_.remove(ids_[index].first);
      ids_[index] = ids_.back();
      ids_.pop_back();
    } else if (choice < 3 || ids_.empty()) {
      const U32 kind = next() % 4;
      ids_.emplace_back(self().put(kind, nullptr), kind);
    } else {
      const auto& [id, kind] = ids_[next() % ids_.size()];
      self().put(kind, &id);
    }
  }

 protected:
  U32 next() { return static_cast<U32>(random_()); }

  KivStash::StoreWriter& writer_;

 private:
  Derived& self() { return static_cast<Derived&>(*this); }

  std::mt19937 random_{42};
  std::vector<std::pair<KivStash::ImageId, U32>> ids_;
};

}  // namespace StoreTest

#endif
