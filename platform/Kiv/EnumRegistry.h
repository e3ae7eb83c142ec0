// The registry of enumerations: finds one by its name, without its type.
//
// For what handles enumerations generically (dumps, command lines, schemas).
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

using EnumInfoList = std::span<const EnumInfo* const>;

namespace Detail {
template <class List>
struct EnumInfosOf;
template <RegisteredEnum... E>
struct EnumInfosOf<EnumList<E...>> {
  static constexpr std::array<const EnumInfo*, sizeof...(E)> infos{&enumInfo<E>...};
};
}  // namespace Detail

// The type-erased enumerations of an EnumList, in its order.
template <class List>
inline constexpr EnumInfoList enumInfosOf{Detail::EnumInfosOf<List>::infos};

// A named list of enumerations, in the registry for as long as it lives.  A
// library defines one as a static object, so that it comes and goes with the
// library; what the registry hands out is valid until then.  Static objects may
// be built in any order: the registry itself needs no construction.  Any thread.
class OV_EXPORT EnumModule {
 public:
  // Both arguments live as long as this object.
  EnumModule(std::string_view name, EnumInfoList enums);
  ~EnumModule();
  EnumModule(const EnumModule&) = delete;
  EnumModule& operator=(const EnumModule&) = delete;

  std::string_view name() const { return name_; }
  // In the order given.
  EnumInfoList enums() const { return enums_; }

 private:
  friend class EnumRegistry;

  std::string_view name_;
  EnumInfoList enums_;
  EnumModule* next_ = nullptr;  // in the registry's list; guarded by its lock
};

// Looks through the registered modules.  If two give the same name, either is found.
class OV_EXPORT EnumRegistry {
 public:
  // Null if there is none.
  static const EnumInfo* findEnum(std::string_view name);
  static const EnumModule* findModule(std::string_view name);
  // All of them, by name.
  static std::vector<const EnumModule*> modules();

 private:
  friend class EnumModule;

  static void insert(EnumModule& module);
  static void remove(EnumModule& module);
};

}  // namespace Kiv

#endif
