// SPDX-License-Identifier: Apache-2.0
// Does what its arguments say: "exit N", "kill N", "print OUT ERR", "nul", "flood N", "errors-first
// N", "echo", "silent-exit N", "leave-grandchild DIR", "wait-for FILE".
#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <thread>

#include <unistd.h>

namespace {

void write_all(int fd, const std::string& bytes)
{
    for (std::size_t done = 0; done < bytes.size();) {
        const auto count = ::write(fd, bytes.data() + done, bytes.size() - done);
        if (count < 0)
            std::exit(91);
        done += static_cast<std::size_t>(count);
    }
}

std::string letters(char first, std::size_t from, std::size_t count)
{
    std::string text(count, ' ');
    for (std::size_t i = 0; i < count; ++i)
        text[i] = static_cast<char>(first + static_cast<char>((from + i) % 26));
    return text;
}

void flood(std::size_t size)
{
    constexpr std::size_t kBlock = 10000; // no multiple of anything that a pipe likes
    for (std::size_t done = 0; done < size; done += kBlock) {
        const std::size_t count = std::min(kBlock, size - done);
        write_all(STDOUT_FILENO, letters('a', done, count));
        write_all(STDERR_FILENO, letters('A', done, count));
    }
}

void echo()
{
    char byte = 0;
    for (;;) {
        const auto count = ::read(STDIN_FILENO, &byte, 1);
        if (count < 0)
            write_all(STDOUT_FILENO, "<closed>");
        if (count <= 0)
            return;
        write_all(STDOUT_FILENO, std::string(1, byte));
    }
}

bool wait_for(const std::string& path)
{
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(30);
    while (!std::filesystem::exists(path)) {
        if (std::chrono::steady_clock::now() > deadline)
            return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    }
    return true;
}

void leave_grandchild(const std::string& directory)
{
    if (::fork() == 0) {
        const bool released = wait_for(directory + "/release");
        std::ofstream(directory + (released ? "/released" : "/gave-up")) << "";
        ::_exit(0);
    }
    write_all(STDOUT_FILENO, "from the child");
}

} // namespace

int main(int argc, char** argv)
{
    const std::string act = argc > 1 ? argv[1] : "";
    const std::string first = argc > 2 ? argv[2] : "";
    const std::string second = argc > 3 ? argv[3] : "";
    if (act == "exit")
        return std::atoi(first.c_str());
    if (act == "kill") {
        (void)::raise(std::atoi(first.c_str())); // shows in the status that the parent sees
    } else if (act == "print") {
        write_all(STDOUT_FILENO, first);
        write_all(STDERR_FILENO, second);
    } else if (act == "nul") {
        write_all(STDOUT_FILENO, std::string("a\0b\0", 4));
        write_all(STDERR_FILENO, std::string("\0e", 2));
    } else if (act == "flood") {
        flood(std::stoul(first));
    } else if (act == "errors-first") {
        write_all(STDERR_FILENO, letters('A', 0, std::stoul(first)));
        write_all(STDOUT_FILENO, letters('a', 0, std::stoul(first)));
    } else if (act == "echo") {
        echo();
    } else if (act == "silent-exit") {
        ::close(STDOUT_FILENO);
        ::close(STDERR_FILENO);
        return std::atoi(first.c_str());
    } else if (act == "leave-grandchild") {
        leave_grandchild(first);
    } else if (act == "wait-for") {
        return wait_for(first) ? 0 : 92;
    } else {
        return 93;
    }
    return 0;
}
