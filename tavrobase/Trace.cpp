// SPDX-License-Identifier: Apache-2.0
#include "tavrobase/Trace.h"

#include "tavrobase/CommandLine.h"

#include <exception>
#include <iostream>
#include <mutex>

std::string strDebugIndentLevel; // NOLINT(cert-err58-cpp): an empty text does not throw

namespace {

constexpr int kErrorLevel = 1;
constexpr int kDetailLevel = 2;
constexpr int kLastPlainLevel = 3; // above this one lines are indented
constexpr int kTraceLevel = 5;
constexpr int kLevelUnknown = -2;

// Lines of two threads may stand between each other, but never within.
std::mutex& output_mutex()
{
    static std::mutex mutex;
    return mutex;
}

void indent()
{
    const std::lock_guard lock(output_mutex());
    strDebugIndentLevel += "|  ";
}

void outdent()
{
    const std::lock_guard lock(output_mutex());
    strDebugIndentLevel.erase(0, 3);
}

void report(const std::string& words, const char* file, int line)
{
    PrintErrorDebugHelper(kDetailLevel, words);
    PrintErrorDebugHelper(
        kDetailLevel, std::string("Caught in ") + file + ": " + std::to_string(line));
}

} // namespace

void PrintErrorDebugHelper(int level, std::string text)
{
    const std::lock_guard lock(output_mutex());
    static int debugLevel = kLevelUnknown;
    if (debugLevel == kLevelUnknown) {
        if (!Tavro::CommandLine::Initialized())
            return;
        // For this one name and type the query reports nothing, so it does not come back here.
        int asked = 0;
        debugLevel = Tavro::CommandLine::GetArgument("debug", asked) ? asked : 0;
    }
    if (level > debugLevel)
        return;
    if (level > kLastPlainLevel)
        text.insert(0, strDebugIndentLevel);
    text += '\n';
    std::cerr << text;
}

namespace Tavro {

TraceFrame::TraceFrame(const char* function)
    : m_function(function)
{
    PrintErrorDebugHelper(kTraceLevel, std::string("Entering ") + m_function);
    indent();
}

TraceFrame::~TraceFrame() { Leave(); }

void TraceFrame::Caught(const Exception& error, const char* file, int line)
{
    PrintErrorDebugHelper(kErrorLevel, std::string("Caught error in ") + m_function);
    report(error.What(), file, line);
    Leave();
}

void TraceFrame::CaughtUnknown(const char* file, int line)
{
    PrintErrorDebugHelper(kErrorLevel, std::string("Caught error in ") + m_function);
    report("Unknown exception type", file, line);
    Leave();
}

// Not a plain `throw`: by GCC's library for Windows that one aborts where nobody catches, before
// the handler of `std::terminate` could say which error it was.
void TraceFrame::ThrowOn() { std::rethrow_exception(std::current_exception()); }

void TraceFrame::Leave()
{
    if (m_left)
        return;
    m_left = true;
    outdent();
    PrintErrorDebugHelper(kTraceLevel, std::string("Leaving ") + m_function);
}

} // namespace Tavro
