// SPDX-License-Identifier: Apache-2.0
#include "geometry/ExactDouble.h"

#include <locale>
#include <sstream>

namespace Tavro {

ExactDouble& ExactDouble::operator=(const double& value)
{
    // The reference may lie in what is cut.
    const double kept = value;
    m_vdExpansion.resize(1);
    m_vdExpansion[0] = kept;
    return *this;
}

std::string ExactDouble::ToString() const
{
    std::ostringstream text;
    text.imbue(std::locale::classic());
    text << "{ ";
    for (std::size_t i = m_vdExpansion.size(); i-- > 0;) {
        text << m_vdExpansion[i];
        if (i != 0) {
            text << " + \n";
        }
    }
    text << " }";
    return text.str();
}

ExactDouble ExactDouble::operator+(const double& d) const
{
    return ExactDouble(Compress(GrowExpansion(m_vdExpansion, d)));
}

ExactDouble ExactDouble::operator+(const ExactDouble& d) const
{
    return ExactDouble(Compress(FastExpansionSum(m_vdExpansion, d.m_vdExpansion)));
}

ExactDouble ExactDouble::operator-(const double& d) const
{
    return ExactDouble(Compress(GrowExpansion(m_vdExpansion, -d)));
}

ExactDouble ExactDouble::operator-(const ExactDouble& d) const
{
    return ExactDouble(
        Compress(FastExpansionSum(m_vdExpansion, ScaleExpansion(d.m_vdExpansion, -1.0))));
}

ExactDouble ExactDouble::operator*(const double& d) const
{
    return ExactDouble(Compress(ScaleExpansion(m_vdExpansion, d)));
}

ExactDouble ExactDouble::operator*(const ExactDouble& d) const
{
    return ExactDouble(Compress(ExpansionProduct(m_vdExpansion, d.m_vdExpansion)));
}

bool ExactDouble::operator<(const double& d) const { return (*this - d).GetApproximation() < 0.0; }

bool ExactDouble::operator<(const ExactDouble& d) const
{
    return (*this - d).GetApproximation() < 0.0;
}

bool ExactDouble::operator>(const double& d) const { return (*this - d).GetApproximation() > 0.0; }

bool ExactDouble::operator>(const ExactDouble& d) const
{
    return (*this - d).GetApproximation() > 0.0;
}

bool ExactDouble::operator==(const double& d) const
{
    return (*this - d).GetApproximation() == 0.0;
}

bool ExactDouble::operator==(const ExactDouble& d) const
{
    return (*this - d).GetApproximation() == 0.0;
}

// A NaN is neither below nor above nor equal, hence at once at most, at least and unequal.
bool ExactDouble::operator<=(const double& d) const { return !(*this > d); }

bool ExactDouble::operator<=(const ExactDouble& d) const { return !(*this > d); }

bool ExactDouble::operator>=(const double& d) const { return !(*this < d); }

bool ExactDouble::operator>=(const ExactDouble& d) const { return !(*this < d); }

bool ExactDouble::operator!=(const double& d) const { return !(*this == d); }

bool ExactDouble::operator!=(const ExactDouble& d) const { return !(*this == d); }

} // namespace Tavro
