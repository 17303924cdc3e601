// SPDX-License-Identifier: Apache-2.0
#pragma once

/// Carries out a stop that the front end has asked for: forwards it to the step program that runs,
/// publishes and records `StepStopped`, gives the links back and ends the process with status 0.
/// The program is not waited for: it reads its flag and ends by itself.
///
/// Threads: called by the update thread, which holds the controller mutex. The main thread may be
/// anywhere; it can neither get the mutex again nor meet a destructor of ours, so it can start no
/// other step.
[[noreturn]] void stop_run();
