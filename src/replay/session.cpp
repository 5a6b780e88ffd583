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
}

Session::~Session() { Timer.Stop(); }

bool Session::Start(bool openSubWindows, bool ownTimer) {
    if (!App.Start()) return false;
    Game.Start(openSubWindows);
    if (ownTimer) Timer.Start();
    return true;
}

int Session::DealsPlayed() const {
    int n = 0;
    for (const auto& e : Game.Game().Events())
        if (e.kind == sim::EventKind::ScoreLineAdded) ++n;
    return n;
}

int Session::GamesPlayed() const {
    int n = 0;
    for (const auto& e : Game.Game().Events())
        if (e.kind == sim::EventKind::GameOver) ++n;
    return n;
}

bool Session::Run(std::uint64_t limitMs) {
    const std::uint64_t start = Clock.Elapsed();
    std::uint64_t finishedAt = 0, progressAt = start;
    std::size_t events = Game.Game().Events().size();
    while (limitMs == 0 || Clock.Elapsed() - start < limitMs) {
        if (App.Ended()) return false;
        if (Game.Game().Events().size() != events) {
            events = Game.Game().Events().size();
            progressAt = Clock.Elapsed();
        } else if (!GameFinished() && Clock.Elapsed() - progressAt > kStallMs) {
            return false;
        }
        if (GameFinished()) {
            if (finishedAt == 0) finishedAt = Clock.Elapsed();
            if (App.FiledCount() >= DealsPlayed() && !App.Busy()) {
                Clock.Wait(1000);
                return true;
            }
            // The last capture comes a few seconds after the last score line.
            if (Clock.Elapsed() - finishedAt > kGraceMs) return false;
        }
        Clock.Wait(1000);
    }
    return false;
}

}  // namespace replay
