// The end of a command that goes on until somebody stops it.
#ifndef TOOLS_BGP_COMMUNITIES_INTERRUPTION_H
#define TOOLS_BGP_COMMUNITIES_INTERRUPTION_H

#include <csignal>

namespace CommTool {

// While there is one, SIGINT and SIGTERM are noted rather than obeyed, so that a
// command can finish what it is at and print its figures. One at a time.
class Interruption {
 public:
  Interruption() : interrupt_(std::signal(SIGINT, note)), terminate_(std::signal(SIGTERM, note)) {}
  ~Interruption() {
    std::signal(SIGINT, interrupt_);
    std::signal(SIGTERM, terminate_);
    noted_ = 0;
  }
  Interruption(const Interruption&) = delete;
  Interruption& operator=(const Interruption&) = delete;

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
