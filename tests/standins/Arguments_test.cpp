// SPDX-License-Identifier: Apache-2.0
#include "standins/Arguments.h"

#include "standins/Refusal.h"
#include "standins/TreeGenModes.h"

#include <gtest/gtest.h>

namespace {

using namespace Standins;
using Words = std::vector<std::string>;
using Kind = ArgumentKind;

std::string refusal(const Words& words, const std::vector<ArgumentForm>& forms)
{
    try {
        const Arguments arguments(words, forms);
        return "";
    } catch (const Refusal& refused) {
        return refused.what();
    }
}

// Of the grid generator, whose modes have arguments of their own.
std::string mode_refusal(const Words& words)
{
    try {
        return std::string("mode ")
            + tree_gen_mode_name(tree_gen_mode(Arguments(words, tree_gen_forms(words))));
    } catch (const Refusal& refused) {
        return refused.what();
    }
}

Words with(const Words& words)
{
    Words all { "-3D", "-d", "-so=o", "-se=e", "-linkid=0" };
    all.insert(all.end(), words.begin(), words.end());
    return all;
}

const Words& making()
{
    static const Words words { "-i=i", "-f=f", "-tx=1", "-ty=-2.5", "-tz=1e+06", "-l2g=/l",
        "-p=/p" };
    return words;
}

Words making_and(const Words& words)
{
    Words all = making();
    all.insert(all.end(), words.begin(), words.end());
    return with(all);
}

TEST(StandinArguments, KnownOnesGiveTheirValuesInAnyOrder)
{
    const Arguments arguments({ "--flag", "-n=12", "-t=a b", "-r=-2.5", "-z=-0" },
        { { "-t=", Kind::Text }, { "-n=", Kind::Number }, { "-r=", Kind::Real },
            { "-z=", Kind::Real }, { "--flag" }, { "-o=", Kind::Text, false } });
    EXPECT_TRUE(arguments.has("--flag"));
    EXPECT_FALSE(arguments.has("-o="));
    EXPECT_EQ(arguments.number("-n="), 12U);
    EXPECT_EQ(arguments.text("-t="), "a b");
    EXPECT_EQ(arguments.real("-r="), -2.5);
    EXPECT_EQ(arguments.real("-z="), 0.0); // the negated corner of a domain that begins at 0
}

TEST(StandinArguments, UnknownOnesAreNamed)
{
    EXPECT_EQ(refusal({ "--other=1" }, {}), "unknown argument --other=1");
    EXPECT_EQ(refusal({ "-dd" }, { { "-d" } }), "unknown argument -dd");
    EXPECT_EQ(refusal({ "" }, { { "-d" } }), "unknown argument ");
}

TEST(StandinArguments, MissingAndDoubledOnesAreNamed)
{
    const std::vector<ArgumentForm> forms { { "-a=", Kind::Text } };
    EXPECT_EQ(refusal({}, forms), "argument -a= is missing");
    EXPECT_EQ(refusal({ "-a=1", "-a=1" }, forms), "argument -a= is given twice");
}

TEST(StandinArguments, ValuesMustBeOfTheirKind)
{
    EXPECT_EQ(refusal({ "-a=" }, { { "-a=", Kind::Text } }), "argument -a=: no value");
    EXPECT_EQ(refusal({ "-a=d" }, { { "-a=", Kind::Directory } }),
        "argument -a=d: not a directory that ends in \"/\"");
    EXPECT_EQ(refusal({ "-a=./n" }, { { "-a=", Kind::FileName } }),
        "argument -a=./n: not a plain file name");
    EXPECT_EQ(refusal({ "-a=-1" }, { { "-a=", Kind::Number } }),
        "argument -a=-1: not an unsigned number");
    EXPECT_EQ(refusal({ "-a=4294967296" }, { { "-a=", Kind::Number } }),
        "argument -a=4294967296: not an unsigned number");
    EXPECT_EQ(
        refusal({ "-a=0" }, { { "-a=", Kind::Count } }), "argument -a=0: not a number above 0");
    EXPECT_EQ(refusal({ "-a=2" }, { { "-a=", Kind::Switch } }), "argument -a=2: neither 0 nor 1");
    for (const char* value : { "1,5", "inf", "1.5x", "0.12345678" })
        EXPECT_EQ(refusal({ std::string("-a=") + value }, { { "-a=", Kind::Real } }),
            std::string("argument -a=") + value + ": not a number of six significant digits");
}

TEST(StandinArguments, GridGeneratorTellsItsModesByTheirOptions)
{
    EXPECT_EQ(mode_refusal(with(making())), "mode octree");
    EXPECT_EQ(mode_refusal(making_and({ "-sbi=b" })), "mode octree");
    EXPECT_EQ(mode_refusal(making_and({ "-b", "-sbi=b", "-v", "-gridTime=0.5" })), "mode octree");
    EXPECT_EQ(mode_refusal(with({ "-f=f", "-tx=1", "-ty=1", "-tz=1", "-l2g=/l", "-p=/p", "-ob=b",
                  "-soa", "-sea" })),
        "mode body fitter");
    EXPECT_EQ(mode_refusal(with({ "-ov=f", "-soa", "-sea" })), "mode validator");
    EXPECT_EQ(mode_refusal(with({ "-f=f", "-tx=1", "-ty=1", "-tz=1", "-osm=/m", "-soa", "-sea" })),
        "mode metrics calculation");
    EXPECT_EQ(mode_refusal(making_and({ "-hyb=/h", "-exm=/e" })), "mode hybrid");
    EXPECT_EQ(mode_refusal(making_and({ "-hyb=/h", "-exm=/e", "-prisms", "-b", "-sbi=b" })),
        "mode hybrid");
}

TEST(StandinArguments, GridGeneratorRefusesOptionsOfAnotherMode)
{
    EXPECT_EQ(mode_refusal(making_and({ "-soa" })), "unknown argument -soa");
    EXPECT_EQ(mode_refusal(making_and({ "-prisms" })), "unknown argument -prisms");
    EXPECT_EQ(mode_refusal(with({ "-ov=f" })), "argument -soa is missing");
    EXPECT_EQ(mode_refusal(making_and({ "-hyb=/h" })), "argument -exm= is missing");
    EXPECT_EQ(mode_refusal(making_and({ "-b" })), "argument -b: -sbi= is missing");
    EXPECT_EQ(mode_refusal(making_and({ "-sbi=b", "-v" })), "argument -sbi=: -b is missing");
    EXPECT_EQ(mode_refusal(making_and({ "-hyb=/h", "-exm=/e", "-sbi=b" })),
        "argument -sbi=: -b is missing");
}

} // namespace
