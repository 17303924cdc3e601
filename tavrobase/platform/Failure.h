// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "tavrobase/platform/Errors.h"

#include <string>

namespace Tavro::Platform {

/// Why a named object cannot be used. The number alone says too little where the system's calls all
/// succeeded and the object is still not ours to use.
struct [[nodiscard]] Failure {
    ErrorNumber error = 0;
    std::string reason; ///< one sentence for the user that names the object; empty on success

    [[nodiscard]] explicit operator bool() const { return error != 0; }
};

} // namespace Tavro::Platform
