// tarvellos-cli demo: the companion follows a simulated game of about twelve
// deals in virtual time and tells, deal by deal, what it read and filed.

#include <array>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "app/cli_commands.h"
#include "core/notation.h"
#include "core/text.h"
#include "platform/console.h"
#include "platform/system_info.h"
#include "platform/temp_folder.h"
#include "sim/scenario.h"
#include "replay/demo_scenario.h"
#include "replay/json_lines.h"
#include "replay/program_files.h"
#include "replay/session.h"
#include "scoring/nil_history.h"

namespace app {

namespace {

// A new folder of the demo's own under the system's temporary folder, so a
// player's files are never touched; kept after the run to be looked at.
std::string FreshHome(std::string& error) {
    std::string why;
    const std::optional<std::string> home = platform::MakeFreshTempFolder("tarvellos-demo", why);
    if (!home) error = "cannot create a folder for the demo: " + why;
    return home.value_or("");
}

std::string Side(int we, int they) { return std::to_string(we) + " / " + std::to_string(they); }

void PrintHumanDeal(int k, const tracking::FiledDeal& d, const std::string& workFolder,
                    const std::vector<core::SaveResult>& saves) {
    const int user = d.UserSeat;
    std::printf("Deal %d\n", k);
    std::printf("  Bids read   ");
    for (int s = 0; s < 4; ++s)
        std::printf(" %s (%s) %s%s", d.Names[s].c_str(), core::SeatLetter(s).c_str(),
                    d.Bids[s].empty() ? "-" : d.Bids[s].c_str(), s == user ? " *" : "");
    std::printf("\n  Tricks      ");
    for (int s = 0; s < 4; ++s) std::printf(" %s %d", core::SeatLetter(s).c_str(), d.Tricks[s]);
    const int weTricks = d.Tricks[user % 2] + d.Tricks[user % 2 + 2];
    std::printf("   (we %d, they %d)\n", weTricks, 13 - weTricks);
    const auto& r = d.ScoreRow;
    const int uc = (user % 2) * 2, oc = uc ^ 2;
    std::printf("  Score line   we %d (%d bags), they %d (%d bags)   [N/S %d, %d  E/W %d, %d]\n", r[uc], r[uc + 1],
                r[oc], r[oc + 1], r[0], r[1], r[2], r[3]);
    std::printf("  Counter      tricks %s-%s of %s, points %s, status \"%s\" / \"%s\", if all made %s / %s\n",
                d.cTrk[0].c_str(), d.cTrk[1].c_str(), d.cTrk[2].c_str(), Side(core::ValInt(d.cPts[0]), core::ValInt(d.cPts[1])).c_str(),
                core::Trim(d.cBag[0]).c_str(), core::Trim(d.cBag[1]).c_str(), d.aPt[0].c_str(), d.aPt[1].c_str());
    if (d.File.empty()) std::printf("  Filed        NOT written\n");
    else std::printf("  Filed        %s\n", core::JoinPath(workFolder, d.File + ".spd").c_str());
    for (const auto& s : saves)
        if (!s.Saved) std::printf("  NOT SAVED    %s: %s\n", s.Path.c_str(), s.Reason.c_str());
    for (const auto& s : saves)
        if (!s.SetAside.empty()) std::printf("  Kept aside   %s (it could not be read)\n", s.SetAside.c_str());
    for (const auto& s : d.Retried)
        std::printf("  %s %s (kept from an earlier deal)\n", s.Saved ? "Saved now   " : "Still unsaved", s.Path.c_str());
    if (d.Kept > 0) std::printf("  Kept         %d deal(s) in memory until they can be saved\n", d.Kept);
    for (const auto& w : d.Warnings) std::printf("  WARNING      the reading breaks a rule: %s\n", w.c_str());
}

}  // namespace

int RunDemo(const Args& args) {
    DemoArgs a;
    const ArgsOutcome parsed = ParseDemoArgs(args, a);
    if (!parsed.GoOn()) return Finish(parsed);
    const bool human = a.Human < 0 ? platform::OutputIsTerminal() : a.Human == 1;

    sim::Scenario scenario;
    std::string error;
    if (!replay::DemoScenario(scenario, error, a.Seed, a.Deals)) {
        std::fprintf(stderr, "tarvellos-cli demo: built-in scenario: %s\n", error.c_str());
        return 1;
    }
    if (a.Games > 0) {
        // Whole games are played to their end unless a deal count is given too.
        scenario.game.games = static_cast<int>(a.Games);
        if (a.Deals <= 0) scenario.game.randomDeals = 0;
    }
    if (a.SameRatings) {
        std::array<std::string, 4> now;
        for (int s = 0; s < 4; ++s) now[static_cast<std::size_t>(s)] = scenario.game.players[static_cast<std::size_t>(s)].rating;
        scenario.game.ratingsAfterGame.assign(100, now);
    }
    std::string home = a.Home;
    if (home.empty()) home = FreshHome(error);
    if (home.empty()) {
        std::fprintf(stderr, "tarvellos-cli demo: %s\n", error.c_str());
        return 1;
    }

    // With --home the player's own settings and alert list stay as they are;
    // the built-in ones only fill in what is missing.
    const replay::ProgramFiles files = replay::WriteProgramFiles(scenario, home);
    if (!files.Ok) {
        std::fprintf(stderr, "tarvellos-cli demo: %s\n", files.Error.c_str());
        return 1;
    }
    replay::Session session(scenario, home);
    const std::string work = session.App.Folders().WorkFolder();
    if (human) {
        std::printf("TarvelloS demo: the companion follows a simulated Spades table in virtual time.\n");
        const std::string length = scenario.game.games > 0 ? std::to_string(scenario.game.games) + " games"
                                                           : std::to_string(scenario.game.randomDeals) + " deals";
        std::printf("Table Oak (host alice); you are me_player; %s; program folder %s\n", length.c_str(), home.c_str());
        for (const std::string& kept : files.Kept) std::printf("Your own %s is used as it is.\n", kept.c_str());
        std::printf("\n");
    }
    int k = 0;
    replay::LostSaves lost;
    session.Events.OnDealFiled = [&](const tracking::FiledDeal& d) {
        ++k;
        const auto saves = d.Saves;
        lost.Add(saves);
        lost.Recovered(d.Retried);
        if (human) PrintHumanDeal(k, d, work, saves);
        else std::printf("%s\n", replay::FiledDealJson(k, d, saves).Dump().c_str());
        std::fflush(stdout);
    };
    int ratingLines = 0;
    session.Events.OnGameOver = [&](const tracking::GameOver& g) {
        const auto& r = g.Score;
        lost.Add(g.Saves);
        if (g.RatingRecorded) ++ratingLines;
        if (human) {
            const int user = session.App.UserSeat();
            const int uc = (user % 2) * 2, oc = uc ^ 2;
            std::printf("\n  *** Game over: we %d, they %d — %s. ***\n", r[uc], r[oc], r[uc] > r[oc] ? "we won" : "they won");
            if (session.App.Rating()) {
                const auto& rating = *session.App.Rating();
                const std::string shown = core::Trim(g.Rating);
                if (g.RatingRecorded)
                    std::printf("  Rating %s recorded in %s\n\n", shown.c_str(), rating.LastSave.Path.c_str());
                else if (!rating.LastSave.Path.empty() && !rating.LastSave.Saved)
                    std::printf("  Rating %s NOT recorded: %s: %s\n\n", shown.c_str(), rating.LastSave.Path.c_str(),
                                rating.LastSave.Reason.c_str());
                else
                    std::printf("  Rating %s not recorded: %s\n\n", shown.empty() ? "-" : shown.c_str(), g.RatingNote.c_str());
            }
        } else {
            std::printf("%s\n", replay::GameOverJson(g).Dump().c_str());
        }
        std::fflush(stdout);
    };
    if (!session.Start()) {
        std::string screen = session.App.StartupScreen().Text();
        for (char& c : screen)
            if (c == '\n') c = ' ';
        std::fprintf(stderr, "tarvellos-cli demo: the companion did not start: %s\n", screen.c_str());
        return 1;
    }
    const bool ended = session.Run();
    if (human) {
        std::printf("\nAfter %d deals (%.0f minutes of game time, replayed in virtual time):\n", k,
                    static_cast<double>(session.Clock.Elapsed()) / 60000.0);
        std::printf("  Record files   %s (%d files in the file box)\n", work.c_str(), session.App.Models().filBox.Count());
        const std::string nil = core::JoinPath(work, scoring::NilReportName(false));
        std::printf("  Nil history    %s%s\n", nil.c_str(), std::filesystem::exists(nil) ? "" : " (no Nil bid by your side yet)");
        if (session.App.Rating())
            std::printf("  Rating history %s (%d line%s written in this run)\n", session.App.Rating()->Options.HistoryPath.c_str(),
                        ratingLines, ratingLines == 1 ? "" : "s");
        if (session.App.Alerts() && !session.App.Alerts()->View.AlertName.Caption.empty())
            std::printf("  Alert label    %s\n", session.App.Alerts()->View.AlertName.Caption.c_str());
        for (const std::string& e : session.App.ErrorLog()) std::printf("  Error window   %s\n", e.c_str());
    }
    // Every file that was not saved is named, and the run counts as failed.
    for (const std::string& line : lost.Lines()) std::fprintf(stderr, "tarvellos-cli demo: %s\n", line.c_str());
    if (lost.Any()) return 1;
    if (!ended) {
        std::fprintf(stderr, "tarvellos-cli demo: the session did not run to its end (%d of %d deals filed)\n", k,
                     session.DealsPlayed());
        return 1;
    }
    return 0;
}

}  // namespace app
