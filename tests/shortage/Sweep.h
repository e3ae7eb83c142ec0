// Runs an operation again and again, and lets each of its allocations fail in turn.
#ifndef TESTS_SHORTAGE_SWEEP_H
#define TESTS_SHORTAGE_SWEEP_H

#include <gtest/gtest.h>

#include <new>
#include <ostream>

#include "tests/shortage/FailingAllocator.h"

namespace Shortage {

// An operation on a new object of class World. It must undo its changes and hold nothing when it
// returns. It returns whether the results were right; it must not use assertions of the test
// framework, because reporting a failure needs memory.
template <class World>
struct Operation {
  const char* name;
  bool (*run)(World&);

  friend std::ostream& operator<<(std::ostream& out, const Operation& operation) {
    return out << operation.name;
  }
};

enum class Outcome : U8 { right, wrong, noMemory, otherException };

template <class World>
Outcome outcomeOf(const Operation<World>& operation, World& world) {
  try {
    return operation.run(world) ? Outcome::right : Outcome::wrong;
  } catch (const std::bad_alloc&) {
    return Outcome::noMemory;
  } catch (...) {
    return Outcome::otherException;
  }
}

// Runs the operation on a new world while allocation number `at` fails (0: none). The operation
// must either succeed without that memory, or throw std::bad_alloc and leave everything as it
// was. Then it must succeed when memory is there again. Returns whether an allocation failed.
template <class World>
bool tryWithout(const Operation<World>& operation, U64 at, bool forGood) {
  World world;
  const auto before = world.facts();
  bool refused = false;
  Outcome outcome = Outcome::wrong;
  {
    const OutOfMemory out(at, forGood);
    outcome = outcomeOf(operation, world);
    refused = out.happened();
  }
  EXPECT_TRUE(outcome == Outcome::right || (refused && outcome == Outcome::noMemory))
      << "outcome " << static_cast<int>(outcome);
  EXPECT_EQ(before, world.facts());
  EXPECT_EQ(Outcome::right, outcomeOf(operation, world)) << "once there is memory again";
  EXPECT_EQ(before, world.facts()) << "once there is memory again";
  return refused;
}

// Lets every allocation of the operation fail: first each one alone, then each one together with
// all later ones.
template <class World>
void sweep(const Operation<World>& operation) {
  tryWithout(operation, 0, false);  // makes what a process makes only once
  for (const bool forGood : {false, true}) {
    bool refused = true;
    U64 at = 0;
    while (refused && !testing::Test::HasFailure()) {
      SCOPED_TRACE(testing::Message() << "allocation " << ++at << (forGood ? " and on" : ""));
      const U64 before = allocationsAlive();
      refused = tryWithout(operation, at, forGood);
      if (testing::Test::HasFailure()) break;  // recording it took memory
      EXPECT_EQ(before, allocationsAlive()) << "allocations are left";
    }
    EXPECT_TRUE(at > 1 || testing::Test::HasFailure()) << "it needs no memory at all";
  }
}

// The name of a row, for INSTANTIATE_TEST_SUITE_P.
inline constexpr auto operationName = [](const auto& info) { return info.param.name; };

}  // namespace Shortage

#endif
