#include "Stash/Detail/Mapping.h"

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

// Call directly after the failed system call, because the message is that of errno.
[[noreturn]] void failed(const char* what) {
  throw StoreAccessException(Kiv::String("cannot ") + what +
                             " a store: " + std::generic_category().message(errno));
}

}  // namespace

// The list of all mappings of the process, and the signal handler that repairs a mapping whose
// file was shortened.
//
// The handler takes the spin lock of the list. This cannot deadlock, although the handler may
// interrupt any code: only a fault of the interrupted thread itself leads to mend(), and no thread
// touches mapped memory while it holds the lock.
class MappingGuard {
 public:
  // Installs the handler once per process. If that fails, the next mapping tries again.
  static void install() {
    static std::once_flag installed;
    std::call_once(installed, installHandler);
  }

  // Inserts at the head. link_ points to the pointer that refers to this mapping, so removal needs
  // no walk through the list.
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
  // A spin lock, because a mutex must not be locked in a signal handler. It is held for a few
  // instructions, and in the handler for one mmap.
  struct Lock {
    Lock() noexcept {
      while (busy_.test_and_set(std::memory_order_acquire)) {
      }
    }
    ~Lock() { busy_.clear(std::memory_order_release); }
  };

  // pageSize_ is set before sigaction, because the handler reads it as soon as it is installed.
  // SA_ONSTACK: a host that gives its threads alternate signal stacks, as language runtimes with
  // small stacks do, needs every handler to run there.
  static void installHandler() {
    pageSize_ = static_cast<std::uintptr_t>(::sysconf(_SC_PAGESIZE));
    struct sigaction action = {};
    action.sa_sigaction = handle;
    action.sa_flags = SA_SIGINFO | SA_ONSTACK;
    ::sigemptyset(&action.sa_mask);
    if (::sigaction(SIGBUS, &action, &previous_) != 0) failed("guard");
  }

  // Runs on the faulting thread, and restores errno for the interrupted code.
  static void handle(int signal, siginfo_t* info, void* context) {
    const int error = errno;
    // Positive codes are faults, which have an address. Zero and negative codes mean that a process
    // sent the signal.
    const bool mended = info->si_code > 0 && mend(reinterpret_cast<std::uintptr_t>(info->si_addr));
    if (!mended) passOn(signal, info, context);
    errno = error;
  }

  // Returns whether `address` is in one of our mappings and was repaired. The mark is set before
  // the zeroed pages appear, so a thread that has read such zeros also finds the mapping lost.
  // Everything from the faulting page to the end is replaced, because the file ended before it.
  // mmap is no async-signal-safe function by POSIX, but a plain system call on the supported
  // systems.
  static bool mend(std::uintptr_t address) noexcept {
    const Lock lock;
    for (Mapping* mapping = first_; mapping; mapping = mapping->next_) {
      const auto begin = reinterpret_cast<std::uintptr_t>(mapping->data_);
      // Addresses below `begin` wrap to large values, so one comparison covers both ends.
      if (address - begin >= mapping->length_) continue;
      mapping->lost_.store(true, std::memory_order_release);
      const std::uintptr_t page = address & ~(pageSize_ - 1);
      void* const from = mapping->data_ + (page - begin);
      return ::mmap(from, begin + mapping->length_ - page, PROT_READ | PROT_WRITE,
                    MAP_PRIVATE | MAP_ANONYMOUS | MAP_FIXED | MAP_NORESERVE, -1, 0) == from;
    }
    return false;
  }

  // Does what the previous handler would have done. With the default action or an ignored fault,
  // the process must end as it would without us: the default action is restored and the signal
  // raised again.
  static void passOn(int signal, siginfo_t* info, void* context) {
    if ((previous_.sa_flags & SA_SIGINFO) != 0) {
      return previous_.sa_sigaction(signal, info, context);
    }
    if (previous_.sa_handler == SIG_IGN && info->si_code <= 0) return;
    if (previous_.sa_handler != SIG_DFL && previous_.sa_handler != SIG_IGN) {
      return previous_.sa_handler(signal);
    }
    ::signal(signal, SIG_DFL);
    ::raise(signal);  // blocked until this handler has returned
  }

  static inline std::atomic_flag busy_;
  static inline Mapping* first_ = nullptr;
  static inline std::uintptr_t pageSize_ = 0;
  static inline struct sigaction previous_ = {};  // written once, by installHandler
};

namespace {

// Maps the file behind an installed handler. The caller tells the guard about the pages before
// anybody reads them.
std::byte* mapped(const Descriptor& file, std::size_t length, Mapping::Access access) {
  MappingGuard::install();
  const int protection = access == Mapping::Access::read ? PROT_READ : PROT_READ | PROT_WRITE;
  void* const data = ::mmap(nullptr, length, protection, MAP_SHARED, file.fd(), 0);
  if (data == MAP_FAILED) failed("map");
  return static_cast<std::byte*>(data);
}

}  // namespace

Mapping::Mapping(Descriptor&& file, std::size_t length, Access access)
    : data_(mapped(file, length, access)), length_(length), file_(std::move(file)) {
  MappingGuard::add(*this);
}

Mapping::~Mapping() {
  MappingGuard::remove(*this);
  ::munmap(data_, length_);
}

std::size_t Mapping::fileLength() const {
  struct stat status;
  if (::fstat(file_.fd(), &status) != 0) failed("examine");
  // A file that grew beyond the reserved addresses is readable only up to their end.
  const auto length = static_cast<U64>(status.st_size);
  return length < length_ ? static_cast<std::size_t>(length) : length_;
}

void Mapping::failLost() {
  throw InvalidStoreException("the store's file was shortened while it was in use");
}

}  // namespace Stash
