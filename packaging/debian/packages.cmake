# The Debian packages, as `cpack` makes them, completed by finish.cmake. Made from a build whose prefix is /usr (the
# preset `package`), they can be installed beside those of another architecture.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME npxlate)
set(CPACK_PACKAGE_VENDOR "npxlate")
set(CPACK_PACKAGE_CONTACT "npxlate maintainers <maintainers@npxlate.example>")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_COMPONENTS_ALL runtime development documentation)
if(NPXLATE_TOOL)
  list(APPEND CPACK_COMPONENTS_ALL tool)
endif()
if(TARGET npxlate_python)
  list(APPEND CPACK_COMPONENTS_ALL python)
endif()
if(NOT NPXLATE_SHARED)
  list(REMOVE_ITEM CPACK_COMPONENTS_ALL runtime)
endif()

set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_ENABLE_COMPONENT_DEPENDS ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
# Where the library that the tool needs is found while the tool's dependencies are.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${PROJECT_BINARY_DIR})
set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME libnpxlate${PROJECT_VERSION_MAJOR})
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY ">=")
set(CPACK_COMPONENT_RUNTIME_DESCRIPTION
  "The library: turns entries of a line card's forwarding tables from the
logical records that control software builds into the physical records
that the network processor reads, and back.")

set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME libnpxlate-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SUGGESTS npxlate-doc)
set(CPACK_COMPONENT_DEVELOPMENT_DESCRIPTION
  "For development: the headers, the static library, what CMake and
pkg-config need to find the library, and its manual page.")
if(NPXLATE_SHARED)
  set(CPACK_COMPONENT_DEVELOPMENT_DEPENDS runtime)
endif()

set(CPACK_DEBIAN_TOOL_PACKAGE_NAME npxlate)
set(CPACK_DEBIAN_TOOL_PACKAGE_SECTION net)
set(CPACK_DEBIAN_TOOL_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_TOOL_PACKAGE_RECOMMENDS npxlate-doc)
set(CPACK_COMPONENT_TOOL_DESCRIPTION
  "The tool: translates records by hand, shows where every bit of a record
comes from and what a read-back loses, and runs whole dumps through.")
if(NPXLATE_SHARED)
  set(CPACK_COMPONENT_TOOL_DEPENDS runtime)
endif()

set(CPACK_DEBIAN_PYTHON_PACKAGE_NAME python3-npxlate)
set(CPACK_DEBIAN_PYTHON_PACKAGE_SECTION python)
set(CPACK_DEBIAN_PYTHON_PACKAGE_DEPENDS "python3 (>= 3.9)")
set(CPACK_DEBIAN_PYTHON_PACKAGE_RECOMMENDS npxlate)
set(CPACK_COMPONENT_PYTHON_DESCRIPTION
  "For Python: the translators as functions of bytes, tables and registers,
and what the tool knows of records as objects.")
set(CPACK_COMPONENT_PYTHON_DEPENDS runtime)

set(CPACK_DEBIAN_DOCUMENTATION_PACKAGE_NAME npxlate-doc)
set(CPACK_DEBIAN_DOCUMENTATION_PACKAGE_SECTION doc)
set(CPACK_DEBIAN_DOCUMENTATION_PACKAGE_ARCHITECTURE all)
set(CPACK_COMPONENT_DOCUMENTATION_DESCRIPTION
  "The documentation: the calling contract, what surprises, how to debug an
entry, the atlas of all records, sample entries, and programs in C, C++
and Python.")

configure_file(${CMAKE_CURRENT_LIST_DIR}/finish.cmake.in ${CMAKE_CURRENT_BINARY_DIR}/finish.cmake @ONLY)
set(CPACK_POST_BUILD_SCRIPTS ${CMAKE_CURRENT_BINARY_DIR}/finish.cmake)

include(CPack)
