#include "replay/session.h"

#include <filesystem>

#include "core/text.h"
#include "replay/sim_table.h"

namespace replay {

using namespace tracking;

namespace {

platform::LocalTime StartOf(const sim::Scenario& s) { return s.start; }

}  // namespace

Session::Session(const sim::Scenario& scenario, std::string programFolder, tracking::CompanionEvents* listener)
    : Scenario(scenario),
      ProgramFolder(std::move(programFolder)),
      Clock(StartOf(scenario)),
      Desktop(scenario.screenWidth, scenario.screenHeight),
      Game(Desktop, Clock, Scenario, RenderedTable()),
      Screen(Desktop.Roles(), Clock),
      App(Desktop.Roles(), Clock, core::Folders{ProgramFolder, "Work"}, Screen, listener ? *listener : Events),
      Timer(Clock, App) {
    Desktop.SetExecutableFolder(ProgramFolder);
    Desktop.SetAnsiCodePage(scenario.codepage);
    App.SetArchiveCheck(false);  // a simulated session may well run from a temporary folder
    startTick_ = Clock.TickCount();
    if (!CompileActions(Scenario, actions_, actionsError_)) actions_.clear();
}

void Session::ScheduleActions() {
    for (std::size_t i = 0; i < actions_.size(); ++i) {
        (void)Clock.Schedule(startTick_ + actions_[i].AfterMs, [this, i] {
            const Action& a = actions_[i];
            endPressed_ = endPressed_ || a.Ends;
            a.Press(App);
            ++pressed_;
            if (OnAction) OnAction(a);
        });
    }
}

Session::~Session() { Timer.Stop(); }

bool Session::Start(bool openSubWindows, bool ownTimer) {
    if (!App.Start()) return false;
    Game.Start(openSubWindows);
    if (ownTimer) Timer.Start();
    ScheduleActions();
    return true;
}

int Session::DealsPlayed() const { return Game.Game().EventCount(sim::EventKind::ScoreLineAdded); }

int Session::GamesPlayed() const { return Game.Game().EventCount(sim::EventKind::GameOver); }

bool Session::Run(std::uint64_t limitMs) {
    const std::uint64_t start = Clock.Elapsed();
    std::uint64_t finishedAt = 0, progressAt = start;
    std::size_t events = Game.Game().EventCount();
    while (limitMs == 0 || Clock.Elapsed() - start < limitMs) {
        // The player's "End" is a normal end of the session.
        if (App.Ended()) return endPressed_;
        const bool actionsLeft = pressed_ < actions_.size();
        if (Game.Game().EventCount() != events) {
            events = Game.Game().EventCount();
            progressAt = Clock.Elapsed();
        } else if (!GameFinished() && Clock.Elapsed() - progressAt > kStallMs) {
            return false;
        }
        if (GameFinished()) {
            if (finishedAt == 0) finishedAt = Clock.Elapsed();
            if (App.FiledCount() >= DealsPlayed() && !App.Busy() && !actionsLeft) {
                Clock.Wait(1000);
                return true;
            }
            // The last capture comes a few seconds after the last score line;
            // the player may still press something after that.
            if (actionsLeft) finishedAt = Clock.Elapsed();
            if (Clock.Elapsed() - finishedAt > kGraceMs) return false;
        }
        Clock.Wait(1000);
    }
    return false;
}

}  // namespace replay
