// The registry of enumerations, which finds an enumeration by its name.
//
// The registry serves code that handles enumerations generically: dumps, command lines, schemas.
// Code that knows the type uses Kiv/Enum.h, which needs no registry.
#ifndef KIV_ENUMREGISTRY_H
#define KIV_ENUMREGISTRY_H

#include <array>
#include <span>
#include <string_view>
#include <vector>

#include "Kiv/Enum.h"
#include "Kiv/Export.h"

namespace Kiv {

// A view of type-erased enumerations; owns neither the pointers nor the enumerations.
using EnumInfoList = std::span<const EnumInfo* const>;

namespace Detail {
template <class List>
struct EnumInfosOf;
template <RegisteredEnum... E>
struct EnumInfosOf<EnumList<E...>> {
  static constexpr std::array<const EnumInfo*, sizeof...(E)> infos{&enumInfo<E>...};
};
}  // namespace Detail

// The type-erased enumerations of an EnumList, in the order of the list. Static data.
template <class List>
inline constexpr EnumInfoList enumInfosOf{Detail::EnumInfosOf<List>::infos};

// A named list of enumerations that is in the registry from its construction to its destruction.
//
// A library defines one as a static object, so that the enumerations are registered exactly while
// the library is loaded. Everything that the registry returns is valid for this time only. Static
// objects may be constructed in any order, because the registry itself needs no construction.
// Construction and destruction are thread-safe.
class OV_EXPORT EnumModule {
 public:
  // Enters the module. Neither argument is copied; both must live as long as this object.
  EnumModule(std::string_view name, EnumInfoList enums);
  // Removes the module. No other thread may still use what the registry returned for it.
  ~EnumModule();
  // Not copyable: the registry holds the address of the module.
  EnumModule(const EnumModule&) = delete;
  // Not assignable: name and enumerations of a registered module do not change.
  EnumModule& operator=(const EnumModule&) = delete;

  // The name under which findModule() finds the module.
  std::string_view name() const { return name_; }
  // The enumerations of the module, in the order given to the constructor.
  EnumInfoList enums() const { return enums_; }

 private:
  friend class EnumRegistry;

  std::string_view name_;
  EnumInfoList enums_;
  EnumModule* next_ = nullptr;  // in the registry's list; guarded by the registry's mutex
};

// The lookups over all registered modules. All of them are thread-safe and take one mutex; their
// cost is linear in the number of registered enumerations, so they are not for the fast path.
class OV_EXPORT EnumRegistry {
 public:
  // Returns the enumeration with this unqualified name, or null. If several modules list an
  // enumeration of this name, any one of these enumerations is returned.
  static const EnumInfo* findEnum(std::string_view name);
  // Returns the module with this name, or null. If several modules have this name, any one of them
  // is returned.
  static const EnumModule* findModule(std::string_view name);
  // Returns all modules in ascending order of their names. Throws std::bad_alloc.
  static std::vector<const EnumModule*> modules();

 private:
  friend class EnumModule;

  static void insert(EnumModule& module);
  static void remove(EnumModule& module);
};

}  // namespace Kiv

#endif
