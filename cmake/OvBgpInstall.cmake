# Installs libraries, headers, tool, and the packages that find_package() and
# pkg-config read.  Everything installed finds its neighbours by relative paths, so
# the tree may be moved as a whole.  Components: runtime, development, tool.
include(CMakePackageConfigHelpers)

set(libraries)
foreach(library OvPlatform OvBgpCommunity)
  if(TARGET ${library})
    list(APPEND libraries ${library})
  endif()
endforeach()
if(NOT libraries)
  return()
endif()

install(TARGETS ${libraries} EXPORT OvBgpCommunityTargets
        LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}"
                COMPONENT runtime NAMELINK_COMPONENT development)

set(headers_to "${CMAKE_INSTALL_INCLUDEDIR}/ovbgp")
# Headers in a folder named Private serve the library's own sources only.
install(DIRECTORY platform/ DESTINATION "${headers_to}" COMPONENT development
        FILES_MATCHING PATTERN "*.h" PATTERN "Private" EXCLUDE)
install(DIRECTORY OvBgp BgpCommon DESTINATION "${headers_to}" COMPONENT development
        FILES_MATCHING PATTERN "*.h" PATTERN "Private" EXCLUDE)

if(TARGET bgp-communities)
  file(RELATIVE_PATH bin_to_lib "${CMAKE_INSTALL_FULL_BINDIR}" "${CMAKE_INSTALL_FULL_LIBDIR}")
  set_target_properties(bgp-communities PROPERTIES INSTALL_RPATH "$ORIGIN/${bin_to_lib}")
  install(TARGETS bgp-communities RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}" COMPONENT tool)
endif()

set(package_to "${CMAKE_INSTALL_LIBDIR}/cmake/OvBgpCommunity")
configure_package_config_file(
  cmake/OvBgpCommunityConfig.cmake.in "${PROJECT_BINARY_DIR}/cmake/OvBgpCommunityConfig.cmake"
  INSTALL_DESTINATION "${package_to}"
  NO_SET_AND_CHECK_MACRO)
write_basic_package_version_file(
  "${PROJECT_BINARY_DIR}/cmake/OvBgpCommunityConfigVersion.cmake"
  COMPATIBILITY SameMinorVersion)
install(FILES "${PROJECT_BINARY_DIR}/cmake/OvBgpCommunityConfig.cmake"
              "${PROJECT_BINARY_DIR}/cmake/OvBgpCommunityConfigVersion.cmake"
        DESTINATION "${package_to}" COMPONENT development)
install(EXPORT OvBgpCommunityTargets NAMESPACE OvBgp:: DESTINATION "${package_to}"
        COMPONENT development)

# Paths in the pkg-config files are relative to the files themselves.
set(pkgconfig_to "${CMAKE_INSTALL_LIBDIR}/pkgconfig")
file(RELATIVE_PATH pkgconfig_to_prefix "${CMAKE_INSTALL_PREFIX}/${pkgconfig_to}"
     "${CMAKE_INSTALL_PREFIX}")
string(REGEX REPLACE "/$" "" pkgconfig_to_prefix "${pkgconfig_to_prefix}")
foreach(name ovplatform ovbgpcommunity)
  configure_file(cmake/${name}.pc.in "${PROJECT_BINARY_DIR}/cmake/${name}.pc" @ONLY)
  install(FILES "${PROJECT_BINARY_DIR}/cmake/${name}.pc" DESTINATION "${pkgconfig_to}"
          COMPONENT development)
endforeach()

# gdb loads what is named like a library and stands beside it; of the system's
# libraries, whose folder is searched by ldconfig, what stands in a tree apart.
install(CODE "
  set(to \"${CMAKE_INSTALL_LIBDIR}\")
  if(CMAKE_INSTALL_PREFIX STREQUAL \"/usr\")
    set(to \"${CMAKE_INSTALL_DATADIR}/gdb/auto-load/usr/${CMAKE_INSTALL_LIBDIR}\")
  endif()
  file(INSTALL \"${PROJECT_SOURCE_DIR}/gdb/printers.py\" DESTINATION \"\${CMAKE_INSTALL_PREFIX}/\${to}\"
       RENAME \"libOvPlatform.so.${PROJECT_VERSION}-gdb.py\")" COMPONENT development)

install(FILES LICENSE DESTINATION "${CMAKE_INSTALL_DATADIR}/doc/ovbgpcommunity" COMPONENT runtime)
