// SPDX-License-Identifier: Apache-2.0
//
// A process of the user that carries out requests, one a line, and answers each with one line in
// the file that its argument names. Records are filled with one letter; in answers "a56" means 56
// times "a", and "" no bytes. A buffer that was not written holds "?". A key "#N" is N times "k",
// "-" the empty one.

#include "links/LinkManager.h"
#include "tests/links/support/Inspector.h"

#include <algorithm>
#include <cstdint>
#include <fstream>
#include <functional>
#include <iostream>
#include <map>
#include <sstream>
#include <string>
#include <vector>

namespace {

using Tavro::LinkManager;
using Inspector = Tavro::LinkManagerInspector;

// "a56", or "a1 b55" and so on.
std::string runs(const std::string& bytes)
{
    std::string text;
    for (std::size_t begin = 0; begin < bytes.size();) {
        const auto end = std::min(bytes.find_first_not_of(bytes[begin], begin), bytes.size());
        text += (text.empty() ? "" : " ")
            + (bytes[begin] == '\0' ? std::string("0x") : std::string(1, bytes[begin]))
            + std::to_string(end - begin);
        begin = end;
    }
    return text;
}

std::string key_of(const std::string& token)
{
    if (token == "-")
        return "";
    return token[0] == '#' ? std::string(std::stoul(token.substr(1)), 'k') : token;
}

struct Request {
    std::istringstream words;

    std::string word()
    {
        std::string text;
        words >> text;
        return text;
    }
    std::uint32_t id() { return static_cast<std::uint32_t>(std::stoul(word())); }
    std::uint64_t size() { return std::stoull(word()); }
    std::string record(std::uint64_t bytes) { return std::string(bytes, word()[0]); }
};

std::string text(int result) { return std::to_string(result); }

std::string create(Request& request)
{
    const auto size = request.size();
    std::string data = request.record(size);
    std::uint32_t id = 777;
    const auto result = LinkManager::CreateLink(size, data.data(), key_of(request.word()), id);
    return text(result) + " " + std::to_string(id);
}

std::string attach_key(Request& request)
{
    const std::string key = key_of(request.word());
    std::string data(request.size(), '?');
    std::uint32_t id = 777;
    const auto result = LinkManager::AttachToLink(key, id, data.size(), data.data());
    return text(result) + " " + std::to_string(id) + " " + runs(data);
}

std::string attach_id(Request& request)
{
    const auto id = request.id();
    std::string data(request.size(), '?');
    std::string key = "?";
    const auto result = LinkManager::AttachToLink(id, key, data.size(), data.data());
    return text(result) + " " + (key.size() > 60 ? runs(key) : key) + " " + runs(data);
}

std::string set(Request& request)
{
    const auto id = request.id();
    const auto size = request.size();
    return text(LinkManager::SetLinkData(id, size, request.record(size).data()));
}

std::string cas(Request& request)
{
    const auto id = request.id();
    const auto size = request.size();
    const std::string fresh = request.record(size);
    std::string old = request.record(size);
    const auto result = LinkManager::SetLinkDataIfUnchanged(id, size, fresh.data(), old.data());
    return text(result) + " " + runs(old);
}

/// Writes a link's record without end, whole records of one letter.
std::string storm(Request& request)
{
    const auto id = request.id();
    const auto size = request.size();
    for (char letter = 'a';; letter = letter == 'z' ? 'a' : static_cast<char>(letter + 1)) {
        const auto result = LinkManager::SetLinkData(id, size, std::string(size, letter).data());
        if (result != LinkManager::Success)
            return text(result);
    }
}

std::string get(Request& request)
{
    const auto id = request.id();
    std::string data(request.size(), '?');
    const auto result = LinkManager::GetLinkData(id, data.size(), data.data());
    return text(result) + " " + runs(data);
}

std::string startup(Request&) { return text(LinkManager::Startup()); }

std::string shutdown(Request&)
{
    LinkManager::Shutdown();
    return "done";
}

std::string detach(Request& request) { return text(LinkManager::DetachFromLink(request.id())); }

std::string take(Request&) { return text(LinkManager::TakeControl()); }

std::string release(Request&)
{
    LinkManager::ReleaseControl();
    return "done";
}

std::string check(Request&)
{
    if (LinkManager::TakeControl() != LinkManager::Success)
        return "no control";
    Inspector::ConsistencyCheck();
    LinkManager::ReleaseControl();
    return "done";
}

std::string managers(Request&) { return std::to_string(LinkManager::GetNumAttachedManagers()); }

std::string manager_info(Request&)
{
    std::vector<LinkManager::ManagerDebugInfo> found;
    std::string slots = text(LinkManager::GetManagerDebuInfo(found)) + " ";
    for (const auto& one : found)
        slots += one.m_bOccupied ? "1" : "0";
    return slots;
}

std::string link_info(Request&)
{
    std::vector<LinkManager::LinkDebugInfo> found;
    const auto result = LinkManager::GetLinkDebugInfo(found);
    std::string links = text(result) + " " + std::to_string(found.size());
    for (std::size_t id = 0; id < found.size(); ++id)
        if (found[id].m_nDataSize != 0 || found[id].m_nAttachments != 0)
            links += " " + std::to_string(id) + ":" + std::to_string(found[id].m_nAttachments) + ":"
                + std::to_string(found[id].m_nDataSize) + ":" + found[id].m_strKey;
    return links;
}

/// Of one manager and one link, in whole minutes.
std::string ages(Request& request)
{
    const auto slot = std::stoul(request.word());
    const auto id = std::stoul(request.word());
    std::vector<double> managers;
    std::vector<double> links;
    const auto result = LinkManager::GetHeartbeatAges(managers, links);
    std::string answer
        = text(result) + " " + std::to_string(managers.size()) + " " + std::to_string(links.size());
    if (slot < managers.size() && id < links.size())
        answer += " " + std::to_string(static_cast<long long>(managers[slot] / 60)) + " "
            + std::to_string(static_cast<long long>(links[id] / 60));
    return answer;
}

std::string slot(Request&) { return std::to_string(Inspector::slot()); }

std::string access(Request& request)
{
    const bool semaphore = request.word() == "1";
    LinkManager::PrintAccessInfo(semaphore, request.word() == "1");
    return "done";
}

const std::map<std::string, std::function<std::string(Request&)>> kRequests {
    { "startup", startup },
    { "shutdown", shutdown },
    { "create", create },
    { "attach_key", attach_key },
    { "attach_id", attach_id },
    { "detach", detach },
    { "set", set },
    { "cas", cas },
    { "get", get },
    { "storm", storm },
    { "take", take },
    { "release", release },
    { "check", check },
    { "managers", managers },
    { "manager_info", manager_info },
    { "link_info", link_info },
    { "ages", ages },
    { "slot", slot },
    { "access", access },
};

} // namespace

int main(int argc, char** argv)
{
    std::ofstream answers(argc > 1 ? argv[1] : "", std::ios::binary);
    for (std::string line; std::getline(std::cin, line) && line != "end";) {
        Request request { std::istringstream(line) };
        const auto found = kRequests.find(request.word());
        answers << (found == kRequests.end() ? "what?" : found->second(request)) << "\n"
                << std::flush;
        if (!answers)
            return 1;
    }
    return 0;
}
