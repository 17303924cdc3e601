// SPDX-License-Identifier: Apache-2.0
#include "tavrobase/platform/Claim.h"

#include "tavrobase/platform/windows/NamedObject.h"

namespace Tavro::Platform {

namespace {

/// The directory itself, by whatever path it is reached. Empty if the file system numbers nothing.
std::string claim_name(const std::string& directory)
{
    const Windows::Handle opened(
        ::CreateFileA(directory.c_str(), 0, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
            nullptr, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr));
    BY_HANDLE_FILE_INFORMATION facts {};
    if (!opened || ::GetFileInformationByHandle(opened.get(), &facts) == 0
        || (facts.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) == 0)
        return "";
    return "Global\\TavroClaim_" + std::to_string(facts.dwVolumeSerialNumber) + "_"
        + std::to_string(facts.nFileIndexHigh) + "_" + std::to_string(facts.nFileIndexLow);
}

} // namespace

/// Whoever makes the object has the claim: a directory opened for one alone could not be listed.
struct Claim::Handle {
    Windows::NamedHandle object;
};

Claim::Claim(const std::string& directory)
    : m_handle(std::make_unique<Handle>())
{
    const std::string name = claim_name(directory);
    if (name.empty())
        return;
    m_handle->object = Windows::open_named_mutex(name);
    if (m_handle->object.existed)
        m_handle->object.handle = {}; // else the claim would outlive its owner
}

Claim::~Claim() = default;

bool Claim::granted() const { return !m_handle->object.existed; }

} // namespace Tavro::Platform
