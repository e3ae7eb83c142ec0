// Samples of figures of a long-running process, and the check that they do not grow.
#ifndef TESTS_SOAK_SAMPLES_H
#define TESTS_SOAK_SAMPLES_H

#include <string>
#include <vector>

#include "Kiv/Types.h"

namespace Soak {

// The resident memory of this process, in octets.
U64 residentMemory();

// A series of samples of one figure.
class Figure {
 public:
  // `slack` is how much the figure may grow without being a leak.
  Figure(std::string name, U64 slack) : name_(std::move(name)), slack_(slack) {}

  // Adds a sample.
  void add(U64 value) { values_.push_back(value); }
  // The name in the output.
  const std::string& name() const { return name_; }

  // Describes the growth, or is empty if there is none. The first third of the samples is warm-up.
  // The figure has grown if a sample of the last third exceeds the maximum of the second third by
  // more than one percent plus the slack.
  std::string growth() const;

 private:
  const std::string name_;
  const U64 slack_;
  std::vector<U64> values_;
};

}  // namespace Soak

#endif
