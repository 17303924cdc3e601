// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <algorithm>
#include <cstddef>
#include <initializer_list>
#include <memory>
#include <utility>
#include <vector>

namespace Tavro {

/// An array of doubles whose exact sum is a number; index 0 holds the smallest magnitude.
/// Up to `kInline` components lie in the object itself, so that the usual lengths need no heap.
/// It converts from and to a vector.
/// Ownership: by value.  Errors: std::bad_alloc beyond `kInline` components.
class Expansion {
public:
    using value_type = double;
    using iterator = double*;
    using const_iterator = const double*;

    static constexpr std::size_t kInline = 32;

    // The components in the object are left as they are until written: to clear 32 of them would
    // cost more than most operations on the one or two that are used. Lists and vectors stand for
    // expansions wherever one is wanted.
    // NOLINTBEGIN(*-member-init, *-explicit-constructor, modernize-use-equals-default)
    Expansion() noexcept { }
    Expansion(std::initializer_list<double> components)
    {
        Assign(components.begin(), components.size());
    }
    Expansion(const std::vector<double>& components)
    {
        Assign(components.data(), components.size());
    }
    Expansion(const Expansion& other) { Assign(other.begin(), other.size()); }
    Expansion(Expansion&& other) noexcept { Take(other); }
    // NOLINTEND(*-member-init, *-explicit-constructor, modernize-use-equals-default)
    Expansion& operator=(const Expansion& other)
    {
        if (this != &other) {
            Assign(other.begin(), other.size());
        }
        return *this;
    }
    Expansion& operator=(Expansion&& other) noexcept
    {
        if (this != &other) {
            Take(other);
        }
        return *this;
    }
    ~Expansion() = default;

    /// `size` components of no particular value.
    [[nodiscard]] static Expansion OfSize(std::size_t size)
    {
        Expansion made;
        made.Reserve(size);
        made.m_size = size;
        return made;
    }

    /// Cuts or grows it; what is added is 0.0.
    void resize(std::size_t size)
    {
        if (size > Capacity()) {
            Expansion grown = OfSize(size);
            std::copy(begin(), end(), grown.begin());
            grown.m_size = m_size;
            Take(grown);
        }
        if (size > m_size) {
            std::fill(begin() + m_size, begin() + size, 0.0);
        }
        m_size = size;
    }

    [[nodiscard]] std::size_t size() const noexcept { return m_size; }
    [[nodiscard]] bool empty() const noexcept { return m_size == 0; }
    [[nodiscard]] double* begin() noexcept { return m_heap ? m_heap.get() : m_inline; }
    [[nodiscard]] double* end() noexcept { return begin() + m_size; }
    [[nodiscard]] const double* begin() const noexcept { return m_heap ? m_heap.get() : m_inline; }
    [[nodiscard]] const double* end() const noexcept { return begin() + m_size; }
    [[nodiscard]] double& operator[](std::size_t i) noexcept { return begin()[i]; }
    [[nodiscard]] const double& operator[](std::size_t i) const noexcept { return begin()[i]; }
    [[nodiscard]] const double& back() const noexcept { return begin()[m_size - 1]; }

    // NOLINTNEXTLINE(*-explicit-constructor): as above
    [[nodiscard]] operator std::vector<double>() const { return { begin(), end() }; }

    [[nodiscard]] friend bool operator==(const Expansion& left, const Expansion& right)
    {
        return std::equal(left.begin(), left.end(), right.begin(), right.end());
    }

private:
    [[nodiscard]] std::size_t Capacity() const noexcept { return m_heap ? m_capacity : kInline; }

    void Reserve(std::size_t capacity)
    {
        if (capacity > Capacity()) {
            m_heap = std::make_unique<double[]>(capacity);
            m_capacity = capacity;
        }
    }

    void Assign(const double* components, std::size_t size)
    {
        Reserve(size);
        std::copy(components, components + size, begin());
        m_size = size;
    }

    void Take(Expansion& other) noexcept
    {
        if (other.m_heap) {
            m_heap = std::move(other.m_heap);
            m_capacity = other.m_capacity;
        } else {
            // It fits whatever this one has.
            std::copy(other.m_inline, other.m_inline + other.m_size, begin());
        }
        m_size = std::exchange(other.m_size, 0);
    }

    std::size_t m_size = 0;
    std::size_t m_capacity = kInline;
    std::unique_ptr<double[]> m_heap;
    double m_inline[kInline];
};

} // namespace Tavro
