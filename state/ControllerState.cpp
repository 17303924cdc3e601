// SPDX-License-Identifier: Apache-2.0
#include "state/ControllerState.h"

ControllerState g_info;
