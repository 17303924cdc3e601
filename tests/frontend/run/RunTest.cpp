// SPDX-License-Identifier: Apache-2.0
#include "tests/frontend/run/RunTest.h"

#include "tavrobase/platform/ProcessWatch.h"
#include "tests/support/PrivateObjects.h"
#include "tests/support/Waiting.h"

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <regex>
#include <sstream>

namespace Testing {

namespace Platform = Tavro::Platform;

namespace {

constexpr const char* kCube = R"(v 0 0 0
v 1 0 0
v 1 1 0
v 0 1 0
v 0 0 1
v 1 0 1
v 1 1 1
v 0 1 1
f 1 3 2
f 1 4 3
f 5 6 7
f 5 7 8
f 1 2 6
f 1 6 5
f 2 3 7
f 2 7 6
f 3 4 8
f 3 8 7
f 4 1 5
f 4 5 8
)";

constexpr const char* kCase = R"([case]
name = "cube"

[grid]
domain_min = [-8.0, -8.0, -8.0]
domain_max = [8.0, 8.0, 8.0]
cells = [16, 16, 16]

[[body]]
id = 1
level = 3
file = "cube.obj"

[boundary.x_max]
type = "pressure"
pressure = 101325.0

[output.restart]
period = 50

[[time.layer]]
duration = 2.0
steps = )";

} // namespace

RunTest::RunTest()
    : m_why(use_private_objects())
{
}

RunTest::~RunTest()
{
    for (const std::string& root : m_roots) {
        const std::string group = remembered(root, "controller");
        if (group.empty())
            continue;
        for (const auto& program : Platform::programs_of_group(std::stoll(group)))
            (void)Platform::end_process(program.pid, true); // gone since, if it cannot be ended
    }
    // What the killed have left in the links would linger into the next test.
    if (objects_are_private())
        remove_private_objects();
}

void RunTest::SetUp()
{
    if (!m_why.empty())
        GTEST_SKIP() << m_why << "; the tests do not run where a user's links could be";
}

std::string RunTest::make_case(const std::string& name, unsigned steps)
{
    std::string root = make_root(name);
    make_directory(root);
    write_file(root + "/cube.obj", kCube);
    write_file(root + "/case.toml", kCase + std::to_string(steps) + "\n");
    return root;
}

std::string RunTest::make_root(const std::string& name)
{
    m_roots.push_back(std::filesystem::canonical(m_directory.path()).string() + "/" + name);
    return m_roots.back();
}

VortikProcess::Setting RunTest::with_controller(const std::string& root, std::string script)
{
    VortikProcess::Setting setting = pace(10);
    setting.directory = root + "/programs";
    make_directory(setting.directory);
    for (const std::string& name : names_in(demo_directory())) {
        if (name != "Vortik_Controller")
            make_link(demo_directory() + "/" + name, setting.directory + "/" + name);
    }
    if (const auto at = script.find("DEMO"); at != std::string::npos)
        script.replace(at, 4, demo_directory());
    const std::string controller = setting.directory + "/Vortik_Controller";
    write_file(controller, "#!/bin/sh\n" + script + "\n");
    std::filesystem::permissions(controller, std::filesystem::perms::owner_all);
    return setting;
}

VortikProcess::Setting RunTest::pace(unsigned milliseconds, unsigned columns)
{
    return { { { "VORTIK_STANDIN_PACE", std::to_string(milliseconds) } }, columns };
}

std::string RunTest::remembered(const std::string& root, const std::string& word)
{
    if (!std::filesystem::is_regular_file(root + "/.vortik-run"))
        return "";
    std::istringstream lines(read_file(root + "/.vortik-run"));
    for (std::string line; std::getline(lines, line);) {
        if (line.starts_with(word + " "))
            return line.substr(word.size() + 1);
    }
    return "";
}

pid_t RunTest::controller_of(const std::string& root)
{
    return std::stoi(remembered(root, "controller"));
}

pid_t RunTest::step_program(const std::string& root, const std::string& name)
{
    pid_t found = -1;
    (void)wait_until([&] { // a test that gets no process fails
        for (const auto& program : Platform::programs_of_group(controller_of(root))) {
            if (program.path.ends_with("/" + name))
                found = static_cast<pid_t>(program.pid);
        }
        return found > 0;
    });
    return found;
}

std::string all_of(const Words& arguments)
{
    VortikProcess vortik(arguments);
    const int status = vortik.ends();
    return vortik.output() + "status " + std::to_string(status) + "\n";
}

std::vector<std::string> screen_of(const std::string& output)
{
    static const std::string kWipe = "\x1b[K";
    std::vector<std::string> lines { "" };
    std::size_t column = 0;
    for (std::size_t at = 0; at < output.size(); ++at) {
        std::string& line = lines.back();
        if (output[at] == '\r') {
            column = 0;
        } else if (output[at] == '\n') {
            lines.emplace_back(column, ' ');
        } else if (output.compare(at, kWipe.size(), kWipe) == 0) {
            line.resize(column);
            at += kWipe.size() - 1;
        } else {
            line.resize(std::max(line.size(), column + 1), ' ');
            line[column++] = output[at];
        }
    }
    return lines;
}

std::string tidy(std::string text, const std::string& root)
{
    for (auto at = text.find(root); at != std::string::npos; at = text.find(root, at))
        text.replace(at, root.size(), "DIR");
    static const std::regex process("process [0-9]+");
    static const std::regex residual("[0-9][.][0-9]+e[-+][0-9]+");
    static const std::regex left("([0-9]+ min )?[0-9]+ s left");
    static const std::regex link("link [0-9]+\\)");
    text = std::regex_replace(text, link, "link N)");
    text = std::regex_replace(text, process, "process N");
    text = std::regex_replace(text, residual, "N");
    return std::regex_replace(text, left, "N left");
}

} // namespace Testing
