// SPDX-License-Identifier: Apache-2.0
#include "tavrobase/platform/windows/SystemNumber.h"

#include <array>

namespace Tavro::Platform::Windows {

std::string system_text(ErrorNumber number)
{
    std::array<char, 512> words {};
    const auto length = ::FormatMessageA(
        FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS | FORMAT_MESSAGE_MAX_WIDTH_MASK,
        nullptr, static_cast<DWORD>(number), MAKELANGID(LANG_ENGLISH, SUBLANG_ENGLISH_US),
        words.data(), static_cast<DWORD>(words.size()), nullptr);
    std::string text(words.data(), length);
    text.erase(text.find_last_not_of(" .\r\n") + 1);
    return text.empty() ? "error " + std::to_string(number) : text;
}

} // namespace Tavro::Platform::Windows
