#include "tests/soak/Samples.h"

#include <unistd.h>

#include <algorithm>
#include <cstddef>
#include <fstream>

namespace Soak {

U64 residentMemory() {
  std::ifstream statm("/proc/self/statm");
  U64 size = 0;
  U64 resident = 0;
  statm >> size >> resident;
  return resident * static_cast<U64>(::sysconf(_SC_PAGESIZE));
}

std::string Figure::growth() const {
  const auto third = static_cast<std::ptrdiff_t>(values_.size() / 3);
  if (third == 0) return name_ + ": too few samples";
  const U64 before = *std::max_element(values_.begin() + third, values_.end() - third);
  const U64 after = *std::max_element(values_.end() - third, values_.end());
  if (after <= before + before / 100 + slack_) return {};
  return name_ + " grew from " + std::to_string(before) + " to " + std::to_string(after);
}

}  // namespace Soak
