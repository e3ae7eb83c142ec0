# Debian packages of the components, made by `cpack`.  They are made from a tree
# that was configured for /usr (the preset `package`), so that libraries stand
# where the system looks for them.
set(abi_version ${PROJECT_VERSION_MAJOR})
if(PROJECT_VERSION_MAJOR EQUAL 0)
  string(APPEND abi_version ".${PROJECT_VERSION_MINOR}")
endif()

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME ovbgpcommunity)
set(CPACK_PACKAGE_CONTACT "The OvBgpCommunity developers <maintainers@ovbgpcommunity.invalid>")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_DEBIAN_DEBUGINFO_PACKAGE ON)  # strips, and keeps what it took
set(CPACK_COMPONENTS_ALL runtime development)
if(TARGET bgp-communities)
  list(APPEND CPACK_COMPONENTS_ALL tool)
endif()
set(CPACK_COMPONENT_DEVELOPMENT_DEPENDS runtime)
set(CPACK_COMPONENT_TOOL_DEPENDS runtime)

set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_ENABLE_COMPONENT_DEPENDS ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS "${CMAKE_LIBRARY_OUTPUT_DIRECTORY}")

set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME "libovbgpcommunity${abi_version}")
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_COMPONENT_RUNTIME_DESCRIPTION "The shared libraries.")

set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME libovbgpcommunity-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SHLIBDEPS OFF)
set(CPACK_COMPONENT_DEVELOPMENT_DESCRIPTION "Headers, what CMake and pkg-config need, and printers for gdb.")

set(CPACK_DEBIAN_TOOL_PACKAGE_NAME bgp-communities)
set(CPACK_DEBIAN_TOOL_PACKAGE_SECTION net)
set(CPACK_COMPONENT_TOOL_DESCRIPTION
    "A tool that shows the communities that routing data holds: all four kinds in every
 form of text, matched by regular expression, and how much of them routes share.")

include(CPack)
