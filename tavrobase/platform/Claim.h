// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <memory>
#include <string>

namespace Tavro::Platform {

/// A claim on a directory, which one process at a time can have. It leaves nothing on disk and ends
/// with its owner, however that ends. Where the file system knows no claims everybody gets one.
class Claim {
public:
    explicit Claim(const std::string& directory);
    ~Claim();
    Claim(const Claim&) = delete;
    Claim& operator=(const Claim&) = delete;
    Claim(Claim&&) = delete;
    Claim& operator=(Claim&&) = delete;

    /// False if somebody else has it.
    [[nodiscard]] bool granted() const;

private:
    struct Handle;
    std::unique_ptr<Handle> m_handle;
};

} // namespace Tavro::Platform
