#include "Stash/Mapping.h"

#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdint>
#include <mutex>
#include <system_error>

#include "Kiv/Types.h"
#include "Stash/StoreException.h"

namespace Stash {
namespace {

[[noreturn]] void failed(const char* what) {
  throw StoreAccessException(Kiv::String("cannot ") + what +
                             " a store: " + std::generic_category().message(errno));
}

}  // namespace

// The mappings there are, and the handler that mends them.
//
// The handler takes the list's lock.  It may: only a fault that the thread itself
// has just made gets that far, and no thread touches mapped memory while it has
// the lock.
class MappingGuard {
 public:
  static void install() {
    static std::once_flag installed;
    std::call_once(installed, installHandler);
  }

  static void add(Mapping& mapping) noexcept {
    const Lock lock;
    mapping.next_ = first_;
    mapping.link_ = &first_;
    if (first_) first_->link_ = &mapping.next_;
    first_ = &mapping;
  }

  static void remove(const Mapping& mapping) noexcept {
    const Lock lock;
    *mapping.link_ = mapping.next_;
    if (mapping.next_) mapping.next_->link_ = mapping.link_;
  }

 private:
  struct Lock {
    Lock() noexcept {
      while (busy_.test_and_set(std::memory_order_acquire)) {
      }
    }
    ~Lock() { busy_.clear(std::memory_order_release); }
  };

  static void installHandler() {
    pageSize_ = static_cast<std::uintptr_t>(::sysconf(_SC_PAGESIZE));
    struct sigaction action = {};
    action.sa_sigaction = handle;
    action.sa_flags = SA_SIGINFO | SA_ONSTACK;
    ::sigemptyset(&action.sa_mask);
    if (::sigaction(SIGBUS, &action, &previous_) != 0) failed("guard");
  }

  static void handle(int signal, siginfo_t* info, void* context) {
    const int error = errno;
    // Codes above zero are faults; others are signals that a process sent.
    const bool mended = info->si_code > 0 && mend(reinterpret_cast<std::uintptr_t>(info->si_addr));
    if (!mended) passOn(signal, info, context);
    errno = error;
  }

  // Marks first, so that who reads the new zeros also finds the mark.
  static bool mend(std::uintptr_t address) noexcept {
    const Lock lock;
    for (Mapping* mapping = first_; mapping; mapping = mapping->next_) {
      const auto begin = reinterpret_cast<std::uintptr_t>(mapping->data_);
      if (address - begin >= mapping->length_) continue;
      mapping->lost_.store(true, std::memory_order_release);
      const std::uintptr_t page = address & ~(pageSize_ - 1);
      void* const from = mapping->data_ + (page - begin);
      return ::mmap(from, begin + mapping->length_ - page, PROT_READ | PROT_WRITE,
                    MAP_PRIVATE | MAP_ANONYMOUS | MAP_FIXED | MAP_NORESERVE, -1, 0) == from;
    }
    return false;
  }

  static void passOn(int signal, siginfo_t* info, void* context) {
    if ((previous_.sa_flags & SA_SIGINFO) != 0) {
      return previous_.sa_sigaction(signal, info, context);
    }
    if (previous_.sa_handler == SIG_IGN && info->si_code <= 0) return;
    if (previous_.sa_handler != SIG_DFL && previous_.sa_handler != SIG_IGN) {
      return previous_.sa_handler(signal);
    }
    ::signal(signal, SIG_DFL);
    ::raise(signal);  // comes when the handler has returned
  }

  static inline std::atomic_flag busy_;
  static inline Mapping* first_ = nullptr;
  static inline std::uintptr_t pageSize_ = 0;
  static inline struct sigaction previous_ = {};
};

Mapping::Mapping(Descriptor file, std::size_t length, Access access)
    : file_(std::move(file)), length_(length) {
  MappingGuard::install();
  const int protection = access == Access::read ? PROT_READ : PROT_READ | PROT_WRITE;
  void* const data = ::mmap(nullptr, length, protection, MAP_SHARED, file_.fd(), 0);
  if (data == MAP_FAILED) failed("map");
  data_ = static_cast<std::byte*>(data);
  MappingGuard::add(*this);
}

Mapping::~Mapping() {
  MappingGuard::remove(*this);
  ::munmap(data_, length_);
}

std::size_t Mapping::fileLength() const {
  struct stat status;
  if (::fstat(file_.fd(), &status) != 0) failed("examine");
  const auto length = static_cast<U64>(status.st_size);
  return length < length_ ? static_cast<std::size_t>(length) : length_;
}

void Mapping::failLost() {
  throw InvalidStoreException("the store's file was shortened while it was in use");
}

}  // namespace Stash
