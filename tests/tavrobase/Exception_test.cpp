// SPDX-License-Identifier: Apache-2.0
#include "tavrobase/Exception.h"

#include "tavrobase/FilePath.h"
#include "tests/support/Isolated.h"
#include "tests/tavrobase/LineNumbers.h"

#include <gtest/gtest.h>

#include <csignal>
#include <cstdio>
#include <exception>
#include <iostream>
#include <string>
#include <type_traits>

namespace {

using Tavro::AllocationFailed;
using Tavro::BadFilePathException;
using Tavro::BadParameter;
using Tavro::Exception;
using Tavro::InvalidMemberAccess;
using Tavro::NullParameter;
using Tavro::NullPointer;
using Testing::run_isolated;

// The checks in the getters guard against overwritten memory. To show them at work the tests reach
// for the private members: the arguments of an explicit instantiation may name them.
template <typename Name, auto Member>
struct Reach {
    friend auto member(Name) { return Member; }
};
struct Message {
    friend auto member(Message);
};
struct File {
    friend auto member(File);
};
struct Line {
    friend auto member(Line);
};
struct Size {
    friend auto member(Size);
};
template struct Reach<Message, &Exception::m_strErrorMessage>;
template struct Reach<File, &Exception::m_strFilename>;
template struct Reach<Line, &Exception::m_ushtLineNumber>;
template struct Reach<Size, &AllocationFailed::m_ushtSize>;

void expect(const Exception& error, const char* message, const char* file, unsigned short line)
{
    EXPECT_EQ(error.What(), message);
    EXPECT_EQ(error.Filename(), file);
    EXPECT_EQ(error.LineNumber(), line);
}

/// The check and the file in the words that end the process; the line is the checker's own.
void expect_assertion(const Testing::Outcome& outcome, const std::string& words)
{
    EXPECT_FALSE(outcome.exited);
    EXPECT_EQ(outcome.signal, SIGABRT);
    EXPECT_EQ(Testing::without_line_numbers(outcome.err), words);
}

} // namespace

TEST(ExceptionFamily, AnExceptionHoldsMessageFileAndLineAsGiven)
{
    expect(Exception("the rotor is gone", "case/Rotor.cpp", 7), "the rotor is gone",
        "case/Rotor.cpp", 7);
}

TEST(ExceptionFamily, ANullPointerSaysInternalMemoryManagementError)
{
    expect(NullPointer("a.cpp", 1), "Internal memory management error", "a.cpp", 1);
}

TEST(ExceptionFamily, ABadParameterWithAMessageHoldsItAsGiven)
{
    expect(BadParameter("radius < 0", "a.cpp", 2), "radius < 0", "a.cpp", 2);
}

TEST(ExceptionFamily, ABadParameterWithFileAndLineOnlySaysInternalDataManagementError)
{
    expect(BadParameter("a.cpp", 3), "Internal data management error", "a.cpp", 3);
}

TEST(ExceptionFamily, ANullParameterSaysInternalMemoryManagementError)
{
    expect(NullParameter("a.cpp", 4), "Internal memory management error", "a.cpp", 4);
}

TEST(ExceptionFamily, AnInvalidMemberAccessSaysInvalidMemberFunctionAccess)
{
    expect(InvalidMemberAccess("a.cpp", 5), "Invalid member function access", "a.cpp", 5);
}

TEST(ExceptionFamily, AnAllocationFailedSaysSoAndKnowsItsSize)
{
    const AllocationFailed error("a.cpp", 6, 65535);
    expect(error, "Memory allocation failed", "a.cpp", 6);
    EXPECT_EQ(error.Size(), 65535);
}

TEST(ExceptionFamily, ABadFilePathExceptionHoldsItsMessageAsGiven)
{
    expect(BadFilePathException("no such path", "a.cpp", 65535), "no such path", "a.cpp", 65535);
}

TEST(ExceptionFamily, EachClassHasItsBase)
{
    EXPECT_TRUE((std::is_base_of_v<Exception, NullPointer>));
    EXPECT_TRUE((std::is_base_of_v<Exception, BadParameter>));
    EXPECT_TRUE((std::is_base_of_v<BadParameter, NullParameter>));
    EXPECT_TRUE((std::is_base_of_v<Exception, InvalidMemberAccess>));
    EXPECT_TRUE((std::is_base_of_v<Exception, AllocationFailed>));
    EXPECT_TRUE((std::is_base_of_v<Exception, BadFilePathException>));
    EXPECT_FALSE((std::is_base_of_v<BadParameter, NullPointer>));
}

TEST(ExceptionFamily, NothingIsVirtualAndNothingIsAStandardException)
{
    EXPECT_FALSE(std::is_polymorphic_v<Exception>);
    EXPECT_FALSE(std::is_polymorphic_v<AllocationFailed>);
    EXPECT_FALSE((std::is_base_of_v<std::exception, Exception>));
}

TEST(ExceptionFamily, TheMembersStandInTheOrderMessageFileLine)
{
    const Exception error("m", "f", 1);
    const auto* message = reinterpret_cast<const char*>(&(error.*member(Message())));
    const auto* file = reinterpret_cast<const char*>(&(error.*member(File())));
    const auto* line = reinterpret_cast<const char*>(&(error.*member(Line())));
    EXPECT_EQ(reinterpret_cast<const char*>(&error), message);
    EXPECT_LT(message, file);
    EXPECT_LT(file, line);
    EXPECT_TRUE((std::is_same_v<decltype(member(Line())), unsigned short Exception::*>));
    EXPECT_TRUE((std::is_same_v<decltype(member(Size())), unsigned short AllocationFailed::*>));
}

TEST(ExceptionFamily, EveryClassIsCaughtAsAnException)
{
    try {
        throw AllocationFailed("a.cpp", 6, 12);
    } catch (const std::exception&) {
        FAIL() << "it is no standard exception";
    } catch (const Exception& error) {
        expect(error, "Memory allocation failed", "a.cpp", 6);
    }
}

TEST(ExceptionFamily, ANullParameterIsCaughtAsABadParameterAndANullPointerIsNot)
{
    EXPECT_THROW(throw NullParameter("a.cpp", 1), BadParameter);
    try {
        throw NullPointer("a.cpp", 1);
    } catch (const BadParameter&) {
        FAIL() << "the same words, but another type";
    } catch (const NullPointer& error) {
        expect(error, "Internal memory management error", "a.cpp", 1);
    }
}

TEST(ExceptionFamily, ACopyHoldsTheSame)
{
    const AllocationFailed first("a.cpp", 6, 12);
    const AllocationFailed second(first); // NOLINT(performance-unnecessary-copy-initialization)
    expect(second, "Memory allocation failed", "a.cpp", 6);
    EXPECT_EQ(second.Size(), 12);
    const Exception sliced(second);
    expect(sliced, "Memory allocation failed", "a.cpp", 6);
}

TEST(ExceptionFamily, TheGettersGiveCopies)
{
    const Exception error("message", "file", 1);
    std::string text = error.What();
    text += " changed";
    std::string file = error.Filename();
    file += " changed";
    expect(error, "message", "file", 1);
}

TEST(ExceptionAssertion, AnEmptyMessageEndsTheProcess)
{
    expect_assertion(run_isolated([] { const Exception error("", "a.cpp", 1); }),
        "Assertion failed: ( pstrErrorMessage.empty() == false ), file tavrobase/Exception, "
        "line #\n");
}

TEST(ExceptionAssertion, AnEmptyFileEndsTheProcess)
{
    expect_assertion(run_isolated([] { const Exception error("message", "", 1); }),
        "Assertion failed: ( pstrFilename.empty() == false ), file tavrobase/Exception, line #\n");
}

TEST(ExceptionAssertion, LineZeroEndsTheProcess)
{
    expect_assertion(run_isolated([] { const Exception error("message", "a.cpp", 0); }),
        "Assertion failed: ( pushtLineNumber > 0 ), file tavrobase/Exception, line #\n");
}

TEST(ExceptionAssertion, ThrowingADerivedErrorWithoutAFileEndsTheProcess)
{
    expect_assertion(run_isolated([] { throw NullPointer("", 1); }),
        "Assertion failed: ( pstrFilename.empty() == false ), file tavrobase/Exception, line #\n");
}

TEST(ExceptionAssertion, AskingForAMessageThatIsGoneEndsTheProcess)
{
    expect_assertion(run_isolated([] {
        Exception error("message", "a.cpp", 1);
        (error.*member(Message())).clear();
        (void)error.What(); // does not return
    }),
        "Assertion failed: ( m_strErrorMessage.empty() == false ), file tavrobase/Exception, "
        "line #\n");
}

TEST(ExceptionAssertion, AskingForAFileThatIsGoneEndsTheProcess)
{
    expect_assertion(run_isolated([] {
        Exception error("message", "a.cpp", 1);
        (error.*member(File())).clear();
        (void)error.Filename(); // does not return
    }),
        "Assertion failed: ( m_strFilename.empty() == false ), file tavrobase/Exception, line #\n");
}

TEST(ExceptionAssertion, AskingForALineThatIsGoneEndsTheProcess)
{
    expect_assertion(run_isolated([] {
        Exception error("message", "a.cpp", 1);
        error.*member(Line()) = 0;
        (void)error.LineNumber(); // does not return
    }),
        "Assertion failed: ( m_ushtLineNumber > 0 ), file tavrobase/Exception, line #\n");
}

TEST(ExceptionAssertion, WhatWasPrintedBeforeIsNotLost)
{
    const auto outcome = run_isolated([] {
        std::fputs("from stdio, ", stdout);
        std::fflush(stdout);
        std::cout << "from a stream";
        const Exception error("", "a.cpp", 1);
    });
    EXPECT_EQ(outcome.out, "from stdio, from a stream");
}
