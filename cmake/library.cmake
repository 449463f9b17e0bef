# The library. Written in C++, but needing nothing of its runtime: it is linked as a C library.
#
#   npxlate::npxlate          the shared library; the static one where BUILD_SHARED_LIBS is off
#   npxlate::npxlate_static   the static library, beside the shared one
file(GLOB library_sources CONFIGURE_DEPENDS frame/*.c frame/*.cpp tables/*/*.cpp)
add_library(npxlate_objects OBJECT ${library_sources})
target_compile_features(npxlate_objects PRIVATE c_std_11 cxx_std_20)
target_include_directories(npxlate_objects PRIVATE ${PROJECT_SOURCE_DIR} ${PROJECT_SOURCE_DIR}/include)
set_target_properties(npxlate_objects PROPERTIES
  C_VISIBILITY_PRESET hidden
  CXX_VISIBILITY_PRESET hidden
  VISIBILITY_INLINES_HIDDEN ON)
# The stack protector would add an import, __stack_chk_fail, to guard buffers that do not grow: every position in a
# record is checked when it is compiled, and the copies of variable length go from the caller's memory to the caller's.
target_compile_options(npxlate_objects PRIVATE -fno-stack-protector -fno-semantic-interposition
  $<$<COMPILE_LANGUAGE:CXX>:-fno-exceptions;-fno-rtti>)
# Jumps and calls land only where they may, on processors that check it.
if(CMAKE_SYSTEM_PROCESSOR MATCHES "^(x86_64|AMD64|amd64|i[3-6]86)$")
  target_compile_options(npxlate_objects PRIVATE -fcf-protection=full)
elseif(CMAKE_SYSTEM_PROCESSOR MATCHES "^(aarch64|arm64)$")
  target_compile_options(npxlate_objects PRIVATE -mbranch-protection=standard)
endif()
if(NPXLATE_TESTS)
  # The check of the binary interface reads the types from the debug information. Packages are stripped.
  target_compile_options(npxlate_objects PRIVATE -g -gz)
endif()
if(NPXLATE_COVERAGE)
  target_compile_options(npxlate_objects PRIVATE --coverage)
endif()

set(library_targets "")
if(NOT DEFINED BUILD_SHARED_LIBS OR BUILD_SHARED_LIBS)
  set(NPXLATE_SHARED ON)
  set_target_properties(npxlate_objects PROPERTIES POSITION_INDEPENDENT_CODE ON)
  add_library(npxlate SHARED $<TARGET_OBJECTS:npxlate_objects>)
  add_library(npxlate_static STATIC $<TARGET_OBJECTS:npxlate_objects>)
  set_target_properties(npxlate_static PROPERTIES OUTPUT_NAME npxlate)
  if(NOT PROJECT_IS_TOP_LEVEL)
    set_target_properties(npxlate_static PROPERTIES EXCLUDE_FROM_ALL ON)
  endif()
  add_library(npxlate::npxlate_static ALIAS npxlate_static)
  set(library_targets npxlate npxlate_static)

  set(exports ${PROJECT_SOURCE_DIR}/frame/exports.map)
  set_target_properties(npxlate PROPERTIES
    VERSION ${PROJECT_VERSION}
    SOVERSION ${PROJECT_VERSION_MAJOR}
    LINK_DEPENDS ${exports})
  # CMake adds the C++ runtime to whatever has C++ sources; nothing here uses it, so it is not to be needed. What the
  # loader fills in, it fills in at once, and makes read-only.
  target_link_options(npxlate PRIVATE
    LINKER:--version-script=${exports} LINKER:--as-needed LINKER:-z,relro LINKER:-z,now LINKER:-z,noexecstack)
  if(NPXLATE_COVERAGE)
    target_link_options(npxlate PRIVATE --coverage)
  endif()
  if(NOT NPXLATE_INSTRUMENTED)
    # There is no start-up work, so the start files would bring only imports.
    target_link_options(npxlate PRIVATE -nostartfiles LINKER:-z,defs)
  endif()
else()
  set(NPXLATE_SHARED OFF)
  add_library(npxlate STATIC $<TARGET_OBJECTS:npxlate_objects>)
  add_library(npxlate::npxlate_static ALIAS npxlate)
  set(library_targets npxlate)
endif()
add_library(npxlate::npxlate ALIAS npxlate)

foreach(target IN LISTS library_targets)
  target_include_directories(${target} PUBLIC
    $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/include> $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)
  set_target_properties(${target} PROPERTIES LINKER_LANGUAGE C)
endforeach()
