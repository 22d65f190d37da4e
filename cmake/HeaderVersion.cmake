# Sets YH_HEADER_VERSION to the version the public header declares, so that
# the version is kept in one place.
file(STRINGS ${CMAKE_CURRENT_LIST_DIR}/../include/libYH.h YH_VERSION_LINES
     REGEX "^#define LIBYH_VERSION_(MAJOR|MINOR|PATCH) [0-9]+$")
set(YH_HEADER_VERSION "")
foreach(part MAJOR MINOR PATCH)
  set(number "")
  foreach(line ${YH_VERSION_LINES})
    if(line MATCHES "^#define LIBYH_VERSION_${part} ([0-9]+)$")
      set(number ${CMAKE_MATCH_1})
    endif()
  endforeach()
  if(number STREQUAL "")
    message(FATAL_ERROR "include/libYH.h declares no LIBYH_VERSION_${part}")
  endif()
  list(APPEND YH_HEADER_VERSION ${number})
endforeach()
list(JOIN YH_HEADER_VERSION "." YH_HEADER_VERSION)
