// SPDX-License-Identifier: Apache-2.0
#include "frontend/CaseChecks.h"

#include "case/CaseFile.h"
#include "frontend/AirfoilFile.h"
#include "frontend/GeometryChecks.h"
#include "frontend/TextFile.h"
#include "frontend/ValueText.h"

#include <algorithm>
#include <cmath>

namespace Frontend {

namespace {

class Checks {
public:
    Checks(const CaseTree& read, const std::string& directory, Diagnostics& diagnostics)
        : m_case(read)
        , m_record(read.record)
        , m_directory(directory)
        , m_diagnostics(diagnostics)
    {
    }

    void all()
    {
        files();
        grid();
        schedule();
        for (std::size_t i = 0; i < m_record.m_vecRotors.size(); ++i)
            rotor("rotor[" + std::to_string(i) + ']', m_record.m_vecRotors[i]);
        adaptation();
        zero_bytes();
    }

private:
    void fault(const std::string& path, const std::string& what, const std::string& expected)
    {
        m_case.fault(m_diagnostics, path, what, expected);
    }
    void warn(const std::string& path, const std::string& what)
    {
        m_diagnostics.warning(m_case.place(path), what);
    }

    void files()
    {
        if (m_record.m_fpCompletionFile.Get().size() > VRK::kLongestCompletionPath)
            m_diagnostics.error(m_case.place("case.completion_file"),
                "\"completion_file\" has "
                    + std::to_string(m_record.m_fpCompletionFile.Get().size()) + " bytes",
                "at most " + std::to_string(VRK::kLongestCompletionPath));
        const std::string& name = m_record.m_strCaseName;
        if (name.empty() || name.find('/') != std::string::npos)
            fault("case.name", name.empty() ? "\"name\" is empty" : R"("name" has a "/" in it)",
                "the stem of file names");
        if (m_record.m_bRestart && m_record.m_strRestartFile.empty())
            warn("case.restart", "a restart without \"restart_file\" starts from no file");
        if (!m_record.m_bRestart && !m_record.m_strRestartFile.empty())
            warn("case.restart_file",
                R"("restart_file" has no effect and is not kept: "restart" is not on)");
        if (!m_record.m_bFlagMan && !m_record.m_strTrajectory.empty())
            warn("trajectory.text", R"("text" has no effect and is not kept: "on" is not set)");
    }

    void grid()
    {
        const VRK::GridData& grid = m_record.m_grid;
        for (std::size_t axis = 0; axis < 3; ++axis) {
            if (!(grid.m_dDomainMax[axis] > grid.m_dDomainMin[axis])) {
                fault("grid.domain_max",
                    "the domain has no extent along " + std::string(1, "xyz"[axis]) + ": "
                        + number_text(grid.m_dDomainMin[axis]) + " to "
                        + number_text(grid.m_dDomainMax[axis]),
                    R"("domain_max" above "domain_min")");
                return;
            }
        }
        if (grid.m_bApproxWettedSurface && grid.m_ucLevelMax < grid.m_ucLevelMin)
            fault("grid.wetted_surface.level_max", R"("level_max" is below "level_min")",
                "at least " + std::to_string(grid.m_ucLevelMin));
        if (grid.m_bApproxWettedSurface && m_record.m_vecBodies.empty())
            warn("grid.wetted_surface.on", "a wetted surface is asked for, but there is no body");
    }

    void schedule()
    {
        if (m_record.m_time.m_vecTLen.empty() && !m_record.m_bGridOnly)
            warn("time", "there is no [[time.layer]], so the solver has no step to do");
        if (m_record.m_bTrim && m_record.m_uintTrimEnd < m_record.m_uintTrimStart)
            warn("trim.end", "trim ends before it starts");
        if (m_record.m_bLtimeavg && m_record.m_uintItend < m_record.m_uintItbeg)
            warn("output.average.end", "the averages end before they start");
    }

    void adaptation()
    {
        const VRK::AdaptiveData& adapt = m_record.m_adapt;
        if (!adapt.m_bAdaptive)
            return;
        if (adapt.m_uintPeriod == 0)
            fault("adaptation.period", "adaptation is on and its \"period\" is 0", "at least 1");
        if (adapt.m_bUseEnd && adapt.m_uintEnd < adapt.m_uintStart)
            warn("adaptation.end", "adaptation ends before it starts");
    }

    void increasing(
        const std::string& path, const std::string& key, const std::vector<double>& column)
    {
        if (!std::is_sorted(column.begin(), column.end()))
            warn(path + '.' + key, "r/R does not go up from row to row of \"" + key + '"');
    }

    void switched(const std::string& path, const std::string& key, const std::string& mark, bool on,
        const std::vector<double>& column)
    {
        increasing(path, key, column);
        if (on && column.empty())
            warn(path + '.' + mark, '"' + mark + "\" is on, but \"" + key + "\" has no rows");
        if (!on && !column.empty())
            warn(path + '.' + key, '"' + key + "\" has no effect: \"" + mark + "\" is not on");
    }

    void rotor(const std::string& path, const VRK::RotorData& rotor)
    {
        switched(path, "chord", "chord_table", rotor.m_bChordTable, rotor.m_vecChordR);
        switched(path, "twist", "twist_table", rotor.m_bTwistTable, rotor.m_vecTwistR);
        switched(path, "deflection", "deflection_table", rotor.m_bDeflTable, rotor.m_vecDeflR);
        switched(path, "inplane", "inplane_table", rotor.m_bInplaneTable, rotor.m_vecInplaneR);
        increasing(path, "output_radii", rotor.m_vecRefRadius);
        const VRK::GridData& grid = m_record.m_grid;
        for (std::size_t axis = 0; axis < 3; ++axis) {
            if (rotor.m_adCenter[axis] < grid.m_dDomainMin[axis]
                || rotor.m_adCenter[axis] > grid.m_dDomainMax[axis]) {
                warn(path + ".center", "the rotor's centre lies outside the domain");
                break;
            }
        }
        if (rotor.m_vecAftFile.empty())
            warn(path, "the rotor has no [[rotor.airfoil]]");
        for (std::size_t i = 0; i < rotor.m_vecAftFile.size(); ++i)
            airfoil(path + ".airfoil[" + std::to_string(i) + "].file", rotor.m_vecAftFile[i]);
    }

    void airfoil(const std::string& path, const std::string& name)
    {
        const std::string file = path_from(m_directory, name);
        if (is_directory(file) || !exists(file)) {
            fault(path, "there is no airfoil table " + file, "a file in the fixed-column layout");
            return;
        }
        if (!finds_airfoil_table(file))
            warn(path,
                "no airfoil table is found in " + file + "; `vortik airfoil check` tells why");
        else if (!is_good_airfoil_table(file))
            warn(path,
                "the airfoil table in " + file + " has faults; `vortik airfoil check` tells them");
    }

    void zero_bytes()
    {
        const auto cut = [this](const std::string& path, const std::string& text) {
            if (text.find('\0') != std::string::npos)
                warn(path, "the text is cut at its first zero byte when the case is read");
        };
        cut("case.name", m_record.m_strCaseName);
        cut("case.model_dir", m_record.m_strModelDir);
        cut("case.restart_file", m_record.m_strRestartFile);
        cut("output.forces.moment_groups", m_record.m_strMomentGroups);
        cut("trajectory.text", m_record.m_strTrajectory);
    }

    const CaseTree& m_case;
    const VRK::ControllerInput& m_record;
    const std::string& m_directory;
    Diagnostics& m_diagnostics;
};

} // namespace

void check_case(const CaseTree& read, const std::string& directory, Diagnostics& diagnostics)
{
    Checks(read, directory, diagnostics).all();
    if (!diagnostics.failed()) // in a domain without volume no cell has a length
        check_bodies(read, diagnostics);
}

} // namespace Frontend
