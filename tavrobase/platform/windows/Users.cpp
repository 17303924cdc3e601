// SPDX-License-Identifier: Apache-2.0
#include "tavrobase/platform/Users.h"

// Before <windows.h>, which would bring an older form of the same.
#include <winsock2.h>

#include "tavrobase/platform/windows/SysError.h"

#include <array>

#include <shlobj.h>

namespace Tavro::Platform {

namespace {

std::optional<std::string> folder(int number)
{
    std::array<char, MAX_PATH + 1> path {};
    if (::SHGetFolderPathA(nullptr, number, nullptr, SHGFP_TYPE_CURRENT, path.data()) != S_OK)
        return std::nullopt;
    return path.data();
}

/// The system's network functions are there while one of these lives.
class Network {
public:
    Network()
        : m_error(::WSAStartup(MAKEWORD(2, 2), &m_data))
    {
    }
    ~Network()
    {
        if (m_error == 0)
            (void)::WSACleanup(); // what fails here has no use for us any more
    }
    Network(const Network&) = delete;
    Network& operator=(const Network&) = delete;
    Network(Network&&) = delete;
    Network& operator=(Network&&) = delete;

    [[nodiscard]] ErrorNumber error() const { return m_error; }

private:
    WSADATA m_data {};
    int m_error;
};

} // namespace

std::optional<std::string> user_name()
{
    std::array<char, 1001> name {};
    auto size = static_cast<DWORD>(name.size());
    if (::GetUserNameA(name.data(), &size) == 0)
        return std::nullopt;
    return name.data();
}

ErrorNumber host_name(std::string& name)
{
    const Network network;
    if (network.error() != 0)
        return network.error();
    std::array<char, 1001> buffer {}; // one more than is asked for stays zero
    if (::gethostname(buffer.data(), static_cast<int>(buffer.size() - 1)) != 0)
        return ::WSAGetLastError();
    name = buffer.data();
    return 0;
}

std::optional<std::string> home_directory() { return folder(CSIDL_PROFILE); }

std::optional<std::string> shared_documents_directory() { return folder(CSIDL_COMMON_DOCUMENTS); }

} // namespace Tavro::Platform
