#include "Kiv/EnumRegistry.h"

#include <algorithm>
#include <mutex>

#include "Kiv/Private/AtFork.h"

namespace Kiv {
namespace {

// Guards firstModule and the next_ of every registered module. Both variables are
// constant-initialised and have no destructor with an effect, so a static module of any library may
// be constructed before, and destroyed after, the other statics of this one.
constinit std::mutex registryMutex;
const AtFork<registryMutex> registryAtFork;
// Head of the singly linked list of modules, the newest one first. Modules link themselves, so
// registration allocates nothing.
constinit EnumModule* firstModule = nullptr;

}  // namespace

EnumModule::EnumModule(std::string_view name, EnumInfoList enums) : name_(name), enums_(enums) {
  EnumRegistry::insert(*this);
}

EnumModule::~EnumModule() { EnumRegistry::remove(*this); }

void EnumRegistry::insert(EnumModule& module) {
  const std::lock_guard lock(registryMutex);
  module.next_ = firstModule;
  firstModule = &module;
}

void EnumRegistry::remove(EnumModule& module) {
  const std::lock_guard lock(registryMutex);
  // Linear, but modules are removed only when a library is unloaded. A registered module is always
  // found, so the loop needs no check for the end of the list.
  EnumModule** link = &firstModule;
  while (*link != &module) link = &(*link)->next_;
  *link = module.next_;
}

const EnumInfo* EnumRegistry::findEnum(std::string_view name) {
  const std::lock_guard lock(registryMutex);
  for (const EnumModule* module = firstModule; module; module = module->next_) {
    for (const EnumInfo* info : module->enums_) {
      if (info->name() == name) return info;
    }
  }
  return nullptr;
}

const EnumModule* EnumRegistry::findModule(std::string_view name) {
  const std::lock_guard lock(registryMutex);
  const EnumModule* module = firstModule;
  while (module && module->name_ != name) module = module->next_;
  return module;
}

std::vector<const EnumModule*> EnumRegistry::modules() {
  std::vector<const EnumModule*> found;
  {
    const std::lock_guard lock(registryMutex);
    for (const EnumModule* module = firstModule; module; module = module->next_) {
      found.push_back(module);
    }
  }
  // Sort without the mutex. The names belong to the modules, which must stay registered anyway
  // while the caller uses the result.
  std::ranges::sort(found, {}, &EnumModule::name);
  return found;
}

}  // namespace Kiv
