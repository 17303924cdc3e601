// SPDX-License-Identifier: Apache-2.0
#include "tavrobase/platform/ProcessWatch.h"

#include "tavrobase/platform/posix/Descriptor.h"
#include "tavrobase/platform/posix/SysCall.h"

#include <array>
#include <csignal>
#include <utility>

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/auxv.h>
#include <sys/wait.h>
#include <unistd.h>

// Not declared by any header of POSIX.
extern char** environ; // NOLINT(readability-redundant-declaration)

namespace Tavro::Platform {

namespace {

using Posix::Descriptor;

constexpr int kFirstFreeDescriptor = 3; // above standard input, output and error

/// File actions and attributes of one start. A failing set-up call means lack of memory and makes
/// the start fail with that number.
class SpawnSetup {
public:
    SpawnSetup()
    {
        keep(::posix_spawn_file_actions_init(&m_actions));
        keep(::posix_spawnattr_init(&m_attributes));
        // A child starts with no signal blocked, whatever the thread that starts it has blocked.
        sigset_t none;
        ::sigemptyset(&none);
        keep(::posix_spawnattr_setsigmask(&m_attributes, &none));
        keep(::posix_spawnattr_setflags(&m_attributes, POSIX_SPAWN_SETSIGMASK));
    }
    ~SpawnSetup()
    {
        ::posix_spawnattr_destroy(&m_attributes);
        ::posix_spawn_file_actions_destroy(&m_actions);
    }
    SpawnSetup(const SpawnSetup&) = delete;
    SpawnSetup& operator=(const SpawnSetup&) = delete;
    SpawnSetup(SpawnSetup&&) = delete;
    SpawnSetup& operator=(SpawnSetup&&) = delete;

    void open_null(int fd, int flags)
    {
        keep(::posix_spawn_file_actions_addopen(&m_actions, fd, "/dev/null", flags, 0));
    }
    void duplicate(int from, int to)
    {
        keep(::posix_spawn_file_actions_adddup2(&m_actions, from, to));
    }
    /// A session is what neither a terminal's Ctrl-C nor its end reaches.
    void begin_session()
    {
        keep(
            ::posix_spawnattr_setflags(&m_attributes, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSID));
    }
    /// To be asked for last.
    void close_all_others()
    {
        keep(::posix_spawn_file_actions_addclosefrom_np(&m_actions, kFirstFreeDescriptor));
    }

    StartedChild start(const Command& command)
    {
        if (m_error != 0)
            return { -1, m_error };
        // The system takes the texts as writable and does not write to them.
        std::vector<char*> arguments;
        arguments.push_back(const_cast<char*>(command.name.c_str()));
        for (const std::string& argument : command.arguments)
            arguments.push_back(const_cast<char*>(argument.c_str()));
        arguments.push_back(nullptr);
        pid_t pid = -1;
        const int error = ::posix_spawn(
            &pid, command.program.c_str(), &m_actions, &m_attributes, arguments.data(), environ);
        if (error != 0)
            return { -1, error };
        return { pid, 0 };
    }

private:
    void keep(int error)
    {
        if (m_error == 0)
            m_error = error;
    }

    posix_spawn_file_actions_t m_actions {};
    posix_spawnattr_t m_attributes {};
    int m_error = 0;
};

ChildEnd end_of(int status)
{
    if (WIFEXITED(status))
        return { ChildEnd::Kind::Exited, WEXITSTATUS(status) };
    return { ChildEnd::Kind::Signalled, WTERMSIG(status) };
}

/// Whether the child has ended; one that somebody else has waited for has too.
bool has_ended(pid_t pid, ChildEnd& end)
{
    int status = 0;
    const pid_t found = Posix::uninterrupted(::waitpid, pid, &status, WNOHANG);
    if (found == 0)
        return false;
    if (found == pid)
        end = end_of(status);
    return true;
}

struct Pipe {
    Descriptor read;
    Descriptor write;
};

/// Both ends above the standard descriptors, so that giving them to the child cannot overwrite one
/// with the other when the caller runs with closed standard streams.
ErrorNumber open_pipe(Pipe& pipe)
{
    std::array<int, 2> ends { -1, -1 };
    if (::pipe2(ends.data(), O_CLOEXEC) != 0)
        return errno;
    pipe = { Descriptor(ends[0]), Descriptor(ends[1]) };
    for (Descriptor* end : { &pipe.read, &pipe.write }) {
        if (end->get() >= kFirstFreeDescriptor)
            continue;
        Descriptor higher(::fcntl(end->get(), F_DUPFD_CLOEXEC, kFirstFreeDescriptor));
        if (!higher)
            return errno;
        *end = std::move(higher);
    }
    return 0;
}

ErrorNumber make_non_blocking(const Descriptor& fd)
{
    return Posix::error_of(::fcntl, fd.get(), F_SETFL, O_NONBLOCK);
}

/// Appends what is there now, but no more than the pipe can hold at once: a writer that is faster
/// than we are must not keep us. Closes the pipe at its end.
ErrorNumber drain(Descriptor& pipe, std::string& text)
{
    std::array<char, 65536> block;
    const int capacity = pipe ? ::fcntl(pipe.get(), F_GETPIPE_SZ) : 0;
    for (long long rest = capacity; pipe && rest > 0;) {
        const auto got = Posix::uninterrupted(::read, pipe.get(), block.data(), block.size());
        if (got < 0)
            return errno == EAGAIN ? 0 : errno;
        if (got == 0)
            (void)pipe.close(); // a read end has nothing to lose
        else
            text.append(block.data(), static_cast<std::size_t>(got));
        rest -= got;
    }
    return 0;
}

struct Capture {
    Pipe pipe;
    std::string& text;
    CaptureStep read_step;
};

/// Reads until the child has ended and everything that it wrote is taken.
CapturedRun pump(pid_t pid, Capture& out, Capture& err)
{
    // Long enough to cost nothing, short enough for the rare child whose output outlives it in the
    // hands of another process: the usual end is told by the pipes themselves.
    constexpr int kLookMilliseconds = 20;
    CapturedRun run;
    bool ended = false;
    while (!ended && (out.pipe.read || err.pipe.read)) {
        std::array<pollfd, 2> ends { pollfd { out.pipe.read.get(), POLLIN, 0 },
            pollfd { err.pipe.read.get(), POLLIN, 0 } };
        (void)::poll(
            ends.data(), ends.size(), kLookMilliseconds); // any outcome is a reason to look
        ended = has_ended(pid, run.end); // before the last look, so that nothing slips through
        for (Capture* capture : { &out, &err }) {
            const ErrorNumber error = drain(capture->pipe.read, capture->text);
            if (error == 0)
                continue;
            // The child is left to itself, but not as a zombie if it has ended already.
            (void)has_ended(pid, run.end);
            run.failed = capture->read_step;
            run.error = error;
            return run;
        }
    }
    if (!ended)
        run.end = wait_for_child(pid);
    return run;
}

} // namespace

namespace {

StartedChild start_silent(SpawnSetup& setup, const Command& command)
{
    setup.open_null(STDIN_FILENO, O_RDONLY);
    setup.open_null(STDOUT_FILENO, O_WRONLY);
    setup.open_null(STDERR_FILENO, O_WRONLY);
    setup.close_all_others();
    return setup.start(command);
}

} // namespace

StartedChild start_child(const Command& command)
{
    SpawnSetup setup;
    return start_silent(setup, command);
}

StartedChild start_apart(const Command& command)
{
    SpawnSetup setup;
    setup.begin_session();
    return start_silent(setup, command);
}

std::optional<ChildEnd> child_end(long long pid)
{
    ChildEnd end;
    if (!has_ended(static_cast<pid_t>(pid), end))
        return std::nullopt;
    return end;
}

ChildEnd wait_for_child(long long pid)
{
    int status = 0;
    // Where the caller has SIGCHLD ignored the system waits and then knows no child: it has ended.
    if (Posix::uninterrupted(::waitpid, static_cast<pid_t>(pid), &status, 0) < 0)
        return {};
    return end_of(status);
}

CapturedRun run_captured(const Command& command, std::string& out, std::string& err)
{
    Capture from_out { {}, out, CaptureStep::OutRead };
    Capture from_err { {}, err, CaptureStep::ErrRead };
    if (const auto error = open_pipe(from_out.pipe))
        return { CaptureStep::OutPipe, error, {} };
    if (const auto error = open_pipe(from_err.pipe))
        return { CaptureStep::ErrPipe, error, {} };
    if (const auto error = make_non_blocking(from_out.pipe.read))
        return { CaptureStep::OutHandle, error, {} };
    if (const auto error = make_non_blocking(from_err.pipe.read))
        return { CaptureStep::ErrHandle, error, {} };

    SpawnSetup setup;
    setup.duplicate(from_out.pipe.write.get(), STDOUT_FILENO);
    setup.duplicate(from_err.pipe.write.get(), STDERR_FILENO);
    setup.close_all_others();
    const StartedChild child = setup.start(command);
    if (child.pid < 0)
        return { CaptureStep::Start, child.error, {} };
    (void)from_out.pipe.write.close(); // ours only; the child has its own
    (void)from_err.pipe.write.close();
    return pump(static_cast<pid_t>(child.pid), from_out, from_err);
}

std::string program_file(const std::string& program) { return program; }

long long current_process_id() { return ::getpid(); }

std::optional<std::string> executable_path()
{
    // The kernel hands the path of the start to the new program's image; no pointer is in doubt.
    const auto address = ::getauxval(AT_EXECFN);
    if (address == 0)
        return std::nullopt;
    return std::string(reinterpret_cast<const char*>(address)); // NOLINT(performance-no-int-to-ptr)
}

} // namespace Tavro::Platform
