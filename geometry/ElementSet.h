// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <algorithm>
#include <cstdint>
#include <memory>

namespace Tavro {

/// Set of elements of a mesh, ordered by creation (their `m_uiCreation`) and not by address, so
/// that one input has one order in every run. Up to `InlineCapacity` elements need no memory of
/// their own. It does not own them.
template <typename Element, std::uint32_t InlineCapacity>
class ElementSet {
public:
    ElementSet() = default;
    ~ElementSet() = default;
    ElementSet(const ElementSet&) = delete;
    ElementSet& operator=(const ElementSet&) = delete;
    ElementSet(ElementSet&&) = delete;
    ElementSet& operator=(ElementSet&&) = delete;

    [[nodiscard]] std::uint32_t size() const { return m_uiSize; }
    [[nodiscard]] bool empty() const { return m_uiSize == 0; }
    [[nodiscard]] Element* const* begin() const { return Data(); }
    [[nodiscard]] Element* const* end() const { return Data() + m_uiSize; }
    /// The i-th in set order.
    [[nodiscard]] Element* operator[](std::uint32_t i) const { return Data()[i]; }
    [[nodiscard]] bool contains(const Element* element) const
    {
        return std::find(begin(), end(), element) != end();
    }

    /// False if it is in the set already.
    bool insert(Element* element)
    {
        // Nearly always the element is the youngest, and the search ends where it starts.
        std::uint32_t place = m_uiSize;
        while (place > 0 && element->m_uiCreation < Data()[place - 1]->m_uiCreation)
            --place;
        if (place > 0 && Data()[place - 1] == element)
            return false;
        if (m_uiSize == m_uiCapacity)
            Grow();
        std::copy_backward(Data() + place, Data() + m_uiSize, Data() + m_uiSize + 1);
        Data()[place] = element;
        ++m_uiSize;
        return true;
    }

private:
    [[nodiscard]] Element** Data() { return m_pHeap != nullptr ? m_pHeap.get() : m_apInline; }
    [[nodiscard]] Element* const* Data() const
    {
        return m_pHeap != nullptr ? m_pHeap.get() : m_apInline;
    }
    void Grow()
    {
        auto larger = std::make_unique<Element*[]>(std::size_t { m_uiCapacity } * 2);
        std::copy(begin(), end(), larger.get());
        m_pHeap = std::move(larger);
        m_uiCapacity *= 2;
    }

    std::uint32_t m_uiSize = 0;
    std::uint32_t m_uiCapacity = InlineCapacity;
    std::unique_ptr<Element*[]> m_pHeap;
    Element* m_apInline[InlineCapacity] {};
};

} // namespace Tavro
