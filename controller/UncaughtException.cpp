// SPDX-License-Identifier: Apache-2.0
#include "controller/UncaughtException.h"

#include "tavrobase/Exception.h"

#include <cstdlib>
#include <exception>
#include <iostream>
#include <utility>

namespace {

thread_local const std::string* t_file = nullptr;

std::string words_of(const std::exception_ptr& exception)
{
    try {
        std::rethrow_exception(exception);
    } catch (const Tavro::Exception& error) {
        return error.What();
    } catch (const std::exception& error) {
        return error.what();
    } catch (...) {
        return "unknown exception";
    }
}

[[noreturn]] void end_with_words()
{
    const std::exception_ptr exception = std::current_exception();
    std::string line = "CONTROLLER ERROR: uncaught exception: "
        + (exception ? words_of(exception) : std::string("none"));
    if (t_file != nullptr)
        line += " (file in work: " + *t_file + ")";
    std::cout.flush();
    std::cerr << line << std::endl;
    std::abort();
}

} // namespace

void report_uncaught_exceptions() { std::set_terminate(end_with_words); }

// The handler runs where the exception was thrown, before any frame is left, so the innermost name
// is still the one of the file in work.
FileInWork::FileInWork(std::string file)
    : m_file(std::move(file))
    , m_outer(std::exchange(t_file, &m_file))
{
}

FileInWork::~FileInWork() { t_file = m_outer; }
