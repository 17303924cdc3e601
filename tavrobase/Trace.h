// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "tavrobase/Exception.h"

namespace Tavro {

/// Prints "Entering " and "Leaving " around a function and indents what is printed between.
class TraceFrame {
public:
    explicit TraceFrame(const char* function);
    ~TraceFrame();
    TraceFrame(const TraceFrame&) = delete;
    TraceFrame& operator=(const TraceFrame&) = delete;
    TraceFrame(TraceFrame&&) = delete;
    TraceFrame& operator=(TraceFrame&&) = delete;

    /// Reports an error that passes through the function; `file` and `line` are the handler's.
    /// "Leaving " follows at once: there may be nobody above for whom the stack would be unwound.
    void Caught(const Exception& error, const char* file, int line);
    void CaughtUnknown(const char* file, int line);
    /// Throws the error on that is being handled.
    [[noreturn]] static void ThrowOn();

private:
    void Leave();

    const char* m_function;
    bool m_left = false;
};

} // namespace Tavro

/// The body of a traced function stands between these two. An error that leaves it is reported and
/// thrown on.
#define TAVRO_TRACE_BEGIN(function)                                                                \
    ::Tavro::TraceFrame traceFrame(function);                                                      \
    try {
#define TAVRO_TRACE_END                                                                            \
    }                                                                                              \
    catch (const ::Tavro::Exception& error)                                                        \
    {                                                                                              \
        traceFrame.Caught(error, __FILE__, __LINE__);                                              \
        ::Tavro::TraceFrame::ThrowOn();                                                            \
    }                                                                                              \
    catch (...)                                                                                    \
    {                                                                                              \
        traceFrame.CaughtUnknown(__FILE__, __LINE__);                                              \
        ::Tavro::TraceFrame::ThrowOn();                                                            \
    }
