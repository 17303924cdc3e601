// SPDX-License-Identifier: Apache-2.0
#include "tavrobase/Exception.h"

#include "tavrobase/Assertion.h"
#include "tavrobase/Trace.h"

#include <utility>

namespace Tavro {

namespace {

constexpr const char* kAssertionFile = "tavrobase/Exception";

constexpr const char* kMemoryError = "Internal memory management error";
constexpr const char* kDataError = "Internal data management error";
constexpr const char* kAccessError = "Invalid member function access";
constexpr const char* kAllocationError = "Memory allocation failed";

} // namespace

Exception::Exception(
    std::string pstrErrorMessage, std::string pstrFilename, unsigned short pushtLineNumber)
{
    TAVRO_TRACE_BEGIN("Exception::Exception")
    TAVRO_ASSERT(pstrErrorMessage.empty() == false, kAssertionFile);
    TAVRO_ASSERT(pstrFilename.empty() == false, kAssertionFile);
    TAVRO_ASSERT(pushtLineNumber > 0, kAssertionFile);
    m_strErrorMessage = std::move(pstrErrorMessage);
    m_strFilename = std::move(pstrFilename);
    m_ushtLineNumber = pushtLineNumber;
    TAVRO_TRACE_END
}

Exception::Exception(const Exception& other)
    : m_strErrorMessage(other.m_strErrorMessage)
    , m_strFilename(other.m_strFilename)
    , m_ushtLineNumber(other.m_ushtLineNumber)
{
    const TraceFrame frame("Exception::Exception");
}

Exception::~Exception() { const TraceFrame frame("Exception::~Exception"); }

std::string Exception::What() const
{
    TAVRO_TRACE_BEGIN("Exception::What")
    TAVRO_ASSERT(m_strErrorMessage.empty() == false, kAssertionFile);
    return m_strErrorMessage;
    TAVRO_TRACE_END
}

std::string Exception::Filename() const
{
    TAVRO_TRACE_BEGIN("Exception::Filename")
    TAVRO_ASSERT(m_strFilename.empty() == false, kAssertionFile);
    return m_strFilename;
    TAVRO_TRACE_END
}

unsigned short Exception::LineNumber() const
{
    TAVRO_TRACE_BEGIN("Exception::LineNumber")
    TAVRO_ASSERT(m_ushtLineNumber > 0, kAssertionFile);
    return m_ushtLineNumber;
    TAVRO_TRACE_END
}

NullPointer::NullPointer(std::string pstrFilename, unsigned short pushtLineNumber)
    : Exception(kMemoryError, std::move(pstrFilename), pushtLineNumber)
{
    const TraceFrame frame("NullPointer::NullPointer");
}

NullPointer::NullPointer(const NullPointer& other)
    : Exception(other)
{
    const TraceFrame frame("NullPointer::NullPointer");
}

NullPointer::~NullPointer() { const TraceFrame frame("NullPointer::~NullPointer"); }

BadParameter::BadParameter(
    std::string pstrErrorMessage, std::string pstrFilename, unsigned short pushtLineNumber)
    : Exception(std::move(pstrErrorMessage), std::move(pstrFilename), pushtLineNumber)
{
    const TraceFrame frame("BadParameter::BadParameter");
}

BadParameter::BadParameter(std::string pstrFilename, unsigned short pushtLineNumber)
    : Exception(kDataError, std::move(pstrFilename), pushtLineNumber)
{
    const TraceFrame frame("BadParameter::BadParameter");
}

BadParameter::BadParameter(const BadParameter& other)
    : Exception(other)
{
    const TraceFrame frame("BadParameter::BadParameter");
}

BadParameter::~BadParameter() { const TraceFrame frame("BadParameter::~BadParameter"); }

NullParameter::NullParameter(std::string pstrFilename, unsigned short pushtLineNumber)
    : BadParameter(kMemoryError, std::move(pstrFilename), pushtLineNumber)
{
    const TraceFrame frame("NullParameter::NullParameter");
}

NullParameter::NullParameter(const NullParameter& other)
    : BadParameter(other)
{
    const TraceFrame frame("NullParameter::NullParameter");
}

NullParameter::~NullParameter() { const TraceFrame frame("NullParameter::~NullParameter"); }

InvalidMemberAccess::InvalidMemberAccess(std::string pstrFilename, unsigned short pushtLineNumber)
    : Exception(kAccessError, std::move(pstrFilename), pushtLineNumber)
{
    const TraceFrame frame("InvalidMemberAccess::InvalidMemberAccess");
}

InvalidMemberAccess::InvalidMemberAccess(const InvalidMemberAccess& other)
    : Exception(other)
{
    const TraceFrame frame("InvalidMemberAccess::InvalidMemberAccess");
}

InvalidMemberAccess::~InvalidMemberAccess()
{
    const TraceFrame frame("InvalidMemberAccess::~InvalidMemberAccess");
}

AllocationFailed::AllocationFailed(
    std::string pstrFilename, unsigned short pushtLineNumber, unsigned short pushtSize)
    : Exception(kAllocationError, std::move(pstrFilename), pushtLineNumber)
    , m_ushtSize(pushtSize)
{
    const TraceFrame frame("AllocationFailed::AllocationFailed");
}

AllocationFailed::AllocationFailed(const AllocationFailed& other)
    : Exception(other)
    , m_ushtSize(other.m_ushtSize)
{
    const TraceFrame frame("AllocationFailed::AllocationFailed");
}

AllocationFailed::~AllocationFailed()
{
    const TraceFrame frame("AllocationFailed::~AllocationFailed");
}

unsigned short AllocationFailed::Size() const
{
    TAVRO_TRACE_BEGIN("AllocationFailed::Size")
    return m_ushtSize;
    TAVRO_TRACE_END
}

} // namespace Tavro
