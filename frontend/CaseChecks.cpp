// SPDX-License-Identifier: Apache-2.0
#include "frontend/CaseChecks.h"

#include "case/CaseFile.h"
#include "frontend/AirfoilFile.h"
#include "frontend/TextFile.h"
#include "frontend/ValueText.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <numbers>
#include <stdexcept>
#include <utility>

namespace Frontend {

namespace {

/// Only the solver reads it.
constexpr FileKind kRestartFile { "a restart file", std::numeric_limits<unsigned int>::max() };

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
        boundaries();
        schedule();
        for (std::size_t i = 0; i < m_record.m_vecRotors.size(); ++i)
            rotor("rotor[" + std::to_string(i) + ']', m_record.m_vecRotors[i]);
        adaptation();
        boxes();
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

    /// Whether all these keys are what their author meant.
    template <typename... Keys>
    [[nodiscard]] bool sound(const Keys&... keys) const
    {
        return (m_case.sound(keys) && ...);
    }

    void files()
    {
        name();
        if (m_record.m_nThreads > 1 && m_record.m_shtParallelMode != 1
            && sound("case.threads", "case.parallel"))
            warn("case.threads", R"("threads" has no effect: "parallel" is not "threads")");
        if (m_record.m_grid.m_bPrisms && !m_record.m_grid.m_bHybrid
            && sound("grid.prisms", "grid.hybrid"))
            warn("grid.prisms", R"("prisms" has no effect: "hybrid" is not on)");
        path("case.completion_file", m_record.m_fpCompletionFile.Get());
        path("grid.viscous_file", m_record.m_grid.m_fpViscInput.Get());
        if (m_record.m_fpCompletionFile.Get().size() > VRK::kLongestCompletionPath)
            m_diagnostics.error(m_case.place("case.completion_file"),
                "\"completion_file\" has "
                    + std::to_string(m_record.m_fpCompletionFile.Get().size()) + " bytes",
                "at most " + std::to_string(VRK::kLongestCompletionPath));
        restart();
        if (sound("trajectory.on") && !m_record.m_bFlagMan && !m_record.m_strTrajectory.empty())
            warn("trajectory.text", R"("text" has no effect and is not kept: "on" is not set)");
    }

    /// The name becomes part of the names of files, all of which are to lie where they belong, to
    /// be seen, and to differ.
    void name()
    {
        constexpr std::size_t kLongest = 200; // the endings of files need the rest
        if (!sound("case.name"))
            return;
        const std::string& name = m_record.m_strCaseName;
        std::string what;
        if (name.empty())
            what = "\"name\" is empty";
        else if (name.front() == '.')
            what = R"("name" begins with ".")";
        else if (const auto at = name.find_first_of("/\\~"); at != std::string::npos)
            what = R"("name" has a ")" + name.substr(at, 1) + R"(" in it)";
        else if (std::any_of(name.begin(), name.end(), is_control))
            what = "\"name\" has a line end or another control character in it";
        else if (name.size() > kLongest)
            what = "\"name\" has " + std::to_string(name.size()) + " bytes";
        if (!what.empty())
            fault("case.name", what,
                name.size() > kLongest ? "at most " + std::to_string(kLongest)
                                       : "the stem of file names, such as \"robin\"");
        else
            quoted("case.name", name);
    }
    static bool is_control(char c) { return static_cast<unsigned char>(c) < 0x20 || c == 0x7F; }

    /// Who reads the case file resolves a path, and refuses the case if nothing is left of it.
    void path(const std::string& key, const std::string& text)
    {
        try {
            (void)Tavro::FilePath(text); // only whether it can be
        } catch (const std::out_of_range&) {
            m_diagnostics.error(m_case.place(key),
                '"' + key.substr(key.find('.') + 1) + "\" leads nowhere: " + text,
                "a path of which something is left without its \"..\"");
        }
    }

    void restart()
    {
        const std::string& file = m_record.m_strRestartFile;
        if (!sound("case.restart", "case.restart_file"))
            return;
        if (!m_record.m_bRestart) {
            if (!file.empty())
                warn("case.restart_file",
                    R"("restart_file" has no effect and is not kept: "restart" is not on)");
        } else if (file.empty()) {
            if (!m_case.incomplete)
                warn("case.restart", "a restart without \"restart_file\" starts from no file");
        } else if (const std::string lack
                   = lack_of_file(path_from(m_directory, file), "restart file", kRestartFile);
                   !lack.empty()) {
            fault("case.restart_file", lack,
                "a file that an earlier run has left, such as Restarts/CASE.new.Rst");
        }
    }

    void grid()
    {
        const VRK::GridData& grid = m_record.m_grid;
        for (std::size_t axis = 0; axis < 3 && sound("grid.domain_min", "grid.domain_max");
             ++axis) {
            if (!(grid.m_dDomainMax[axis] > grid.m_dDomainMin[axis]))
                fault("grid.domain_max",
                    "the domain has no extent along " + std::string(1, "xyz"[axis]) + ": "
                        + number_text(grid.m_dDomainMin[axis]) + " to "
                        + number_text(grid.m_dDomainMax[axis]),
                    R"("domain_max" above "domain_min")");
        }
        const std::string wetted = "grid.wetted_surface.";
        if (grid.m_bHybrid && grid.m_fpViscInput.Get().empty() && !m_case.incomplete
            && sound("grid.hybrid", "grid.viscous_file"))
            warn("grid.hybrid",
                R"("hybrid" is on, but no "viscous_file" is named that receives its input)");
        if (!grid.m_bApproxWettedSurface || !sound(wetted + "on"))
            return;
        if (grid.m_ucLevelMax < grid.m_ucLevelMin
            && sound(wetted + "level_min", wetted + "level_max"))
            fault("grid.wetted_surface.level_max", R"("level_max" is below "level_min")",
                "at least " + std::to_string(grid.m_ucLevelMin));
        if (m_record.m_vecBodies.empty() && sound("body") && !m_case.incomplete)
            warn("grid.wetted_surface.on", "a wetted surface is asked for, but there is no body");
    }

    /// Any other number than these stands for no data, too, but nobody means it.
    void boundaries()
    {
        std::size_t face = 0;
        for (const char* name : { "x_min", "x_max", "y_min", "y_max", "z_min", "z_max" }) {
            const std::int32_t type = m_record.m_anBoundaryType[face++];
            const std::string key = std::string("boundary.") + name + ".type";
            if ((type < 0 || type > 2) && sound(key))
                warn(key,
                    "\"type\" is " + std::to_string(type)
                        + R"(, which is none of "pressure", "velocity" and "none"; nothing is )"
                          "prescribed on the face");
        }
    }

    void schedule()
    {
        if (m_record.m_time.m_vecTLen.empty() && !m_record.m_bGridOnly && !m_case.incomplete
            && sound("time.layer", "case.grid_only"))
            warn("time", "there is no [[time.layer]], so the solver has no step to do");
        std::uint64_t steps = 0;
        for (const std::uint32_t layer : m_record.m_time.m_vecNtCell)
            steps += layer;
        if (steps > std::numeric_limits<std::int32_t>::max())
            warn("time.layer",
                "all layers together have " + std::to_string(steps)
                    + " steps, more than are counted: "
                    + std::to_string(std::numeric_limits<std::int32_t>::max()));
        if (m_record.m_bTrim && m_record.m_uintTrimEnd < m_record.m_uintTrimStart
            && sound("trim.on", "trim.start", "trim.end"))
            warn("trim.end", "trim ends before it starts");
        if (m_record.m_bLtimeavg && m_record.m_uintItend < m_record.m_uintItbeg
            && sound("output.average.on", "output.average.start", "output.average.end"))
            warn("output.average.end", "the averages end before they start");
    }

    void boxes()
    {
        const VRK::GridData& grid = m_record.m_grid;
        const std::pair<const char*, const std::vector<VRK::RefBoxData>*> lists[] {
            { "grid.boxes_a", &grid.m_vecRefBoxesA }, { "grid.boxes_b", &grid.m_vecRefBoxesB },
            { "grid.boxes_c", &grid.m_vecRefBoxesC }
        };
        for (const auto& [key, list] : lists) {
            for (std::size_t i = 0; i < list->size(); ++i) {
                const std::string path = std::string(key) + '[' + std::to_string(i) + ']';
                if (sound(path + ".lower", path + ".upper"))
                    box(path + ".upper", (*list)[i].m_adBox, (*list)[i].m_adBox + 3);
            }
        }
        const VRK::AdaptiveData& adapt = m_record.m_adapt;
        for (const auto& [key, list] : { std::pair("adaptation.boxes", &adapt.m_vecAdaptBoxes),
                 std::pair("adaptation.second_boxes", &adapt.m_vecSecondAdaptBoxes) }) {
            for (const auto& one : *list) {
                if (sound(key))
                    box(key, one.m_vMin, one.m_vMax);
            }
        }
    }
    template <typename Corner>
    void box(const std::string& path, Corner lower, Corner upper)
    {
        for (std::size_t axis = 0; axis < 3; ++axis) {
            if (upper[axis] < lower[axis])
                warn(path,
                    "the box is empty: its upper corner is below the lower one along "
                        + std::string(1, "xyz"[axis]));
        }
    }

    void adaptation()
    {
        const VRK::AdaptiveData& adapt = m_record.m_adapt;
        if (!adapt.m_bAdaptive || !sound("adaptation.on"))
            return;
        if (adapt.m_uintPeriod == 0 && sound("adaptation.period") && !m_case.incomplete)
            fault("adaptation.period", "adaptation is on and its \"period\" is 0", "at least 1");
        if (adapt.m_bUseEnd && adapt.m_uintEnd < adapt.m_uintStart
            && sound("adaptation.use_end", "adaptation.start", "adaptation.end"))
            warn("adaptation.end", "adaptation ends before it starts");
    }

    void increasing(
        const std::string& path, const std::string& key, const std::vector<double>& column)
    {
        if (!std::is_sorted(column.begin(), column.end()))
            warn(path + '.' + key, "r/R does not go up from row to row of \"" + key + '"');
        if (std::any_of(column.begin(), column.end(), [](double r) { return r < 0.0 || r > 1.0; }))
            warn(path + '.' + key, "r/R of \"" + key + "\" is not from 0 to 1");
    }

    void switched(const std::string& path, const std::string& key, const std::string& mark, bool on,
        const std::vector<double>& column)
    {
        if (!sound(path + '.' + key, path + '.' + mark))
            return;
        if (on && column.empty() && !m_case.incomplete)
            warn(path + '.' + mark, '"' + mark + "\" is on, but \"" + key + "\" has no rows");
        if (!on && !column.empty())
            warn(path + '.' + key, '"' + key + "\" has no effect: \"" + mark + "\" is not on");
    }

    void rotor(const std::string& path, const VRK::RotorData& rotor)
    {
        increasing(path, "chord", rotor.m_vecChordR);
        increasing(path, "twist", rotor.m_vecTwistR);
        increasing(path, "deflection", rotor.m_vecDeflR);
        increasing(path, "inplane", rotor.m_vecInplaneR);
        increasing(path, "output_radii", rotor.m_vecRefRadius);
        switched(path, "chord", "chord_table", rotor.m_bChordTable, rotor.m_vecChordR);
        switched(path, "twist", "twist_table", rotor.m_bTwistTable, rotor.m_vecTwistR);
        switched(path, "deflection", "deflection_table", rotor.m_bDeflTable, rotor.m_vecDeflR);
        switched(path, "inplane", "inplane_table", rotor.m_bInplaneTable, rotor.m_vecInplaneR);
        switched(path, "cyclic", "cyclic_pitch", rotor.m_bCyclicPitch, rotor.m_vecCyclicCos);
        switched(path, "flap", "flapping", rotor.m_bFlapping, rotor.m_vecFlapCos);
        if (sound(path + ".center", "grid.domain_min", "grid.domain_max"))
            place_of(path, rotor);
        quoted(path + ".name", rotor.m_strName);
        if (rotor.m_vecAftFile.empty() && sound(path + ".airfoil") && !m_case.incomplete)
            warn(path, "the rotor has no [[rotor.airfoil]]");
        for (std::size_t i = 0; i < rotor.m_vecAftFile.size(); ++i)
            airfoil(path + ".airfoil[" + std::to_string(i) + "].file", rotor.m_vecAftFile[i]);
    }

    void place_of(const std::string& path, const VRK::RotorData& rotor)
    {
        const VRK::GridData& grid = m_record.m_grid;
        const auto leaves = [&](std::size_t axis, double radius) {
            return rotor.m_adCenter[axis] - radius < grid.m_dDomainMin[axis]
                || rotor.m_adCenter[axis] + radius > grid.m_dDomainMax[axis];
        };
        // How the axis of the disk lies; which way it is turned makes no difference here.
        const double pitch = rotor.m_dPitchAngle * std::numbers::pi / 180.0;
        const double bank = rotor.m_dBankAngle * std::numbers::pi / 180.0;
        const double axes[] { std::sin(pitch), std::cos(pitch) * std::sin(bank),
            std::cos(pitch) * std::cos(bank) };
        for (std::size_t axis = 0; axis < 3; ++axis) {
            if (leaves(axis, 0.0)) {
                warn(path + ".center", "the rotor's centre lies outside the domain");
                return;
            }
        }
        constexpr double kHardly = 1.0 - 1e-9; // a disk that just touches a face is within
        for (std::size_t axis = 0;
             axis < 3 && sound(path + ".radius", path + ".pitch_angle", path + ".bank_angle");
             ++axis) {
            const double share = std::sqrt(std::max(0.0, 1.0 - axes[axis] * axes[axis]));
            if (leaves(axis, rotor.m_dRadius * share * kHardly)) {
                warn(path + ".radius", "the rotor's disk reaches out of the domain");
                return;
            }
        }
    }

    /// The cards have texts between single quotes, on one line.
    void quoted(const std::string& path, const std::string& text)
    {
        if (text.find_first_of("'\n\r") != std::string::npos && sound(path))
            warn(path, "a single quote or a line end in a name ends it in the card");
    }

    void airfoil(const std::string& path, const std::string& name)
    {
        if (!sound(path))
            return;
        const std::string file = path_from(m_directory, name);
        if (const auto lack = lack_of_file(file, "airfoil table", kAirfoilTable); !lack.empty()) {
            fault(path, lack, "a file in the fixed-column layout");
            return;
        }
        quoted(path, name);
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
}

} // namespace Frontend
