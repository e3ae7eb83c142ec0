// Runs an agent for a given time and fails if its memory or its tables grow. With OVBGP_SOAK_LEAK=n
// the agent leaks the lists of one update in n, which proves that the test can fail.
#include <chrono>
#include <cstdlib>
#include <exception>
#include <iomanip>
#include <iostream>
#include <string>
#include <vector>

#include "Kiv/Type.h"
#include "tests/soak/Agent.h"
#include "tests/soak/Samples.h"

namespace {

using Clock = std::chrono::steady_clock;
using CommTool::communityKindRows;

constexpr int usage = 2;

U64 objects() {
  U64 all = 0;
  Kiv::forEachType([&all](const Kiv::Type& type) { all += type.objects(); });
  return all;
}

// All figures that must not grow, in the order of the columns.
class Figures {
 public:
  Figures() {
    figures_.emplace_back("resident", U64{512} << 10);  // the C library's allocator varies as well
    figures_.emplace_back("framework", 0);
    figures_.emplace_back("objects", 0);
    for (const auto& row : communityKindRows) figures_.emplace_back(row.option, 0);
    std::cout << std::setw(8) << "seconds" << std::setw(12) << "operations";
    for (const auto& figure : figures_) std::cout << std::setw(11) << figure.name();
    std::cout << "\n";
  }

  void add(double seconds, const Soak::Agent& agent) {
    std::vector<U64> values{Soak::residentMemory(), agent.tables().bytes(), objects()};
    for (const auto& row : communityKindRows) values.push_back(agent.tables().lists(row.kind));
    std::cout << std::setw(8) << std::fixed << std::setprecision(1) << seconds << std::setw(12)
              << agent.operations();
    for (std::size_t i = 0; i < values.size(); ++i) {
      figures_[i].add(values[i]);
      std::cout << std::setw(11) << values[i];
    }
    std::cout << std::endl;
  }

  // Prints a line for each figure that has grown, and returns their number.
  int growths() const {
    int count = 0;
    for (const auto& figure : figures_) {
      const std::string growth = figure.growth();
      if (!growth.empty()) std::cout << "FAILED: " << growth << "\n";
      count += growth.empty() ? 0 : 1;
    }
    return count;
  }

 private:
  std::vector<Soak::Figure> figures_;
};

// Samples are taken after every fourth pass, when each update has had a salt once, about thirty
// times in all.
int soak(double seconds, const std::vector<std::string>& files) {
  const char* const leak = std::getenv("OVBGP_SOAK_LEAK");
  Soak::Agent agent(Soak::updatesOf(files), leak ? std::strtoull(leak, nullptr, 10) : 0);
  Figures figures;
  const auto start = Clock::now();
  const auto elapsed = [&start] {
    return std::chrono::duration<double>(Clock::now() - start).count();
  };
  for (int sample = 1; elapsed() < seconds && agent.fault().empty();) {
    for (int i = 0; i < 4; ++i) agent.pass();
    if (elapsed() * 30 < seconds * sample) continue;
    ++sample;
    figures.add(elapsed(), agent);
  }
  int failures = figures.growths();
  if (!agent.fault().empty()) {
    std::cout << "FAILED: " << agent.fault() << "\n";
    ++failures;
  }
  agent.withdraw();
  for (const auto& row : communityKindRows) {
    const U32 left = agent.tables().lists(row.kind);
    if (left == 0) continue;
    std::cout << "FAILED: " << left << " " << row.name << " lists of no route are left\n";
    ++failures;
  }
  std::cout << agent.operations() << " operations, "
            << (failures == 0 ? "nothing grew" : "see above") << "\n";
  return failures == 0 ? EXIT_SUCCESS : EXIT_FAILURE;
}

}  // namespace

int main(int argc, char** argv) {
  const double seconds = argc > 2 ? std::atof(argv[1]) : 0;
  if (seconds <= 0) {
    std::cerr << "usage: soak SECONDS FILE...\n";
    return usage;
  }
  try {
    return soak(seconds, {argv + 2, argv + argc});
  } catch (const std::exception& error) {
    std::cerr << "soak: " << error.what() << "\n";
    return EXIT_FAILURE;
  }
}
