// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "tavrobase/platform/Failure.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>

namespace Tavro::Platform {

/// A named block of memory shared by all processes of one user. The memory stays until its last
/// user is gone. So does the name where the system takes it away by itself; elsewhere it stays
/// until somebody removes it.
/// Threads: one at a time.
class SharedMemory {
public:
    SharedMemory();
    ~SharedMemory();
    SharedMemory(const SharedMemory&) = delete;
    SharedMemory& operator=(const SharedMemory&) = delete;
    SharedMemory(SharedMemory&&) = delete;
    SharedMemory& operator=(SharedMemory&&) = delete;

    /// Opens the block `name` (without "/"), or creates it: zero-filled, for its user alone
    /// whatever the file mode mask, all of its memory set aside. `existed` tells whether it had
    /// been there before; one that its creator died over before it had a size counts as new.
    /// Errors: a block that is too short (which some systems tell by `map` alone) or belongs to
    /// another user is left alone. A longer one is used from its beginning.
    /// Threads: a file mode mask that takes the owner's own rights is exchanged for a moment when
    /// it creates; any other is left alone. Processes that open the same name must do so under a
    /// lock of theirs.
    [[nodiscard]] Failure open(const std::string& name, std::size_t bytes, bool& existed);

    /// Makes an open block's bytes reachable at `data()`.
    [[nodiscard]] ErrorNumber map();
    /// Null while the block is not mapped.
    [[nodiscard]] void* data() const { return m_data; }
    [[nodiscard]] ErrorNumber unmap();
    [[nodiscard]] ErrorNumber close();

    /// Whether no other open block of that name leads to the same memory, in this process or in
    /// another, however long that one has been asleep. Programs that do not use this class are not
    /// seen, unless they hold a shared advisory lock on the whole of the object. Never where the
    /// system takes the name away by itself: there it counts the users and does not tell.
    [[nodiscard]] bool sole_user() const;

    /// Takes the name away, if it still leads to the open block: whoever comes later gets a new
    /// one. Does nothing where the system does that by itself.
    [[nodiscard]] ErrorNumber remove();

    /// Tells this block, once mapped, from others that had or will have the same name; 0 if none is
    /// open.
    [[nodiscard]] std::uint64_t identity() const { return m_identity; }

    /// Where the system shows the block of that name; nothing if it shows none.
    [[nodiscard]] static std::optional<std::string> path(const std::string& name);

private:
    struct Handle;
    std::unique_ptr<Handle> m_handle;
    std::string m_name;
    std::size_t m_bytes = 0;
    std::uint64_t m_identity = 0;
    void* m_data = nullptr;
};

} // namespace Tavro::Platform
