#include "Kiv/Ptr.h"

#include <gtest/gtest.h>

#include <sstream>
#include <type_traits>
#include <utility>

#include "Dorn/DedupHandle.h"
#include "Kiv/PtrInterface.h"

namespace {

class Animal : public Kiv::PtrInterface {
  KIV_OBJECT(Animal)
};
KIV_OBJECT_DEFINE(Animal)

class Cat : public Animal {
  KIV_OBJECT(Cat)

 public:
  // Sets the count to maxReferences - 1, as so many references cannot be taken one by one.
  void almostAllReferencesTaken() const { flagIs(maxReferences - 1, true); }

 private:
  [[maybe_unused]] U64 lives_ = 9;
};
KIV_OBJECT_DEFINE(Cat)

static_assert(std::is_convertible_v<Cat::Ptr, Animal::PtrConst>);
static_assert(!std::is_convertible_v<Animal::Ptr, Cat::Ptr>);
static_assert(!std::is_convertible_v<Animal::PtrConst, Animal::Ptr>);
static_assert(!std::is_convertible_v<Animal*, Animal::Ptr>, "taking a reference is explicit");
static_assert(sizeof(Animal::Ptr) == sizeof(void*));

TEST(Ptr, CountsCopiesMovesAndConversions) {
  const Cat::Ptr cat(new Cat);
  EXPECT_EQ(1U, cat->references());
  Animal::PtrConst animal = cat;
  EXPECT_EQ(2U, cat->references());
  Animal::PtrConst moved = std::move(animal);
  EXPECT_EQ(2U, cat->references());
  EXPECT_EQ(moved, cat);
  Animal::PtrConst& self = moved;
  moved = self;
  EXPECT_EQ(2U, cat->references());
  moved = nullptr;
  EXPECT_EQ(1U, cat->references());
  const Cat::Ptr adopted(Cat::Ptr(cat).release(), Kiv::adopt);
  EXPECT_EQ(2U, cat->references());
  EXPECT_EQ(adopted, Kiv::staticPtrCast<Cat>(Animal::Ptr(cat)));
  EXPECT_EQ(2U, cat->references());
}

TEST(Ptr, FlagsAreNoReferences) {
  for (const bool threadSafe : {false, true}) {
    Kiv::VFPtrInterface::threadSafePointers = threadSafe;
    const Animal::Ptr animal(new Animal);
    animal->hasNotificationActiveIs(true);
    EXPECT_TRUE(animal->hasNotificationActive());
    EXPECT_EQ(1U, animal->references());
    animal->hasNotificationActiveIs(false);
    EXPECT_FALSE(animal->hasNotificationActive());
    EXPECT_EQ(1U, animal->references());
  }
  Kiv::VFPtrInterface::threadSafePointers = false;
}

TEST(PtrDeathTest, CountNeverRunsIntoTheFlags) {
  const auto takeAll = [] {
    const auto* const cat = new Cat;
    cat->almostAllReferencesTaken();
    cat->referencesIncReturnRef();
    cat->referencesIncReturnRef();
  };
  EXPECT_DEATH(takeAll(), "references\\(\\) <= maxReferences");
}

// An object is counted under its most derived type, also if a pointer to its base destroys it.
TEST(Type, CountsLiveObjectsAndBytes) {
  const U64 animals = Animal::kivType().objects();
  Animal::Ptr animal(new Cat);
  EXPECT_EQ(1U, Cat::kivType().objects());
  EXPECT_EQ(sizeof(Cat), Cat::kivType().bytes());
  EXPECT_EQ(animals, Animal::kivType().objects());
  EXPECT_EQ(&Cat::kivType(), &animal->fwkType());

  std::ostringstream out;
  Kiv::typesPrint(out);
  const std::string line = "Cat: 1 objects, " + std::to_string(sizeof(Cat)) + " bytes\n";
  EXPECT_NE(std::string::npos, out.str().find(line)) << out.str();
  animal = nullptr;
  EXPECT_EQ(0U, Cat::kivType().objects());
  EXPECT_EQ(0U, Cat::kivType().bytes());
}

}  // namespace
