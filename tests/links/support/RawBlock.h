// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

/// The shared objects as a foreign program sees them: through the system's calls and offsets
/// written out as numbers, with no code of the link layer.
namespace Testing {

/// "TavroLM1_" and the user's name.
[[nodiscard]] std::string block_name();

/// The block's bytes, mapped. The block must exist.
class RawBlock {
public:
    RawBlock();
    ~RawBlock();
    RawBlock(const RawBlock&) = delete;
    RawBlock& operator=(const RawBlock&) = delete;
    RawBlock(RawBlock&&) = delete;
    RawBlock& operator=(RawBlock&&) = delete;

    [[nodiscard]] std::int64_t slot(int index) const;
    void set_slot(int index, std::int64_t stamp);
    [[nodiscard]] unsigned count(int link) const;
    void set_count(int link, unsigned count);
    [[nodiscard]] unsigned size(int link) const;
    [[nodiscard]] std::int64_t heartbeat(int link) const;
    void set_heartbeat(int link, std::int64_t stamp);
    /// `bytes` bytes from `offset` of the whole block, as pairs of hexadecimal digits.
    [[nodiscard]] std::string hex(std::size_t offset, std::size_t bytes) const;
    [[nodiscard]] unsigned char* data() const { return m_data; }
    /// Puts the slots and links in use into words, for a report.
    [[nodiscard]] std::string dump() const;

private:
    unsigned char* m_data;
    void* m_object = nullptr; ///< what keeps the name, on systems where something does
};

/// The lock as a foreign program has it.
class RawLock {
public:
    RawLock();
    ~RawLock();
    RawLock(const RawLock&) = delete;
    RawLock& operator=(const RawLock&) = delete;
    RawLock(RawLock&&) = delete;
    RawLock& operator=(RawLock&&) = delete;

    /// False if it is not to be had within the time.
    [[nodiscard]] bool take(int milliseconds = 30'000);
    void give();
    [[nodiscard]] int value() const;
    /// The value while nobody is inside: the check threads of the living come in for a moment every
    /// second. What it is after ten seconds, or at once if it is above 1.
    [[nodiscard]] int value_at_rest() const;

private:
    void* m_semaphore;
};

[[nodiscard]] bool block_exists();
/// Makes the block as a foreign program might, with `bytes` bytes of 0. Where nothing outlives its
/// users, that program goes with the result.
std::shared_ptr<void> make_block(std::size_t bytes, unsigned mode = 0600);
[[nodiscard]] std::int64_t seconds_now();

} // namespace Testing
