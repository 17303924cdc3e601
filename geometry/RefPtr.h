// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <utility>

namespace Tavro {

/// Shares an object among its holders; the last one destroys it.
/// Threads: one holder belongs to one thread; holders of one object may be in several.
template <typename T>
class RefPtr {
public:
    RefPtr() = default;
    /// Takes the object over, also if this fails. Null makes an empty holder.
    explicit RefPtr(T* object)
    {
        std::unique_ptr<T> guard(object);
        if (object != nullptr)
            m_pRecord = new Record { object, 1 };
        (void)guard.release(); // the record owns it now
    }
    RefPtr(const RefPtr& other)
        : m_pRecord(other.m_pRecord)
    {
        if (m_pRecord != nullptr)
            ++m_pRecord->m_uiCount;
    }
    RefPtr(RefPtr&& other) noexcept
        : m_pRecord(std::exchange(other.m_pRecord, nullptr))
    {
    }
    RefPtr& operator=(RefPtr other) noexcept
    {
        std::swap(m_pRecord, other.m_pRecord);
        return *this;
    }
    ~RefPtr() { Release(); }

    /// Gives this share up and leaves the holder empty.
    void Release()
    {
        Record* const record = std::exchange(m_pRecord, nullptr);
        if (record == nullptr || record->m_uiCount.fetch_sub(1) != 1)
            return;
        delete record->m_pObject;
        delete record;
    }

    /// Null if empty.
    [[nodiscard]] T* Get() const { return m_pRecord != nullptr ? m_pRecord->m_pObject : nullptr; }
    /// How many holders share the object; 0 if empty.
    [[nodiscard]] std::uint32_t Count() const
    {
        return m_pRecord != nullptr ? m_pRecord->m_uiCount.load() : 0;
    }

    [[nodiscard]] T* operator->() const { return Get(); }
    [[nodiscard]] T& operator*() const { return *Get(); }
    [[nodiscard]] explicit operator bool() const { return Get() != nullptr; }
    [[nodiscard]] bool operator==(const RefPtr& other) const { return Get() == other.Get(); }

private:
    struct Record {
        T* m_pObject;
        std::atomic<std::uint32_t> m_uiCount;
    };

    Record* m_pRecord = nullptr;
};

} // namespace Tavro
