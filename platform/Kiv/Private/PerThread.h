// What each thread has for itself, until it ends.  Private to the platform.
#ifndef KIV_PERTHREAD_H
#define KIV_PERTHREAD_H

#include <new>
#include <utility>

#include "Kiv/Types.h"

namespace Kiv {

// A thread's own T is made on first use and destroyed when the thread ends.  There is
// none after that, when other objects of the thread or of the process may still go, nor
// where there was no memory for it: users do without then.
//
// Finding it is one load: the pointer is in the static block of thread-local storage, of
// which it takes so little that the library can be loaded late, too.
template <class T>
class PerThread {
 public:
  static T* mine() noexcept { return own_ ? own_ : begin(); }
  // The same, but made by nobody yet maybe.
  static T* ifMade() noexcept { return own_; }

 private:
  enum class Stage : U8 { beginning, running, ending };

  struct End {
    ~End() {
      stage_ = Stage::ending;
      delete std::exchange(own_, nullptr);
    }
  };

  [[gnu::noinline]] static T* begin() noexcept {
    if (stage_ != Stage::beginning) return nullptr;
    static thread_local End end;
    stage_ = Stage::running;
    return own_ = new (std::nothrow) T;
  }

  [[gnu::tls_model("initial-exec")]] static inline constinit thread_local T* own_ = nullptr;
  static inline constinit thread_local Stage stage_ = Stage::beginning;
};

}  // namespace Kiv

#endif
