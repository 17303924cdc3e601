// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "tests/links/support/RawBlock.h"

#include <cstddef>

/// Where a link's parts are in the block, written out as numbers.
namespace Testing {

inline unsigned char* link_of(const RawBlock& block, unsigned link)
{
    constexpr std::size_t kFirstLink = 400;
    constexpr std::size_t kLinkBytes = 4616;
    return block.data() + kFirstLink + link * kLinkBytes;
}

/// Behind the count of attachments, the size, the heartbeat and the key.
inline unsigned char* record_of(const RawBlock& block, unsigned link)
{
    return link_of(block, link) + 516;
}

/// Makes a link one that refuses every write and read of its record, or heals it: sizes of records
/// are even, and an odd one is that of nobody. Lower half first, behind the count of attachments.
inline void break_link(unsigned link, bool broken)
{
    const RawBlock block;
    unsigned char& size = link_of(block, link)[1];
    size = static_cast<unsigned char>(broken ? size | 1U : size & ~1U);
}

} // namespace Testing
