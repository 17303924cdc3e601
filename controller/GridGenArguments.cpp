// SPDX-License-Identifier: Apache-2.0
#include "controller/GridGenArguments.h"

#include "controller/StepProgram.h"
#include "tavrobase/StringUtilities.h"

namespace {

constexpr const char* kGridFile = "VRK.grid.dat";
constexpr const char* kBodyFitterInput = "body_fitter_input.dat";

std::string in_grid_output(const std::string& name)
{
    return g_info.m_fpGridOutput.Get() + "/" + name;
}

/// Collects arguments; each member adds one of the groups that the modes are made of.
class ArgumentList {
public:
    explicit ArgumentList(const VRK::ControllerInput& input)
        : m_input(input)
    {
    }

    ArgumentList& add(const std::string& argument)
    {
        m_arguments.push_back(argument);
        return *this;
    }
    ArgumentList& common(unsigned int linkID)
    {
        return add("-3D")
            .add("-d")
            .add("-so=" + in_grid_output("TreeGen.out"))
            .add("-se=" + in_grid_output("TreeGen.err"))
            .add(StepProgram::link_argument(linkID));
    }
    ArgumentList& input_file() { return add("-i=" + g_info.m_fpTreeGenFile.Get()); }
    ArgumentList& grid() { return add(std::string("-f=") + kGridFile); }
    /// The domain's corner, negated.
    ArgumentList& offset()
    {
        const double* corner = m_input.m_grid.m_dDomainMin;
        return add("-tx=" + Tavro::NumToString(-corner[0]))
            .add("-ty=" + Tavro::NumToString(-corner[1]))
            .add("-tz=" + Tavro::NumToString(-corner[2]));
    }
    ArgumentList& map() { return add("-l2g=" + in_grid_output("VRK.grd.L2G")); }
    ArgumentList& parameters() { return add("-p=" + g_info.m_fpSolverInput.Get() + "/ParmFlw.h"); }
    /// The later starts continue the log of the first.
    ArgumentList& append() { return add("-soa").add("-sea"); }
    ArgumentList& body_fitter_output() { return add(std::string("-sbi=") + kBodyFitterInput); }

    ArgumentList& whole_grid() { return input_file().grid().offset().map().parameters(); }

    std::vector<std::string> take() { return std::move(m_arguments); }

private:
    const VRK::ControllerInput& m_input;
    std::vector<std::string> m_arguments;
};

} // namespace

std::vector<std::string> grid_gen_arguments(
    const VRK::ControllerInput& input, GridGenMode mode, unsigned int linkID)
{
    ArgumentList list(input);
    list.common(linkID);
    switch (mode) {
    case GridGenMode::Octree:
        list.whole_grid();
        if (input.m_bRunBodyFitter)
            list.body_fitter_output();
        break;
    case GridGenMode::BodyFitter:
        list.grid().offset().map().parameters();
        list.add(std::string("-ob=") + kBodyFitterInput).append();
        break;
    case GridGenMode::Validator:
        list.add(std::string("-ov=") + kGridFile).append();
        break;
    case GridGenMode::Metrics:
        list.grid().offset();
        list.add("-osm=" + in_grid_output(input.m_strCaseName + "_body.Grd")).append();
        break;
    case GridGenMode::Hybrid:
        list.add("-hyb=" + input.m_grid.m_fpViscInput.Get());
        list.add("-exm=" + in_grid_output("ex_grid_struct_map.dat"));
        if (input.m_grid.m_bPrisms)
            list.add("-prisms");
        list.whole_grid();
        if (input.m_bRunBodyFitter)
            list.add("-b").body_fitter_output();
        break;
    case GridGenMode::Standard:
        list.whole_grid();
        if (input.m_bRunBodyFitter)
            list.add("-b").body_fitter_output();
        if (input.m_bRunValidator)
            list.add("-v");
        break;
    }
    if (input.m_adapt.m_bAdaptive)
        list.add("-gridTime=" + Tavro::NumToString(g_info.m_dGridTime));
    return list.take();
}
