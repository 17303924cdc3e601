// SPDX-License-Identifier: Apache-2.0
#include "tavrobase/Trace.h"

#include "tavrobase/FilePath.h"
#include "tests/support/Environment.h"
#include "tests/support/Files.h"
#include "tests/support/Isolated.h"
#include "tests/tavrobase/Arguments.h"
#include "tests/tavrobase/LineNumbers.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <functional>
#include <iostream>
#include <set>
#include <sstream>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace {

using Testing::run_isolated;
using Testing::set_arguments;

void inner()
{
    TAVRO_TRACE_BEGIN("inner")
    throw Tavro::BadParameter("no such rotor", "case/Rotor.cpp", 42);
    TAVRO_TRACE_END
}

void middle()
{
    TAVRO_TRACE_BEGIN("middle")
    inner();
    TAVRO_TRACE_END
}

void outer()
{
    TAVRO_TRACE_BEGIN("outer")
    middle();
    TAVRO_TRACE_END
}

void fail_with_standard_exception()
{
    TAVRO_TRACE_BEGIN("Loader::Load")
    throw std::runtime_error("these words are not looked at");
    TAVRO_TRACE_END
}

void fail_with_number()
{
    TAVRO_TRACE_BEGIN("Loader::Load")
    throw 7;
    TAVRO_TRACE_END
}

constexpr int kHandlerLine = __LINE__ + 5;
void fail_at_known_line()
{
    TAVRO_TRACE_BEGIN("known")
    throw 7;
    TAVRO_TRACE_END
}

/// What a program with these arguments prints on its error stream. The lines of the handlers are
/// masked: they are those of this file.
std::string printed(const std::vector<std::string>& arguments, const std::function<void()>& body)
{
    const auto outcome = run_isolated([&] {
        set_arguments(arguments);
        body();
    });
    EXPECT_TRUE(outcome.exited && outcome.status == 0) << outcome.err;
    EXPECT_EQ(outcome.out, "");
    return Testing::without_line_numbers(outcome.err);
}

void swallow(const std::function<void()>& body)
{
    try {
        body();
    } catch (...) { // NOLINT(bugprone-empty-catch): the reports on the way are what is tested
    }
}

void nest_of_failing_calls()
{
    swallow([] { outer(); });
}

} // namespace

// Each function prints "Entering " at its caller's depth, then deepens. The constructors run within
// "inner", three deep. "Caught" lines are not indented; What() is itself traced, at the depth of
// the function that reports. The error is destroyed when the last handler ends.
TEST(Trace, ANestOfFailingCallsIsDrawnAsATreeAtLevelFive)
{
    EXPECT_EQ(printed({ "-debug", "5" }, nest_of_failing_calls),
        "Entering outer\n"
        "|  Entering middle\n"
        "|  |  Entering inner\n"
        "|  |  |  Entering Exception::Exception\n"
        "|  |  |  Leaving Exception::Exception\n"
        "|  |  |  Entering BadParameter::BadParameter\n"
        "|  |  |  Leaving BadParameter::BadParameter\n"
        "Caught error in inner\n"
        "|  |  |  Entering Exception::What\n"
        "|  |  |  Leaving Exception::What\n"
        "no such rotor\n"
        "Caught in tests/tavrobase/Trace_test.cpp: #\n"
        "|  |  Leaving inner\n"
        "Caught error in middle\n"
        "|  |  Entering Exception::What\n"
        "|  |  Leaving Exception::What\n"
        "no such rotor\n"
        "Caught in tests/tavrobase/Trace_test.cpp: #\n"
        "|  Leaving middle\n"
        "Caught error in outer\n"
        "|  Entering Exception::What\n"
        "|  Leaving Exception::What\n"
        "no such rotor\n"
        "Caught in tests/tavrobase/Trace_test.cpp: #\n"
        "Leaving outer\n"
        "Entering BadParameter::~BadParameter\n"
        "Leaving BadParameter::~BadParameter\n"
        "Entering Exception::~Exception\n"
        "Leaving Exception::~Exception\n");
}

TEST(Trace, ANestOfFailingCallsGivesErrorsAndDetailsAtLevelTwo)
{
    EXPECT_EQ(printed({ "-debug", "2" }, nest_of_failing_calls),
        "Caught error in inner\n"
        "no such rotor\n"
        "Caught in tests/tavrobase/Trace_test.cpp: #\n"
        "Caught error in middle\n"
        "no such rotor\n"
        "Caught in tests/tavrobase/Trace_test.cpp: #\n"
        "Caught error in outer\n"
        "no such rotor\n"
        "Caught in tests/tavrobase/Trace_test.cpp: #\n");
}

TEST(Trace, ANestOfFailingCallsGivesErrorsAtLevelOne)
{
    EXPECT_EQ(printed({ "-debug", "1" }, nest_of_failing_calls),
        "Caught error in inner\nCaught error in middle\nCaught error in outer\n");
}

TEST(Trace, NothingIsPrintedAtLevelZero)
{
    EXPECT_EQ(printed({ "-debug", "0" }, nest_of_failing_calls), "");
}

TEST(Trace, LevelFourPrintsNoTraceLines)
{
    EXPECT_EQ(printed({ "-debug", "4" }, nest_of_failing_calls),
        printed({ "-debug", "2" }, nest_of_failing_calls));
}

TEST(Trace, TheErrorIsThrownOnAsItWas)
{
    EXPECT_EQ(printed({ "-debug", "0" },
                  [] {
                      try {
                          outer();
                      } catch (const Tavro::BadParameter& error) {
                          std::cerr << error.What() << " " << error.Filename() << " "
                                    << error.LineNumber();
                      }
                  }),
        "no such rotor case/Rotor.cpp 42");
}

TEST(Trace, AStandardExceptionPassesAsAnUnknownType)
{
    EXPECT_EQ(printed({ "-debug", "5" }, [] { swallow(fail_with_standard_exception); }),
        "Entering Loader::Load\n"
        "Caught error in Loader::Load\n"
        "Unknown exception type\n"
        "Caught in tests/tavrobase/Trace_test.cpp: #\n"
        "Leaving Loader::Load\n");
}

TEST(Trace, AStandardExceptionIsThrownOnWithItsWords)
{
    EXPECT_EQ(printed({},
                  [] {
                      try {
                          fail_with_standard_exception();
                      } catch (const std::runtime_error& error) {
                          std::cerr << error.what();
                      }
                  }),
        "these words are not looked at");
}

TEST(Trace, AThrownNumberPassesAsAnUnknownType)
{
    EXPECT_EQ(printed({ "-debug", "2" }, [] { swallow(fail_with_number); }),
        "Caught error in Loader::Load\n"
        "Unknown exception type\n"
        "Caught in tests/tavrobase/Trace_test.cpp: #\n");
}

TEST(Trace, TheLineIsThatOfTheHandler)
{
    const auto outcome = run_isolated([] {
        set_arguments({ "-debug", "2" });
        swallow(fail_at_known_line);
    });
    EXPECT_EQ(outcome.err,
        "Caught error in known\n"
        "Unknown exception type\n"
        "Caught in tests/tavrobase/Trace_test.cpp: "
            + std::to_string(kHandlerLine) + "\n");
}

// "x/.." leads to an existing directory, so the search finds it, but as a path it collapses to
// nothing, and std::out_of_range leaves the search.
TEST(Trace, AnErrorInsideTheLibraryNamesItsSource)
{
    const Testing::TemporaryDirectory directory;
    Testing::make_directory(directory.path("x"));
    EXPECT_EQ(printed({ "-debug", "5" },
                  [&] {
                      (void)Tavro::SetWorkingDirectory(directory.path()); // shows in the outcome
                      Testing::put_variable("PATH", "x");
                      swallow([] { (void)Tavro::GetExecutablePath(".."); });
                  }),
        "Entering GetExecutablePath\n"
        "Caught error in GetExecutablePath\n"
        "Unknown exception type\n"
        "Caught in tavrobase/WorkingDirectory.cpp: #\n"
        "Leaving GetExecutablePath\n");
}

TEST(Trace, EveryMemberOfTheFamilyIsTraced)
{
    EXPECT_EQ(printed({ "-debug", "5" },
                  [] {
                      const Tavro::AllocationFailed error("a.cpp", 1, 2);
                      (void)error.What();
                      (void)error.Filename();
                      (void)error.LineNumber();
                      (void)error.Size();
                  }),
        "Entering Exception::Exception\n"
        "Leaving Exception::Exception\n"
        "Entering AllocationFailed::AllocationFailed\n"
        "Leaving AllocationFailed::AllocationFailed\n"
        "Entering Exception::What\n"
        "Leaving Exception::What\n"
        "Entering Exception::Filename\n"
        "Leaving Exception::Filename\n"
        "Entering Exception::LineNumber\n"
        "Leaving Exception::LineNumber\n"
        "Entering AllocationFailed::Size\n"
        "Leaving AllocationFailed::Size\n"
        "Entering AllocationFailed::~AllocationFailed\n"
        "Leaving AllocationFailed::~AllocationFailed\n"
        "Entering Exception::~Exception\n"
        "Leaving Exception::~Exception\n");
}

TEST(Trace, ACopiedExceptionIsTraced)
{
    EXPECT_EQ(printed({ "-debug", "5" },
                  [] {
                      const Tavro::Exception first("m", "f", 1);
                      const Tavro::Exception second(first); // NOLINT(performance-*)
                  }),
        "Entering Exception::Exception\n"
        "Leaving Exception::Exception\n"
        "Entering Exception::Exception\n"
        "Leaving Exception::Exception\n"
        "Entering Exception::~Exception\n"
        "Leaving Exception::~Exception\n"
        "Entering Exception::~Exception\n"
        "Leaving Exception::~Exception\n");
}

namespace {

/// The trace of one object's making and end in a family member's own lines.
std::string own_lines(const std::string& name)
{
    return "Entering " + name + "::" + name + "\nLeaving " + name + "::" + name + "\n";
}

std::string own_end(const std::string& name)
{
    return "Entering " + name + "::~" + name + "\nLeaving " + name + "::~" + name + "\n";
}

} // namespace

TEST(Trace, TheClassesOfTheFamilyAreTracedUnderTheirNamesBaseFirst)
{
    const std::string base = own_lines("Exception");
    const std::string baseEnd = own_end("Exception");
    const auto made = [&](const std::function<void()>& make) {
        return printed({ "-debug", "5" }, make);
    };
    EXPECT_EQ(made([] { const Tavro::NullPointer error("f", 1); }),
        base + own_lines("NullPointer") + own_end("NullPointer") + baseEnd);
    EXPECT_EQ(made([] { const Tavro::BadParameter error("f", 1); }),
        base + own_lines("BadParameter") + own_end("BadParameter") + baseEnd);
    EXPECT_EQ(made([] { const Tavro::NullParameter error("f", 1); }),
        base + own_lines("BadParameter") + own_lines("NullParameter") + own_end("NullParameter")
            + own_end("BadParameter") + baseEnd);
    EXPECT_EQ(made([] { const Tavro::InvalidMemberAccess error("f", 1); }),
        base + own_lines("InvalidMemberAccess") + own_end("InvalidMemberAccess") + baseEnd);
    EXPECT_EQ(made([] { const Tavro::BadFilePathException error("m", "f", 1); }),
        base + own_lines("BadFilePathException") + own_end("BadFilePathException") + baseEnd);
}

TEST(Trace, AMissingOrShortIndentationIsTakenAwayWhole)
{
    EXPECT_EQ(printed({ "-debug", "5" },
                  [] {
                      {
                          const Tavro::TraceFrame frame("short");
                          strDebugIndentLevel = "ab";
                      }
                      {
                          const Tavro::TraceFrame frame("empty");
                          strDebugIndentLevel.clear();
                      }
                      {
                          const Tavro::TraceFrame frame("long");
                          strDebugIndentLevel = "abcdef ";
                      }
                  }),
        "Entering short\nLeaving short\nEntering empty\nLeaving empty\nEntering long\n"
        "def Leaving long\n");
}

TEST(TraceLevel, LinesAboveLevelThreeAreIndented)
{
    EXPECT_EQ(printed({ "-debug", "9" },
                  [] {
                      strDebugIndentLevel = "|  |  ";
                      PrintErrorDebugHelper(3, "three");
                      PrintErrorDebugHelper(4, "four");
                      PrintErrorDebugHelper(9, "nine");
                      PrintErrorDebugHelper(10, "ten");
                  }),
        "three\n|  |  four\n|  |  nine\n");
}

TEST(TraceLevel, WithoutTheParameterErrorsAreNotPrinted)
{
    EXPECT_EQ(printed({},
                  [] {
                      PrintErrorDebugHelper(1, "error");
                      PrintErrorDebugHelper(2, "detail");
                      PrintErrorDebugHelper(5, "trace");
                      nest_of_failing_calls();
                  }),
        "");
}

TEST(TraceLevel, ALineOfLevelZeroIsNotAboveLevelZero)
{
    EXPECT_EQ(printed({}, [] { PrintErrorDebugHelper(0, "always"); }), "always\n");
}

TEST(TraceLevel, AnEmptyTextIsAnEmptyLine)
{
    EXPECT_EQ(printed({ "-debug=1" }, [] { PrintErrorDebugHelper(1, ""); }), "\n");
}

TEST(TraceLevel, AReportBeforeSetParametersIsLostAndDoesNotFixTheLevel)
{
    const auto outcome = run_isolated([] {
        PrintErrorDebugHelper(1, "too early");
        nest_of_failing_calls();
        set_arguments({ "-debug", "1" });
        PrintErrorDebugHelper(1, "in time");
    });
    EXPECT_EQ(outcome.err, "in time\n");
}

TEST(TraceLevel, TheLevelIsFixedByTheFirstReportAfterSetParameters)
{
    EXPECT_EQ(printed({},
                  [] {
                      PrintErrorDebugHelper(1, "asks for the level");
                      set_arguments({ "-debug", "1" });
                      PrintErrorDebugHelper(1, "too late for a level");
                  }),
        "");
}

TEST(TraceLevel, AValueThatIsNoNumberGivesLevelZero)
{
    EXPECT_EQ(printed({ "-debug", "much" }, [] { PrintErrorDebugHelper(1, "error"); }), "");
}

TEST(TraceLevel, ABareFlagGivesLevelZeroWithoutAReport)
{
    EXPECT_EQ(printed({ "-debug" },
                  [] {
                      PrintErrorDebugHelper(1, "error");
                      PrintErrorDebugHelper(0, "level zero");
                  }),
        "level zero\n");
}

TEST(TraceLevel, ANegativeValueSilencesLevelZeroToo)
{
    EXPECT_EQ(printed({ "-debug=-1" }, [] { PrintErrorDebugHelper(0, "zero"); }), "");
}

TEST(TraceLevel, TheNumberMayBeHexadecimal)
{
    EXPECT_EQ(printed({ "-debug", "0x2" },
                  [] {
                      PrintErrorDebugHelper(2, "two");
                      PrintErrorDebugHelper(3, "three");
                  }),
        "two\n");
}

namespace {

/// Whether a line of the nest's trace is one that a single thread prints too, at whatever depth.
bool is_whole(std::string line)
{
    static const std::set<std::string> kLines = [] {
        std::set<std::string> lines { "no such rotor", "Caught error in inner",
            "Caught error in middle", "Caught error in outer",
            "Caught in tests/tavrobase/Trace_test.cpp: #" };
        for (const char* name :
            { "inner", "middle", "outer", "Exception::Exception", "BadParameter::BadParameter",
                "Exception::What", "Exception::~Exception", "BadParameter::~BadParameter" }) {
            lines.insert(std::string("Entering ") + name);
            lines.insert(std::string("Leaving ") + name);
        }
        return lines;
    }();
    while (line.starts_with("|  "))
        line.erase(0, 3);
    return kLines.contains(line);
}

} // namespace

// How deep a line is drawn while others trace is left open; that lines stay whole is not.
TEST(TraceThreads, LinesOfConcurrentTracesStayWhole)
{
    constexpr int kThreads = 4;
    constexpr int kRounds = 50;
    const std::string text = printed({ "-debug", "5" }, [] {
        std::vector<std::thread> threads;
        for (int i = 0; i < kThreads; ++i) {
            threads.emplace_back([] {
                for (int round = 0; round < kRounds; ++round)
                    nest_of_failing_calls();
            });
        }
        for (std::thread& thread : threads)
            thread.join();
        if (!strDebugIndentLevel.empty())
            std::cerr << "the indentation did not come back\n";
    });
    std::istringstream lines(text);
    int count = 0;
    for (std::string line; std::getline(lines, line); ++count)
        EXPECT_TRUE(is_whole(line)) << line;
    EXPECT_EQ(count, 29 * kThreads * kRounds); // 29 lines in the nest above
}
