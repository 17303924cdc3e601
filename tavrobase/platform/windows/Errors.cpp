// SPDX-License-Identifier: Apache-2.0
#include "tavrobase/platform/Errors.h"

#include "tavrobase/platform/windows/SysError.h"

#include <array>
#include <cstring>

namespace Tavro::Platform {

namespace {

constexpr ErrorNumber kFirstOfTheNetwork = 10000; // WSABASEERR; the C library has none as high

std::string system_text(ErrorNumber error)
{
    std::array<char, 512> text {};
    const DWORD length = ::FormatMessageA(
        FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS | FORMAT_MESSAGE_MAX_WIDTH_MASK,
        nullptr, static_cast<DWORD>(error), MAKELANGID(LANG_ENGLISH, SUBLANG_ENGLISH_US),
        text.data(), static_cast<DWORD>(text.size()), nullptr);
    std::string words(text.data(), length);
    while (words.ends_with(' '))
        words.pop_back();
    return words.empty() ? "Unknown error" : words;
}

} // namespace

std::string error_text(ErrorNumber error)
{
    // The texts of the C library here are in English whatever the locale.
    return error < kFirstOfTheNetwork ? std::strerror(error) : system_text(error);
}

} // namespace Tavro::Platform
