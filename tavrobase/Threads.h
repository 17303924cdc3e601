// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "tavrobase/platform/Threads.h"

/// For folders that use the system through the base library alone.
namespace Tavro {

using Platform::Mutex;
using Platform::Thread;

} // namespace Tavro
