// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "links/LinkManager.h"

#include <cstdint>
#include <string>
#include <type_traits>

namespace Tavro {

/// One end of a link whose record is the structure `Record`, with padding spelt out as members so
/// that every byte is carried along. Owns the attachment.
/// Threads: the object has no lock of its own.
template <typename Record>
class RecordLink {
public:
    using Result = LinkManager::Result;

    RecordLink(const RecordLink&) = delete;
    RecordLink& operator=(const RecordLink&) = delete;
    RecordLink(RecordLink&&) = delete;
    RecordLink& operator=(RecordLink&&) = delete;

    /// The number by which another process attaches; 0xFFFFFFFF without a link.
    [[nodiscard]] std::uint32_t GetLinkID() const { return m_nLinkID; }

protected:
    static_assert(std::is_trivially_copyable_v<Record> && std::is_standard_layout_v<Record>);

    RecordLink() = default;
    ~RecordLink()
    {
        if (m_nLinkID != kNoLink)
            (void)LinkManager::DetachFromLink(
                m_nLinkID); // a link that was freed needs no detaching
    }

    /// These three leave the object without a link unless they succeed.
    Result create(const std::string& key)
    {
        Record record {}; // zero is a value that every reader can take
        return keep(LinkManager::CreateLink(sizeof record, bytes(record), key, m_nLinkID));
    }
    Result attach(const std::string& key)
    {
        Record record;
        return keep(LinkManager::AttachToLink(key, m_nLinkID, sizeof record, bytes(record)));
    }
    Result attach(std::uint32_t id)
    {
        Record record;
        std::string key;
        m_nLinkID = id;
        return keep(LinkManager::AttachToLink(id, key, sizeof record, bytes(record)));
    }

    /// `field` is left alone if the record cannot be read.
    template <typename Field, typename Value>
    Result read_field(Field Record::*member, Value& field) const
    {
        Record record;
        const Result result = LinkManager::GetLinkData(m_nLinkID, sizeof record, bytes(record));
        if (result == LinkManager::Success)
            field = static_cast<Value>(record.*member);
        return result;
    }

    /// Writes one field and leaves the others as the other end may have written them meanwhile.
    /// `value()` is asked anew for each attempt.
    template <typename Field, typename Value>
    Result update_field(Field Record::*member, Value value)
    {
        Record before;
        Result result = LinkManager::GetLinkData(m_nLinkID, sizeof before, bytes(before));
        if (result != LinkManager::Success)
            return result;
        do {
            Record after = before;
            after.*member = static_cast<Field>(value());
            result = LinkManager::SetLinkDataIfUnchanged(
                m_nLinkID, sizeof after, bytes(after), bytes(before));
        } while (result == LinkManager::DataChanged);
        return result;
    }
    template <typename Field>
    Result write_field(Field Record::*member, std::type_identity_t<Field> value)
    {
        return update_field(member, [value] { return value; });
    }

private:
    static constexpr std::uint32_t kNoLink = 0xFFFFFFFF;

    static char* bytes(Record& record) { return reinterpret_cast<char*>(&record); }

    Result keep(Result result)
    {
        if (result != LinkManager::Success)
            m_nLinkID = kNoLink; // the number may have been set on the way to the failure
        return result;
    }

    std::uint32_t m_nLinkID = kNoLink;
};

} // namespace Tavro
