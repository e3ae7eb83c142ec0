// An ordered map whose changes observers hear of: one collection attribute of an
// object, entry by entry.
//
// What a map is of is said by a class such as
//
//   struct OV_EXPORT PortNames {
//     using Key = U16;
//     using Value = Kiv::String;
//     static constexpr char memberName[] = "Host::KivPortName";  // the type record's
//   };
//
// with keys that compare by < and values that compare by ==.
#ifndef KIV_NOTIFYINGMAP_H
#define KIV_NOTIFYINGMAP_H

#include <cstddef>
#include <iterator>
#include <set>
#include <utility>

#include "Kiv/Export.h"
#include "Kiv/NotifieeList.h"
#include "Kiv/PtrInterface.h"
#include "Kiv/Type.h"
#include "Kiv/Types.h"

namespace Kiv {

template <class Traits>
class NotifyingMap;

// One entry. Whoever keeps it past its deletion has what it said last; while it is
// in its map, its value may be replaced.
template <class Traits>
class OV_EXPORT NotifyingMapMember final : public PtrInterface {
 public:
  KIV_POINTERS(NotifyingMapMember)
  using Key = typename Traits::Key;
  using Value = typename Traits::Value;

  NotifyingMapMember(Key key, Value value) : key_(std::move(key)), value_(std::move(value)) {}

  const Key& key() const noexcept { return key_; }
  const Value& value() const noexcept { return value_; }

  static Type& kivType() noexcept {
    static constinit Type record{Traits::memberName};
    return record;
  }
  const Type& fwkType() const noexcept override { return kivType(); }
  static void* operator new(std::size_t size) { return kivMemAlloc(size, kivType()); }
  static void operator delete(void* memory, std::size_t size) noexcept {
    kivMemDealloc(memory, size, kivType());
  }

 private:
  friend class NotifyingMap<Traits>;

  const Key key_;
  Value value_;
};

// Tells the observers of `owner`, the object that it is an attribute of, while the
// owner's notification is on: under the attribute's number, of each key that comes,
// goes or gets another value, after the change, so that they see the map as it is
// now. What an observer throws reaches whoever made the change, which stands.
// Threads: as the owner's NotifieeList.
template <class Traits>
class OV_EXPORT NotifyingMap {
 public:
  using Member = NotifyingMapMember<Traits>;
  using Key = typename Member::Key;
  using Value = typename Member::Value;

  // Walks in ascending order of keys. It keeps its entry and finds its way on from
  // the key, in logarithmic time: any change of the map leaves it valid. The map
  // must outlive it.
  class Iterator {
   public:
    using iterator_category = std::forward_iterator_tag;
    using value_type = const Member;
    using difference_type = std::ptrdiff_t;
    using pointer = const Member*;
    using reference = const Member&;

    Iterator() noexcept = default;

    reference operator*() const noexcept { return *member_; }
    pointer operator->() const noexcept { return member_.ptr(); }
    Iterator& operator++() {
      member_ = map_->at(map_->members_.upper_bound(member_->key()));
      return *this;
    }
    Iterator operator++(int) {
      Iterator before(*this);
      ++*this;
      return before;
    }
    bool operator==(const Iterator& other) const noexcept { return member_ == other.member_; }

   private:
    friend class NotifyingMap;

    Iterator(const NotifyingMap& map, typename Member::Ptr member)
        : map_(&map), member_(std::move(member)) {}

    const NotifyingMap* map_ = nullptr;
    typename Member::Ptr member_;  // null: at the end
  };

  NotifyingMap(const PtrInterface& owner, U32 attribute) : owner_(owner), attribute_(attribute) {}
  NotifyingMap(const NotifyingMap&) = delete;
  NotifyingMap& operator=(const NotifyingMap&) = delete;

  // The three that follow return whether anything changed; only then are observers
  // told. The map may be gone when they return, if an observer destroyed the object.
  //
  // A key that is there keeps its entry, which gets the value.
  bool set(const Key& key, Value value) {
    typename Member::Ptr member = at(members_.find(key));
    if (!member) {
      member = typename Member::Ptr(new Member(key, std::move(value)));
      members_.insert(member);
    } else if (member->value_ == value) {
      return false;
    } else {
      // The former value goes last: its end may have effects of its own.
      std::swap(member->value_, value);
    }
    notify(member->key());
    return true;
  }
  bool del(const Key& key) { return erase(members_.find(key)); }
  // Deletes that very entry, if it is there still: not another one of its key.
  bool del(const Iterator& position) { return erase(find(position.member_)); }
  // Deletes those that are there when it begins, one notice a key. The caller holds
  // the owner, which observers may let go.
  void delAll() {
    for (const typename Member::Ptr& member : Members(members_)) erase(find(member));
  }

  bool has(const Key& key) const { return members_.contains(key); }
  // The entry of `key`, or end().
  Iterator find(const Key& key) const { return Iterator(*this, at(members_.find(key))); }
  Iterator begin() const { return Iterator(*this, at(members_.begin())); }
  Iterator end() const noexcept { return Iterator(*this, nullptr); }

  U32 size() const noexcept { return static_cast<U32>(members_.size()); }
  bool empty() const noexcept { return members_.empty(); }
  const PtrInterface& owner() const noexcept { return owner_; }

 private:
  struct ByKey {
    using is_transparent = void;
    static const Key& keyOf(const typename Member::Ptr& member) { return member->key(); }
    static const Key& keyOf(const Key& key) { return key; }
    template <class Left, class Right>
    bool operator()(const Left& left, const Right& right) const {
      return keyOf(left) < keyOf(right);
    }
  };
  using Members = std::set<typename Member::Ptr, ByKey>;

  typename Members::const_iterator find(const typename Member::Ptr& member) const {
    const auto found = members_.find(member);
    return found != members_.end() && *found == member ? found : members_.end();
  }
  typename Member::Ptr at(typename Members::const_iterator position) const {
    return position == members_.end() ? nullptr : *position;
  }
  // The entry, and with it its key and value, outlives the notice.
  bool erase(typename Members::const_iterator position) {
    if (position == members_.end()) return false;
    // NOLINTNEXTLINE(performance-unnecessary-copy-initialization): keeps the entry
    const typename Member::Ptr member = *position;
    members_.erase(position);
    notify(member->key());
    return true;
  }
  void notify(const Key& key) const {
    if (owner_.hasNotificationActive()) owner_.notifieeList()->notify(Change(attribute_, key));
  }

  const PtrInterface& owner_;
  const U32 attribute_;
  Members members_;
};

}  // namespace Kiv

#endif
