// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "geometry/Expansion.h"

#include <string>
#include <utility>

/// Kernels of expansion arithmetic. An expansion is the exact sum of its components, which do not
/// overlap and grow in magnitude; kernels that return a pair return {rounding error, rounded
/// result}. Errors: none; an operand above 2^996 in a product gives NaN.  Threads: pure. Ref:
/// [Shewchuk97] sect. 2.
///@{

/// a + b; exact if the magnitude of a is not below b's.
[[nodiscard]] Tavro::Expansion FastTwoSum(double a, double b);
/// a - b; exact if the magnitude of a is not below b's.
[[nodiscard]] Tavro::Expansion FastTwoDif(double a, double b);
/// a + b
[[nodiscard]] Tavro::Expansion TwoSum(double a, double b);
/// a - b
[[nodiscard]] Tavro::Expansion TwoDif(double a, double b);
/// a as {low part, high part}, where the high part has 53 - s bits.
[[nodiscard]] Tavro::Expansion Split(double a, unsigned int s);
/// a * b; the error is exact if one of them has few bits, see docs/exact-arithmetic.md.
[[nodiscard]] Tavro::Expansion TwoProduct(double a, double b);

/// e + b, of one component more than e.
[[nodiscard]] Tavro::Expansion GrowExpansion(const Tavro::Expansion& e, double b);
/// e + f, by growing e with each component of f; of as many components as both have.
[[nodiscard]] Tavro::Expansion ExpansionSum(const Tavro::Expansion& e, const Tavro::Expansion& f);
/// All components in order of magnitude: on equal magnitudes b's first, a zero before anything.
[[nodiscard]] Tavro::Expansion MergeExpansions(
    const Tavro::Expansion& a, const Tavro::Expansion& b);
/// e + f, in one sweep over the merged components; of as many components as both have.
[[nodiscard]] Tavro::Expansion FastExpansionSum(
    const Tavro::Expansion& e, const Tavro::Expansion& f);
/// e + f, in one sweep that needs less of its operands; of as many components as both have.
[[nodiscard]] Tavro::Expansion LinearExpansionSum(
    const Tavro::Expansion& e, const Tavro::Expansion& f);
/// e * b, of twice as many components as e.
[[nodiscard]] Tavro::Expansion ScaleExpansion(const Tavro::Expansion& e, double b);
/// e * f, of twice the product of their numbers of components.
[[nodiscard]] Tavro::Expansion ExpansionProduct(
    const Tavro::Expansion& e, const Tavro::Expansion& f);
/// The non-zero components in order, or {0.0}.
[[nodiscard]] Tavro::Expansion EliminateZeros(const Tavro::Expansion& e);
/// The same value in as few components; the last one is non-zero unless it is the only one.
/// Up to two non-zero components stay as they are.
[[nodiscard]] Tavro::Expansion Compress(Tavro::Expansion e);
///@}

namespace Tavro {

/// `Compress` on the array itself.
void CompressInPlace(Expansion& e);

/// A real number without rounding error: the sum of an expansion that is never empty.
/// Each operator compresses its result, so that the last component has the sign of the value.
/// A comparison forms the whole difference.
/// Ownership: by value.  Errors: std::bad_alloc; none is reported for overflow or NaN.
class ExactDouble {
public:
    ExactDouble()
        : m_vdExpansion { 0.0 }
    {
    }
    // NOLINTNEXTLINE(*-explicit-constructor): every double is a number
    ExactDouble(double value)
        : m_vdExpansion { value }
    {
    }
    // Copied, never moved: what has been moved from would be empty.
    ExactDouble(const ExactDouble&) = default;
    ExactDouble& operator=(const ExactDouble&) = default;
    /// One component, whatever it had before.
    ExactDouble& operator=(const double& value);
    ~ExactDouble() = default;

    /// The last component.
    [[nodiscard]] double GetApproximation() const { return m_vdExpansion.back(); }
    /// A copy of the components.
    [[nodiscard]] Expansion GetExpansion() const { return m_vdExpansion; }
    /// +1, 0 or -1.
    [[nodiscard]] int GetSign() const
    {
        const double last = m_vdExpansion.back();
        return static_cast<int>(last > 0.0) - static_cast<int>(last < 0.0);
    }
    /// The components, largest first, in braces: "{ 1e+16 + \n1 }".
    [[nodiscard]] std::string ToString() const;

    [[nodiscard]] ExactDouble operator+(const double& d) const;
    [[nodiscard]] ExactDouble operator+(const ExactDouble& d) const;
    [[nodiscard]] ExactDouble operator-(const double& d) const;
    [[nodiscard]] ExactDouble operator-(const ExactDouble& d) const;
    [[nodiscard]] ExactDouble operator*(const double& d) const;
    [[nodiscard]] ExactDouble operator*(const ExactDouble& d) const;

    [[nodiscard]] bool operator<(const double& d) const;
    [[nodiscard]] bool operator<(const ExactDouble& d) const;
    [[nodiscard]] bool operator>(const double& d) const;
    [[nodiscard]] bool operator>(const ExactDouble& d) const;
    [[nodiscard]] bool operator==(const double& d) const;
    [[nodiscard]] bool operator==(const ExactDouble& d) const;
    [[nodiscard]] bool operator<=(const double& d) const;
    [[nodiscard]] bool operator<=(const ExactDouble& d) const;
    [[nodiscard]] bool operator>=(const double& d) const;
    [[nodiscard]] bool operator>=(const ExactDouble& d) const;
    [[nodiscard]] bool operator!=(const double& d) const;
    [[nodiscard]] bool operator!=(const ExactDouble& d) const;

private:
    // What `make` returns is built in its place, and compressed there.
    struct Compressed { };
    template <typename Make>
    ExactDouble(Compressed, const Make& make)
        : m_vdExpansion(make())
    {
        CompressInPlace(m_vdExpansion);
    }

    Expansion m_vdExpansion;
};

} // namespace Tavro
