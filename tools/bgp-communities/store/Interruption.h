// Lets a command that runs until it is interrupted end in an orderly way.
#ifndef TOOLS_BGP_COMMUNITIES_STORE_INTERRUPTION_H
#define TOOLS_BGP_COMMUNITIES_STORE_INTERRUPTION_H

#include <csignal>

namespace CommTool {

// While an object of this class exists, SIGINT and SIGTERM set a flag instead of ending the
// process, so that a command can finish its current step and print its summary. Signal handlers
// belong to the process, so there must be at most one such object at a time.
class Interruption {
 public:
  // Installs the handlers.
  Interruption() : interrupt_(std::signal(SIGINT, note)), terminate_(std::signal(SIGTERM, note)) {}
  // Restores the previous handlers and clears the flag.
  ~Interruption() {
    std::signal(SIGINT, interrupt_);
    std::signal(SIGTERM, terminate_);
    noted_ = 0;
  }
  Interruption(const Interruption&) = delete;
  Interruption& operator=(const Interruption&) = delete;

  // Whether one of the signals has arrived.
  bool noted() const { return noted_ != 0; }

 private:
  using Handler = void (*)(int);

  static void note(int) { noted_ = 1; }

  static inline volatile std::sig_atomic_t noted_ = 0;
  const Handler interrupt_;
  const Handler terminate_;
};

}  // namespace CommTool

#endif
