// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "geometry/ValueTypes.h"

#include <string>
#include <vector>

namespace Bench {

using Facets = std::vector<Tavro::Facet<double, 3, 3>>;

/// "sphere20k", "sphere200k", "sphere1m": the unit sphere in about that many facets; "robin": the
/// ROBIN body with its pylon. Empty for any other name.
[[nodiscard]] Facets body_named(const std::string& name);

/// The longest side of the box around the facets.
[[nodiscard]] double extent_of(const Facets& facets);

} // namespace Bench
