// SPDX-License-Identifier: Apache-2.0
#include "frontend/run/Display.h"

#include "frontend/run/Json.h"
#include "frontend/run/StepWords.h"
#include "tavrobase/Surveillance.h"

#include <iostream>
#include <mutex>

namespace Frontend {

namespace {

constexpr unsigned kUsualColumns = 80;
constexpr const char* kWipe = "\r\x1b[K"; // to the left edge, and clear to the right

} // namespace

/// What others have written, from any thread, until the live line is out of its way.
class Display::Notices : public std::streambuf {
public:
    /// The lines that are whole, or all that there is.
    std::string take(bool toTheLast)
    {
        const std::lock_guard lock(m_mutex);
        std::string taken = m_text.substr(0, toTheLast ? m_text.size() : m_text.rfind('\n') + 1);
        m_text.erase(0, taken.size());
        return taken;
    }

protected:
    int_type overflow(int_type byte) override
    {
        const std::lock_guard lock(m_mutex);
        if (!traits_type::eq_int_type(byte, traits_type::eof()))
            m_text += traits_type::to_char_type(byte);
        return traits_type::not_eof(byte);
    }
    std::streamsize xsputn(const char* text, std::streamsize size) override
    {
        const std::lock_guard lock(m_mutex);
        m_text.append(text, static_cast<std::size_t>(size));
        return size;
    }

private:
    std::mutex m_mutex;
    std::string m_text;
};

Display::Display(bool json)
    : m_kind(json                         ? Kind::Json
            : Tavro::output_is_terminal() ? Kind::Live
                                          : Kind::Lines)
    , m_libraryOutput(std::cout.rdbuf())
    , m_notices(std::make_unique<Notices>())
    , m_out(std::make_unique<std::ostream>(m_libraryOutput))
{
    std::cout.rdbuf(m_notices.get());
    m_out->imbue(std::locale::classic());
}

Display::~Display()
{
    wipe_live_line();
    m_out->flush();
    std::cout.rdbuf(m_libraryOutput); // which also forgets what went wrong before
    pass_on_notices(true);
    if (!*m_out)
        std::cout.setstate(std::ios::badbit); // for whoever looks at the program's end
}

void Display::tell(const std::string& event, const std::string& text, const std::string& members)
{
    pass_on_notices();
    if (m_kind == Kind::Json) {
        *m_out << '{' << json_member("event", event) << ',' << json_member("text", text) << members
               << '}' << std::endl;
        return;
    }
    wipe_live_line();
    *m_out << text << std::endl;
    draw_live_line();
}

void Display::show(const Progress& progress)
{
    pass_on_notices();
    const bool newStep = !m_hasShown || progress.step != m_last.step;
    const bool changed = !m_hasShown || !progress.shows_the_same(m_last);
    if (m_kind == Kind::Live && newStep) {
        wipe_live_line();
        if (m_hasShown)
            tell_step_done();
    }
    if (newStep) {
        m_stepBegan = std::chrono::steady_clock::now();
        m_beginIsSeen = m_beginIsSeen || m_hasShown;
    }
    m_last = progress;
    m_hasShown = true;
    switch (m_kind) {
    case Kind::Live:
        draw_live_line(); // also without a change: time goes on, and the terminal may be resized
        break;
    case Kind::Lines:
        if (changed)
            *m_out << progress_text(progress) << std::endl;
        break;
    case Kind::Json:
        if (changed)
            *m_out << '{' << json_member("event", "progress") << ',' << progress_members(progress)
                   << '}' << std::endl;
        break;
    }
}

void Display::end(bool lastStepDone)
{
    wipe_live_line();
    if (m_kind == Kind::Live && m_hasShown && lastStepDone)
        tell_step_done();
    m_hasShown = false;
}

void Display::tell_step_done()
{
    const std::string time = elapsed();
    *m_out << step_name(m_last.step) << ": done" << (time.empty() ? "" : " after ") << time
           << std::endl;
}

std::string Display::elapsed() const
{
    if (!m_beginIsSeen)
        return "";
    const auto time = std::chrono::steady_clock::now() - m_stepBegan;
    return duration_text(std::chrono::duration_cast<std::chrono::seconds>(time).count());
}

void Display::pass_on_notices(bool toTheLast)
{
    const std::string notices = m_notices->take(toTheLast);
    if (notices.empty())
        return;
    wipe_live_line();
    std::cerr << notices << std::flush;
}

void Display::wipe_live_line()
{
    if (m_drawn.empty())
        return;
    *m_out << kWipe << std::flush;
    m_drawn.clear();
}

void Display::draw_live_line()
{
    if (m_kind != Kind::Live || !m_hasShown)
        return;
    // One column stays free: a cursor behind the last one would begin a new line.
    const unsigned columns = Tavro::terminal_columns().value_or(kUsualColumns) - 1;
    const std::string line = progress_text(m_last, columns, elapsed());
    if (line == m_drawn)
        return;
    *m_out << kWipe << line << std::flush;
    m_drawn = line;
}

} // namespace Frontend
