// SPDX-License-Identifier: Apache-2.0
#include "case/CaseFileWriter.h"

namespace VRK::CaseFile {

void Writer::short_text(const std::string& text)
{
    const std::uint32_t length = counted(text);
    bytes(text.data(), length);
}

void Writer::long_text(const std::string& text)
{
    values(std::uint64_t { text.size() });
    bytes(text.data(), text.size());
}

} // namespace VRK::CaseFile
