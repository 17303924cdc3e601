// SPDX-License-Identifier: Apache-2.0
#include "tavrobase/ProcessExecution.h"

#include "tavrobase/StringUtilities.h"
#include "tavrobase/platform/Processes.h"

namespace Tavro {

namespace {

const char* failed_operation(Platform::CaptureStep step)
{
    using Step = Platform::CaptureStep;
    switch (step) {
    case Step::OutPipe:
        return "StdOut CreatePipe()";
    case Step::ErrPipe:
        return "StdError CreatePipe()";
    case Step::OutHandle:
        return "StdOut SetHandleInformation()";
    case Step::ErrHandle:
        return "StdError SetHandleInformation()";
    case Step::OutRead:
        return "StdOut ReadFile()";
    case Step::ErrRead:
        return "StdError ReadFile()";
    case Step::Start:
    case Step::None:
        break;
    }
    return "CreateProcess()";
}

std::string failure_text(Platform::CaptureStep step, Platform::ErrorNumber number)
{
    return std::string(failed_operation(step)) + " failed!  ERROR #: " + NumToString(number) + "\n";
}

void report_end(const std::string& name, const Platform::ChildEnd& end)
{
    using Kind = Platform::ChildEnd::Kind;
    const std::string number = NumToString(end.value);
    switch (end.kind) {
    case Kind::Exited:
        PrintErrorDebugHelper(2, name + " ended with status " + number);
        break;
    case Kind::Signalled:
        PrintErrorDebugHelper(2, name + " was ended by signal " + number);
        break;
    case Kind::Unknown:
        PrintErrorDebugHelper(2, name + " ended with unknown status");
        break;
    }
}

} // namespace

bool run_process(const FilePath& exe, const std::vector<std::string>& args, const std::string& name,
    std::string& error)
{
    const auto child = Platform::start_child({ exe.Get(), name, args });
    if (child.pid < 0) {
        error = failure_text(Platform::CaptureStep::Start, child.error);
        return false;
    }
    report_end(name, Platform::wait_for_child(child.pid));
    return true;
}

int start_process(const FilePath& exe, const std::vector<std::string>& args,
    const std::string& name, std::string& error)
{
    const auto child = Platform::start_child({ exe.Get(), name, args });
    if (child.pid < 0)
        error = failure_text(Platform::CaptureStep::Start, child.error);
    return static_cast<int>(child.pid);
}

bool run_process(const FilePath& exe, const std::vector<std::string>& args, const std::string& name,
    std::string& error, std::string& out, std::string& err)
{
    out.clear();
    err.clear();
    const auto run = Platform::run_captured({ exe.Get(), name, args }, out, err);
    if (run.failed != Platform::CaptureStep::None) {
        error = failure_text(run.failed, run.error);
        return false;
    }
    report_end(name, run.end);
    return true;
}

} // namespace Tavro
