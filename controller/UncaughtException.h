// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

/// From now on an exception that nobody catches says its words, and the file in work, on the error
/// stream before it ends the process. The completion file keeps what it held.
void report_uncaught_exceptions();

/// Names the file that the main thread works on, for the report of an exception that carries no
/// name. One within another hides it until its own end.
class FileInWork {
public:
    explicit FileInWork(std::string file);
    ~FileInWork();
    FileInWork(const FileInWork&) = delete;
    FileInWork& operator=(const FileInWork&) = delete;
    FileInWork(FileInWork&&) = delete;
    FileInWork& operator=(FileInWork&&) = delete;

private:
    std::string m_file;
    const std::string* m_outer;
};
