// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "case/ControllerInput.h"
#include "links/GeneralConLink.h"
#include "links/LinkManager.h"
#include "links/SolverConLink.h"
#include "state/ControllerState.h"

#include <functional>
#include <mutex>
#include <string>
#include <vector>

/// The frame that every step program goes through: a link of its own, made and cleared before the
/// program starts and read and destroyed after its end. The controller mutex is held for both, and
/// never while the program runs, so that the update thread can reach the program meanwhile.
namespace StepProgram {

/// What one kind of step says of its link.
template <typename Link>
struct LinkUse {
    Link* ControllerState::*m_slot; ///< where the update thread finds the link
    const char* m_failure; ///< words before the manager's if there is no link
    void (*m_clear)(Link&); ///< a new link still holds what its last owner left there
    bool (*m_succeeded)(const Link&); ///< the program's own verdict; false if it cannot be read
};

/// Says on the error stream why there is no link.
void report_link_failure(const char* words, Tavro::LinkManager::Result result);

/// Runs `run` with the number of a new link. False if there is no link, if `run` is false, or if
/// the program has not reported success.
template <typename Link>
[[nodiscard]] bool run_with_link(
    const LinkUse<Link>& use, const std::function<bool(unsigned int linkID)>& run)
{
    Link*& slot = g_info.*use.m_slot;
    const auto drop = [&slot] {
        delete slot;
        slot = nullptr;
    };
    unsigned int linkID = 0;
    {
        const std::lock_guard lock(g_info.m_mutex);
        Tavro::LinkManager::Result result {};
        slot = new Link(result); // owned by the run's record, where the stop sequence finds it
        if (result != Tavro::LinkManager::Success) {
            report_link_failure(use.m_failure, result);
            drop();
            return false;
        }
        use.m_clear(*slot);
        linkID = slot->GetLinkID();
    }
    const bool ran = run(linkID);
    const std::lock_guard lock(g_info.m_mutex);
    const bool succeeded = ran && use.m_succeeded(*slot);
    drop();
    return succeeded;
}

// Arguments that several programs share.
[[nodiscard]] std::string link_argument(unsigned int linkID);
[[nodiscard]] std::string model_directory(const VRK::ControllerInput& input);
[[nodiscard]] std::string model_name(const VRK::ControllerInput& input);
/// "--Grid_Output=", "--Solver_Input=" and "--Process_Output=", each with the last name of its
/// directory alone and one "/": the program finds it in the model directory.
void add_run_directories(std::vector<std::string>& arguments);
/// "--nThreads=" for a threaded program, else nothing.
void add_threads(std::vector<std::string>& arguments, const VRK::ControllerInput& input);

/// Whether the case asks for the threaded programs.
[[nodiscard]] bool is_threaded(const VRK::ControllerInput& input);

/// Notes where the controller's own executable lies, from its path. To be called before the working
/// directory changes.
void remember_program_directory(const std::string& controller);

/// Runs a program that lies beside the controller's executable, and waits for its end. False, with
/// a text in `error`, if it could not be started.
[[nodiscard]] bool run_beside_controller(
    const std::string& name, const std::vector<std::string>& arguments, std::string& error);

/// The same for a program that has a threaded variant, which is taken if the case asks for it.
[[nodiscard]] bool run_variant(const std::string& name, const VRK::ControllerInput& input,
    const std::vector<std::string>& arguments, std::string& error);

/// The whole frame of a program that sets the flag for success and has a threaded variant.
/// `arguments` stand between the link's and the threads'.
[[nodiscard]] bool run_general(Tavro::GeneralConLink* ControllerState::*slot,
    const std::string& name, const VRK::ControllerInput& input, std::vector<std::string> arguments,
    std::string& error);

} // namespace StepProgram
