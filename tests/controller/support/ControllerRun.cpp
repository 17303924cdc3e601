// SPDX-License-Identifier: Apache-2.0
#include "tests/controller/support/ControllerRun.h"

#include "links/LinkManager.h"
#include "links/SolverConLink.h"
#include "tests/controller/support/Gate.h"
#include "tests/controller/support/LinkPlaces.h"
#include "tests/support/PrivateObjects.h"
#include "tests/support/Programs.h"
#include "tests/support/Waiting.h"

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <sstream>

namespace Testing {

namespace {

using Tavro::LinkManager;

constexpr const char* kPrograms[] = { "TreeGen", "Vortik_PreCalc", "Vortik_PreCalc-omp",
    "Vortik_RotorProg", "Vortik_RotorProg-omp", "Vortik_Solver", "Vortik_Solver-omp",
    "Vortik_Adapter", "Vortik_Adapter-omp", "Vortik_Extractor", "Vortik_Extractor-omp" };

/// Why there are no links, or nothing. A process has one manager in its life.
const std::string& join_links()
{
    static const std::string reason = [] {
        std::string text = use_private_objects();
        if (text.empty() && LinkManager::Startup() != LinkManager::Success)
            text = "no link manager";
        return text;
    }();
    return reason;
}

class LinksOfTheTests : public ::testing::Environment {
    void TearDown() override { LinkManager::Shutdown(); }
};

// NOLINTNEXTLINE(cert-err58-cpp): gtest owns it
const auto* const g_links = ::testing::AddGlobalTestEnvironment(new LinksOfTheTests);

void replace_all(std::string& text, const std::string& from, const std::string& to)
{
    for (auto at = text.find(from); at != std::string::npos; at = text.find(from, at + to.size()))
        text.replace(at, from.size(), to);
}

std::string text_of(const std::string& path)
{
    return file_exists(path) ? read_file(path) : "missing";
}

VRK::ControllerInput small_case()
{
    VRK::ControllerInput input;
    input.m_strCaseName = "wing";
    input.m_bRunBodyFitter = true;
    input.m_bRunValidator = true;
    const double corner[] = { -10.0, -20.5, 3.0, 30.0, 20.5, 11.0 };
    std::copy_n(corner, 3, input.m_grid.m_dDomainMin);
    std::copy_n(corner + 3, 3, input.m_grid.m_dDomainMax);
    input.m_grid.m_uintCellsX = input.m_grid.m_uintCellsY = input.m_grid.m_uintCellsZ = 4;
    input.m_vecBodies.resize(1);
    input.m_vecBodies[0].m_vecFacets.resize(1);
    input.m_vecRotors.resize(1);
    VRK::TimeData& time = input.m_time;
    time.m_vecTLen = { 2.0, 6.0 };
    time.m_vecNtCell = { 4, 6 };
    time.m_vecNIter = { 1, 1 };
    time.m_vecRlxu = time.m_vecRlxv = time.m_vecRlxw = time.m_vecRlxp = { 0.5, 0.5 };
    return input;
}

} // namespace

ControllerRun::ControllerRun()
    : m_case(small_case())
{
    make_directory(root());
    make_directory(programs());
    put_program(program_beside_this("controller_under_test"), programs("Vortik_Controller"));
    for (const char* name : kPrograms)
        put_program(program_beside_this("scripted_program"), programs(name));
    m_case.m_strModelDir = root();
    m_case.m_fpCompletionFile = Tavro::FilePath(root("completion"));
    set_turn(5);
    set("VORTIK_TEST_DIRECTORY", m_directory.path());
    set("VORTIK_TEST_ROOT", root());
}

ControllerRun::~ControllerRun()
{
    free_links();
    m_pFrontEnd.reset();
    if (::testing::Test::HasFailure() && file_exists(aside("processes"))) {
        std::istringstream left(read_file(aside("processes")));
        for (long long process = 0; left >> process;)
            kill_scripted_program(process, programs());
    }
}

void ControllerRun::SetUp()
{
    if (!join_links().empty())
        GTEST_SKIP() << join_links() << "; the tests do not run where a user's links could be";
    LinkManager::Result result {};
    m_pFrontEnd = std::make_unique<VRK::GUIConLink>(Tavro::FilePath(root()), result);
    ASSERT_EQ(result, LinkManager::Success);
    m_case.m_uintGUILinkID = m_pFrontEnd->GetLinkID();
    set("VORTIK_TEST_LINK", std::to_string(m_case.m_uintGUILinkID));
}

void ControllerRun::make_adaptive(unsigned period, unsigned start, std::optional<unsigned> end)
{
    m_case.m_adapt.m_bAdaptive = true;
    m_case.m_adapt.m_uintPeriod = period;
    m_case.m_adapt.m_uintStart = start;
    m_case.m_adapt.m_bUseEnd = end.has_value();
    m_case.m_adapt.m_uintEnd = end.value_or(0);
    m_case.m_bLSaveHstFASTSln = true;
    m_case.m_uintIterFASTSln = 2;
    m_case.m_bLSaveHstBdyPrs = true;
    m_case.m_uintIterBdyPrs = 3;
}

void ControllerRun::make_restart(unsigned step)
{
    m_case.m_bRestart = true;
    m_case.m_strRestartFile = root("named.Rst");
    std::string words(32, 'n');
    std::memcpy(words.data() + 28, &step, sizeof step);
    write_file(root("named.Rst"), words);
    for (const char* name : { "Grid_Output", "Solver_Input", "Restarts", "Body_Pressure" })
        make_directory(root(name));
    write_file(root("Grid_Output/VRK.grid.dat"), "# 4 5 6\nformer\n");
    write_file(root("Grid_Output/GeomBC.dat"), "former conditions\n");
    write_file(root("Solver_Input/ParmFlw.h"), "former flow\n");
    // Domain, divisions, no points, no entities: what an adaptation makes a new input of.
    write_file(root("Grid_Output/wing.treegen"), std::string(48 + 12 + 4 + 4, '\0'));
}

void ControllerRun::plan(const std::string& line)
{
    std::ofstream(aside("plan"), std::ios::app | std::ios::binary) << line << "\n";
}

void ControllerRun::save_case(const std::string& name) const
{
    ASSERT_TRUE(m_case.Write(Tavro::FilePath(root(name))));
}

void ControllerRun::set(const std::string& variable, const std::string& value)
{
    std::erase_if(
        m_environment, [&](const std::string& entry) { return entry.starts_with(variable + "="); });
    m_environment.push_back(variable + "=" + value);
}

void ControllerRun::start(
    const std::vector<std::string>& arguments, std::string program, std::string directory)
{
    if (program.empty())
        program = programs("Vortik_Controller");
    if (directory.empty())
        directory = m_directory.path();
    // A name without a directory is looked for below the programs, as a shell with that PATH does.
    const std::string file = program.find('/') == std::string::npos ? programs(program) : program;
    m_controller.start(
        { file, program, arguments, m_environment, directory, aside("inherited"), m_unmasked });
}

std::string ControllerRun::finish()
{
    std::string end;
    const bool ended = wait_until([&] {
        end = m_controller.end();
        return !end.empty();
    });
    return ended ? end : "still runs";
}

std::string ControllerRun::run()
{
    save_case();
    start();
    return ending();
}

void ControllerRun::await(const std::string& text) const
{
    EXPECT_TRUE(wait_until([&] { return children().find(text) != std::string::npos; }))
        << "no \"" << text << "\" in\n"
        << children();
}

void ControllerRun::await_step(int step) const
{
    EXPECT_TRUE(wait_until([&] { return published_step() == step; })) << published_step();
}

void ControllerRun::await_file(const std::string& name) const
{
    EXPECT_TRUE(wait_until([&] { return file_exists(root(name)); })) << name;
}

void ControllerRun::forget_children() const { std::filesystem::remove(aside("record")); }

void ControllerRun::make_gate(const std::string& name) const { Testing::make_gate(root(name)); }

void ControllerRun::pass_reader(const std::string& name) const
{
    ASSERT_TRUE(let_reader_through(root(name))) << name;
}

void ControllerRun::pass_writer(const std::string& name)
{
    m_openGates.push_back(let_writer_through(root(name)));
    ASSERT_TRUE(m_openGates.back()) << name;
}

void ControllerRun::ask_to_stop() { EXPECT_EQ(m_pFrontEnd->SetStop(true), LinkManager::Success); }

void ControllerRun::take_all_links()
{
    for (;;) {
        char byte = 0;
        unsigned link = 0;
        if (LinkManager::CreateLink(1, &byte, "", link) != LinkManager::Success)
            return;
        m_taken.push_back(link);
    }
}

void ControllerRun::free_links()
{
    for (const unsigned link : m_taken)
        EXPECT_EQ(LinkManager::DetachFromLink(link), LinkManager::Success);
    m_taken.clear();
}

void ControllerRun::hold_child_link()
{
    const std::string record = children();
    const auto number = record.rfind("-linkid=");
    ASSERT_NE(number, std::string::npos);
    const auto link = static_cast<unsigned>(std::stoul(record.substr(number + 8)));
    std::vector<LinkManager::LinkDebugInfo> links;
    ASSERT_EQ(LinkManager::GetLinkDebugInfo(links), LinkManager::Success);
    std::string key;
    std::string data(links[link].m_nDataSize, '\0');
    ASSERT_EQ(LinkManager::AttachToLink(link, key, data.size(), data.data()), LinkManager::Success);
    m_taken.push_back(link);
}

void ControllerRun::forget_the_dead() const
{
    RawBlock block;
    for (int slot = 1; slot < 50; ++slot)
        block.set_slot(slot, 0); // the first is the test's
    for (int link = 0; link < 100; ++link)
        block.set_count(link, link == static_cast<int>(m_case.m_uintGUILinkID) ? 1 : 0);
}

void ControllerRun::break_front_end_link(bool broken) const
{
    break_link(m_case.m_uintGUILinkID, broken);
}

void ControllerRun::spoil_child_record() const
{
    const RawBlock block;
    std::memset(record_of(block, m_case.m_uintGUILinkID + 1), 1, sizeof(Tavro::SolverRecord));
}

std::string ControllerRun::root(const std::string& name) const
{
    return m_directory.path(name.empty() ? "run" : "run/" + name);
}

std::string ControllerRun::programs(const std::string& name) const
{
    return m_directory.path(name.empty() ? "programs" : "programs/" + name);
}

std::string ControllerRun::aside(const std::string& name) const { return m_directory.path(name); }

std::string ControllerRun::file(const std::string& name) const
{
    return abbreviated(text_of(root(name)));
}

std::string ControllerRun::abbreviated(std::string text) const
{
    replace_all(text, root(), "@");
    replace_all(text, programs(), "%");
    replace_all(text, "%/./", "%/"); // of a controller that was started as one
    return text;
}

std::string ControllerRun::children() const
{
    return file_exists(aside("record")) ? abbreviated(read_file(aside("record"))) : "";
}

std::string ControllerRun::sequence() const
{
    std::istringstream lines(children());
    std::string names;
    for (std::string line; std::getline(lines, line);) {
        if (line.starts_with("  "))
            continue;
        const auto step = line.find(" at ") + 4;
        names += (names.empty() ? "" : ", ") + line.substr(step, line.find(':', step) - step) + " "
            + line.substr(0, line.find(' '));
    }
    return names;
}

std::string ControllerRun::log() const
{
    return text_of_stream(file("Process_Output/Vortik_Controller.out"));
}

std::string ControllerRun::errors() const
{
    return text_of_stream(file("Process_Output/Vortik_Controller.err"));
}

std::string ControllerRun::inherited() const
{
    return text_of_stream(abbreviated(text_of(aside("inherited"))));
}

std::string ControllerRun::files() const
{
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(root())) {
        names.push_back(entry.path().generic_string().substr(root().size() + 1)
            + (entry.is_directory() ? "/\n" : "\n"));
    }
    std::sort(names.begin(), names.end());
    std::string all;
    for (const std::string& name : names)
        all += name;
    return all;
}

int ControllerRun::published_step() const
{
    VRK::ControllerStep step {};
    (void)m_pFrontEnd->GetStep(step); // a 0 is no step
    return step;
}

std::string ControllerRun::published() const
{
    if (!file_exists(aside("published")))
        return "";
    std::string steps = read_file(aside("published"));
    steps.pop_back(); // the blank behind the last
    return steps;
}

std::string ControllerRun::links_left() const
{
    std::string left;
    const auto look = [&] {
        std::vector<LinkManager::ManagerDebugInfo> managers;
        std::vector<LinkManager::LinkDebugInfo> links;
        if (LinkManager::GetManagerDebuInfo(managers) != LinkManager::Success
            || LinkManager::GetLinkDebugInfo(links) != LinkManager::Success)
            return false;
        std::ostringstream found;
        const auto slots = std::count_if(managers.begin(), managers.end(),
            [](const auto& manager) { return manager.m_bOccupied; });
        if (slots != 1)
            found << slots << " managers ";
        for (std::size_t i = 0; i < links.size(); ++i) {
            const unsigned own = i == m_case.m_uintGUILinkID ? 1 : 0;
            if (links[i].m_nAttachments != own)
                found << "link " << i << ": " << links[i].m_nAttachments << " ";
        }
        left = found.str();
        return left.empty();
    };
    return wait_until(look) ? "clean" : left;
}

std::string ControllerRun::ending()
{
    const std::string status = finish();
    std::string text = "status " + status + ", step " + std::to_string(published_step()) + ", file "
        + completion();
    replace_all(text, "\n", "<end>");
    free_links();
    const std::string left = links_left();
    return text + (left == "clean" ? "" : ", " + left);
}

std::string child(
    const std::string& name, const std::string& directory, int step, const std::string& arguments)
{
    return name + " = %/" + name + program_ending() + " in " + directory + " at "
        + std::to_string(step) + ": " + arguments + "\n";
}

} // namespace Testing
