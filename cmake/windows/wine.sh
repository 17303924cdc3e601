#!/bin/sh
# SPDX-License-Identifier: Apache-2.0
# Runs a Windows program, and ends with it: programs of Wine's own (its services, the host of a console
# whose first program was killed before it came to it) hold the output of whoever has started them,
# and may outlive it. Who waits for the end of a pipe would wait for them.
output=$(mktemp) || exit 1
trap 'rm -f "$output"' EXIT
wine "$@" >"$output" 2>&1 </dev/null
status=$?
cat "$output"
exit "$status"
