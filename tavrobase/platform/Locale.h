// SPDX-License-Identifier: Apache-2.0
#pragma once

namespace Tavro::Platform {

/// While it lives, the C library's text and number functions on this thread behave as in the "C"
/// locale: "." is the decimal point, and a character is a byte.
class PlainLocaleScope {
public:
    PlainLocaleScope();
    ~PlainLocaleScope();
    PlainLocaleScope(const PlainLocaleScope&) = delete;
    PlainLocaleScope& operator=(const PlainLocaleScope&) = delete;
    PlainLocaleScope(PlainLocaleScope&&) = delete;
    PlainLocaleScope& operator=(PlainLocaleScope&&) = delete;

private:
    void* m_saved; // the system's handle of the locale before
};

} // namespace Tavro::Platform
