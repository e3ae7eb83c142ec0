#include "tests/shortage/World.h"

namespace Shortage {

// The sizes of tables and collections, and the numbers of observers and objects.
std::vector<U64> World::facts() const {
  const auto counts = sizes();
  std::vector<U64> facts(counts.begin(), counts.end());
  facts.push_back(targets.heard % 2);  // even: a removal for each insertion
  facts.push_back(targetSets.heard % 2);
  facts.push_back(parser->extCommParser()->references());
  facts.push_back(parser->parseExtCommRuleCollections()->notifieeList()->size());
  facts.push_back(objectsAlive());
  return facts;
}

// Additionally, the reference counts of lists, members and sub-lists, which show a leaked
// reference.
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
