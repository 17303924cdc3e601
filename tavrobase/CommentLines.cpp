// SPDX-License-Identifier: Apache-2.0
#include "tavrobase/FileUtilities.h"

#include <limits>
#include <string_view>

namespace Tavro {

void SkipCommentLines(std::ifstream& stream, char comment)
{
    constexpr std::string_view kWhiteSpace = " \t\n\v\f\r";
    for (int next = stream.peek(); next != std::ifstream::traits_type::eof();
         next = stream.peek()) {
        const char character = std::ifstream::traits_type::to_char_type(next);
        if (character == comment)
            stream.ignore(std::numeric_limits<std::streamsize>::max(), '\n');
        else if (kWhiteSpace.find(character) != std::string_view::npos)
            stream.ignore();
        else
            return;
    }
}

} // namespace Tavro
