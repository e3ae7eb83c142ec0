// Refuses memory to an operation at each place where it asks for any.
#ifndef TESTS_SHORTAGE_SWEEP_H
#define TESTS_SHORTAGE_SWEEP_H

#include <gtest/gtest.h>

#include <new>
#include <ostream>

#include "tests/shortage/FailingAllocator.h"

namespace Shortage {

// An operation on what World sets up. It undoes what it does, holds nothing when it
// returns, and says whether all was as it should be: no test may fail while there is
// no memory to say so.
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

// One new world, and one allocation (0: none) that fails; whether the operation came that far.
// Either it manages without, or it says so and leaves all as it was.
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

// Every allocation of the operation fails in turn, alone and with all that follow.
template <class World>
void sweep(const Operation<World>& operation) {
  tryWithout(operation, 0, false);  // makes what a process makes once
  for (const bool forGood : {false, true}) {
    bool refused = true;
    U64 at = 0;
    while (refused && !testing::Test::HasFailure()) {
      SCOPED_TRACE(testing::Message() << "allocation " << ++at << (forGood ? " and on" : ""));
      const U64 before = allocationsAlive();
      refused = tryWithout(operation, at, forGood);
      if (testing::Test::HasFailure()) break;  // which takes memory to note
      EXPECT_EQ(before, allocationsAlive()) << "allocations are left";
    }
    EXPECT_TRUE(at > 1 || testing::Test::HasFailure()) << "it needs no memory at all";
  }
}

// For INSTANTIATE_TEST_SUITE_P.
inline constexpr auto operationName = [](const auto& info) { return info.param.name; };

}  // namespace Shortage

#endif
