// The counted pointer through which every object is shared.
#ifndef KIV_PTR_H
#define KIV_PTR_H

#include <cstddef>
#include <functional>
#include <type_traits>
#include <utility>

namespace Kiv {

// Tag type of the constructor of Ptr that takes over a reference instead of adding one.
struct Adopt {};
// The tag: Ptr(object, adopt) takes over a reference that the caller already counted.
inline constexpr Adopt adopt{};

// Whether U* converts to T* implicitly: U is T or derives from T, and const is not removed.
template <class U, class T>
concept PointsLike = std::is_convertible_v<U*, T*>;

// An intrusive counted pointer of one word. It is null or owns one reference of its object.
//
// The count is in the object (Kiv/PtrInterface.h), so a Ptr can be made of a raw pointer at any
// time, as long as the object is alive. This construction is explicit, because it adds a reference.
//
// Threads: one Ptr belongs to one thread at a time. Different Ptrs to one object may be used by
// different threads in thread-safe pointer mode (VFPtrInterface::threadSafePointers).
//
// No operation throws. Dereferencing a null Ptr is undefined; it is not checked.
template <class T>
class Ptr {
 public:
  // The type of the object, as std::pointer_traits expects it.
  using element_type = T;

  // A null pointer.
  constexpr Ptr() noexcept = default;
  // A null pointer. Implicit, so that nullptr can be passed, returned and assigned as a Ptr.
  constexpr Ptr(std::nullptr_t) noexcept {}  // NOLINT(google-explicit-constructor)
  // Adds a reference to `object`, which may be null.
  explicit Ptr(T* object) noexcept : object_(object) { add(); }
  // Takes over a reference to `object` that is already counted; see release().
  Ptr(T* object, Adopt) noexcept : object_(object) {}
  // Adds a reference to the object of `other`.
  Ptr(const Ptr& other) noexcept : object_(other.object_) { add(); }
  // Takes over the reference of `other`, which becomes null. The count does not change.
  Ptr(Ptr&& other) noexcept : object_(other.release()) {}
  // Converts to a pointer to a base class or to const, and adds a reference. Compiles only if both
  // classes count references by the same rules (PtrInterface::ReferenceRules).
  template <PointsLike<T> U>
  Ptr(const Ptr<U>& other) noexcept  // NOLINT(google-explicit-constructor)
      : object_(other.ptr()) {
    sameRulesAs<U>();
    add();
  }
  // As above, but takes over the reference of `other`, which becomes null.
  template <PointsLike<T> U>
  Ptr(Ptr<U>&& other) noexcept  // NOLINT(google-explicit-constructor)
      : object_(other.release()) {
    sameRulesAs<U>();
  }
  // Drops the reference, which may destroy the object.
  ~Ptr() { drop(); }

  // Adds a reference to the new object, then drops the reference to the old one. The new value is
  // in place before the old object can be destroyed, and self-assignment is safe.
  Ptr& operator=(const Ptr& other) noexcept {
    Ptr(other).swap(*this);
    return *this;
  }
  // Takes over the reference of `other`, then drops the reference to the old object.
  Ptr& operator=(Ptr&& other) noexcept {
    Ptr(std::move(other)).swap(*this);
    return *this;
  }

  // The object as a raw pointer, or null. No reference is added: the raw pointer is valid while
  // somebody owns one.
  T* ptr() const noexcept { return object_; }
  // Access to a member of the object. Constness of the Ptr does not extend to the object.
  T* operator->() const noexcept { return object_; }
  // The object.
  T& operator*() const noexcept { return *object_; }
  // Whether the pointer is not null.
  explicit operator bool() const noexcept { return object_ != nullptr; }

  // Makes this pointer null and returns its object with the reference still counted. The caller
  // must pass the object to a Ptr with `adopt`; otherwise the object is never destroyed.
  [[nodiscard]] T* release() noexcept { return std::exchange(object_, nullptr); }
  // Exchanges the objects. No count changes.
  void swap(Ptr& other) noexcept { std::swap(object_, other.object_); }

  // Whether both point to the same object, or both are null. The contents are not compared.
  template <class U>
  bool operator==(const Ptr<U>& other) const noexcept {
    return object_ == other.ptr();
  }
  // Whether this points to the object at `other`.
  bool operator==(const T* other) const noexcept { return object_ == other; }
  // Whether this is null.
  bool operator==(std::nullptr_t) const noexcept { return object_ == nullptr; }

 private:
  // Checks at compile time that T and U name the same class as ReferenceRules. The reference
  // operations are not virtual, so a conversion across rules would release a member of a table
  // without the table's protocol.
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

// Converts `from` to a pointer to the derived class `To`, keeping its reference. The object must be
// of class `To`; this is not checked.
template <class To, class From>
Ptr<To> staticPtrCast(Ptr<From> from) noexcept {
  return Ptr<To>(static_cast<To*>(from.release()), adopt);
}

}  // namespace Kiv

// The names of the pointers to `Class`, for the public part of the class body: counted (Ptr,
// PtrConst) and raw (RawPtr, RawPtrConst).
#define KIV_POINTERS(Class)                 \
  using Ptr = ::Kiv::Ptr<Class>;            \
  using PtrConst = ::Kiv::Ptr<const Class>; \
  using RawPtr = Class*;                    \
  using RawPtrConst = const Class*;

// Hashes the address of the object, consistently with Ptr's operator==. Not keyed.
template <class T>
struct std::hash<Kiv::Ptr<T>> {
  // The hash of the raw pointer; null has a hash, too.
  std::size_t operator()(const Kiv::Ptr<T>& pointer) const noexcept {
    return std::hash<T*>{}(pointer.ptr());
  }
};

#endif
