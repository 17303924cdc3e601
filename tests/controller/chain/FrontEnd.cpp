// SPDX-License-Identifier: Apache-2.0
#include "tests/controller/chain/FrontEnd.h"

#include "tests/support/Files.h"
#include "tests/support/Programs.h"

#include <algorithm>
#include <cstdio>
#include <sstream>
#include <stdexcept>
#include <utility>

namespace Testing {

namespace {

constexpr const char* kCaseFile = "run.vrk";
constexpr const char* kRecord = "starts.jsonl";

void demand(Tavro::LinkManager::Result result)
{
    if (result != Tavro::LinkManager::Success)
        throw std::runtime_error(Tavro::LinkManager::GetResultString(result));
}

} // namespace

ControllerProgram real_controller()
{
    const std::string file = program_beside_this("../demo/Vortik_Controller");
    return { file, file };
}

FrontEnd::FrontEnd(ControllerProgram program, std::string directory, VRK::ControllerInput input,
    std::vector<std::string> variables)
    : m_directory(std::move(directory))
    , m_input(std::move(input))
{
    Tavro::LinkManager::Result result {};
    m_link = std::make_unique<VRK::GUIConLink>(Tavro::FilePath(m_directory), result);
    demand(result);
    m_input.m_uintGUILinkID = m_link->GetLinkID();
    m_input.m_strModelDir = m_directory;
    m_input.m_fpCompletionFile = Tavro::FilePath(path("done.txt"));
    std::remove(path("done.txt").c_str()); // the word of a former run
    std::remove(path(kRecord).c_str());
    if (!m_input.Write(Tavro::FilePath(path(kCaseFile))))
        throw std::runtime_error("the case cannot be saved");
    variables.push_back("VORTIK_STANDIN_RECORD=" + path(kRecord));
    m_pid = start_program(
        program.file, { program.startedAs, "-input=" + path(kCaseFile) }, std::move(variables));
}

FrontEnd::~FrontEnd()
{
    if (m_ending.empty() && !end_of(m_pid))
        kill_all();
}

void FrontEnd::ask_to_stop() { demand(m_link->SetStop(true)); }

void FrontEnd::kill_controller() const { kill_process(m_pid); }

std::string FrontEnd::kill_child() const
{
    for (const RunProcess& process : processes()) {
        if (process.parent == m_pid) {
            kill_process(process.pid);
            return process.name;
        }
    }
    return "";
}

void FrontEnd::kill_all() const
{
    if (m_ending.empty() && !end_of(m_pid))
        kill_controller(); // first, so that it starts nothing more
    for (const RunProcess& process : processes())
        kill_process(process.pid);
}

bool FrontEnd::runs()
{
    if (!m_ending.empty())
        return false;
    const auto end = end_of(m_pid); // before the link is looked at for the last time
    look_at_link();
    if (end)
        m_ending = words_of_end(*end);
    return !end;
}

void FrontEnd::look_at_link()
{
    if (!m_link)
        return;
    VRK::ControllerStep step {};
    int number = -1;
    demand(m_link->GetStep(step));
    demand(m_link->GetStepNumber(number));
    if (step != 0 && (m_steps.empty() || m_steps.back() != step))
        m_steps.push_back(step);
    m_stepNumber = std::max(m_stepNumber, number);
}

std::string FrontEnd::path(const std::string& name) const { return m_directory + "/" + name; }

std::string FrontEnd::text(const std::string& name) const
{
    return file_exists(path(name)) ? read_file(path(name)) : "";
}

std::vector<std::string> FrontEnd::starts() const
{
    const std::string head = R"({"program":")";
    std::vector<std::string> names;
    std::istringstream lines(text(kRecord));
    for (std::string line; std::getline(lines, line);)
        names.push_back(line.substr(head.size(), line.find('"', head.size()) - head.size()));
    return names;
}

} // namespace Testing
