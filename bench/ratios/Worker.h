// A process that takes samples of one contender on request.
//
// Every contender has a process of its own: its heap, its process-wide switches and its threads
// are not shared, and no contender inherits a heap that another one has fragmented. Only one
// worker computes at a time; the others wait for a request on their pipe.
#ifndef BENCH_RATIOS_WORKER_H
#define BENCH_RATIOS_WORKER_H

#include <sys/types.h>

#include "bench/ratios/Row.h"

namespace Bench {

class Worker {
 public:
  // Forks and returns when the contender is ready. The calling process must have one thread.
  explicit Worker(const Contender& contender);
  Worker(const Worker&) = delete;
  Worker& operator=(const Worker&) = delete;
  ~Worker();

  // Forward to the Trial in the process. Throw std::runtime_error if the process has died.
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
