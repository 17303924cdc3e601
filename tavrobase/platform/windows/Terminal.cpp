// SPDX-License-Identifier: Apache-2.0
#include "tavrobase/platform/Terminal.h"

#include "tavrobase/platform/windows/SysError.h"

#include <atomic>

namespace Tavro::Platform {

namespace {

std::atomic<unsigned> g_interrupts = 0;
std::atomic<unsigned> g_hangUps = 0;
std::atomic<HANDLE> g_bell = nullptr; // an event that wakes the sleeper

std::optional<CONSOLE_SCREEN_BUFFER_INFO> console()
{
    CONSOLE_SCREEN_BUFFER_INFO facts {};
    if (::GetConsoleScreenBufferInfo(::GetStdHandle(STD_OUTPUT_HANDLE), &facts) == 0)
        return std::nullopt;
    return facts;
}

// The system calls this on a thread of its own.
BOOL WINAPI note_event(DWORD event)
{
    const bool interrupt = event == CTRL_C_EVENT || event == CTRL_BREAK_EVENT;
    ++(interrupt ? g_interrupts : g_hangUps);
    if (HANDLE bell = g_bell)
        (void)::SetEvent(bell); // without it the sleeper wakes a little later
    if (!interrupt)
        ::Sleep(INFINITE); // the system ends the process as soon as this returns
    return TRUE;
}

} // namespace

bool output_is_terminal() { return console().has_value(); }

std::optional<unsigned> terminal_columns()
{
    const auto facts = console();
    if (!facts || facts->srWindow.Right < facts->srWindow.Left)
        return std::nullopt;
    return static_cast<unsigned>(facts->srWindow.Right - facts->srWindow.Left + 1);
}

UserSignals::UserSignals()
    : m_interruptsBefore(g_interrupts)
    , m_hangUpsBefore(g_hangUps)
{
    g_bell = ::CreateEventA(nullptr, FALSE, FALSE, nullptr);
    m_bell = g_bell == nullptr ? -1 : 0;
    (void)::SetConsoleCtrlHandler(note_event, TRUE); // without a console nothing is to be noted
}

UserSignals::~UserSignals()
{
    (void)::SetConsoleCtrlHandler(note_event, FALSE); // as above
    if (HANDLE bell = g_bell.exchange(nullptr))
        (void)::CloseHandle(bell); // nothing of worth was written
}

void UserSignals::wait(unsigned milliseconds)
{
    if (m_bell < 0)
        ::Sleep(milliseconds);
    else
        (void)::WaitForSingleObject(g_bell, milliseconds); // the caller looks at the counts
}

unsigned UserSignals::interrupts() const { return g_interrupts - m_interruptsBefore; }

bool UserSignals::hung_up() const { return g_hangUps != m_hangUpsBefore; }

} // namespace Tavro::Platform
