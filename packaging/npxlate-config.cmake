# npxlate::npxlate is the library that was installed; npxlate::npxlate_static the static one.
include(${CMAKE_CURRENT_LIST_DIR}/npxlate-targets.cmake)
if(NOT TARGET npxlate::npxlate_static)
  add_library(npxlate::npxlate_static ALIAS npxlate::npxlate)
endif()
