// SPDX-License-Identifier: Apache-2.0
#include "tavrobase/platform/Locale.h"

#include "tavrobase/platform/posix/CLocale.h"

namespace Tavro::Platform {

PlainLocaleScope::PlainLocaleScope()
    : m_saved(::uselocale(Posix::c_locale()))
{
}

PlainLocaleScope::~PlainLocaleScope() { ::uselocale(static_cast<locale_t>(m_saved)); }

} // namespace Tavro::Platform
