// SPDX-License-Identifier: Apache-2.0
#include "tavrobase/platform/Errors.h"

#include "tavrobase/platform/posix/CLocale.h"

#include <cstring>

namespace Tavro::Platform {

std::string error_text(ErrorNumber error) { return ::strerror_l(error, Posix::c_locale()); }

} // namespace Tavro::Platform
