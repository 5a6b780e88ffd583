#include "replay/json_lines.h"

#include "core/folders.h"
#include "core/notation.h"
#include "core/text.h"
#include "scoring/nil_history.h"

namespace replay {

void AddSaves(core::Json& line, const std::vector<core::SaveResult>& saves) {
    bool all = true;
    core::Json failed = core::Json::Array(), aside = core::Json::Array();
    for (const auto& s : saves) {
        if (!s.SetAside.empty()) aside.Push(s.SetAside);
        if (s.Saved) continue;
        all = false;
        core::Json f = core::Json::Object();
        f.Set("file", s.Path);
        f.Set("reason", s.Reason);
        failed.Push(f);
    }
    line.Set("saved", all);
    if (!all) line.Set("failed", failed);
    if (aside.Size() > 0) line.Set("setAside", aside);
}

core::Json FiledDealJson(int deal, const tracking::FiledDeal& d, const std::vector<core::SaveResult>& saves) {
    core::Json j = core::Json::Object();
    j.Set("deal", deal);
    j.Set("file", d.File);
    core::Json row = core::Json::Array();
    for (int v : d.ScoreRow) row.Push(v);
    j.Set("scoreRow", row);
    core::Json c = core::Json::Object();
    auto texts = [](const auto& arr) {
        core::Json a = core::Json::Array();
        for (const auto& t : arr) a.Push(t);
        return a;
    };
    c.Set("cTrk", texts(d.cTrk));
    c.Set("cPts", texts(d.cPts));
    c.Set("cBag", texts(d.cBag));
    c.Set("aPt", texts(d.aPt));
    j.Set("counter", c);
    j.Set("bids", texts(d.Bids));
    core::Json tr = core::Json::Array();
    for (int v : d.Tricks) tr.Push(v);
    j.Set("tricks", tr);
    j.Set("names", texts(d.Names));
    j.Set("userSeat", core::SeatLetter(d.UserSeat));
    AddSaves(j, saves.empty() ? d.Saves : saves);
    if (!d.Retried.empty()) {
        core::Json retried = core::Json::Array();
        for (const auto& r : d.Retried) {
            core::Json f = core::Json::Object();
            f.Set("file", r.Path);
            f.Set("saved", r.Saved);
            if (!r.Saved) f.Set("reason", r.Reason);
            retried.Push(f);
        }
        j.Set("retried", retried);
    }
    if (d.Kept > 0) j.Set("kept", d.Kept);
    if (d.Missed > 0) j.Set("missed", d.Missed);
    if (!d.Warnings.empty()) j.Set("warnings", texts(d.Warnings));
    return j;
}

core::Json GameOverJson(const tracking::GameOver& g) {
    core::Json j = core::Json::Object();
    j.Set("gameOver", true);
    core::Json s = core::Json::Array();
    for (int v : g.Score) s.Push(v);
    j.Set("score", s);
    j.Set("rating", core::Trim(g.Rating));
    j.Set("ratingRecorded", g.RatingRecorded);
    j.Set("ratingNote", g.RatingNote);
    AddSaves(j, g.Saves);
    return j;
}

core::Json ActionJson(const Action& a, const tracking::Companion& app) {
    core::Json j = core::Json::Object();
    j.Set("action", a.What);
    j.Set("shown", app.ShownRecordName());
    core::Json files = core::Json::Array();
    const auto& box = app.Models().filBox;
    for (const std::string& name : box.Entries) files.Push(name);
    j.Set("files", files);
    if (app.Models().frmErrMsg.Visible) j.Set("error", app.Models().frmErrMsg.Text);
    return j;
}

void LostSaves::Add(const std::vector<core::SaveResult>& saves) {
    for (const auto& s : saves) {
        if (s.Saved) continue;
        bool known = false;
        for (auto& l : lost_)
            if (l.first.Path == s.Path) {
                ++l.second;
                known = true;
            }
        if (!known) lost_.emplace_back(s, 1);
    }
}

void LostSaves::Recovered(const std::vector<core::SaveResult>& retried) {
    for (const auto& s : retried) {
        if (!s.Saved) continue;
        for (auto it = lost_.begin(); it != lost_.end(); ++it)
            if (it->first.Path == s.Path) {
                if (--it->second == 0) lost_.erase(it);
                break;
            }
    }
}

std::vector<std::string> LostSaves::Lines() const {
    std::vector<std::string> out;
    for (const auto& [s, n] : lost_)
        out.push_back(s.Path + " was not saved" + (n > 1 ? " (" + std::to_string(n) + " times)" : "") + ": " + s.Reason);
    return out;
}

}  // namespace replay
