# How this project makes its targets.  A folder that holds no sources makes no
# target, and a link to a target that was not made is left out.

# The sources below FOLDERS (relative to the project), at any depth.
function(ovbgp_sources result)
  set(found)
  foreach(folder IN LISTS ARGN)
    file(GLOB_RECURSE sources CONFIGURE_DEPENDS "${PROJECT_SOURCE_DIR}/${folder}/*.cpp")
    list(APPEND found ${sources})
  endforeach()
  set(${result} ${found} PARENT_SCOPE)
endfunction()

# The language, the warnings and the code generation of every target of ours.
# Private: a user of the libraries chooses their own.
function(ovbgp_compile_options target)
  set_target_properties(
    ${target}
    PROPERTIES CXX_STANDARD 20
               CXX_STANDARD_REQUIRED ON
               CXX_EXTENSIONS OFF)
  target_compile_features(${target} PUBLIC cxx_std_20)
  target_compile_options(${target} PRIVATE -Wall -Wextra -Wconversion -Wshadow -Wpedantic)
  # Checks the annotations of Kiv/ThreadAnnotations.h, which say what each lock guards.
  if(CMAKE_CXX_COMPILER_ID MATCHES "Clang")
    target_compile_options(${target} PRIVATE -Wthread-safety)
  endif()
  # Files compiled in batches see each other's locals and unnamed namespaces.
  if(CMAKE_UNITY_BUILD)
    target_compile_options(${target} PRIVATE -Wno-shadow)
    if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
      target_compile_options(${target} PRIVATE -Wno-subobject-linkage)
    endif()
  endif()
  # Part of C++ since 2014, and on by default in GCC.
  target_compile_options(${target} PRIVATE -fsized-deallocation)
  if(OVBGP_WERROR)
    target_compile_options(${target} PRIVATE -Werror)
  endif()
  if(OVBGP_SANITIZE)
    set(sanitize -fsanitize=${OVBGP_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
    target_compile_options(${target} PRIVATE ${sanitize})
    target_link_options(${target} PRIVATE ${sanitize})
  endif()
  if(OVBGP_HARDEN)
    ovbgp_harden(${target})
  endif()
  # Counted in the file itself, so that what aborts on purpose counts, too.
  if(OVBGP_COVERAGE)
    target_compile_options(${target} PRIVATE -fprofile-instr-generate -fprofile-update=atomic
                                             -fcoverage-mapping
                                             "SHELL:-mllvm -runtime-counter-relocation")
    target_link_options(${target} PRIVATE -fprofile-instr-generate)
  endif()
endfunction()

# ovbgp_add_shared_library(NAME SOURCES folder... INCLUDE_ROOT folder)
#
# Only what the sources mark for export leaves the library; calls within it are
# direct.  Users see the headers below INCLUDE_ROOT.
# Before version 1.0 each minor version may change the ABI, and says so in the
# name by which programs find the library.
function(ovbgp_add_shared_library name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "INCLUDE_ROOT" "SOURCES")
  ovbgp_sources(sources ${arg_SOURCES})
  if(NOT sources)
    message(STATUS "${name}: no sources, skipped")
    return()
  endif()
  add_library(${name} SHARED ${sources})
  add_library(OvBgp::${name} ALIAS ${name})
  ovbgp_compile_options(${name})
  target_compile_options(${name} PRIVATE -fno-semantic-interposition -fno-plt)
  if(NOT OVBGP_SANITIZE)  # a sanitizer's runtime may be in the program alone
    target_link_options(${name} PRIVATE -Wl,--no-undefined)
  endif()
  # Handlers of signals, of fork() and of the end of threads stay registered, so dlclose() must not
  # unload the code.
  target_link_options(${name} PRIVATE -Wl,-z,nodelete)
  cmake_path(ABSOLUTE_PATH arg_INCLUDE_ROOT BASE_DIRECTORY "${PROJECT_SOURCE_DIR}" NORMALIZE
             OUTPUT_VARIABLE include_root)
  target_include_directories(
    ${name} PUBLIC "$<BUILD_INTERFACE:${include_root}>"
                   "$<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}/ovbgp>")
  set(abi_version ${PROJECT_VERSION_MAJOR})
  if(PROJECT_VERSION_MAJOR EQUAL 0)
    string(APPEND abi_version ".${PROJECT_VERSION_MINOR}")
  endif()
  set_target_properties(
    ${name}
    PROPERTIES CXX_VISIBILITY_PRESET hidden
               VISIBILITY_INLINES_HIDDEN ON
               VERSION ${PROJECT_VERSION}
               SOVERSION ${abi_version}
               INSTALL_RPATH "$ORIGIN")
endfunction()

# Links TARGET to those of the libraries that exist here.
function(ovbgp_link target)
  if(NOT TARGET ${target})
    return()
  endif()
  foreach(library IN LISTS ARGN)
    if(TARGET ${library})
      target_link_libraries(${target} PUBLIC ${library})
    endif()
  endforeach()
endfunction()

# Makes the custom target GROUP build those of the targets that exist here.
function(ovbgp_add_to group)
  foreach(target IN LISTS ARGN)
    if(TARGET ${target})
      add_dependencies(${group} ${target})
    endif()
  endforeach()
endfunction()
