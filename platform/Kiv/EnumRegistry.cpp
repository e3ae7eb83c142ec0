#include "Kiv/EnumRegistry.h"

#include <algorithm>
#include <mutex>

namespace Kiv {
namespace {

// Constant-initialised and never destroyed, so that modules may register before
// this file's own turn comes and leave after it.
constinit std::mutex registryMutex;
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
  std::ranges::sort(found, {}, &EnumModule::name);
  return found;
}

}  // namespace Kiv
