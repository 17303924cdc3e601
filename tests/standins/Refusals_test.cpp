// SPDX-License-Identifier: Apache-2.0
#include "tavrobase/ProcessExecution.h"
#include "tests/standins/ModelRun.h"
#include "tests/standins/StandinTest.h"
#include "tests/support/Programs.h"

#include <algorithm>

namespace Testing {

namespace {

// A model whose chain is whole, so that each test can break one thing.
class StandinRefusal : public StandinTest {
protected:
    void SetUp() override
    {
        StandinTest::SetUp();
        if (!IsSkipped()) {
            ASSERT_EQ(model.prepare(), "");
        }
    }

    // What the program says when it refuses.
    std::string refusal(const std::string& program, const Words& words) const
    {
        const Ending ending = model.run(program, words);
        EXPECT_FALSE(ending.success);
        EXPECT_EQ(ending.status, 1);
        return model.complaint(program);
    }

    // The same with a file that is cut short within its first number or word.
    std::string refusal_of_broken(
        const std::string& file, const std::string& program, const Words& words) const
    {
        const std::string whole = model.text(file);
        write_file(model.path(file), whole.substr(0, whole.size() / 2) + "?");
        std::string words_of_it = refusal(program, words);
        write_file(model.path(file), whole);
        return words_of_it;
    }

    // Whether all refuse the file by its name, with a place in it.
    void expect_refused(
        const std::string& file, const std::string& program, const Words& words) const
    {
        const std::string name = file.substr(file.rfind('/') + 1);
        const std::string broken = refusal_of_broken(file, program, words);
        EXPECT_NE(broken.find(name + ":"), std::string::npos) << broken;
        const std::string whole = model.text(file);
        std::remove(model.path(file).c_str());
        const std::string missing = refusal(program, words);
        EXPECT_NE(missing.find(name + ": cannot be opened"), std::string::npos) << missing;
        write_file(model.path(file), whole);
        EXPECT_TRUE(model.run(program, words).success) << model.complaint(program);
    }

    ModelRun model;
};

Words changed(Words words, const std::string& from, const std::string& to)
{
    for (std::string& word : words)
        if (word == from)
            word = to;
    return words;
}

Words without(Words words, const std::string& word)
{
    words.erase(std::remove(words.begin(), words.end(), word), words.end());
    return words;
}

Words with(Words words, const std::string& word)
{
    words.push_back(word);
    return words;
}

// Refused before there is a log: the program's own error stream.
std::string complaint_of(const std::string& program, const Words& words)
{
    std::string error;
    std::string out;
    std::string err;
    EXPECT_TRUE(Tavro::run_process(Tavro::FilePath(program_beside_this("../demo/" + program)),
        words, program, error, out, err));
    return text_of_stream(err);
}

TEST_F(StandinRefusal, ArgumentsAreRefusedByName)
{
    EXPECT_EQ(refusal("Vortik_PreCalc", with(model.standard_words(), "--Speed=1")),
        "Vortik_PreCalc: unknown argument --Speed=1\n");
    EXPECT_EQ(refusal("Vortik_PreCalc", without(model.standard_words(), "--ModelName=hover")),
        "Vortik_PreCalc: argument --ModelName= is missing\n");
    EXPECT_EQ(refusal("Vortik_Extractor", with(model.extractor_words(), "--ModelName=hover")),
        "Vortik_Extractor: unknown argument --ModelName=hover\n");
    EXPECT_EQ(refusal("Vortik_RotorProg", with(model.rotor_words(), "--ParmFlw=ParmFlw.h")),
        "Vortik_RotorProg: argument --ParmFlw= is given twice\n");
    EXPECT_EQ(
        refusal("Vortik_Solver", changed(model.solver_words(), "--Adaptive=0", "--Adaptive=2")),
        "Vortik_Solver: argument --Adaptive=2: neither 0 nor 1\n");
    EXPECT_EQ(
        refusal("TreeGen", with(model.octree_words(), "-x")), "TreeGen: unknown argument -x\n");
}

TEST_F(StandinRefusal, ThreadsAreForTheThreadedVariantAlone)
{
    EXPECT_EQ(refusal("Vortik_PreCalc", with(model.standard_words(), "--nThreads=2")),
        "Vortik_PreCalc: unknown argument --nThreads=2\n");
    const Words plain = model.standard_words();
    model.m_strEnding = "-omp";
    EXPECT_EQ(
        refusal("Vortik_PreCalc", plain), "Vortik_PreCalc-omp: argument --nThreads= is missing\n");
    EXPECT_EQ(refusal("Vortik_PreCalc", with(plain, "--nThreads=0")),
        "Vortik_PreCalc-omp: argument --nThreads=0: not a number above 0\n");
}

TEST_F(StandinRefusal, DirectoriesMustBeThere)
{
    EXPECT_EQ(
        refusal("Vortik_PreCalc",
            changed(model.standard_words(), "--Grid_Output=Grid_Output/", "--Grid_Output=None/")),
        "Vortik_PreCalc: " + model.path("None/") + ": no such directory\n");
}

TEST_F(StandinRefusal, LinkMustBeThere)
{
    EXPECT_EQ(complaint_of("Vortik_PreCalc", with(model.standard_words(), "-linkid=99")), "");
    EXPECT_EQ(model.complaint("Vortik_PreCalc"), "Vortik_PreCalc: link 99: Unallocated link ID\n");
    EXPECT_EQ(refusal("Vortik_PreCalc", with(model.standard_words(), "-linkid=99")),
        "Vortik_PreCalc: argument -linkid= is given twice\n");
}

TEST_F(StandinRefusal, CaseFilesMustBearTheNameOfTheCase)
{
    EXPECT_EQ(refusal("Vortik_Solver",
                  changed(model.solver_words(), "--SlvrMain=hover.SlvrMain",
                      "--SlvrMain=other.SlvrMain")),
        "Vortik_Solver: argument --SlvrMain=other.SlvrMain: the case's is hover.SlvrMain\n");
}

TEST_F(StandinRefusal, RunWithoutAdaptationHasNoOtherCycle)
{
    EXPECT_EQ(refusal("Vortik_Solver",
                  changed(model.solver_words(), "--LastAdaptive=1", "--LastAdaptive=0")),
        "Vortik_Solver: argument --LastAdaptive=0: a run without adaptation has one cycle\n");
}

TEST_F(StandinRefusal, ScheduleMustBeOfTheKindOfRun)
{
    EXPECT_EQ(refusal("Vortik_Solver",
                  changed(changed(model.solver_words(), "--Adaptive=0", "--Adaptive=1"),
                      "--LastAdaptive=1", "--LastAdaptive=0")),
        "Vortik_Solver: " + model.path("Solver_Input/./hover.Tgrid")
            + ": numbers of a run without adaptation, and --Adaptive= says otherwise\n");
}

TEST_F(StandinRefusal, OffsetMustBeThatOfTheDomain)
{
    EXPECT_EQ(refusal("TreeGen", changed(model.octree_words(), "-ty=2", "-ty=-2")),
        "TreeGen: argument -ty=-2: the domain wants 2\n");
}

TEST_F(StandinRefusal, GridGeneratorWantsItsFilesWhole)
{
    expect_refused("Grid_Output/hover.treegen", "TreeGen", model.octree_words());
    expect_refused("Grid_Output/VRK.grid.dat", "TreeGen", model.validator_words());
    expect_refused("Grid_Output/VRK.grid.dat", "TreeGen", model.metrics_words());
}

TEST_F(StandinRefusal, BodyFitterWantsTheFilesOfItsGrid)
{
    ASSERT_TRUE(model.run("TreeGen", model.octree_words()).success);
    ASSERT_TRUE(model.run("TreeGen", model.fitter_words()).success);
    // The fitted grid is another one than the input was made for.
    const std::string words = refusal("TreeGen", model.fitter_words());
    EXPECT_NE(words.find("body_fitter_input.dat: made for grid "), std::string::npos) << words;
}

TEST_F(StandinRefusal, ViscousInputMustBeThere)
{
    const std::string words = refusal("TreeGen", model.hybrid_words());
    EXPECT_EQ(words, "TreeGen: " + model.path("Grid_Output/visc.inp") + ": cannot be opened\n");
}

TEST_F(StandinRefusal, ExtractorWantsItsFilesWhole)
{
    expect_refused("Solver_Input/BndCnd.dat", "Vortik_Extractor", model.extractor_words());
    expect_refused("Grid_Output/VRK.grid.dat", "Vortik_Extractor", model.extractor_words());
    expect_refused("Grid_Output/GeomBC.dat", "Vortik_Extractor", model.extractor_words());
}

TEST_F(StandinRefusal, PreCalculationWantsItsFilesWhole)
{
    expect_refused("Solver_Input/ParmFlw.h", "Vortik_PreCalc", model.standard_words());
    expect_refused("Grid_Output/VRK.grd.L2G", "Vortik_PreCalc", model.standard_words());
}

TEST_F(StandinRefusal, RotorProgramWantsItsFilesWhole)
{
    expect_refused("Solver_Input/hover.SlvrRot", "Vortik_RotorProg", model.rotor_words());
    expect_refused("Solver_Input/ParmFlw.h", "Vortik_RotorProg", model.rotor_words());
    expect_refused("Grid_Output/VRK.grd.L2G", "Vortik_RotorProg", model.rotor_words());
}

TEST_F(StandinRefusal, SolverWantsItsFilesWhole)
{
    for (const char* file : { "Solver_Input/hover.SlvrMain", "Solver_Input/hover.Tgrid",
             "Solver_Input/hover.SlvrRot", "Solver_Input/ParmFlw.h", "Solver_Input/ParmRtr.h",
             "Solver_Input/PreCalc.dat", "Grid_Output/VRK.grd.L2G", "Grid_Output/VRK.grid.dat",
             "Grid_Output/GeomBC.dat", "Grid_Output/OuterBC.dat" })
        expect_refused(file, "Vortik_Solver", model.solver_words());
}

TEST_F(StandinRefusal, SolverWantsTheBodyAndTheTextsBesideItsCard)
{
    for (const char* file : { "Grid_Output/hover_body.Grd", "Solver_Input/hover_moment_table.dat",
             "Solver_Input/hover.RtrGeom" }) {
        const std::string whole = model.text(file);
        std::remove(model.path(file).c_str());
        const std::string words = refusal("Vortik_Solver", model.solver_words());
        EXPECT_NE(words.find(std::string(file) + ": cannot be opened"), std::string::npos) << words;
        write_file(model.path(file), whole);
    }
}

TEST_F(StandinRefusal, SolverWantsTheRestartThatItsCardNames)
{
    model.m_input.m_bRestart = true;
    model.m_input.m_strRestartFile = model.path("Restarts/none.Rst");
    EXPECT_FALSE(model.solve().success);
    EXPECT_EQ(model.complaint("Vortik_Solver"),
        "Vortik_Solver: " + model.path("Restarts/none.Rst") + ": cannot be opened\n");
}

TEST_F(StandinRefusal, AdapterWantsItsFilesWhole)
{
    ASSERT_TRUE(model.solve().success);
    model.write_first_adapter_files(20);
    for (const char* file : { "Solver_Input/hover.AdptrMain", "Solver_Input/AdaptBoxes.dat",
             "Solver_Input/ParmFlw.old.h", "Grid_Output/GeomBC.old.dat",
             "Grid_Output/VRK.grid.dat" })
        expect_refused(file, "Vortik_Adapter", model.standard_words());
}

TEST_F(StandinRefusal, ProgramThatKnowsNoLogTellsTheErrorStream)
{
    EXPECT_EQ(complaint_of("Vortik_Solver", {}), "Vortik_Solver: argument -linkid= is missing\n");
    EXPECT_EQ(complaint_of("TreeGen", { "-3D" }), "TreeGen: argument -d is missing\n");
}

} // namespace

} // namespace Testing
