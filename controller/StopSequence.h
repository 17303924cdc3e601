// SPDX-License-Identifier: Apache-2.0
#pragma once

/// Carries out a stop that the front end has asked for: forwards it to the step program that runs,
/// publishes and records `StepStopped`, gives the links back and ends the process with status 0.
/// Nothing is waited for. A program that has attached to its link finds its flag set, unless it is
/// a hybrid stage; one that has not may find the link gone.
///
/// Threads: called by the update thread, which holds the controller mutex and keeps it. The main
/// thread goes on until it wants the mutex: it publishes no other step and makes no other link.
/// Before that it may still print, write cards and copies, and start the one program whose link is
/// made already, if the stop comes between its last look at the mutex and the start. The process
/// ends without destroying static objects, which the main thread may be using.
[[noreturn]] void stop_run();
