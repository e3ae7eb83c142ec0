#include "bench/ratios/Worker.h"

#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <exception>
#include <stdexcept>
#include <system_error>

namespace Bench {
namespace {

// The two ends belong to the worker after the fork, which closes them.
struct Pipe {
  Pipe() {
    int ends[2];
    if (pipe(ends) != 0) throw std::system_error(errno, std::generic_category(), "pipe");
    out = ends[0];
    in = ends[1];
  }
  int out = -1;
  int in = -1;
};

// Requests and answers are shorter than PIPE_BUF, so a write is never partial.
template <class Value>
bool send(int to, const Value& value) {
  return write(to, &value, sizeof value) == sizeof value;
}

template <class Value>
bool receive(int from, Value& value) {
  return read(from, &value, sizeof value) == sizeof value;
}

}  // namespace

Worker::Worker(const Contender& contender) {
  const Pipe requests;
  const Pipe answers;
  process_ = fork();
  if (process_ < 0) throw std::system_error(errno, std::generic_category(), "fork");
  if (process_ == 0) {
    close(requests.in);
    close(answers.out);
    serve(contender, requests.out, answers.in);
  }
  close(requests.out);
  close(answers.in);
  requests_ = requests.in;
  answers_ = answers.out;
  answer();
}

// Closing the pipe would not end the process, because workers that were forked later have copies
// of its ends. Therefore it gets a request to leave. It exits without destroying its objects.
Worker::~Worker() {
  send(requests_, Request::leave);
  close(requests_);
  close(answers_);
  waitpid(process_, nullptr, 0);
}

double Worker::ask(Request request) {
  if (!send(requests_, request)) throw std::runtime_error("the process of a contender has died");
  return answer();
}

double Worker::answer() {
  double value = 0;
  if (!receive(answers_, value)) throw std::runtime_error("the process of a contender has died");
  return value;
}

// Runs in the worker's process.
double Worker::answerOf(Trial& trial, Request request) {
  switch (request) {
    case Request::sample:
      return trial.sample();
    case Request::bytes:
      return trial.bytes();
    default:
      return trial.objects();
  }
}

// The main loop of the process. The first answer says that the trial is ready; then each request
// gets one answer. An exception ends the process, and the parent reports the missing answer.
void Worker::serve(const Contender& contender, int requests, int answers) {
  try {
    const std::unique_ptr<Trial> trial = contender.start();
    double value = 0;
    Request request{};
    while (send(answers, value) && receive(requests, request) && request != Request::leave) {
      value = answerOf(*trial, request);
    }
    _exit(0);
  } catch (const std::exception& reason) {
    std::fprintf(stderr, "%s: %s\n", contender.name.c_str(), reason.what());
  }
  _exit(1);
}

}  // namespace Bench
