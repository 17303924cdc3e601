// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "tests/support/Files.h"

#include <memory>
#include <string>

namespace Testing {

/// Another process of the user, with a link manager of its own, that does what it is asked to; see
/// peer_main.cpp for the requests. Killed at the latest at the end of the object's life.
class Peer {
public:
    Peer();
    ~Peer();
    Peer(const Peer&) = delete;
    Peer& operator=(const Peer&) = delete;
    Peer(Peer&&) = delete;
    Peer& operator=(Peer&&) = delete;

    /// Sends a request and waits for its answer, at most half a minute: "no answer" then.
    std::string operator()(const std::string& request);
    /// The two halves of it, for a request that is to hang.
    void ask(const std::string& request);
    /// "no answer" if there is none within the time.
    std::string answer(int milliseconds = 30'000);

    /// Ends it at once and waits until it is gone.
    void kill();
    void pause(); ///< until `resume`
    void resume();
    /// Lets it come to its end by itself; its exit status.
    int finish();

    [[nodiscard]] long long pid() const;
    /// All that it wrote besides answers, with "\n" between lines.
    [[nodiscard]] std::string out() const;
    [[nodiscard]] std::string err() const;

private:
    struct Process; // what a system calls a process and its pipes

    int wait();

    TemporaryDirectory m_directory;
    std::unique_ptr<Process> m_process;
    std::string m_pending;
};

} // namespace Testing
