// The settings and alert files a simulated session starts from, written into
// its program folder before start-up.
#pragma once

#include <string>
#include <vector>

#include "core/save_result.h"
#include "sim/scenario.h"

namespace replay {

struct ProgramFiles {
    bool Ok = false;            // the folder exists and nothing failed
    std::string Error;          // why not
    std::vector<core::SaveResult> Saves;  // files written
    std::vector<std::string> Kept;        // files already there, left as they were
};

// Creates the folder and writes the scenario's settings lines (TarvelloS.INI)
// and its alert lines (Alert.TXT, when it has any) in its code page. A file
// the player already has under either name, in any letter case, is kept:
// a built-in copy never replaces the player's own.
ProgramFiles WriteProgramFiles(const sim::Scenario& scenario, const std::string& programFolder);

}  // namespace replay
