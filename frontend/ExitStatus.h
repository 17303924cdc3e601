// SPDX-License-Identifier: Apache-2.0
#pragma once

namespace Frontend {

/// How `vortik` ends, for scripts and cluster jobs.
enum ExitStatus : int {
    kFinished = 0, ///< what was asked for is done
    kFailed = 1, ///< a run or a file failed
    kBadInput = 2, ///< command line or case; nothing has been changed
    kStopped = 3, ///< a run that was asked to stop has stopped
};

} // namespace Frontend
