// SPDX-License-Identifier: Apache-2.0
#include "links/LinkManager.h"

#include "tavrobase/SystemUtilities.h"
#include "tavrobase/platform/Files.h"

#include <iostream>

namespace Tavro {

// Each user has a set of links of his own: the name is the only thing that brings processes
// together.
const std::string LinkManager::m_name = "TavroLM1_" + GetUsername();

std::atomic<bool> LinkManager::m_started = false;
std::atomic<bool> LinkManager::m_shutdown = false;
std::atomic<bool> LinkManager::m_check = false;
LinkIdSet LinkManager::m_attachedLinks;

Platform::Mutex& LinkManager::m_checkThreadMutex = *new Platform::Mutex;
Platform::NamedLock& LinkManager::m_semaphore = *new Platform::NamedLock;
Platform::SharedMemory& LinkManager::m_fd = *new Platform::SharedMemory;
Platform::Thread& LinkManager::m_checkThread = *new Platform::Thread;
std::mutex LinkManager::m_stopMutex;
std::condition_variable& LinkManager::m_stopSignal = *new std::condition_variable;

LinkManager::SharedBlock* LinkManager::m_sharedMemory = nullptr;
std::uint32_t LinkManager::m_slotIndex = LinkManager::m_noSlot;
std::string& LinkManager::m_failures = *new std::string;
double LinkManager::m_staleSeconds = 0.0;

const char* LinkManager::GetResultString(Result result)
{
    switch (result) {
    case Success:
        return "Success";
    case AlreadyStarted:
        return "Manager has already  been started"; // two blanks: front ends compare the text
    case MutexFailed:
        return "Couldn't initialize mutex";
    case OpenFailed:
        return "Couldn't open shared memory";
    case MapFailed:
        return "Couldn't map shared memory";
    case CheckThreadFailed:
        return "Couldn't start consistency check thread";
    case TooManyManagers:
        return "Too many managers";
    case NotStarted:
        return "Manager has not been started";
    case DataTooBig:
        return "Data is too big";
    case KeyTooLong:
        return "Key is too long";
    case KeyNotFound:
        return "Key not found";
    case NoFreeLinks:
        return "No free links";
    case InvalidLinkID:
        return "Invalid link ID";
    case AlreadyAttached:
        return "Already attached";
    case NotAttached:
        return "Not attached";
    case UnallocatedLinkID:
        return "Unallocated link ID";
    case IncorrectSize:
        return "Incorrect size";
    case TooManyAttached:
        return "Too many attached";
    case DataChanged:
        return "Data has changed";
    case TakeControlFailed:
        return "Failed to take control of shared memory";
    }
    return "Unknown";
}

namespace {

void print_path(const char* title, const std::string& path, bool access)
{
    std::cerr << title << path;
    if (access)
        std::cerr << (Platform::may_access(path, Platform::kMayRead | Platform::kMayWrite)
                ? " (accessible)"
                : " (not accessible)");
    std::cerr << std::endl;
}

} // namespace

void LinkManager::PrintAccessInfo(bool semAccess, bool shmAccess)
{
    const auto semaphore = Platform::NamedLock::path(m_name);
    const auto memory = Platform::SharedMemory::path(m_name);
    if (!semaphore || !memory) { // objects that are no files
        std::cerr << "No access output for semPath and shmPath on Windows" << std::endl;
        return;
    }
    print_path("semPath: ", *semaphore, semAccess);
    print_path("shmPath: ", *memory, shmAccess);
}

} // namespace Tavro
