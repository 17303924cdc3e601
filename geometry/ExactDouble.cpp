// SPDX-License-Identifier: Apache-2.0
#include "geometry/ExactDouble.h"

#include "geometry/ErrorFree.h"

#include <cmath>
#include <locale>
#include <sstream>

namespace Tavro {

namespace {

// Below it a factor can be split: its product with -1 is exact and has an error of zero.
bool IsSplittable(double component) { return std::fabs(component) < 0x1p996; }

// ScaleExpansion(f, -1.0) without the products and all its zeros but the first. That one stays, for
// it makes the sum start with a step that needs no order of magnitude.
Expansion Negative(const Expansion& f)
{
    if (!std::all_of(f.begin(), f.end(), IsSplittable)) {
        return ScaleExpansion(f, -1.0);
    }
    Expansion negative = Expansion::OfSize(f.size() + 1);
    const double* from = f.begin();
    double* to = negative.begin();
    *to++ = 0.0;
    double q = -from[0];
    for (std::size_t i = 1; i < f.size(); ++i) {
        const auto [rounded, error] = ErrorFree::FastTwoSum(-from[i], q);
        *to++ = error;
        q = rounded;
    }
    *to = q;
    return negative;
}

} // namespace

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
    return { Compressed {}, [&] { return GrowExpansion(m_vdExpansion, d); } };
}

ExactDouble ExactDouble::operator+(const ExactDouble& d) const
{
    return { Compressed {}, [&] { return FastExpansionSum(m_vdExpansion, d.m_vdExpansion); } };
}

ExactDouble ExactDouble::operator-(const double& d) const
{
    return { Compressed {}, [&] { return GrowExpansion(m_vdExpansion, -d); } };
}

ExactDouble ExactDouble::operator-(const ExactDouble& d) const
{
    // Most differences are those of two coordinates.
    const Expansion& e = m_vdExpansion;
    const Expansion& f = d.m_vdExpansion;
    if (e.size() == 1 && f.size() == 1 && IsSplittable(e[0]) && IsSplittable(f[0])) {
        const ErrorFree::Pair pair = ErrorFree::TwoDif(e[0], f[0]);
        return { Compressed {}, [&] { return Expansion { pair.error, pair.rounded }; } };
    }
    return { Compressed {}, [&] { return FastExpansionSum(e, Negative(f)); } };
}

ExactDouble ExactDouble::operator*(const double& d) const
{
    return { Compressed {}, [&] { return ScaleExpansion(m_vdExpansion, d); } };
}

ExactDouble ExactDouble::operator*(const ExactDouble& d) const
{
    return { Compressed {}, [&] { return ExpansionProduct(m_vdExpansion, d.m_vdExpansion); } };
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
