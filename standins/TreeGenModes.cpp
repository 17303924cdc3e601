// SPDX-License-Identifier: Apache-2.0
#include "standins/TreeGenModes.h"

#include "standins/Refusal.h"

namespace Standins {

namespace {

using Forms = std::vector<ArgumentForm>;
using Kind = ArgumentKind;

const Forms& append_forms()
{
    static const Forms forms { { "-soa" }, { "-sea" } };
    return forms;
}

const Forms& grid_forms()
{
    static const Forms forms { { "-f=", Kind::FileName }, { "-tx=", Kind::Real },
        { "-ty=", Kind::Real }, { "-tz=", Kind::Real } };
    return forms;
}

const Forms& table_forms()
{
    static const Forms forms { { "-l2g=", Kind::Text }, { "-p=", Kind::Text } };
    return forms;
}

const Forms& making_forms()
{
    static const Forms forms { { "-i=", Kind::Text }, { "-b", Kind::Flag, false },
        { "-sbi=", Kind::FileName, false } };
    return forms;
}

void add(Forms& forms, const Forms& others)
{
    forms.insert(forms.end(), others.begin(), others.end());
}

Forms mode_forms(const std::vector<std::string>& words)
{
    Forms forms;
    if (find_value(words, "-ob=")) {
        add(forms, grid_forms());
        add(forms, table_forms());
        add(forms, { { "-ob=", Kind::FileName } });
        add(forms, append_forms());
    } else if (find_value(words, "-ov=")) {
        add(forms, { { "-ov=", Kind::FileName } });
        add(forms, append_forms());
    } else if (find_value(words, "-osm=")) {
        add(forms, grid_forms());
        add(forms, { { "-osm=", Kind::Text } });
        add(forms, append_forms());
    } else if (find_value(words, "-hyb=")) {
        add(forms,
            { { "-hyb=", Kind::Text }, { "-exm=", Kind::Text }, { "-prisms", Kind::Flag, false } });
        add(forms, making_forms());
        add(forms, grid_forms());
        add(forms, table_forms());
    } else {
        add(forms, making_forms());
        add(forms, grid_forms());
        add(forms, table_forms());
        add(forms, { { "-v", Kind::Flag, false } });
    }
    return forms;
}

} // namespace

Forms tree_gen_forms(const std::vector<std::string>& words)
{
    Forms forms { { "-3D" }, { "-d" }, { "-so=", Kind::Text }, { "-se=", Kind::Text },
        { "-linkid=", Kind::Number }, { "-gridTime=", Kind::Real, false } };
    add(forms, mode_forms(words));
    return forms;
}

TreeGenMode tree_gen_mode(const Arguments& arguments)
{
    if (arguments.has("-ob="))
        return TreeGenMode::BodyFitter;
    if (arguments.has("-ov="))
        return TreeGenMode::Validator;
    if (arguments.has("-osm="))
        return TreeGenMode::Metrics;
    const bool hybrid = arguments.has("-hyb=");
    if (arguments.has("-b") && !arguments.has("-sbi="))
        throw Refusal("argument -b: -sbi= is missing");
    // Without "-b" the input of the body fitter is for another start, which only the octree stage
    // has behind it.
    if (arguments.has("-sbi=") && !arguments.has("-b") && (hybrid || arguments.has("-v")))
        throw Refusal("argument -sbi=: -b is missing");
    return hybrid ? TreeGenMode::Hybrid : TreeGenMode::Standard;
}

const char* tree_gen_mode_name(TreeGenMode mode)
{
    switch (mode) {
    case TreeGenMode::Standard:
        return "octree";
    case TreeGenMode::BodyFitter:
        return "body fitter";
    case TreeGenMode::Validator:
        return "validator";
    case TreeGenMode::Metrics:
        return "metrics calculation";
    case TreeGenMode::Hybrid:
        return "hybrid";
    }
    return "";
}

} // namespace Standins
