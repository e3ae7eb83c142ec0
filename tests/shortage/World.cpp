#include "tests/shortage/World.h"

#include <string_view>

namespace Shortage {
namespace {

// Of all types, but for the room of tables, which they keep for later.
U64 objectsAlive() {
  U64 objects = 0;
  Kiv::forEachType([&objects](const Kiv::Type& type) {
    if (type.name() != "Dorn::DedupBucket") objects += type.objects();
  });
  return objects;
}

}  // namespace

// Sizes of tables and of what hangs on them.
std::vector<U64> World::facts() const {
  return {values->size(),
          ip6Values->size(),
          commLists->size(),
          largeCommLists->size(),
          extCommLists->size(),
          extCommLists->extCommClassificationListDedupTable()->size(),
          extCommLists->rtExtCommClassificationListDedupTable()->size(),
          ip6Lists->size(),
          ip6Lists->extCommClassificationListDedupTable()->size(),
          values->producerRtList()->rt().size(),
          extCommLists->notifyingRtExtCommListCollection()->rtExtCommList().size(),
          targets.heard % 2,  // each that came has gone
          targetSets.heard % 2,
          parser->extCommParser()->references(),
          parser->parseExtCommRuleCollections()->notifieeList()->size(),
          objectsAlive()};
}

// And the reference counts of what is held.
std::vector<U64> LivingWorld::facts() const {
  std::vector<U64> facts = World::facts();
  const auto add = [&facts](const auto& list) {
    facts.push_back(list->references());
    for (const auto& comm : list->commVector()) facts.push_back(comm->references());
    for (const auto& part : list->classificationListVector()) {
      if (part) facts.push_back(part->references());
    }
  };
  facts.push_back(comms.list->references());
  facts.push_back(largeComms.list->references());
  add(extComms.list);
  add(ip6Comms.list);
  return facts;
}

}  // namespace Shortage
