# What makes a fault harder to exploit, as far as the compiler and the C library have it.
include(CheckCXXCompilerFlag)
include(CheckCXXSourceCompiles)

set(harden_flags)
foreach(flag stack-protector-strong stack-clash-protection cf-protection)
  string(MAKE_C_IDENTIFIER "OVBGP_HAS_${flag}" has)
  check_cxx_compiler_flag("-f${flag}" ${has})
  if(${has})
    list(APPEND harden_flags "-f${flag}")
  endif()
endforeach()

# Level 3 also checks sizes that are known only when the program runs.
check_cxx_source_compiles(
  "#include <features.h>
  #if !__has_builtin(__builtin_dynamic_object_size) || !__GLIBC_PREREQ(2, 34)
  #error none
  #endif
  int main() {}" OVBGP_HAS_DYNAMIC_OBJECT_SIZE)
if(OVBGP_HAS_DYNAMIC_OBJECT_SIZE)
  set(harden_fortify 3)
else()
  set(harden_fortify 2)
endif()

# The checks of the C library need an optimizer, and hide faults from sanitizers.
function(ovbgp_harden target)
  target_compile_options(${target} PRIVATE ${harden_flags})
  if(NOT OVBGP_SANITIZE)
    target_compile_options(
      ${target} PRIVATE "$<$<NOT:$<CONFIG:Debug>>:-U_FORTIFY_SOURCE;-D_FORTIFY_SOURCE=${harden_fortify}>")
  endif()
  target_link_options(${target} PRIVATE -Wl,-z,relro,-z,now)
  get_target_property(type ${target} TYPE)
  if(NOT type STREQUAL "SHARED_LIBRARY")  # which is position-independent anyway
    target_compile_options(${target} PRIVATE -fPIE)
    target_link_options(${target} PRIVATE $<$<STREQUAL:$<TARGET_PROPERTY:TYPE>,EXECUTABLE>:-pie>)
  endif()
endfunction()
