// SPDX-License-Identifier: Apache-2.0
#include "controller/UncaughtException.h"

#include "tavrobase/Exception.h"

#include <atomic>
#include <cstdlib>
#include <exception>
#include <iostream>
#include <utility>

namespace {

thread_local const std::string* t_file = nullptr;

/// Without memory of its own: there may be none left, and that the reason.
void print_words(const std::exception_ptr& exception)
{
    if (!exception) {
        std::cerr << "none";
        return;
    }
    try {
        std::rethrow_exception(exception);
    } catch (const Tavro::Exception& error) {
        std::cerr << error.m_strErrorMessage;
    } catch (const std::exception& error) {
        std::cerr << error.what();
    } catch (...) {
        std::cerr << "of unknown kind";
    }
}

[[noreturn]] void end_with_words()
{
    static std::atomic_flag s_entered;
    if (s_entered.test_and_set()) // by an exception within this, or one of another thread
        std::abort();
    std::cout.flush();
    std::cerr << "CONTROLLER ERROR: uncaught exception: ";
    print_words(std::current_exception());
    if (t_file != nullptr)
        std::cerr << " (file in work: " << *t_file << ')';
    std::cerr << std::endl;
    std::abort();
}

} // namespace

void report_uncaught_exceptions() { std::set_terminate(end_with_words); }

// The handler runs before a frame of ours is left (functions of the base library that draw traces
// throw on, but hold no name), so the innermost name is still the one of the file in work.
FileInWork::FileInWork(std::string file)
    : m_file(std::move(file))
    , m_outer(std::exchange(t_file, &m_file))
{
}

FileInWork::~FileInWork() { t_file = m_outer; }
