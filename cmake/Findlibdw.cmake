# elfutils' reader of debug information: libdw::libdw.
find_path(libdw_INCLUDE_DIR elfutils/libdwfl.h)
find_library(libdw_LIBRARY dw)
find_library(libdw_libelf_LIBRARY elf)
mark_as_advanced(libdw_INCLUDE_DIR libdw_LIBRARY libdw_libelf_LIBRARY)

include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(libdw REQUIRED_VARS libdw_LIBRARY libdw_libelf_LIBRARY libdw_INCLUDE_DIR)

if(libdw_FOUND AND NOT TARGET libdw::libdw)
  add_library(libdw::libdw UNKNOWN IMPORTED)
  set_target_properties(libdw::libdw PROPERTIES
    IMPORTED_LOCATION ${libdw_LIBRARY}
    INTERFACE_INCLUDE_DIRECTORIES ${libdw_INCLUDE_DIR}
    INTERFACE_LINK_LIBRARIES ${libdw_libelf_LIBRARY})
endif()
