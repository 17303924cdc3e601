# SPDX-License-Identifier: Apache-2.0
# What a cross-build for Windows needs beyond the compiler: libraries for the target, made of the
# sources that `./dev windows` has put into VORTIK_TARGET_SOURCES, and Wine to run the tests.
#
#   boost/  the sources of Boost.Filesystem
#   tre/    the sources of TRE, which has the POSIX regular expressions that Windows lacks
#   include/  headers of Boost, CLI11 and toml++, which are the same on every system
enable_language(C)

add_library(target_headers INTERFACE)
target_include_directories(target_headers SYSTEM INTERFACE "${VORTIK_TARGET_SOURCES}/include")

# vortik_target_library(NAME SOURCES source... [USES library...])
# A library that is not ours, compiled without our warnings.
function(vortik_target_library name)
  cmake_parse_arguments(arg "" "" "SOURCES;USES" ${ARGN})
  if(NOT arg_SOURCES)
    message(FATAL_ERROR "No sources of ${name} in ${VORTIK_TARGET_SOURCES}: run ./dev windows")
  endif()
  add_library(${name} STATIC ${arg_SOURCES})
  target_compile_options(${name} PRIVATE -w)
  target_link_libraries(${name} PUBLIC ${arg_USES})
endfunction()

file(GLOB sources "${VORTIK_TARGET_SOURCES}/boost/libs/filesystem/src/*.cpp")
vortik_target_library(target_boost_filesystem SOURCES ${sources} USES target_headers bcrypt)
target_compile_features(target_boost_filesystem PUBLIC cxx_std_20)
target_compile_definitions(target_boost_filesystem
  PUBLIC BOOST_ALL_NO_LIB BOOST_FILESYSTEM_STATIC_LINK
  PRIVATE BOOST_FILESYSTEM_SOURCE)
add_library(Boost::filesystem ALIAS target_boost_filesystem)

# Bytes are characters and matches are exact: the rest of TRE stays out.
set(tre "${VORTIK_TARGET_SOURCES}/tre/lib")
file(GLOB sources "${tre}/regcomp.c" "${tre}/regerror.c" "${tre}/regexec.c" "${tre}/tre-ast.c"
  "${tre}/tre-compile.c" "${tre}/tre-match-backtrack.c" "${tre}/tre-match-parallel.c"
  "${tre}/tre-mem.c" "${tre}/tre-parse.c" "${tre}/tre-stack.c")
vortik_target_library(target_tre SOURCES ${sources})
target_include_directories(target_tre SYSTEM PUBLIC
  "${CMAKE_CURRENT_LIST_DIR}/tre" "${tre}")
target_compile_definitions(target_tre PRIVATE HAVE_CONFIG_H NDEBUG)
set(VORTIK_REGEX_LIBRARY target_tre)

if(VORTIK_BUILD_TESTS)
  set(googletest /usr/src/googletest/googletest)
  vortik_target_library(gtest SOURCES ${googletest}/src/gtest-all.cc)
  target_include_directories(gtest SYSTEM PUBLIC ${googletest}/include PRIVATE ${googletest})
  target_compile_features(gtest PUBLIC cxx_std_20)
  add_library(GTest::gtest ALIAS gtest)
  vortik_target_library(gtest_main SOURCES ${googletest}/src/gtest_main.cc USES gtest)
  add_library(GTest::gtest_main ALIAS gtest_main)
endif()

# A Wine of our own: the user's, if there is one, is neither read nor changed.
set(CMAKE_CROSSCOMPILING_EMULATOR /usr/bin/env
  WINEPREFIX=${PROJECT_BINARY_DIR}/wine
  WINEDEBUG=-all
  "WINEDLLOVERRIDES=winemenubuilder.exe,mscoree,mshtml="
  "${CMAKE_CURRENT_LIST_DIR}/wine.sh")
