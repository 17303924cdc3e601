// SPDX-License-Identifier: Apache-2.0
#include "tavrobase/platform/Locale.h"

#include "tavrobase/platform/posix/CLocale.h"

namespace Tavro::Platform {

struct PlainLocaleScope::Saved {
    locale_t locale;
};

PlainLocaleScope::PlainLocaleScope()
    : m_saved(std::make_unique<Saved>(Saved { ::uselocale(Posix::c_locale()) }))
{
}

PlainLocaleScope::~PlainLocaleScope() { ::uselocale(m_saved->locale); }

} // namespace Tavro::Platform
