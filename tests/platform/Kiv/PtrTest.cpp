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
  // Sets the count of a new object, as so many references cannot be taken one by one.
  void almostSaturated() const { flagIs(saturatedReferences - 1, true); }

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

// A saturated count changes no flag, and never reaches zero again.
TEST(Ptr, SaturatedCountKeepsTheObjectForEver) {
  for (const bool threadSafe : {false, true}) {
    Kiv::VFPtrInterface::threadSafePointers = threadSafe;
    const U64 cats = Cat::kivType().objects();
    auto* const cat = new Cat;
    cat->almostSaturated();
    EXPECT_EQ(Cat::saturatedReferences - 1, cat->references());
    for (U32 i = 0; i < 3; ++i) cat->referencesIncReturnRef();
    const U32 saturated = cat->references();
    EXPECT_LT(Cat::saturatedReferences, saturated);
    for (U32 i = 0; i < 5; ++i) EXPECT_EQ(saturated - 1, cat->referencesDec());
    EXPECT_EQ(saturated, cat->references());
    EXPECT_FALSE(cat->hasNotificationActive());
    EXPECT_EQ(cats + 1, Cat::kivType().objects());
    delete cat;
  }
  Kiv::VFPtrInterface::threadSafePointers = false;
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
