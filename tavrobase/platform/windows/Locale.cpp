// SPDX-License-Identifier: Apache-2.0
#include "tavrobase/platform/Locale.h"

#include <clocale>
#include <string>

#include <locale.h>

namespace Tavro::Platform {

namespace {

struct Saved {
    int perThread;
    std::string name;
};

} // namespace

PlainLocaleScope::PlainLocaleScope()
{
    // From here on a change is one of this thread alone.
    const int perThread = ::_configthreadlocale(_ENABLE_PER_THREAD_LOCALE);
    const char* name = std::setlocale(LC_ALL, nullptr);
    m_saved = new Saved { perThread, name == nullptr ? "C" : name };
    (void)std::setlocale(LC_ALL, "C"); // is always there
}

PlainLocaleScope::~PlainLocaleScope()
{
    const auto* saved = static_cast<Saved*>(m_saved);
    (void)std::setlocale(LC_ALL, saved->name.c_str()); // was in force before
    if (saved->perThread > 0)
        (void)::_configthreadlocale(saved->perThread); // as above
    delete saved;
}

} // namespace Tavro::Platform
