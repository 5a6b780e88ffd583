#include "replay/session.h"

#include <filesystem>

#include "core/text.h"
#include "replay/sim_table.h"

namespace replay {

using namespace tracking;

namespace {

platform::LocalTime StartOf(const sim::Scenario& s) { return s.start; }

}  // namespace

Session::Session(const sim::Scenario& scenario, std::string programFolder)
    : Scenario(scenario),
      ProgramFolder(std::move(programFolder)),
      Clock(StartOf(scenario)),
      Desktop(scenario.screenWidth, scenario.screenHeight),
      Game(Desktop, Clock, Scenario, RenderedTable()),
      App(Desktop.Roles(), Clock, core::Folders{ProgramFolder, "Work"}, Readers),
      Readers(App.Cap, App.Titles, Desktop),
      Timer(Clock, App) {
    Desktop.SetExecutableFolder(ProgramFolder);
    Desktop.SetAnsiCodePage(scenario.codepage);
    App.CheckArchive = false;  // a simulated session may well run from a temporary folder
}

Session::~Session() { Timer.Stop(); }

bool Session::WriteProgramFiles(std::string& error) {
    std::error_code ec;
    std::filesystem::create_directories(core::PathFromUtf8(ProgramFolder), ec);
    if (ec) {
        error = "cannot create the folder " + ProgramFolder + ": " + ec.message();
        return false;
    }
    const int cp = Scenario.codepage;
    if (!core::WriteTextFile(core::JoinPath(ProgramFolder, core::kSettingsFile), Scenario.settings, cp)) {
        error = "cannot write " + core::JoinPath(ProgramFolder, core::kSettingsFile);
        return false;
    }
    if (!Scenario.alertFile.empty() &&
        !core::WriteTextFile(core::JoinPath(ProgramFolder, core::kAlertFileDefault), Scenario.alertFile, cp)) {
        error = "cannot write " + core::JoinPath(ProgramFolder, core::kAlertFileDefault);
        return false;
    }
    return true;
}

bool Session::Start(bool openSubWindows) {
    if (!App.Form_Load()) return false;
    Game.Start(openSubWindows);
    Timer.Start();
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
        if (App.Ended) return false;
        if (Game.Game().Events().size() != events) {
            events = Game.Game().Events().size();
            progressAt = Clock.Elapsed();
        } else if (!GameFinished() && Clock.Elapsed() - progressAt > kStallMs) {
            return false;
        }
        if (GameFinished()) {
            if (finishedAt == 0) finishedAt = Clock.Elapsed();
            if (App.FiledCount >= DealsPlayed() && !App.InHandCapture) {
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

core::Json FiledDealJson(int deal, const FiledDeal& d) {
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
    return j;
}

core::Json GameOverJson(const scoring::ScoreRows::Row& score) {
    core::Json j = core::Json::Object();
    j.Set("gameOver", true);
    core::Json s = core::Json::Array();
    for (int v : score) s.Push(v);
    j.Set("score", s);
    return j;
}

}  // namespace replay
