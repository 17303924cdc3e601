// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "tavrobase/platform/Errors.h"

/// The thread that keeps the front end's link alive while the main thread waits for step programs:
/// every three seconds it stamps the link, forwards the solver's progress and looks for a request
/// to stop, which it carries out itself.

/// Body of the thread; `unused` is null.
void* update_link(void* unused);

/// Starts the thread. Once per process.
[[nodiscard]] Tavro::Platform::ErrorNumber start_update_thread();

/// Waits until the thread ends by itself, which it does at its first turn after the last step.
void join_update_thread();

/// Ends the thread without another turn, for a run that has failed: what is published from here on
/// is the main thread's alone. If a stop is being carried out, the process ends in this call. Does
/// nothing if there is no thread.
void dismiss_update_thread();
