# SPDX-License-Identifier: Apache-2.0
# How every source of ours is compiled, in one interface target.
#
# Floating-point results are part of the product: a product is rounded before a sum takes it
# (-ffp-contract=off, which /fp:precise is too), no fast-math flag is ever set, and IEEE doubles are used as they are.

set(VORTIK_SANITIZE "" CACHE STRING "Value of -fsanitize= for all of our code")
option(VORTIK_COVERAGE "Instrument for gcov" OFF)

set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/bin")
set(CMAKE_ARCHIVE_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/lib")
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/lib")

set(CMAKE_CXX_FLAGS_RELEASE "-O2")
set(CMAKE_CXX_FLAGS_SANITIZED "-O1 -g1 -fno-omit-frame-pointer")

add_library(vortik_compile INTERFACE)
target_compile_features(vortik_compile INTERFACE cxx_std_20)
if(MSVC)
  target_compile_options(vortik_compile INTERFACE
    /fp:precise /EHsc /permissive- /Zc:__cplusplus $<BUILD_INTERFACE:/W4;/utf-8>)
  target_compile_definitions(vortik_compile INTERFACE NOMINMAX _CRT_SECURE_NO_WARNINGS)
else()
  target_compile_options(vortik_compile INTERFACE
    -ffp-contract=off
    # Sources are known by their path in the tree, in reports too.
    $<BUILD_INTERFACE:-ffile-prefix-map=${PROJECT_SOURCE_DIR}/=>
    $<BUILD_INTERFACE:-Wall;-Wextra;-Wpedantic;-Wconversion;-Wshadow;-Wsign-conversion>
    $<BUILD_INTERFACE:-Wold-style-cast;-Wnon-virtual-dtor;-Woverloaded-virtual;-Wcast-align>
    $<BUILD_INTERFACE:-Wformat=2;-Wundef;-Werror>)
endif()
if(VORTIK_SANITIZE)
  # Instrumented, g++ 12 takes members of standard library types for uninitialised that are not.
  target_compile_options(vortik_compile INTERFACE
    -fsanitize=${VORTIK_SANITIZE} -fno-sanitize-recover=all
    $<$<CXX_COMPILER_ID:GNU>:-Wno-maybe-uninitialized>)
  target_link_options(vortik_compile INTERFACE
    -fsanitize=${VORTIK_SANITIZE} -fno-sanitize-recover=all)
endif()
if(VORTIK_BUILD_FUZZ)
  # A fuzzer is led by the branches of what it calls, so the libraries count them too.
  target_compile_options(vortik_compile INTERFACE -fsanitize=fuzzer-no-link)
endif()
if(VORTIK_COVERAGE)
  target_compile_options(vortik_compile INTERFACE --coverage)
  target_link_options(vortik_compile INTERFACE --coverage)
endif()
if(MINGW)
  # One executable that needs no library of a compiler beside it.
  target_link_options(vortik_compile INTERFACE -static)
endif()
