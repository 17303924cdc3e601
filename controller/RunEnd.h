// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "controller/RunSequence.h"

/// Publishes and records that the run is complete, and gives back everything in order.
void finish_run();

/// Reports a failure, publishes and records its step, and gives back everything at once. Nothing is
/// cleaned up: a failed run is started again by the front end.
void fail_run(const RunFailure& failure);

/// Gives back the front end's link, the mutex and the links, in this order. There must be no update
/// thread.
void give_everything_back();
