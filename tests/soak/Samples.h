// Figures of a process that runs for long, and whether they stay what they were.
#ifndef TESTS_SOAK_SAMPLES_H
#define TESTS_SOAK_SAMPLES_H

#include <string>
#include <vector>

#include "Kiv/Types.h"

namespace Soak {

// Octets of this process in memory now.
U64 residentMemory();

// One figure, looked at again and again.
class Figure {
 public:
  // `slack`: how much more it may be at the end for reasons of its own.
  Figure(std::string name, U64 slack) : name_(std::move(name)), slack_(slack) {}

  void add(U64 value) { values_.push_back(value); }
  const std::string& name() const { return name_; }
  U64 last() const { return values_.back(); }

  // The first third is warm-up.  Empty if the last third is never above what the
  // second one had by more than one in a hundred and the slack; or else what grew.
  std::string growth() const;

 private:
  const std::string name_;
  const U64 slack_;
  std::vector<U64> values_;
};

}  // namespace Soak

#endif
