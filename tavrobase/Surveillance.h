// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "tavrobase/platform/Claim.h"
#include "tavrobase/platform/ProcessWatch.h"
#include "tavrobase/platform/Terminal.h"

/// A person at a terminal and programs that run by themselves, for folders that use the system
/// through the base library alone.
namespace Tavro {

using Platform::child_end;
using Platform::ChildEnd;
using Platform::Claim;
using Platform::Command;
using Platform::end_process;
using Platform::error_text;
using Platform::executable_path;
using Platform::open_missing_standard_streams;
using Platform::output_is_abandoned;
using Platform::output_is_terminal;
using Platform::process_mark;
using Platform::program_file;
using Platform::programs_of_group;
using Platform::RunningProgram;
using Platform::start_apart;
using Platform::StartedChild;
using Platform::terminal_columns;
using Platform::typed_word;
using Platform::UserSignals;

} // namespace Tavro
