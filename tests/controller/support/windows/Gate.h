// SPDX-License-Identifier: Apache-2.0
#pragma once

/// There are no pipes among files here. A gate is a file with a word of its own, and the controller
/// of a test looks for that before it opens a file (`WrappedCalls.cpp`).
namespace Testing {

constexpr const char* kClosedGate = "this gate is closed";

} // namespace Testing
