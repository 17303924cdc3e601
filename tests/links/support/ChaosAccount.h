// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "tests/links/support/ChaosBoard.h"
#include "tests/links/support/RawBlock.h"

#include <algorithm>
#include <array>
#include <string>

namespace Testing {

/// Who may have what of the block: the living by their own notes, the killed by what they noted
/// last. Whatever else is in use was left behind by a process that ended well.
/// Threads: that of the killer only; `audit...` and what comes after it within the lock.
class ChaosAccount {
public:
    explicit ChaosAccount(ChaosBoard& board)
        : m_board(board)
    {
    }

    /// The process of that worker has been killed and is gone.
    void note_killed(ChaosBoard::Worker& worker)
    {
        if (worker.state == ChaosBoard::Starting)
            ++m_unknownSlots;
        else if (worker.state == ChaosBoard::Running)
            m_deadSlots[at(worker.slot)] = true;
        m_unknownLinks += worker.creating ? 1 : 0;
        for (int link = 0; link < kChaosLinks; ++link)
            m_owed[at(link)] += worker.notes[at(link)].exchange(ChaosBoard::None) != 0 ? 1 : 0;
        worker.creating = false;
        worker.state = ChaosBoard::Away;
    }

    /// The process of that worker has ended by itself and is gone.
    void note_ended_well(ChaosBoard::Worker& worker)
    {
        if (worker.slot >= 0)
            m_deadSlots[at(worker.slot)] = false; // it was the last owner
        worker.state = ChaosBoard::Away;
    }

    /// False while somebody may have a slot that is not noted yet.
    [[nodiscard]] bool slots_are_known() const
    {
        return std::none_of(m_board.workers.begin(), m_board.workers.end(),
            [](const auto& worker) { return worker.state == ChaosBoard::Starting; });
    }
    /// The same for a link. To be asked before the notes are read.
    [[nodiscard]] bool links_are_known() const
    {
        return !m_board.keeper.creating
            && std::none_of(m_board.workers.begin(), m_board.workers.end(),
                [](const auto& worker) { return worker.creating.load(); });
    }

    /// What is wrong with the slots, or nothing. Only while they are known.
    [[nodiscard]] std::string audit_slots(const RawBlock& block)
    {
        std::string faults;
        for (int slot = 0; slot < 50; ++slot) {
            bool& dead = m_deadSlots[at(slot)];
            dead = dead && block.slot(slot) != 0;
            if (block.slot(slot) == 0 || dead || is_used(slot))
                continue;
            // Of one that was killed before it could tell, perhaps.
            if (m_unknownSlots-- > 0)
                dead = true;
            else
                faults += "slot " + std::to_string(slot) + " was not given back\n";
        }
        m_unknownSlots = 0;
        return faults;
    }

    /// What is wrong with the links, or nothing. Only while they are known.
    [[nodiscard]] std::string audit_links(const RawBlock& block)
    {
        std::string faults;
        for (int link = 0; link < kChaosLinks; ++link) {
            const int count = static_cast<int>(block.count(link));
            const int sure = noted(link, ChaosBoard::Surely);
            const int most = noted(link, ChaosBoard::Perhaps);
            int& owed = m_owed[at(link)];
            owed = std::clamp(count - sure, 0, owed);
            int excess = count - most - owed;
            for (; excess > 0 && m_unknownLinks > 0; --excess, --m_unknownLinks)
                ++owed;
            if (excess > 0)
                faults += std::to_string(excess) + " attachments to link " + std::to_string(link)
                    + " were not given back\n";
            if (count < sure)
                faults += "link " + std::to_string(link) + " was taken from a living process\n";
        }
        m_unknownLinks = 0;
        return faults;
    }

    /// Whether a living process has the slot.
    [[nodiscard]] bool is_used(int slot) const
    {
        return slot == m_board.keeper.slot
            || std::any_of(
                m_board.workers.begin(), m_board.workers.end(), [slot](const auto& worker) {
                    return worker.state == ChaosBoard::Running && worker.slot == slot;
                });
    }

    /// Whether a living process may be attached to the link.
    [[nodiscard]] bool is_attached(int link) const { return noted(link, ChaosBoard::Perhaps) != 0; }

    /// What the dead have left of the link has been cleared away.
    void forget_link(int link) { m_owed[at(link)] = 0; }

    /// Attachments that are left by killed processes alone.
    [[nodiscard]] int owed() const
    {
        int sum = 0;
        for (const int owed : m_owed)
            sum += owed;
        return sum;
    }

private:
    static std::size_t at(int index) { return static_cast<std::size_t>(index); }

    [[nodiscard]] int noted(int link, ChaosBoard::Note least) const
    {
        int sum = m_board.keeper.notes[at(link)] >= least ? 1 : 0;
        for (const auto& worker : m_board.workers)
            sum += worker.notes[at(link)] >= least ? 1 : 0;
        return sum;
    }

    ChaosBoard& m_board;
    std::array<bool, 50> m_deadSlots {};
    std::array<int, kChaosLinks> m_owed {}; // attachments of the dead, at most
    int m_unknownSlots = 0;
    int m_unknownLinks = 0;
};

} // namespace Testing
