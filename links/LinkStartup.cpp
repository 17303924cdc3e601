// SPDX-License-Identifier: Apache-2.0
#include "links/Heartbeat.h"
#include "links/InControl.h"
#include "links/LinkJournal.h"

#include <algorithm>
#include <cstring>
#include <iostream>
#include <iterator>

namespace Tavro {

namespace {

// The second line is for people: the number alone does not tell an object that is too short or
// belongs to somebody else.
std::string failure_text(const char* text, const Platform::Failure& failure)
{
    return text + std::to_string(failure.error) + "\n"
        + (failure.reason.empty() ? "" : failure.reason + "\n");
}

} // namespace

LinkManager::Result LinkManager::Startup()
{
    if (m_started || m_shutdown)
        return AlreadyStarted;
    if (!InitializeCheckThreadMutex())
        return MutexFailed;
    if (!OpenSemaphoreA()) {
        DestroyCheckThreadMutex();
        return OpenFailed;
    }
    if (const Result taken = TakeControl(); taken != Success) {
        CloseSemaphore();
        DestroyCheckThreadMutex();
        return taken;
    }
    // The name is looked up under the lock: the last manager to leave takes it away under the lock.
    Result result = Success;
    bool existed = false;
    if (!MapSharedMemory(existed)) {
        result = MapFailed;
    } else if (!StartCheckThread()) {
        result = CheckThreadFailed;
        AbandonBlock(existed);
    } else {
        if (ShouldInitializeSharedMemory(existed))
            InitializeManagerData();
        else
            ConsistencyCheck();
        if (!TakeManagerSlot()) {
            // The check thread stays: it sleeps until a later attempt starts the manager.
            result = TooManyManagers;
            UnmapSharedMemory();
        }
    }
    ReleaseControl();
    if (result == Success) {
        m_started = true;
        return Success;
    }
    CloseSemaphore();
    DestroyCheckThreadMutex();
    return result;
}

void LinkManager::Shutdown()
{
    m_shutdown = m_shutdown || m_started;
    if (!m_started.exchange(false)) // of several threads, one shuts down
        return;
    StopCheckThread();
    if (TakeControl() == Success) {
        LeaveBlock();
        UnmapSharedMemory();
        ReleaseControl();
    }
    // Mutex and semaphore stay until the process ends: a thread that saw the manager started a
    // moment ago may be waiting for them. It finds the block gone.
}

bool LinkManager::OpenSemaphoreA()
{
    const auto failure = m_semaphore.open(m_name, std::chrono::seconds(m_waitSeconds));
    if (failure)
        std::cerr << failure_text("CreateSemaphore failed: ", failure) << std::flush;
    return !failure;
}

void LinkManager::CloseSemaphore()
{
    if (const auto error = m_semaphore.close())
        std::cerr << "semaphore CloseHandle failed: " << error << std::endl;
}

bool LinkManager::MapSharedMemory(bool& existed)
{
    const std::lock_guard change(m_checkThreadMutex);
    if (const auto failure = m_fd.open(m_name, sizeof(SharedBlock), existed)) {
        m_failures += failure_text("CreateFileMapping failed: Error Number: ", failure);
        return false;
    }
    if (const auto error = m_fd.map()) {
        m_failures += failure_text("MapViewOfFile failed:  Error Number:  ", { error, "" });
        AbandonBlock(existed);
        return false;
    }
    m_sharedMemory = static_cast<SharedBlock*>(m_fd.data());
    // Before anything else and whatever becomes of this start: those without the block who held
    // the lock since the writer's death could not.
    LinkJournal::recover();
    return true;
}

void LinkManager::UnmapSharedMemory()
{
    const std::lock_guard change(m_checkThreadMutex);
    m_sharedMemory = nullptr;
    (void)m_fd.unmap(); // what was mapped can be unmapped
    if (const auto error = m_fd.close())
        m_failures += failure_text("CloseHandle failed: Error Number: ", { error, "" });
}

void LinkManager::AbandonBlock(bool existed)
{
    // Nobody would ever take away a block of our making that has no manager.
    if (!existed)
        (void)m_fd.remove();
    UnmapSharedMemory();
}

bool LinkManager::InitializeCheckThreadMutex() { return m_checkThreadMutex.initialize() == 0; }

void LinkManager::DestroyCheckThreadMutex() { m_checkThreadMutex.destroy(); }

bool LinkManager::StartCheckThread()
{
    if (m_checkThread.running()) // left by an attempt that found no free slot
        return true;
    m_check = true;
    if (m_checkThread.start(start_check_thread, nullptr) == 0)
        return true;
    m_check = false;
    return false;
}

void LinkManager::StopCheckThread()
{
    {
        const std::lock_guard lock(m_stopMutex);
        m_check = false;
    }
    m_stopSignal.notify_all();
    m_checkThread.join();
}

bool LinkManager::ShouldInitializeSharedMemory(bool existed)
{
    return !existed || !OthersAreAlive();
}

bool LinkManager::OthersAreAlive()
{
    const std::int64_t now = heartbeat_now();
    for (std::uint32_t slot = 0; slot < m_nManagerSlots; ++slot) {
        const std::int64_t stamp = read_slot(m_sharedMemory->slots[slot]);
        if (slot != m_slotIndex && stamp != 0 && is_alive(heartbeat_age(now, stamp)))
            return true;
    }
    return false;
}

void LinkManager::InitializeManagerData()
{
    LinkJournal::discard();
    for (std::int64_t& slot : m_sharedMemory->slots)
        write_slot(slot, 0);
    std::for_each(
        std::begin(m_sharedMemory->blocks), std::end(m_sharedMemory->blocks), InitializeBlock);
}

void LinkManager::InitializeBlock(LinkBlock& block)
{
    block.nAttachments = 0;
    block.nDataSize = 0;
    block.nUnused = 0;
    block.padding = 0;
    block.tLastCheck = 0;
    block.szKey[0] = '\0';
    std::memset(block.data, 0, sizeof block.data);
}

bool LinkManager::TakeManagerSlot()
{
    auto* const slots = m_sharedMemory->slots;
    auto* const free = std::find_if(
        slots, slots + m_nManagerSlots, [](std::int64_t& slot) { return read_slot(slot) == 0; });
    if (free == slots + m_nManagerSlots)
        return false;
    m_slotIndex = static_cast<std::uint32_t>(free - slots);
    write_slot(*free, heartbeat_now());
    return true;
}

void LinkManager::LeaveBlock()
{
    // Here and not before, so that what another thread creates meanwhile is detached as well.
    m_attachedLinks.for_each([](std::uint32_t id) {
        LinkBlock& block = m_sharedMemory->blocks[id];
        if (block.nAttachments != 0) // one that a clean-up has freed is as good as detached
            block.nAttachments = (block.nAttachments - 1U) & 0xFFU;
        m_attachedLinks.erase(id);
    });
    // Slots of the dead do not keep the block. A program of ours that was only stopped for long
    // looks dead as well and will go on with the block: it must find others there.
    if (!OthersAreAlive() && m_fd.sole_user())
        (void)m_fd.remove(); // a name that leads elsewhere by now is not ours to take
    // The name first: to be killed in between leaves nothing behind.
    if (m_slotIndex < m_nManagerSlots)
        write_slot(m_sharedMemory->slots[m_slotIndex], 0);
    m_slotIndex = m_noSlot;
}

} // namespace Tavro
