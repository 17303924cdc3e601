// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "geometry/ValueTypes.h"

#include <boost/multiprecision/cpp_int.hpp>

#include <array>
#include <utility>

namespace Testing {

/// Whole numbers of up to 127 bits: determinants of coordinates of up to 24 bits fit.
using Whole = boost::multiprecision::int128_t;

/// The exact answers, from the definition of the perturbation and not from its table of terms.
template <typename Number>
class ExactOracle {
public:
    using Point = Tavro::Vector<double, 3>;

    /// Sign of the determinant of a-d, b-d, c-d.
    static int volume_sign(const Point& a, const Point& b, const Point& c, const Point& d)
    {
        return sign(determinant({ row(a), row(b), row(c), row(d) }));
    }

    /// Sign of the determinant of the rows (x, y, z, 1) after e^(2^(3 i + 2 - j)) has been added to
    /// coordinate j of row i, for an e as small as it takes [EdelsbrunnerMuecke90 sect. 3]: the
    /// coefficient of the lowest power of e that is not zero. A sum of such powers of two is a set
    /// of coordinates; its coefficient is the determinant with a unit row for each of them.
    static int perturbed_sign(const std::array<Point, 4>& points)
    {
        for (unsigned int set = 0; set < 1U << 12; ++set) {
            std::array<Row, 4> rows { row(points[0]), row(points[1]), row(points[2]),
                row(points[3]) };
            bool oncePerRow = true;
            for (std::size_t i = 0; i < 4; ++i) {
                const unsigned int used = set >> (3 * i) & 7U;
                oncePerRow = oncePerRow && (used & (used - 1)) == 0;
                if (used != 0) {
                    const std::size_t j = used == 1 ? 2 : used == 2 ? 1 : 0;
                    rows[i] = Row { 0, 0, 0, 0 };
                    rows[i][j] = 1;
                }
            }
            if (!oncePerRow) {
                continue;
            }
            if (const int found = sign(determinant(rows))) {
                return found;
            }
        }
        return 0;
    }

    /// Sorts the rows as far as strict minima go, and answers for them by the perturbation.
    static bool orientation(const Point& a, const Point& b, const Point& c, const Point& d)
    {
        if (const int plain = volume_sign(a, b, c, d)) {
            return plain > 0;
        }
        std::array<Point, 4> rows { a, b, c, d };
        bool odd = false;
        for (std::size_t place = 0; place < 3; ++place) {
            for (std::size_t least = place + 1; least < 4; ++least) {
                bool below = true;
                for (std::size_t other = place; other < 4; ++other) {
                    below = below && (other == least || is_below(rows[least], rows[other]));
                }
                if (below) {
                    std::swap(rows[place], rows[least]);
                    odd = !odd;
                    break;
                }
            }
        }
        return (perturbed_sign(rows) > 0) != odd;
    }

private:
    using Row = std::array<Number, 4>;

    static Row row(const Point& p) { return { Number(p[0]), Number(p[1]), Number(p[2]), 1 }; }

    static bool is_below(const Point& p, const Point& q)
    {
        return std::array { p[0], p[1], p[2] } < std::array { q[0], q[1], q[2] };
    }

    static int sign(const Number& x) { return x.sign(); }

    static Number determinant(const std::array<Row, 4>& m)
    {
        // By the minors of two rows each.
        const auto minor = [&](std::size_t first, std::size_t j, std::size_t k) {
            return Number(m[first][j] * m[first + 1][k] - m[first][k] * m[first + 1][j]);
        };
        return minor(0, 0, 1) * minor(2, 2, 3) - minor(0, 0, 2) * minor(2, 1, 3)
            + minor(0, 0, 3) * minor(2, 1, 2) + minor(0, 1, 2) * minor(2, 0, 3)
            - minor(0, 1, 3) * minor(2, 0, 2) + minor(0, 2, 3) * minor(2, 0, 1);
    }
};

} // namespace Testing
