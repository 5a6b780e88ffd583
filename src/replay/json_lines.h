// The JSON Lines that replay and the demo print: one per filed deal, one per
// finished game. Each says whether every player file of it was saved, and
// names the files that were not, with the reason.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "core/json.h"
#include "core/save_result.h"
#include "tracking/companion.h"

namespace replay {


// "saved": true, or false with "failed": [{"file", "reason"}]; "setAside"
// lists the copies of unreadable files kept before they were replaced.
void AddSaves(core::Json& line, const std::vector<core::SaveResult>& saves);

core::Json FiledDealJson(int deal, const tracking::FiledDeal& d, const std::vector<core::SaveResult>& saves = {});
core::Json GameOverJson(const scoring::ScoreRows::Row& score, const std::vector<core::SaveResult>& saves = {});

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
