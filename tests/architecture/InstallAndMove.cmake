# SPDX-License-Identifier: Apache-2.0
# Installs the package, moves it, and lets another project find, link and run it from the new place.
string(RANDOM LENGTH 12 tag)
set(work "${BUILD_DIR}/install-test-${tag}")

function(run)
  execute_process(COMMAND ${ARGN} RESULT_VARIABLE status OUTPUT_VARIABLE out ERROR_VARIABLE out)
  if(NOT status EQUAL 0)
    file(REMOVE_RECURSE "${work}")
    string(REPLACE ";" " " command "${ARGN}")
    message(FATAL_ERROR "${command}\nended with ${status}:\n${out}")
  endif()
  set(out "${out}" PARENT_SCOPE)
endfunction()

run(${CMAKE_COMMAND} --install "${BUILD_DIR}" --prefix "${work}/first")
file(RENAME "${work}/first" "${work}/moved")
run(${CMAKE_COMMAND} -S "${CONSUMER_DIR}" -B "${work}/consumer" -G Ninja
  "-DCMAKE_CXX_COMPILER=${CXX}" "-DCMAKE_CXX_FLAGS=${FLAGS}" "-DCMAKE_PREFIX_PATH=${work}/moved")
run(${CMAKE_COMMAND} --build "${work}/consumer")
run("${work}/consumer/consumer")
file(REMOVE_RECURSE "${work}")
if(NOT out STREQUAL "no-such/place/x.txt 33\n")
  message(FATAL_ERROR "the consumer printed: ${out}")
endif()
