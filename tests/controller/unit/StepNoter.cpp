// SPDX-License-Identifier: Apache-2.0
//
// Stands in the place of every step program. Adds a line to the file that NOTES names: the step
// that the front end sees, the name it was started by, and its arguments but for the link; of a
// solver also the length of its schedule. Then it reports success, unless it is the start whose
// number FAIL holds.

#include "links/GUIConLink.h"
#include "links/GeneralConLink.h"
#include "links/LinkManager.h"
#include "links/SolverConLink.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

namespace {

std::string variable(const char* name)
{
    const char* const value = std::getenv(name);
    return value == nullptr ? "" : value;
}

std::string seen_step()
{
    bool attached = false;
    Tavro::LinkManager::Result result {};
    const VRK::GUIConLink link(Tavro::FilePath("/model"), attached, result);
    VRK::ControllerStep step {};
    if (link.GetStep(step) != Tavro::LinkManager::Success)
        return "?";
    return std::to_string(static_cast<int>(step));
}

/// Steps of the first layer: the third word of the line behind its heading.
std::string schedule_length()
{
    std::ifstream card("Solver_Input/case.Tgrid");
    std::string line;
    for (int i = 0; i < 3; ++i)
        std::getline(card, line);
    std::string number, length, steps;
    card >> number >> length >> steps;
    return " steps=" + steps;
}

template <typename Link>
void report(unsigned int id, void (*success)(Link&))
{
    Tavro::LinkManager::Result result {};
    Link link(id, result);
    success(link);
}

} // namespace

int main(int argc, char** argv)
{
    (void)Tavro::LinkManager::Startup();
    const std::string name = std::filesystem::path(argv[0]).stem().string();
    std::string line = seen_step() + " " + name;
    unsigned int id = 0;
    for (int i = 1; i < argc; ++i) {
        const std::string argument = argv[i];
        if (argument.starts_with("-linkid="))
            id = static_cast<unsigned int>(std::stoul(argument.substr(8)));
        else
            line += " " + argument;
    }
    const bool solver = name.starts_with("Vortik_Solver");
    if (solver)
        line += schedule_length();
    std::ofstream(variable("NOTES"), std::ios::app | std::ios::binary) << line << std::endl;

    std::ifstream notes(variable("NOTES"));
    const auto starts = std::count(std::istreambuf_iterator<char>(notes), {}, '\n');
    if (std::to_string(starts) != variable("FAIL")) {
        if (solver)
            report<Tavro::SolverConLink>(id, [](auto& link) {
                (void)link.SetSuccessfulCompletion(true); // a link that fails is a failed step
            });
        else
            report<Tavro::GeneralConLink>(id, [](auto& link) {
                (void)link.SetSuccessfulCompletion(true); // as above
                (void)link.SetCompletionState(1);
            });
    }
    Tavro::LinkManager::Shutdown();
    return 0;
}
