// SPDX-License-Identifier: Apache-2.0
#include "links/Heartbeat.h"
#include "links/InControl.h"
#include "links/LinkJournal.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <iterator>

namespace Tavro {

namespace {

// A caller's memory may fault or be slow to come from disk: it is copied outside the lock.
using LocalRecord = std::array<char, 4096>;

// Not one byte may be copied from or to a null pointer.
void copy_bytes(char* to, const char* from, std::uint64_t size)
{
    if (size != 0)
        std::memcpy(to, from, size);
}

// The text of a foreign writer may lack its zero.
bool same_key(const char* stored, const char* key, std::size_t limit)
{
    return std::strncmp(stored, key, limit) == 0;
}

} // namespace

LinkManager::Result LinkManager::CheckAttached(std::uint32_t id)
{
    if (!m_started)
        return NotStarted;
    if (id >= m_nBlocks)
        return InvalidLinkID;
    return m_attachedLinks.contains(id) ? Success : NotAttached;
}

LinkManager::Result LinkManager::CreateLink(
    std::uint64_t size, char* data, const std::string& key, std::uint32_t& id)
{
    if (!m_started)
        return NotStarted;
    if (size > m_dataSize)
        return DataTooBig;
    if (key.length() >= m_maxKeyLength)
        return KeyTooLong;
    LocalRecord local;
    copy_bytes(local.data(), data, size);
    std::uint32_t created = 0;
    const Result result = InControl([&] {
        auto* const blocks = m_sharedMemory->blocks;
        auto* const block = std::find_if(blocks, blocks + m_nBlocks,
            [](const LinkBlock& candidate) { return candidate.nAttachments == 0; });
        if (block == blocks + m_nBlocks)
            return NoFreeLinks;
        created = static_cast<std::uint32_t>(block - blocks);
        InitializeBlock(*block);
        block->nDataSize = static_cast<std::uint16_t>(size);
        block->tLastCheck = heartbeat_now();
        std::memcpy(block->szKey, key.c_str(), std::strlen(key.c_str()) + 1);
        copy_bytes(block->data, local.data(), size);
        // The count comes last: a creator killed before it has created nothing.
        keep_store_order();
        block->nAttachments = 1;
        m_attachedLinks.insert(created);
        return Success;
    });
    if (result == Success)
        id = created;
    return result;
}

LinkManager::Result LinkManager::Attach(
    LinkBlock& block, std::uint32_t id, std::uint64_t size, char* local)
{
    if (block.nDataSize != size)
        return IncorrectSize;
    if (block.nAttachments == m_maxLinkAttachments)
        return TooManyAttached;
    block.nAttachments = (block.nAttachments + 1U) & 0xFFU;
    m_attachedLinks.insert(id);
    copy_bytes(local, block.data, size);
    return Success;
}

LinkManager::Result LinkManager::AttachToLink(
    const std::string& key, std::uint32_t& id, std::uint64_t size, char* data)
{
    if (!m_started)
        return NotStarted;
    if (size > m_dataSize)
        return DataTooBig;
    LocalRecord local;
    std::uint32_t found = m_nBlocks;
    const Result result = InControl([&] {
        auto* const blocks = m_sharedMemory->blocks;
        const auto* const match
            = std::find_if(blocks, blocks + m_nBlocks, [&](const LinkBlock& candidate) {
                  return candidate.nAttachments != 0
                      && same_key(candidate.szKey, key.c_str(), m_maxKeyLength);
              });
        if (match == blocks + m_nBlocks)
            return KeyNotFound;
        found = static_cast<std::uint32_t>(match - blocks);
        if (m_attachedLinks.contains(found))
            return AlreadyAttached;
        return Attach(blocks[found], found, size, local.data());
    });
    if (found != m_nBlocks)
        id = found;
    if (result == Success)
        copy_bytes(data, local.data(), size);
    return result;
}

LinkManager::Result LinkManager::AttachToLink(
    std::uint32_t id, std::string& key, std::uint64_t size, char* data)
{
    const Result attached = CheckAttached(id);
    if (attached != NotAttached)
        return attached == Success ? AlreadyAttached : attached;
    if (size > m_dataSize)
        return DataTooBig;
    LocalRecord local;
    std::array<char, m_maxKeyLength> localKey;
    const Result result = InControl([&] {
        LinkBlock& block = m_sharedMemory->blocks[id];
        if (m_attachedLinks.contains(id)) // since the first look, by another thread
            return AlreadyAttached;
        if (block.nAttachments == 0)
            return UnallocatedLinkID;
        std::memcpy(localKey.data(), block.szKey, m_maxKeyLength);
        return Attach(block, id, size, local.data());
    });
    if (result == Success) {
        key.assign(localKey.data(), ::strnlen(localKey.data(), m_maxKeyLength));
        copy_bytes(data, local.data(), size);
    }
    return result;
}

LinkManager::Result LinkManager::DetachFromLink(std::uint32_t id)
{
    if (const Result checked = CheckAttached(id); checked != Success)
        return checked;
    return InControlOf(id, [&](LinkBlock& block) {
        block.nAttachments = (block.nAttachments - 1U) & 0xFFU;
        m_attachedLinks.erase(id);
        return Success;
    });
}

LinkManager::Result LinkManager::SetLinkData(std::uint32_t id, std::uint64_t size, const char* data)
{
    if (const Result checked = CheckAttached(id); checked != Success)
        return checked;
    if (size > m_dataSize)
        return DataTooBig;
    LocalRecord local;
    copy_bytes(local.data(), data, size);
    return InControlOf(id, [&](LinkBlock& block) {
        if (block.nDataSize != size)
            return IncorrectSize;
        LinkJournal::write(id, local.data(), size);
        return Success;
    });
}

LinkManager::Result LinkManager::SetLinkDataIfUnchanged(
    std::uint32_t id, std::uint64_t size, const char* newData, char* oldData)
{
    if (const Result checked = CheckAttached(id); checked != Success)
        return checked;
    if (size > m_dataSize)
        return DataTooBig;
    LocalRecord localNew;
    LocalRecord localOld;
    copy_bytes(localNew.data(), newData, size);
    copy_bytes(localOld.data(), oldData, size);
    const Result result = InControlOf(id, [&](LinkBlock& block) {
        if (block.nDataSize != size)
            return IncorrectSize;
        if (size != 0 && std::memcmp(localOld.data(), block.data, size) != 0) {
            copy_bytes(localOld.data(), block.data, size);
            return DataChanged;
        }
        LinkJournal::write(id, localNew.data(), size);
        return Success;
    });
    if (result == DataChanged)
        copy_bytes(oldData, localOld.data(), size);
    return result;
}

LinkManager::Result LinkManager::GetLinkData(std::uint32_t id, std::uint64_t size, char* data)
{
    if (const Result checked = CheckAttached(id); checked != Success)
        return checked;
    LocalRecord local;
    const Result result = InControlOf(id, [&](LinkBlock& block) {
        // Nothing longer can have been created, whatever a foreign writer has put there.
        if (block.nDataSize != size || size > m_dataSize)
            return IncorrectSize;
        copy_bytes(local.data(), block.data, size);
        return Success;
    });
    if (result == Success)
        copy_bytes(data, local.data(), size);
    return result;
}

} // namespace Tavro
