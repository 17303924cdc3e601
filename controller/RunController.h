// SPDX-License-Identifier: Apache-2.0
#pragma once

/// The whole life of a controller process, from its command line on. 0 for a run that has finished,
/// -1 for a failure; a run that is stopped ends the process with 0 and does not come back.
[[nodiscard]] int run_controller(int argc, const char* const* argv);
