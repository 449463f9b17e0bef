# The libraries that the tool is built with: the name that CMake finds each by, and the Debian package that brings it.
# Without one of them, NPXLATE_TOOL=AUTO becomes OFF and says which is missing; ON is an error then.
set(tool_libraries
  CLI11:libcli11-dev
  fmt:libfmt-dev
  nlohmann_json:nlohmann-json3-dev
  absl:libabsl-dev
  TBB:libtbb-dev
  libdw:libdw-dev
  tomlplusplus:libtomlplusplus-dev)

list(APPEND CMAKE_MODULE_PATH ${CMAKE_CURRENT_LIST_DIR})
if(NPXLATE_TOOL)
  set(missing "")
  set(packages "")
  foreach(library IN LISTS tool_libraries)
    string(REGEX MATCH "^[^:]+" name ${library})
    find_package(${name} QUIET)
    if(NOT ${name}_FOUND)
      string(REGEX REPLACE "^[^:]+:" "" package ${library})
      list(APPEND missing ${name})
      list(APPEND packages ${package})
    endif()
  endforeach()
  if(missing)
    list(JOIN missing ", " missing)
    list(JOIN packages " " packages)
    set(advice "The tool needs libraries that are not there: ${missing}. On Debian: apt-get install ${packages}")
    if(NOT NPXLATE_TOOL STREQUAL "AUTO")
      message(FATAL_ERROR "${advice}\nThe library alone, which needs none of them: -DNPXLATE_TOOL=OFF")
    endif()
    message(STATUS "${advice}")
    message(STATUS "Building the library alone")
    set(NPXLATE_TOOL OFF)
  else()
    set(NPXLATE_TOOL ON)
  endif()
endif()
