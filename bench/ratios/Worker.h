// A process that runs one contender's samples on demand.
//
// So every contender has a heap, process-wide switches and threads of its own, and
// none finds the memory as another left it. Only one works at a time.
#ifndef BENCH_RATIOS_WORKER_H
#define BENCH_RATIOS_WORKER_H

#include <sys/types.h>

#include "bench/ratios/Row.h"

namespace Bench {

class Worker {
 public:
  // Forks, and returns once the contender is ready. Requires: one thread.
  explicit Worker(const Contender& contender);
  Worker(const Worker&) = delete;
  Worker& operator=(const Worker&) = delete;
  ~Worker();

  // All throw std::runtime_error if the process has died.
  double sample() { return ask(Request::sample); }
  double bytes() { return ask(Request::bytes); }
  double objects() { return ask(Request::objects); }

 private:
  enum class Request : char { sample, bytes, objects, leave };

  double ask(Request request);
  double answer();
  static double answerOf(Trial& trial, Request request);
  [[noreturn]] static void serve(const Contender& contender, int requests, int answers);

  pid_t process_ = -1;
  int requests_ = -1;
  int answers_ = -1;
};

}  // namespace Bench

#endif
