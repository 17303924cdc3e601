// SPDX-License-Identifier: Apache-2.0
#include "tests/controller/support/Gate.h"

#include "tests/support/Waiting.h"

#include <stdexcept>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace Testing {

void make_gate(const std::string& path)
{
    if (::mkfifo(path.c_str(), 0600) != 0)
        throw std::runtime_error("no pipe " + path);
}

bool let_reader_through(const std::string& path)
{
    int end = -1; // to be had when there is a reader
    const bool opened = wait_until([&] {
        end = ::open(path.c_str(), O_WRONLY | O_NONBLOCK);
        return end >= 0;
    });
    ::close(end);
    return opened;
}

std::shared_ptr<void> let_writer_through(const std::string& path)
{
    const int end = ::open(path.c_str(), O_RDONLY | O_NONBLOCK);
    if (end < 0)
        return {};
    return { new int(end), [](int* opened) {
                ::close(*opened);
                delete opened;
            } };
}

} // namespace Testing
