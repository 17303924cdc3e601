// SPDX-License-Identifier: Apache-2.0
#include "case/VerbatimTexts.h"

#include "case/Card.h"

void write_moment_groups(const VRK::ControllerInput& input, const std::string& path)
{
    VRK::Card::file(path) << input.m_strMomentGroups;
}

void write_slvr_traj(const VRK::ControllerInput& input, const std::string& path)
{
    VRK::Card::file(path) << input.m_strTrajectory;
}
