// SPDX-License-Identifier: Apache-2.0
#include "standins/StepLog.h"

#include <iostream>

namespace Standins {

namespace {

std::ios::openmode mode(bool append)
{
    return std::ios::binary | (append ? std::ios::app : std::ios::trunc);
}

void put(std::ofstream& file, std::ostream& otherwise, const std::string& line)
{
    std::ostream& stream = file.is_open() ? file : otherwise;
    stream << line << '\n' << std::flush;
}

} // namespace

void StepLog::open(const std::string& out, const std::string& err, bool appendOut, bool appendErr)
{
    m_out.open(out, mode(appendOut));
    m_err.open(err, mode(appendErr));
}

void StepLog::say(const std::string& line) { put(m_out, std::cout, line); }

void StepLog::complain(const std::string& line) { put(m_err, std::cerr, line); }

} // namespace Standins
