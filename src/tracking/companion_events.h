// How the engine tells the world what changed. Every call has a do-nothing
// default, so a listener overrides only what it shows: the Qt bridge repaints
// and raises windows, the console tool prints JSON lines, tests record.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "core/save_result.h"
#include "scoring/rules.h"
#include "tracking/companion_models.h"

namespace tracking {

// One filed deal, as the replay reports it.
struct FiledDeal {
    std::string File;
    scoring::ScoreRows::Row ScoreRow{};
    std::array<std::string, 3> cTrk;
    std::array<std::string, 2> cPts, cBag, aPt;
    std::array<std::string, 4> Bids;   // by compass seat
    std::array<std::string, 4> Names;  // by compass seat
    std::array<int, 4> Tricks{};       // by compass seat
    int UserSeat = 0;
    // Every player file this deal wrote or failed to write (record, Nil
    // history), in the order written.
    std::vector<core::SaveResult> Saves;
    // Files of earlier deals, kept in memory after their save failed, that
    // were written (or failed again) before this deal's own.
    std::vector<core::SaveResult> Retried;
    // Deals still kept in memory for want of a save after this one.
    int Kept = 0;
    // Deals the game ended before this one that were never read (its score
    // window shows their lines), so never filed.
    int Missed = 0;
    // Rules of the game the readings broke (empty when they held); the deal
    // is filed all the same, with these shown as a warning.
    std::vector<std::string> Warnings;
};

// The end of a game: the last score line and what became of the rating.
struct GameOver {
    scoring::ScoreRows::Row Score{};
    std::string Rating;           // the rating read after the game ("" = none read)
    bool RatingRecorded = false;  // a history line was written
    std::string RatingNote;       // why it was or was not written ("recorded", "unchanged since ...")
    std::vector<core::SaveResult> Saves;
};

class CompanionEvents {
public:
    virtual ~CompanionEvents() = default;
    // Some view models changed: repaint what shows them.
    virtual void ModelsChanged() {}
    // A companion window is to be put on top of the others again.
    virtual void RaiseWindow(CompanionWindow) {}
    virtual void DealFiled(const FiledDeal&) {}
    virtual void GameEnded(const GameOver&) {}
    // A player of the alert list sits at the table.
    virtual void PlayerAlert(const std::string& /*name*/) {}
    // The error window shows a text.
    virtual void Error(const std::string& /*text*/) {}
    // A diagnostic line (the log file gets it too when one is named).
    virtual void Trace(const std::string& /*line*/) {}
    // The program ended (End, or a failed start-up check).
    virtual void Ended() {}
};

// Events delivered to plain callbacks, for tools and tests that want one or two.
class CallbackEvents final : public CompanionEvents {
public:
    std::function<void(const FiledDeal&)> OnDealFiled;
    std::function<void(const GameOver&)> OnGameOver;
    std::function<void(const std::string&)> OnError;
    std::function<void(const std::string&)> OnTrace;
    std::function<void()> OnModelsChanged;
    std::function<void(CompanionWindow)> OnRaiseWindow;

    void ModelsChanged() override {
        if (OnModelsChanged) OnModelsChanged();
    }
    void RaiseWindow(CompanionWindow w) override {
        if (OnRaiseWindow) OnRaiseWindow(w);
    }
    void DealFiled(const FiledDeal& d) override {
        if (OnDealFiled) OnDealFiled(d);
    }
    void GameEnded(const GameOver& g) override {
        if (OnGameOver) OnGameOver(g);
    }
    void Error(const std::string& t) override {
        if (OnError) OnError(t);
    }
    void Trace(const std::string& l) override {
        if (OnTrace) OnTrace(l);
    }
};

}  // namespace tracking
