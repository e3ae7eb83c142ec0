// The counted pointer through which every object is shared.
#ifndef KIV_PTR_H
#define KIV_PTR_H

#include <cstddef>
#include <functional>
#include <type_traits>
#include <utility>

namespace Kiv {

// Says that the reference it is made with is already counted.
struct Adopt {};
inline constexpr Adopt adopt{};

// Whether a U* will do where a T* is wanted.
template <class U, class T>
concept PointsLike = std::is_convertible_v<U*, T*>;

// One word; owns one reference of the object it points to, or is null.  The
// object counts (Kiv/PtrInterface.h), so a Ptr can be made from a raw pointer at
// any time; that is explicit, as it takes a reference.  Each Ptr belongs to one
// thread at a time; in thread-safe pointer mode different Ptrs to one object may
// be used by different threads.
template <class T>
class Ptr {
 public:
  using element_type = T;

  constexpr Ptr() noexcept = default;
  // NOLINTNEXTLINE(google-explicit-constructor): null is as good as a Ptr
  constexpr Ptr(std::nullptr_t) noexcept {}
  explicit Ptr(T* object) noexcept : object_(object) { add(); }
  Ptr(T* object, Adopt) noexcept : object_(object) {}
  Ptr(const Ptr& other) noexcept : object_(other.object_) { add(); }
  Ptr(Ptr&& other) noexcept : object_(other.release()) {}
  // To a base, or to const, as raw pointers convert.
  template <PointsLike<T> U>
  Ptr(const Ptr<U>& other) noexcept  // NOLINT(google-explicit-constructor)
      : object_(other.ptr()) {
    sameRulesAs<U>();
    add();
  }
  template <PointsLike<T> U>
  Ptr(Ptr<U>&& other) noexcept  // NOLINT(google-explicit-constructor)
      : object_(other.release()) {
    sameRulesAs<U>();
  }
  ~Ptr() { drop(); }

  Ptr& operator=(const Ptr& other) noexcept {
    Ptr(other).swap(*this);
    return *this;
  }
  Ptr& operator=(Ptr&& other) noexcept {
    Ptr(std::move(other)).swap(*this);
    return *this;
  }

  T* ptr() const noexcept { return object_; }
  T* operator->() const noexcept { return object_; }
  T& operator*() const noexcept { return *object_; }
  explicit operator bool() const noexcept { return object_ != nullptr; }

  // Hands the reference to the caller, who must adopt it.
  [[nodiscard]] T* release() noexcept { return std::exchange(object_, nullptr); }
  void swap(Ptr& other) noexcept { std::swap(object_, other.object_); }

  template <class U>
  bool operator==(const Ptr<U>& other) const noexcept {
    return object_ == other.ptr();
  }
  bool operator==(const T* other) const noexcept { return object_ == other; }
  bool operator==(std::nullptr_t) const noexcept { return object_ == nullptr; }

 private:
  template <class U>
  static constexpr void sameRulesAs() noexcept {
    static_assert(std::is_same_v<typename T::ReferenceRules, typename U::ReferenceRules>,
                  "this conversion would count references by other rules than the object's");
  }
  void add() const noexcept {
    if (object_) object_->referencesIncReturnRef();
  }
  void drop() const noexcept {
    if (object_) object_->referencesDec();
  }

  T* object_ = nullptr;
};

// The same reference under a derived class, which the caller knows it to be.
template <class To, class From>
Ptr<To> staticPtrCast(Ptr<From> from) noexcept {
  return Ptr<To>(static_cast<To*>(from.release()), adopt);
}

}  // namespace Kiv

// In the public part of a shared class's body: the names of its pointers.
#define KIV_POINTERS(Class)                 \
  using Ptr = ::Kiv::Ptr<Class>;            \
  using PtrConst = ::Kiv::Ptr<const Class>; \
  using RawPtr = Class*;                    \
  using RawPtrConst = const Class*;

template <class T>
struct std::hash<Kiv::Ptr<T>> {
  std::size_t operator()(const Kiv::Ptr<T>& pointer) const noexcept {
    return std::hash<T*>{}(pointer.ptr());
  }
};

#endif
