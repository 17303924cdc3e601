// SPDX-License-Identifier: Apache-2.0
// Every step program of a test: it notes how it was started, writes what the next step and the
// archive need, and does what the test has planned for this start. In the environment are
//   VORTIK_TEST_DIRECTORY  where "plan" and "record" lie
//   VORTIK_TEST_ROOT       the directory of the run
//   VORTIK_TEST_LINK       the front end's link
// A line of the plan is "NAME START COMMAND": what NAME does at its START-th start, in order,
// behind its files and before it reports success. Commands:
//   late                       before all else, note that it waits for a file "go" and do so
//   fail                       report no success
//   state N                    report this completion state instead
//   status N                   exit with it
//   crash                      die at the end
//   note TEXT                  in the record
//   await-stop                 wait for the stop flag and note that it was seen
//   hold                       wait for a file "go" beside the plan, then note the stop flag
//   figures STEP TOTAL MAX SUB publish the solver's figures
//   front-end TEXT             wait until the front end sees TEXT, and note what it sees
//   fields                     note what of the link's record the controller should have cleared
//   report                     report success now
//   break                      let nobody read or write the link's record
//   heal                       let them again
//   write PATH TEXT            a file, one line; below the directory of the run
//   remove PATH
//   gate PATH                  a file at which the controller waits when it opens it
//   take-away NAME             a program
// At its start the word in the completion file should be that of a run that goes on; if it is not,
// that is noted.
#include "links/GUIConLink.h"
#include "links/GeneralConLink.h"
#include "links/LinkManager.h"
#include "links/SolverConLink.h"
#include "tavrobase/platform/Processes.h"
#include "tests/controller/support/Gate.h"
#include "tests/controller/support/LinkPlaces.h"
#include "tests/controller/support/RunProcess.h"
#include "tests/support/Files.h"
#include "tests/support/Waiting.h"

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <filesystem>
#include <fstream>
#include <locale>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

namespace {

using Tavro::LinkManager;
using Words = std::vector<std::string>;

std::string in_test(const std::string& name)
{
    return std::getenv("VORTIK_TEST_DIRECTORY") + ("/" + name);
}

std::string in_root(const std::string& name)
{
    return std::getenv("VORTIK_TEST_ROOT") + ("/" + name);
}

/// In one piece, for its reader may come at any time.
void note(const std::string& line)
{
    std::ofstream(in_test("record"), std::ios::app | std::ios::binary) << line + "\n" << std::flush;
}

Words lines_of(const std::string& path)
{
    Words lines;
    std::ifstream stream(path);
    for (std::string line; std::getline(stream, line);)
        lines.push_back(line);
    return lines;
}

/// How often a program of this name has started before.
int earlier_starts(const std::string& name)
{
    int starts = 0;
    for (const std::string& line : lines_of(in_test("record")))
        starts += line.starts_with(name + " = ") ? 1 : 0;
    return starts;
}

/// The value of the line of a card that has this key.
std::string card_value(const std::string& card, const std::string& key)
{
    for (const std::string& line : lines_of(in_root("Solver_Input/" + card))) {
        std::istringstream words(line);
        std::string found;
        std::string equals;
        std::string value;
        words >> found >> equals >> std::ws;
        std::getline(words, value);
        if (found == key)
            return value;
    }
    return "missing";
}

std::uint32_t steps_of_schedule()
{
    std::uint32_t sum = 0;
    const Words lines = lines_of(in_root("Solver_Input/wing.Tgrid"));
    for (std::size_t i = 1; i < lines.size(); ++i) {
        if (!lines[i - 1].starts_with("# ----Layer---"))
            continue;
        std::istringstream words(lines[i]);
        std::string layer;
        std::string length;
        std::uint32_t steps = 0;
        words >> layer >> length >> steps;
        sum += steps;
    }
    return sum;
}

/// Seven words and the step.
std::string restart_bytes(std::uint32_t step)
{
    std::string bytes(32, 'r');
    std::memcpy(bytes.data() + 28, &step, sizeof step);
    return bytes;
}

class Program {
public:
    explicit Program(Words arguments)
        : m_how(Testing::start_of_this_program(arguments.front().c_str()))
        , m_name(m_how.name)
        , m_arguments(std::move(arguments))
        , m_start(earlier_starts(m_name) + 1)
    {
        for (const std::string& line : lines_of(in_test("plan"))) {
            if (line == m_name + " " + std::to_string(m_start) + " late") {
                note("  waits");
                (void)Testing::wait_until([] { return Testing::file_exists(in_test("go")); });
            }
        }
        LinkManager::Result result = LinkManager::Startup();
        m_pFrontEnd = std::make_unique<VRK::GUIConLink>(
            static_cast<unsigned>(std::stoul(std::getenv("VORTIK_TEST_LINK"))), result);
        m_link = static_cast<unsigned>(std::stoul(option("-linkid=", "4294967295")));
        if (is_solver())
            m_pSolver = std::make_unique<Tavro::SolverConLink>(m_link, result);
        else
            m_pGeneral = std::make_unique<Tavro::GeneralConLink>(m_link, result);
        m_linked = result == LinkManager::Success;
    }

    int run()
    {
        note_start();
        write_files();
        for (const std::string& line : lines_of(in_test("plan"))) {
            std::istringstream words(line);
            std::string name;
            int start = 0;
            words >> name >> start >> std::ws;
            if (name == m_name && start == m_start)
                obey(words);
        }
        report();
        m_pFrontEnd.reset();
        m_pGeneral.reset();
        m_pSolver.reset();
        LinkManager::Shutdown();
        if (m_crashes)
            Testing::kill_this_process();
        return m_status;
    }

private:
    [[nodiscard]] bool is_solver() const { return m_name.starts_with("Vortik_Solver"); }

    [[nodiscard]] std::string option(const std::string& key, const std::string& absent = "") const
    {
        for (const std::string& argument : m_arguments) {
            if (argument.starts_with(key))
                return argument.substr(key.size());
        }
        return absent;
    }

    void note_start() const
    {
        VRK::ControllerStep step {};
        (void)m_pFrontEnd->GetStep(step); // 0 is seen in the record
        std::ofstream(in_test("processes"), std::ios::app)
            << Tavro::Platform::current_process_id() << "\n";
        std::string line = m_name + " = " + m_how.file + " in "
            + std::filesystem::current_path().generic_string() + " at " + std::to_string(step)
            + ":";
        for (std::size_t i = 1; i < m_arguments.size(); ++i)
            line += " " + m_arguments[i];
        note(line);
        if (!m_linked)
            note("  has no link");
        const Words completion = lines_of(in_root("completion"));
        if (completion != Words { "-9" })
            note("  found the completion file with " + std::to_string(completion.size())
                + " lines: " + (completion.empty() ? "" : completion[0]));
        if (m_name.starts_with("Vortik_Adapter")) {
            const std::string card = "wing.AdptrMain";
            note("  stage " + card_value(card, "stage") + " of cycle "
                + card_value(card, "adaptcycle") + " at " + card_value(card, "timestep"));
        }
        if (is_solver()) {
            const std::string card = "wing.SlvrMain";
            note("  restart " + card_value(card, "LDATPRV") + " " + card_value(card, "RSTRTinp")
                + " up to " + std::to_string(steps_of_schedule()));
        }
    }

    void write_files() const
    {
        const std::string number = std::to_string(m_start);
        const std::string metrics = option("-osm=");
        if (!metrics.empty()) {
            Testing::write_file(metrics,
                std::string(40, 'H') + std::string(8, 'T') + std::string(4, 'F') + "body "
                    + number);
        } else if (!option("-i=").empty()) {
            Testing::write_file(option("-f="), "# 1 2.5 3000000\ngrid " + number + "\n");
            Testing::write_file(option("-l2g="), "map " + number + "\n");
            Testing::write_file(option("-p="), "flow " + number + "\n");
        } else if (m_name.starts_with("Vortik_Extractor")) {
            Testing::write_file(in_root("Grid_Output/GeomBC.dat"), "conditions " + number + "\n");
        } else if (m_name.starts_with("Vortik_Adapter")) {
            if (card_value("wing.AdptrMain", "stage") == "1")
                Testing::write_file(in_root("Solver_Input/Label.dat"), "4 2 0 0 0 1 1 1\n");
            else
                Testing::write_file(in_root("Restarts/wing.new.Rst"), "adapted " + number + "\n");
        } else if (is_solver()) {
            std::filesystem::create_directories(in_root("Restarts"));
            Testing::write_file(in_root("Restarts/wing.Rst"), restart_bytes(steps_of_schedule()));
        }
    }

    void obey(std::istringstream& words)
    {
        std::string command;
        words >> command >> std::ws;
        if (command == "late") {
            return; // it has been
        } else if (command == "fail") {
            m_succeeds = false;
        } else if (command == "state") {
            words >> m_state;
        } else if (command == "status") {
            words >> m_status;
        } else if (command == "crash") {
            m_crashes = true;
        } else if (command == "note") {
            std::string text;
            std::getline(words, text);
            note("  " + text);
        } else if (command == "await-stop") {
            // A controller that has gone at once has taken the link away.
            if (m_linked && Testing::wait_until([this] { return stop_flag(); }))
                note("  saw the stop");
        } else if (command == "hold") {
            (void)Testing::wait_until([] { return Testing::file_exists(in_test("go")); });
            note(std::string("  let go, stop flag ") + (stop_flag() ? "1" : "0"));
        } else if (command == "figures") {
            publish(words);
        } else if (command == "front-end") {
            std::string wanted;
            std::getline(words, wanted);
            (void)Testing::wait_until([&] { return seen_by_front_end() == wanted; });
            note("  " + seen_by_front_end());
        } else if (command == "fields") {
            note("  " + (is_solver() ? solver_fields() : general_fields()));
        } else if (command == "report") {
            report();
        } else if (command == "break" || command == "heal") {
            Testing::break_link(m_link, command == "break");
        } else if (command == "take-away") {
            std::string program;
            words >> program;
            take_away(Tavro::Platform::program_file(program));
        } else {
            std::string path;
            std::string text;
            words >> path >> std::ws;
            std::getline(words, text);
            path = in_root(path);
            if (command == "write")
                Testing::write_file(path, text + "\n");
            else if (command == "remove")
                std::filesystem::remove_all(path);
            else if (command == "gate")
                Testing::make_gate(path);
            else
                note("  does not know " + command);
        }
    }

    /// A program that runs can be moved everywhere, and removed on some systems only.
    static void take_away(const std::string& program)
    {
        std::filesystem::rename(in_test("programs/" + program), in_test("gone-" + program));
    }

    [[nodiscard]] bool stop_flag() const
    {
        bool stop = false;
        (void)(m_pSolver ? m_pSolver->GetStop(stop) : m_pGeneral->GetStop(stop)); // else false
        return stop;
    }

    void publish(std::istringstream& words)
    {
        int step = 0;
        double total = 0.0;
        double max = 0.0;
        double sub = 0.0;
        words >> step >> total >> max >> sub;
        // What does not arrive is missed by the front end, which is waited for.
        (void)m_pSolver->SetTotalMassResidual(total);
        (void)m_pSolver->SetMaxMassResidual(max);
        (void)m_pSolver->SetSubStep(sub);
        (void)m_pSolver->SetStepNumber(step);
    }

    [[nodiscard]] std::string solver_fields() const
    {
        bool stop = true;
        bool success = true;
        int step = 1;
        double sub = 1.0;
        double total = 1.0;
        double max = 1.0;
        (void)m_pSolver->GetStop(stop); // ones are seen in the record
        (void)m_pSolver->GetSuccessfulCompletion(success);
        (void)m_pSolver->GetStepNumber(step);
        (void)m_pSolver->GetSubStep(sub);
        (void)m_pSolver->GetTotalMassResidual(total);
        (void)m_pSolver->GetMaxMassResidual(max);
        std::ostringstream text;
        text.imbue(std::locale::classic());
        text << "stop " << stop << ", success " << success << ", step " << step << ", sub-step "
             << sub << ", residuals " << total << " " << max;
        return text.str();
    }

    [[nodiscard]] std::string general_fields() const
    {
        bool stop = true;
        bool success = true;
        int state = 1;
        (void)m_pGeneral->GetStop(stop); // ones are seen in the record
        (void)m_pGeneral->GetSuccessfulCompletion(success);
        (void)m_pGeneral->GetCompletionState(state);
        const std::string first = "stop " + std::to_string(int { stop });
        return m_name == "TreeGen" ? first + ", state " + std::to_string(state)
                                   : first + ", success " + std::to_string(int { success });
    }

    [[nodiscard]] std::string seen_by_front_end() const
    {
        int step = 0;
        int all = 0;
        int seconds = 0;
        double total = 0.0;
        double max = 0.0;
        double sub = 0.0;
        (void)m_pFrontEnd->GetStepNumber(step); // zeros are seen in the record
        (void)m_pFrontEnd->GetTotalSteps(all);
        (void)m_pFrontEnd->GetTotalMassResidual(total);
        (void)m_pFrontEnd->GetMaxMassResidual(max);
        (void)m_pFrontEnd->GetSubStep(sub);
        (void)m_pFrontEnd->GetTimeRemaining(seconds);
        std::ostringstream text;
        text.imbue(std::locale::classic());
        text << "step " << step << " of " << all << ", residuals " << total << " " << max
             << ", sub-step " << sub << ", " << seconds << " seconds left";
        return text.str();
    }

    void report()
    {
        if (!m_succeeds)
            return;
        // What is not written is a failure, which the test sees.
        if (m_pSolver)
            (void)m_pSolver->SetSuccessfulCompletion(true);
        else if (m_name == "TreeGen")
            (void)m_pGeneral->SetCompletionState(m_state);
        else
            (void)m_pGeneral->SetSuccessfulCompletion(true);
    }

    Testing::ProgramStart m_how;
    std::string m_name;
    Words m_arguments;
    int m_start; ///< 1 for the first of this name
    std::unique_ptr<VRK::GUIConLink> m_pFrontEnd;
    std::unique_ptr<Tavro::GeneralConLink> m_pGeneral;
    std::unique_ptr<Tavro::SolverConLink> m_pSolver;
    unsigned m_link = 0;
    bool m_linked = false;
    bool m_succeeds = true;
    bool m_crashes = false;
    int m_state = 1;
    int m_status = 0;
};

} // namespace

int main(int argc, char** argv)
{
    Testing::limit_this_life(); // a test that has failed leaves nobody behind
    try {
        return Program(Words(argv, argv + argc)).run();
    } catch (const std::exception& error) {
        note(std::string("  ") + error.what());
        return 1;
    }
}
