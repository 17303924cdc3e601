// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "airfoil/TableLines.h"

#include <string>
#include <vector>

/// Owners of lines, for tests.
namespace Owners {

/// Writes down every repair as "from>to" and gives the answer it was made with.
class Recorder : public Tavro::BaseData {
public:
    explicit Recorder(bool accepts = true)
        : m_accepts(accepts)
    {
    }
    [[nodiscard]] bool conversionWarning(
        const std::string& from, const std::string& to) const override
    {
        m_heard.push_back(from + ">" + to);
        return m_accepts;
    }
    mutable std::vector<std::string> m_heard;

private:
    bool m_accepts;
};

using Heard = std::vector<std::string>;

} // namespace Owners
