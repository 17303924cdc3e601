// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "tests/airfoil/TableTexts.h"
#include "tests/controller/chain/ChainCase.h"
#include "tests/controller/chain/FrontEnd.h"
#include "tests/controller/chain/Leftovers.h"
#include "tests/standins/StandinTest.h"
#include "tests/support/Files.h"
#include "tests/support/Waiting.h"

#include <chrono>
#include <filesystem>
#include <functional>
#include <set>
#include <thread>

namespace Testing {

/// A model directory with an airfoil table that wants a cleaned copy.
class ChainDirectory {
public:
    ChainDirectory() { write_file(path("naca.aft"), "a comment\n" + TableTexts::kTable); }
    [[nodiscard]] const std::string& path() const { return m_directory.path(); }
    [[nodiscard]] std::string path(const std::string& name) const { return m_directory.path(name); }

    /// All files and empty directories below it but those of the front end itself, sorted; these
    /// with a "/" at the end.
    [[nodiscard]] std::string list() const
    {
        namespace fs = std::filesystem;
        std::set<std::string> names;
        for (const auto& entry : fs::recursive_directory_iterator(path())) {
            const std::string name = fs::relative(entry.path(), path()).generic_string();
            if (entry.is_directory() ? fs::is_empty(entry.path())
                                     : name != "done.txt" && name != "starts.jsonl")
                names.insert(name + (entry.is_directory() ? "/" : ""));
        }
        std::string text;
        for (const std::string& name : names)
            text += name + '\n';
        return text;
    }
    [[nodiscard]] std::string text(const std::string& name) const { return read_file(path(name)); }
    [[nodiscard]] std::string first_line(const std::string& name) const
    {
        const std::string all = text(name);
        return all.substr(0, all.find('\n'));
    }
    /// Words 0 to 7 are 32 bits each; the last is the step.
    [[nodiscard]] std::string restart_step(const std::string& name) const
    {
        return text(name).substr(28, 4);
    }

private:
    TemporaryDirectory m_directory;
};

/// Runs of the real controller with the stand-ins, whose links are the test's own.
class ChainTest : public StandinTest {
protected:
    void SetUp() override
    {
        StandinTest::SetUp();
        adopt_orphans();
    }

    static void expect_nothing_left(const std::vector<FrontEnd*>& runs)
    {
        for (const FrontEnd* run : runs)
            EXPECT_TRUE(wait_until([run] { return run->processes().empty(); }));
    }
    static void expect_no_links()
    {
        const Leftovers left = leftovers();
        EXPECT_EQ(left.slots, 0);
        EXPECT_EQ(left.attachments, 0);
    }
    /// Looks at all runs, side by side, until `done`, which is told whether any still runs. A look
    /// takes the lock that the programs of all runs want, so looks are rare. False after minutes.
    static bool watch(
        const std::vector<FrontEnd*>& runs, const std::function<bool(bool anyRuns)>& done)
    {
        using Clock = std::chrono::steady_clock;
        const auto deadline = Clock::now() + std::chrono::minutes(4); // they may be many
        for (;;) {
            bool any = false;
            for (FrontEnd* run : runs)
                any = run->runs() || any;
            if (done(any))
                return true;
            if (Clock::now() > deadline)
                return false;
            std::this_thread::sleep_for(std::chrono::milliseconds(20));
        }
    }
    /// Until the last has ended.
    static void finish(const std::vector<FrontEnd*>& runs)
    {
        EXPECT_TRUE(watch(runs, [](bool anyRuns) { return !anyRuns; }));
        expect_nothing_left(runs);
    }
};

} // namespace Testing
