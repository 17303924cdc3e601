// SPDX-License-Identifier: Apache-2.0
#include "tests/case/Comparison.h"

#include <algorithm>

namespace Testing {

namespace {

std::string byte_name(const std::string& bytes, std::size_t i)
{
    if (i >= bytes.size())
        return "the end";
    constexpr const char* kDigits = "0123456789ABCDEF";
    const auto byte = static_cast<unsigned char>(bytes[i]);
    return std::string("0x") + kDigits[byte / 16] + kDigits[byte % 16];
}

std::string line_around(const std::string& bytes, std::size_t begin)
{
    return begin > bytes.size()
        ? ""
        : bytes.substr(begin, std::min(bytes.find('\n', begin), begin + 120) - begin);
}

} // namespace

testing::AssertionResult same_bytes(const std::string& expected, const std::string& actual)
{
    if (expected == actual)
        return testing::AssertionSuccess();
    const auto limit = std::min(expected.size(), actual.size());
    std::size_t at = 0;
    while (at < limit && expected[at] == actual[at])
        ++at;
    const auto line
        = std::count(expected.begin(), expected.begin() + static_cast<long>(at), '\n') + 1;
    const std::size_t begin = at == 0 ? 0 : expected.rfind('\n', at - 1) + 1;
    return testing::AssertionFailure()
        << "first difference at line " << line << ", column " << at - begin + 1 << ", byte " << at
        << ": expected " << byte_name(expected, at) << ", got " << byte_name(actual, at)
        << "\nexpected: " << line_around(expected, begin)
        << "\n     got: " << line_around(actual, begin) << "\nsizes: " << expected.size() << " and "
        << actual.size();
}

} // namespace Testing
