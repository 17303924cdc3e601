// SPDX-License-Identifier: Apache-2.0
// Does what its arguments say: "exit N", "print OUT ERR", "nul", "flood N", "echo", "directory",
// "variable NAME", "sleep", "parent" (starts a sleeping child and sleeps), "claim DIR" (has it and
// sleeps), "missing FILE" (opens the standard streams that it lacks, uses all of them and tells
// FILE of it), "listen FILE" (tells FILE how often it has been interrupted, until that was twice),
// "press KEY PID" (presses "c" or "break" at the console of that process). Without any it prints
// its command line.
#include "tavrobase/platform/Claim.h"
#include "tavrobase/platform/Processes.h"
#include "tavrobase/platform/Terminal.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <string>

#include <windows.h>

namespace {

void put(DWORD stream, const std::string& bytes)
{
    DWORD written = 0;
    ::WriteFile(
        ::GetStdHandle(stream), bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr);
}

void out(const std::string& bytes) { put(STD_OUTPUT_HANDLE, bytes); }
void err(const std::string& bytes) { put(STD_ERROR_HANDLE, bytes); }

void flood(std::size_t size)
{
    for (std::size_t i = 0; i < size; i += 1000) {
        out(std::string(1000, static_cast<char>('a' + i / 1000 % 26)));
        err(std::string(1000, static_cast<char>('A' + i / 1000 % 26)));
    }
}

void echo()
{
    char byte = 0;
    DWORD got = 0;
    while (::ReadFile(::GetStdHandle(STD_INPUT_HANDLE), &byte, 1, &got, nullptr) != 0 && got == 1)
        out(std::string(1, byte));
}

void use_streams(const std::string& path)
{
    Tavro::Platform::open_missing_standard_streams();
    std::ofstream file(path, std::ios::binary);
    std::cout << "output" << std::flush;
    std::cerr << "error" << std::flush;
    file << "out " << (std::cout ? "good" : "bad") << ", err " << (std::cerr ? "good" : "bad");
    file << ", in " << (std::cin.get() == std::char_traits<char>::eof() ? "ended" : "going on");
    DWORD written = 0;
    const bool good
        = ::WriteFile(::GetStdHandle(STD_OUTPUT_HANDLE), "system", 6, &written, nullptr) != 0;
    file << ", system's out " << (good ? "good" : "bad");
    bool all = true;
    for (const DWORD stream : { STD_INPUT_HANDLE, STD_OUTPUT_HANDLE, STD_ERROR_HANDLE })
        all = all && ::GetFileType(::GetStdHandle(stream)) != FILE_TYPE_UNKNOWN;
    file << (all ? ", all there\n" : ", one missing\n");
}

void listen(const std::string& path)
{
    Tavro::Platform::UserSignals signals;
    for (unsigned told = 3; told != 2; signals.wait(10)) {
        if (told != signals.interrupts()) {
            told = signals.interrupts();
            std::ofstream(path) << told << (signals.hung_up() ? " and hung up" : "");
        }
    }
}

/// Gives the number of the call that failed, or 0. `ConsoleProcess` knows of the last.
int press(const std::string& key, DWORD process)
{
    ::FreeConsole(); // fails if there is none
    if (::AttachConsole(process) == 0)
        return 1;
    // The event goes to everybody at that console, who now includes us.
    if (::SetConsoleCtrlHandler([](DWORD) { return TRUE; }, TRUE) == 0)
        return 2;
    return ::GenerateConsoleCtrlEvent(key == "c" ? CTRL_C_EVENT : CTRL_BREAK_EVENT, 0) == 0 ? 3 : 0;
}

[[noreturn]] void sleep_on()
{
    ::Sleep(60'000);
    std::exit(94);
}

} // namespace

int main(int argc, char** argv)
{
    const std::string act = argc > 1 ? argv[1] : "";
    const std::string first = argc > 2 ? argv[2] : "";
    if (act == "exit")
        return std::atoi(first.c_str());
    if (act == "print") {
        out(first);
        err(argc > 3 ? argv[3] : "");
    } else if (act == "nul") {
        out(std::string("a\0b\0", 4));
        err(std::string("\0e", 2));
    } else if (act == "flood") {
        flood(std::stoul(first));
    } else if (act == "echo") {
        echo();
    } else if (act == "directory") {
        out(std::filesystem::current_path().generic_string());
    } else if (act == "variable") {
        const char* const value = std::getenv(first.c_str());
        out(value == nullptr ? "none" : value);
    } else if (act == "sleep") {
        sleep_on();
    } else if (act == "parent") {
        std::string own = Tavro::Platform::executable_path().value_or("");
        own.resize(own.size() - 4); // ".exe"
        (void)Tavro::Platform::start_child({ own, "", { "sleep" } });
        sleep_on();
    } else if (act == "claim") {
        const Tavro::Platform::Claim claim(first);
        std::ofstream(first + "/claimed") << claim.granted();
        sleep_on();
    } else if (act == "listen") {
        listen(first);
    } else if (act == "press") {
        return press(first, static_cast<DWORD>(std::stoul(argv[3])));
    } else if (act == "missing") {
        use_streams(first);
    } else {
        out(::GetCommandLineA());
    }
    return 0;
}
