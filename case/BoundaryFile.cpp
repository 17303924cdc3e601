// SPDX-License-Identifier: Apache-2.0
#include "case/AdaptiveInput.h"

#include "case/BoundaryType.h"
#include "case/Card.h"

#include <ostream>

namespace {

constexpr const char* kFaces[6] = { "X-min", "X-max", "Y-min", "Y-max", "Z-min", "Z-max" };
constexpr std::int32_t kPressure = 0;
constexpr std::int32_t kVelocity = 1;

} // namespace

void format_bnd_cnd(std::ostream& card, const VRK::ControllerInput& input)
{
    VRK::Card::begin(card);
    for (int face = 0; face < 6; ++face) {
        const std::int32_t type = input.m_anBoundaryType[face];
        card << "# " << kFaces[face] << " Boundary\n";
        card << "  " << TypeToID(type) << '\n';
        if (type == kPressure)
            card << "  " << input.m_adBoundaryPressure[face] << '\n';
        if (type == kVelocity) {
            for (const double component : input.m_adBoundaryVelocity[face])
                card << "  " << component << '\n';
        }
    }
}

void write_bnd_cnd(const VRK::ControllerInput& input)
{
    auto card = VRK::Card::file(VRK::Card::path("BndCnd.dat"));
    format_bnd_cnd(card, input);
}
