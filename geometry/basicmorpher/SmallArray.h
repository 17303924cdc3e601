// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>
#include <memory>
#include <new>
#include <span>
#include <stdexcept>
#include <type_traits>
#include <utility>

namespace BasicMorpher {

/// Array of plain values that needs no memory of its own up to `InlineCapacity` of them.
template <typename T, std::uint32_t InlineCapacity>
class SmallArray {
    static_assert(std::is_trivially_copyable_v<T> && std::is_trivially_destructible_v<T>);
    static_assert(InlineCapacity * sizeof(T) >= sizeof(void*));

public:
    using value_type = T;

    SmallArray() = default;
    explicit SmallArray(std::span<const T> values) { Append(values); }
    SmallArray(const SmallArray& other)
    {
        if (!other.IsInline()) {
            Append({ other.data(), other.size() });
            return;
        }
        // Of a size known beforehand, this takes a few instructions and no call.
        m_uiSize = other.m_uiSize;
        std::memcpy(m_storage, other.m_storage, sizeof(m_storage));
    }
    SmallArray(SmallArray&& other) noexcept { TakeFrom(other); }
    SmallArray& operator=(const SmallArray& other)
    {
        if (this != &other)
            *this = SmallArray(other);
        return *this;
    }
    SmallArray& operator=(SmallArray&& other) noexcept
    {
        if (this != &other) {
            Free();
            TakeFrom(other);
        }
        return *this;
    }
    ~SmallArray() { Free(); }

    [[nodiscard]] std::uint32_t size() const { return m_uiSize; }
    [[nodiscard]] bool empty() const { return m_uiSize == 0; }
    [[nodiscard]] T* data() { return IsInline() ? Inline() : Heap(); }
    [[nodiscard]] const T* data() const { return IsInline() ? Inline() : Heap(); }
    [[nodiscard]] T* begin() { return data(); }
    [[nodiscard]] T* end() { return data() + m_uiSize; }
    [[nodiscard]] const T* begin() const { return data(); }
    [[nodiscard]] const T* end() const { return data() + m_uiSize; }
    [[nodiscard]] T& operator[](std::size_t i) { return data()[i]; }
    [[nodiscard]] const T& operator[](std::size_t i) const { return data()[i]; }
    [[nodiscard]] const T& front() const { return data()[0]; }
    [[nodiscard]] const T& back() const { return data()[m_uiSize - 1]; }
    /// Errors: `std::out_of_range`.
    [[nodiscard]] const T& at(std::size_t i) const
    {
        if (i >= m_uiSize)
            throw std::out_of_range("Index is beyond the end of the array.");
        return data()[i];
    }
    [[nodiscard]] bool contains(const T& value) const
    {
        // To the end in any case: arrays are short, and when to stop could not be foreseen.
        bool isThere = false;
        for (const T& element : *this)
            isThere |= element == value;
        return isThere;
    }

    void push_back(T value)
    {
        if (m_uiSize == m_uiCapacity)
            Grow(2 * std::size_t { std::max(m_uiCapacity, InlineCapacity) });
        ::new (static_cast<void*>(data() + m_uiSize)) T(value);
        ++m_uiSize;
    }
    void clear() { m_uiSize = 0; }
    /// Deletes the first one that is equal; the rest keeps its order. False if there is none.
    bool Delete(const T& value)
    {
        T* const found = std::find(begin(), end(), value);
        if (found == end())
            return false;
        std::copy(found + 1, end(), found);
        --m_uiSize;
        return true;
    }

private:
    [[nodiscard]] bool IsInline() const { return m_uiCapacity == InlineCapacity; }
    [[nodiscard]] T* Inline() { return std::launder(reinterpret_cast<T*>(m_storage)); }
    [[nodiscard]] const T* Inline() const
    {
        return std::launder(reinterpret_cast<const T*>(m_storage));
    }
    [[nodiscard]] T* Heap() const
    {
        T* heap = nullptr;
        std::memcpy(
            &heap, m_storage, sizeof(void*)); // kept as bytes: an aligned pointer costs room
        return heap;
    }
    void Append(std::span<const T> values)
    {
        if (values.size() > InlineCapacity)
            Grow(values.size());
        std::uninitialized_copy(values.begin(), values.end(), data());
        m_uiSize = static_cast<std::uint32_t>(values.size());
    }
    void Grow(std::size_t capacity)
    {
        if (capacity > std::numeric_limits<std::uint32_t>::max())
            throw std::length_error("The array would get too long.");
        auto* const larger = static_cast<T*>(::operator new(capacity * sizeof(T)));
        std::uninitialized_copy(begin(), end(), larger);
        Free();
        std::memcpy(m_storage, &larger, sizeof(void*));
        m_uiCapacity = static_cast<std::uint32_t>(capacity);
    }
    /// Leaves size and capacity as they are.
    void Free()
    {
        if (!IsInline())
            ::operator delete(Heap());
    }
    /// What this held must be freed.
    void TakeFrom(SmallArray& other)
    {
        m_uiSize = std::exchange(other.m_uiSize, 0U);
        m_uiCapacity = std::exchange(other.m_uiCapacity, InlineCapacity);
        std::memcpy(m_storage, other.m_storage, sizeof(m_storage));
    }

    std::uint32_t m_uiSize = 0;
    std::uint32_t m_uiCapacity = InlineCapacity;
    alignas(T) std::byte m_storage[InlineCapacity * sizeof(T)] {}; ///< the values or their address
};

} // namespace BasicMorpher
