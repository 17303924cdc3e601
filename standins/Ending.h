// SPDX-License-Identifier: Apache-2.0
#pragma once

/// Ways out of the middle of a program's work that are no failures of its input.
namespace Standins {

/// The controller asked for it.
struct Stopped { };

/// The environment asked for it.
struct FailedOnDemand { };

} // namespace Standins
