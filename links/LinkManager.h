// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "links/LinkIdSet.h"
#include "tavrobase/platform/NamedLock.h"
#include "tavrobase/platform/SharedMemory.h"
#include "tavrobase/platform/Threads.h"

#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <mutex>
#include <string>
#include <vector>

namespace Tavro {

/// Entry of the check thread.
void* start_check_thread(void* unused);

/// Small records shared by the processes of one user through one block of memory; a process has one
/// manager and makes no instance. A link is a numbered block of up to 4096 bytes with an optional
/// text key and a count of attachments. See docs/links.md for the block as others see it.
///
/// Calling order: `Startup` once, any number of operations, `Shutdown` once; a process cannot start
/// again after that. Nothing throws. Failures of the system are also printed to standard error.
/// Buffers belong to the caller, hold at least `size` bytes and are touched outside the lock only;
/// a failed operation leaves them as they were unless it says otherwise.
/// Threads: every operation between `Startup` and `Shutdown` is safe from any thread; `Shutdown`
/// waits for none of them, and those that come too late get `NotStarted`.
class LinkManager {
public:
    enum [[nodiscard]] Result : int {
        Success = 1, // 0 is not used: compare with this
        AlreadyStarted = 2,
        MutexFailed = 3,
        OpenFailed = 4,
        MapFailed = 5,
        CheckThreadFailed = 6,
        TooManyManagers = 7,
        NotStarted = 8,
        DataTooBig = 9,
        KeyTooLong = 10,
        KeyNotFound = 11,
        NoFreeLinks = 12,
        InvalidLinkID = 13,
        AlreadyAttached = 14,
        NotAttached = 15,
        UnallocatedLinkID = 16,
        IncorrectSize = 17,
        TooManyAttached = 18,
        DataChanged = 19,
        TakeControlFailed = 20,
    };

    struct ManagerDebugInfo {
        bool m_bOccupied;
    };
    struct LinkDebugInfo {
        std::uint32_t m_nAttachments;
        std::uint64_t m_nDataSize;
        std::string m_strKey;
    };

    /// Joins the user's block, or creates it.
    static Result Startup();
    /// Detaches from everything and gives up the slot; the last manager takes the block away. Does
    /// nothing if not started.
    static void Shutdown();

    /// Takes a free link, attached to this process. Keys need not be unique.
    static Result CreateLink(
        std::uint64_t size, char* data, const std::string& key, std::uint32_t& id);
    /// Attaches to the lowest link with that key and reads its record. `id` is set as soon as the
    /// key is found, whatever follows.
    static Result AttachToLink(
        const std::string& key, std::uint32_t& id, std::uint64_t size, char* data);
    /// Attaches by number, tells the key and reads the record.
    static Result AttachToLink(std::uint32_t id, std::string& key, std::uint64_t size, char* data);
    /// The last to detach frees the link.
    static Result DetachFromLink(std::uint32_t id);

    /// `size` must be that of the creation, here and below.
    static Result SetLinkData(std::uint32_t id, std::uint64_t size, const char* data);
    /// Writes only if the record still equals `oldData`; else `DataChanged`, and `oldData` is the
    /// record as it stands.
    static Result SetLinkDataIfUnchanged(
        std::uint32_t id, std::uint64_t size, const char* newData, char* oldData);
    static Result GetLinkData(std::uint32_t id, std::uint64_t size, char* data);

    [[nodiscard]] static const char* GetResultString(Result result);
    /// Read without the lock; 0 if not started.
    [[nodiscard]] static std::uint32_t GetNumAttachedManagers();
    /// 50 entries in slot order.
    static Result GetManagerDebuInfo(std::vector<ManagerDebugInfo>& managers);
    /// 100 entries in the order of the numbers, free links included.
    static Result GetLinkDebugInfo(std::vector<LinkDebugInfo>& links);
    /// Seconds since the last heartbeat of each of the 50 managers and each of the 100 links, in
    /// the same orders; of a free one, nothing of use.
    static Result GetHeartbeatAges(std::vector<double>& managers, std::vector<double>& links);
    /// Prints to standard error where the lock and the block lie, one line each. A flag adds to its
    /// line whether this process may read and write the object. Where they are no files, one line
    /// says that there is nothing to tell.
    static void PrintAccessInfo(bool semAccess, bool shmAccess);

    [[nodiscard]] static std::uint32_t GetMaxNumLinkManagers() { return m_nManagerSlots; }
    [[nodiscard]] static std::uint32_t GetMaxNumLinks() { return m_nBlocks; }
    [[nodiscard]] static std::uint64_t GetMaxLinkDataSize() { return m_dataSize; }
    [[nodiscard]] static std::uint32_t GetMaxNumLinkAttachments() { return m_maxLinkAttachments; }
    /// With the terminating zero.
    [[nodiscard]] static std::uint32_t GetMaxKeyLength() { return m_maxKeyLength; }

    /// The lock around everything that touches the block, between threads and between processes;
    /// the wait for it has no limit. Errors: `TakeControlFailed`, also for a thread that is inside
    /// already.
    static Result TakeControl();
    /// A thread that is not inside gives nothing back and has that printed as a failure.
    static void ReleaseControl();

private:
    friend void* start_check_thread(void*);
    friend class LinkJournal;
    friend struct LinkManagerInspector; // the tests' door

    struct LinkBlock;
    struct SharedBlock;
    struct LayoutPin;

    static constexpr std::uint32_t m_nManagerSlots = 50;
    static constexpr std::uint32_t m_nBlocks = 100;
    static constexpr std::uint64_t m_dataSize = 4096;
    static constexpr std::uint32_t m_maxLinkAttachments = 255;
    static constexpr std::uint32_t m_maxKeyLength = 500;
    static constexpr unsigned m_waitSeconds = 2; // for a hold left in doubt by its owner's death
    static constexpr unsigned m_checkSleepTime = 1; // seconds
    static constexpr unsigned m_checkFrequency = 10; // turns between two checks
    static constexpr std::uint32_t m_noSlot = 0xFFFFFFFF;

    [[nodiscard]] static bool OpenSemaphoreA();
    static void CloseSemaphore();
    [[nodiscard]] static bool ShouldInitializeSharedMemory(bool existed);
    [[nodiscard]] static bool OthersAreAlive();
    [[nodiscard]] static bool MapSharedMemory(bool& existed);
    static void UnmapSharedMemory();
    static void AbandonBlock(bool existed);
    [[nodiscard]] static bool InitializeCheckThreadMutex();
    static void DestroyCheckThreadMutex();
    [[nodiscard]] static bool StartCheckThread();
    static void StopCheckThread();
    static void InitializeManagerData();
    static void InitializeBlock(LinkBlock& block);
    [[nodiscard]] static bool TakeManagerSlot();
    static void LeaveBlock();

    /// Under the lock. What it has to say is printed when the lock is given back, so that nobody
    /// waits for a terminal.
    static void ConsistencyCheck();
    static void CheckThread();
    static void SleepUntilStopped();
    /// A foreign program that waits for the lock cannot notice that a holder of ours has died; only
    /// one of ours who comes for it gives it on.
    static void SucceedTheDead();

    [[nodiscard]] static Result CheckAttached(std::uint32_t id);
    template <typename Body>
    static Result InControl(Body body);
    template <typename Body>
    static Result InControlOf(std::uint32_t id, Body body);
    static Result Attach(LinkBlock& block, std::uint32_t id, std::uint64_t size, char* local);

    static const std::string m_name;
    static std::atomic<bool> m_started;
    static std::atomic<bool> m_shutdown;
    static std::atomic<bool> m_check;
    static LinkIdSet m_attachedLinks;

    // References to objects that are never destroyed: threads may still come for them while the
    // process is ending.
    static Platform::Mutex& m_checkThreadMutex; // held while the block is mapped or unmapped
    static Platform::NamedLock& m_semaphore;
    static Platform::SharedMemory& m_fd;
    static Platform::Thread& m_checkThread;

    static std::mutex m_stopMutex; // a change of m_check is signalled under it
    static std::condition_variable& m_stopSignal;

    // Under the lock.
    static SharedBlock* m_sharedMemory;
    static std::uint32_t m_slotIndex;
    static std::string& m_failures; // lines not yet printed
    static double m_staleSeconds; // of the first dead one of a check not yet reported; else 0
};

} // namespace Tavro
