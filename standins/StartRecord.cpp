// SPDX-License-Identifier: Apache-2.0
#include "standins/StartRecord.h"

#include "standins/Refusal.h"

#include <fstream>

namespace Standins {

namespace {

// Bytes above 127 stay as they are: a path is bytes, and most are UTF-8.
std::string quoted(const std::string& text)
{
    static constexpr char kDigits[] = "0123456789abcdef";
    std::string json = "\"";
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        if (c == '"' || c == '\\') {
            json += '\\';
            json += c;
        } else if (byte < 0x20) {
            json += "\\u00";
            json += kDigits[byte >> 4U];
            json += kDigits[byte & 15U];
        } else {
            json += c;
        }
    }
    return json + '"';
}

} // namespace

std::string start_line(const Start& start)
{
    std::string line = "{\"program\":" + quoted(start.m_strProgram)
        + ",\"name\":" + quoted(start.m_strName) + ",\"directory\":" + quoted(start.m_strDirectory)
        + ",\"arguments\":[";
    const char* between = "";
    for (const std::string& word : start.m_vecWords) {
        line += between + quoted(word);
        between = ",";
    }
    return line + "]}\n";
}

void record_start(const std::string& file, const Start& start)
{
    const std::string line = start_line(start);
    std::ofstream record;
    record.rdbuf()->pubsetbuf(nullptr, 0); // a buffer could cut the line in two
    record.open(file, std::ios::binary | std::ios::app);
    record.write(line.data(), static_cast<std::streamsize>(line.size()));
    if (!record)
        throw Refusal("VORTIK_STANDIN_RECORD: " + file + ": cannot be written");
}

unsigned int recorded_starts(const std::string& file, const std::string& program)
{
    const std::string head = R"({"program":")" + program;
    std::ifstream record(file, std::ios::binary);
    unsigned int count = 0;
    for (std::string line; std::getline(record, line);)
        if (line.starts_with(head + "\"") || line.starts_with(head + "-omp\""))
            ++count;
    return count;
}

} // namespace Standins
