# SPDX-License-Identifier: Apache-2.0
# One call per folder: its library, its tests, its benchmark, its fuzz target.

set(VORTIK_COMMON_HEADERS
  <algorithm> <array> <charconv> <cmath> <cstdint> <filesystem> <fstream> <functional> <iostream>
  <limits> <map> <memory> <mutex> <optional> <sstream> <string> <string_view> <thread> <vector>)

# vortik_add_folders(BASE folder...)
# Those of the folders below BASE that have something to build, in their order.
function(vortik_add_folders base)
  foreach(folder IN LISTS ARGN)
    if(EXISTS "${CMAKE_CURRENT_SOURCE_DIR}/${base}/${folder}/CMakeLists.txt")
      add_subdirectory(${base}/${folder})
    endif()
  endforeach()
endfunction()

# vortik_precompile(NAME)
# Where VORTIK_PRECOMPILE_LIBRARIES says so, lets the sources of a library begin with what most of them
# include, read by the compiler once. Each still includes what it uses: other presets compile it alone.
function(vortik_precompile name)
  if(NOT VORTIK_PRECOMPILE_LIBRARIES)
    return()
  endif()
  if(NOT TARGET library_headers)
    add_library(library_headers STATIC "${PROJECT_SOURCE_DIR}/cmake/Precompiled.cpp")
    target_link_libraries(library_headers PRIVATE vortik_compile)
    target_precompile_headers(library_headers PRIVATE ${VORTIK_COMMON_HEADERS})
  endif()
  target_precompile_headers(${name} REUSE_FROM library_headers)
  # What is read so loses its mark of a system's header, and g++ 12 warns of sums of strings in it.
  target_compile_options(${name} PRIVATE
    $<$<CXX_COMPILER_ID:GNU>:-Wno-array-bounds;-Wno-restrict;-Wno-stringop-overflow;-Wno-stringop-overread>)
endfunction()

# vortik_library(NAME SOURCES source... [USES library...] [PLAIN])
# The static library of the folder that calls it. What a folder may use is checked by a test. Of a PLAIN one
# nothing is ever precompiled.
function(vortik_library name)
  cmake_parse_arguments(arg "PLAIN" "" "SOURCES;USES" ${ARGN})
  add_library(${name} STATIC ${arg_SOURCES})
  add_library(Vortik::${name} ALIAS ${name})
  target_include_directories(${name} PUBLIC
    $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}>
    $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}/vortik>)
  target_link_libraries(${name} PUBLIC vortik_compile ${arg_USES})
  if(NOT arg_PLAIN)
    vortik_precompile(${name})
  endif()
  set_property(GLOBAL APPEND PROPERTY VORTIK_LIBRARIES ${name})
  file(RELATIVE_PATH folder "${PROJECT_SOURCE_DIR}" "${CMAKE_CURRENT_SOURCE_DIR}")
  set_property(GLOBAL APPEND PROPERTY VORTIK_FOLDERS ${folder})
endfunction()

# vortik_posix_tests(FILE VARIABLE)
# The filter that leaves out what a file lists, one "Suite.Name  why" a line: tests of what only POSIX
# systems have, which another system's tests replace by their own. Empty on POSIX systems.
function(vortik_posix_tests file variable)
  set(filter "")
  if(NOT VORTIK_PLATFORM STREQUAL posix)
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${CMAKE_CURRENT_SOURCE_DIR}/${file}")
    file(STRINGS "${file}" lines REGEX "^[A-Za-z]")
    list(TRANSFORM lines REPLACE " .*" "")
    list(JOIN lines ":" names)
    set(filter "--gtest_filter=-${names}")
  endif()
  set(${variable} "${filter}" PARENT_SCOPE)
endfunction()

# vortik_test(NAME SOURCES source... USES library... [SLOW] [OPTIMISED] [FILTER filter] [SHARDS number])
# One test program; every test of it becomes a test of ctest, or, where starting a program takes
# longer than most tests (VORTIK_TESTS_BY_PROGRAM), the program does, or each of its SHARDS, which
# programs with isolated bodies cannot have. The sanitizers run all but SLOW ones.
# What a test program does itself takes no time worth the compiler's, which is most of a build under
# the sanitizers; those that calculate at length are OPTIMISED.
function(vortik_test name)
  cmake_parse_arguments(arg "SLOW;OPTIMISED" "FILTER;SHARDS" "SOURCES;USES" ${ARGN})
  if(arg_SLOW AND VORTIK_SANITIZE)
    add_executable(${name} EXCLUDE_FROM_ALL ${arg_SOURCES})
    target_link_libraries(${name} PRIVATE ${arg_USES} test_support GTest::gtest GTest::gtest_main)
    return()
  endif()
  add_executable(${name} ${arg_SOURCES})
  if(NOT arg_OPTIMISED)
    target_compile_options(${name} PRIVATE $<IF:$<CXX_COMPILER_ID:MSVC>,/Od,-O0>)
    if(VORTIK_PRECOMPILE)
      target_precompile_headers(${name} REUSE_FROM test_headers)
    endif()
  endif()
  target_link_libraries(${name} PRIVATE ${arg_USES} test_support GTest::gtest GTest::gtest_main)
  set(label quick)
  set(cost 0)
  if(arg_SLOW)
    set(label slow)
    set(cost 100) # begun first: the last of them would keep one processor busy alone
  endif()
  if(VORTIK_TESTS_BY_PROGRAM)
    if(NOT arg_SHARDS)
      set(arg_SHARDS 1)
    endif()
    math(EXPR last "${arg_SHARDS} - 1")
    foreach(shard RANGE ${last})
      set(test ${name})
      if(last GREATER 0)
        string(APPEND test _${shard})
      endif()
      add_test(NAME ${test} COMMAND ${name} ${arg_FILTER})
      set(environment "USER=vortik-test-${test}") # objects of the user are then the test's own
      if(last GREATER 0)
        list(APPEND environment GTEST_TOTAL_SHARDS=${arg_SHARDS} GTEST_SHARD_INDEX=${shard})
      endif()
      set_tests_properties(${test} PROPERTIES LABELS ${label} COST ${cost} TIMEOUT 600
        ENVIRONMENT "${environment}")
    endforeach()
    return()
  endif()
  gtest_discover_tests(${name} NO_PRETTY_VALUES DISCOVERY_MODE PRE_TEST DISCOVERY_TIMEOUT 60
    PROPERTIES LABELS ${label} COST ${cost} TIMEOUT 300)
endfunction()

# vortik_bench(NAME SOURCES source... USES library...)
function(vortik_bench name)
  cmake_parse_arguments(arg "" "" "SOURCES;USES" ${ARGN})
  add_executable(${name} ${arg_SOURCES})
  target_link_libraries(${name} PRIVATE ${arg_USES} benchmark::benchmark benchmark::benchmark_main)
endfunction()

# vortik_fuzz(NAME SOURCES source... USES library...)
function(vortik_fuzz name)
  cmake_parse_arguments(arg "" "" "SOURCES;USES" ${ARGN})
  add_executable(${name} ${arg_SOURCES})
  target_link_libraries(${name} PRIVATE ${arg_USES})
  target_compile_options(${name} PRIVATE -fsanitize=fuzzer)
  target_link_options(${name} PRIVATE -fsanitize=fuzzer)
endfunction()
