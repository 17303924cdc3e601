// SPDX-License-Identifier: Apache-2.0
#include "case/BoundaryType.h"

int TypeToID(int type)
{
    switch (type) {
    case 0:
        return -2;
    case 1:
        return 0;
    default:
        return -5;
    }
}
