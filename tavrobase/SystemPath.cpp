// SPDX-License-Identifier: Apache-2.0
#include "tavrobase/SystemPath.h"

#include <boost/filesystem/path.hpp>

namespace Tavro {

std::filesystem::path SystemPath(const std::string& text)
{
    return boost::filesystem::path(text).native();
}

std::string PathText(const std::filesystem::path& path)
{
    return boost::filesystem::path(path.native()).generic_string();
}

} // namespace Tavro
