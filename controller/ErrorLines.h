// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

/// Puts one line on the error stream at once, so that a line of another thread cannot stand in it.
void say_error(const std::string& line);

/// The same behind the words that begin every error of the controller.
void report_error(const std::string& text);
