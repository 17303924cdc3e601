// SPDX-License-Identifier: Apache-2.0
#include "controller/ErrorLines.h"

#include <iostream>

void say_error(const std::string& line) { std::cerr << line + '\n' << std::flush; }

void report_error(const std::string& text) { say_error("CONTROLLER ERROR: " + text); }
