// The JSON Lines that replay and the demo print: one per filed deal, one per
// finished game. Each says whether every player file of it was saved, and
// names the files that were not, with the reason.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "core/json.h"
#include "core/save_result.h"
#include "replay/actions.h"
#include "tracking/companion.h"

namespace replay {


// "saved": true, or false with "failed": [{"file", "reason"}]; "setAside"
// lists the copies of unreadable files kept before they were replaced.
void AddSaves(core::Json& line, const std::vector<core::SaveResult>& saves);

core::Json FiledDealJson(int deal, const tracking::FiledDeal& d, const std::vector<core::SaveResult>& saves = {});
// The score, and the rating read after the game: "rating", "ratingRecorded"
// (a history line was written) and "ratingNote" (why or why not).
core::Json GameOverJson(const tracking::GameOver& g);

// One per action pressed: {"action": "actions[0] openRecord", "shown":
// the record the main window shows, "files": the file box's entries,
// "error": the error window's text when it is shown}.
core::Json ActionJson(const Action& a, const tracking::Companion& app);

// Remembers every failed save of a run, each file once, to name them at the
// end, less those a later retry wrote.
class LostSaves {
public:
    void Add(const std::vector<core::SaveResult>& saves);
    // Saves of kept deals written later: each written one takes back one
    // loss of its file.
    void Recovered(const std::vector<core::SaveResult>& retried);
    bool Any() const { return !lost_.empty(); }
    // One line per file: "<path> was not saved[ (n times)]: <reason>".
    std::vector<std::string> Lines() const;

private:
    std::vector<std::pair<core::SaveResult, int>> lost_;
};

}  // namespace replay
