// SPDX-License-Identifier: Apache-2.0
#include "tests/controller/chain/Leftovers.h"

#include "tests/links/support/Inspector.h"
#include "tests/links/support/RawBlock.h"

#include <stdexcept>

namespace Testing {

namespace {

constexpr int kSlots = 50;
constexpr int kLinks = 100;

/// The lock of the links for a block of code.
class Control {
public:
    Control()
    {
        if (Tavro::LinkManager::TakeControl() != Tavro::LinkManager::Success)
            throw std::runtime_error("the links cannot be locked");
    }
    ~Control() { Tavro::LinkManager::ReleaseControl(); }
    Control(const Control&) = delete;
    Control& operator=(const Control&) = delete;
    Control(Control&&) = delete;
    Control& operator=(Control&&) = delete;
};

bool is_ours(int slot) { return slot == static_cast<int>(Tavro::LinkManagerInspector::slot()); }

} // namespace

Leftovers leftovers()
{
    const Control control;
    const RawBlock block;
    Leftovers left;
    for (int slot = 0; slot < kSlots; ++slot)
        left.slots += !is_ours(slot) && block.slot(slot) != 0 ? 1 : 0;
    for (int link = 0; link < kLinks; ++link)
        left.attachments += static_cast<int>(block.count(link));
    return left;
}

void forget_the_dead()
{
    const Control control;
    RawBlock block;
    for (int slot = 0; slot < kSlots; ++slot)
        if (!is_ours(slot))
            block.set_slot(slot, 0);
    for (int link = 0; link < kLinks; ++link)
        block.set_count(link, 0);
}

} // namespace Testing
