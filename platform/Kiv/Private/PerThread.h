// One object per thread, created on first use and destroyed when the thread ends.
#ifndef KIV_PRIVATE_PERTHREAD_H
#define KIV_PRIVATE_PERTHREAD_H

#include <new>
#include <utility>

#include "Kiv/Types.h"

namespace Kiv {

// Gives each thread a T of its own, for data that would otherwise need a lock.
//
// mine() and ifMade() return null if the allocation failed, and after the thread's T has been
// destroyed: destructors of other thread-local or static objects may still run then and may call
// them. Callers must handle null with a slower path that needs no T.
//
// Cost: one load of a thread-local pointer. A plain thread_local T would be slower, because access
// to it from a shared library calls a function and checks a guard. The pointer is in the static
// block of thread-local storage (model initial-exec). The loader reserves only little room there
// for libraries that are loaded late by dlopen(), and a single pointer fits.
template <class T>
class PerThread {
 public:
  // The calling thread's T, created by the first call; null as described above.
  static T* mine() noexcept { return own_ ? own_ : begin(); }
  // The calling thread's T, or null if there is none (yet). Never creates it.
  static T* ifMade() noexcept { return own_; }

 private:
  // The state of a thread with regard to its T. It only moves forward, so that a thread creates at
  // most one T, and none after the destruction.
  enum class Stage : U8 {
    beginning,  // mine() has not been called
    running,    // mine() has tried to create the T; own_ is null if memory was short
    ending,     // the thread's T is being destroyed or has been destroyed
  };

  // Its thread-local instance has the destructor that the thread runs when it ends.
  struct End {
    // The order matters, because the destructor of T may free memory or count objects and thereby
    // call mine(). The stage is set first, so that such a call does not create a new T, and own_ is
    // cleared before the deletion, so that it does not find the T that is being destroyed.
    ~End() {
      stage_ = Stage::ending;
      delete std::exchange(own_, nullptr);
    }
  };

  // The slow path of mine(). The stage changes before the allocation, so that a call from the
  // constructor of T returns null instead of recursing.
  [[gnu::noinline]] static T* begin() noexcept {
    if (stage_ != Stage::beginning) return nullptr;
    static thread_local End end;
    stage_ = Stage::running;
    return own_ = new (std::nothrow) T;
  }

  // Without constructor and destructor, so that it can be read at any time of the thread's life.
  [[gnu::tls_model("initial-exec")]] static inline constinit thread_local T* own_ = nullptr;
  static inline constinit thread_local Stage stage_ = Stage::beginning;
};

}  // namespace Kiv

#endif
