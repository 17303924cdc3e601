# SPDX-License-Identifier: Apache-2.0
# The POSIX regular expressions (regex.h): those of the C library, or of TRE where it has none.
set(VORTIK_REGEX_LIBRARY "")
if(WIN32)
  find_path(VORTIK_REGEX_INCLUDE_DIR regex.h PATH_SUFFIXES tre REQUIRED)
  find_library(VORTIK_TRE_LIBRARY tre REQUIRED)
  add_library(vortik_regex INTERFACE IMPORTED GLOBAL)
  target_include_directories(vortik_regex SYSTEM INTERFACE "${VORTIK_REGEX_INCLUDE_DIR}")
  target_link_libraries(vortik_regex INTERFACE "${VORTIK_TRE_LIBRARY}")
  set(VORTIK_REGEX_LIBRARY vortik_regex)
endif()
