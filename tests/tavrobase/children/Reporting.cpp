// SPDX-License-Identifier: Apache-2.0
// Writes down what it was given, in files of the directory that VORTIK_REPORT names: a child whose
// streams lead nowhere has no other way to tell. The file "done" comes last.
#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include <dirent.h>
#include <fcntl.h>
#include <unistd.h>

namespace {

void write_report(const std::string& name, const std::string& text)
{
    const char* directory = std::getenv("VORTIK_REPORT");
    if (directory == nullptr)
        std::exit(90);
    std::ofstream(std::string(directory) + "/" + name, std::ios::binary) << text;
}

std::string arguments(int argc, char** argv)
{
    std::string text;
    for (int i = 0; i < argc; ++i)
        text += std::to_string(i) + ":[" + argv[i] + "]\n";
    return text;
}

std::string descriptors()
{
    std::vector<int> open;
    DIR* directory = ::opendir("/proc/self/fd");
    if (directory == nullptr)
        return "unknown\n";
    while (const dirent* entry = ::readdir(directory)) {
        const int fd = std::atoi(static_cast<const char*>(entry->d_name));
        if (entry->d_name[0] != '.' && fd != ::dirfd(directory))
            open.push_back(fd);
    }
    std::sort(open.begin(), open.end());
    std::string text;
    for (const int fd : open) {
        const int mode = ::fcntl(fd, F_GETFL) & O_ACCMODE;
        const auto link = "/proc/self/fd/" + std::to_string(fd);
        text += std::to_string(fd) + " " + std::filesystem::read_symlink(link).string()
            + (mode == O_RDONLY        ? " read\n"
                    : mode == O_WRONLY ? " write\n"
                                       : " both\n");
    }
    ::closedir(directory);
    return text;
}

std::string blocked_signals()
{
    sigset_t blocked;
    ::sigemptyset(&blocked);
    ::sigprocmask(SIG_BLOCK, nullptr, &blocked);
    std::string text;
    for (int number = 1; number <= SIGRTMAX; ++number) {
        if (::sigismember(&blocked, number) == 1)
            text += std::to_string(number) + "\n";
    }
    return text.empty() ? "none\n" : text;
}

std::string input()
{
    std::string text;
    char byte = 0;
    while (::read(STDIN_FILENO, &byte, 1) == 1)
        text += byte;
    return text + "<end>\n";
}

} // namespace

int main(int argc, char** argv)
{
    const std::string open = descriptors(); // before anything of ours is open
    const char* value = std::getenv("VORTIK_VALUE");
    write_report("descriptors", open);
    write_report("arguments", arguments(argc, argv));
    write_report("signals", blocked_signals());
    write_report("directory", std::filesystem::current_path().string() + "\n");
    write_report("environment", std::string(value == nullptr ? "<none>" : value) + "\n");
    write_report("input", input());
    write_report("done", "");
    return 0;
}
