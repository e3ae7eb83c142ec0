# Installs libraries, headers, tool and the package that find_package() reads.
# Everything installed finds its neighbours by relative paths, so the tree may
# be moved as a whole.
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
        LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}")

set(headers_to "${CMAKE_INSTALL_INCLUDEDIR}/ovbgp")
install(DIRECTORY platform/ DESTINATION "${headers_to}" FILES_MATCHING PATTERN "*.h")
install(DIRECTORY OvBgp BgpCommon DESTINATION "${headers_to}" FILES_MATCHING PATTERN "*.h")

if(TARGET bgp-communities)
  file(RELATIVE_PATH bin_to_lib "${CMAKE_INSTALL_FULL_BINDIR}" "${CMAKE_INSTALL_FULL_LIBDIR}")
  set_target_properties(bgp-communities PROPERTIES INSTALL_RPATH "$ORIGIN/${bin_to_lib}")
  install(TARGETS bgp-communities RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}")
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
        DESTINATION "${package_to}")
install(EXPORT OvBgpCommunityTargets NAMESPACE OvBgp:: DESTINATION "${package_to}")
