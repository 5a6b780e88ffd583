// tarvellos-cli demo: the companion follows a simulated game of about twelve
// deals in virtual time and tells, deal by deal, what it read and filed.

#include <cerrno>
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
#include "sim/scenario.h"
#include "replay/demo_scenario.h"
#include "replay/json_lines.h"
#include "replay/program_files.h"
#include "replay/session.h"
#include "scoring/nil_history.h"

namespace app {

namespace {

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
}

}  // namespace

int RunDemo(const Args& args) {
    DemoArgs a;
    const ArgsOutcome parsed = ParseDemoArgs(args, a);
    if (!parsed.GoOn()) return Finish(parsed);
    const bool human = a.Human < 0 ? platform::OutputIsTerminal() : a.Human == 1;

    sim::Scenario scenario;
    std::string error;
    if (!sim::ParseScenario(replay::DemoScenarioJson(), scenario, error)) {
        std::fprintf(stderr, "tarvellos-cli demo: built-in scenario: %s\n", error.c_str());
        return 1;
    }
    if (a.Seed >= 0) scenario.game.seed = static_cast<std::uint32_t>(a.Seed);
    if (a.Deals > 0) scenario.game.randomDeals = static_cast<int>(a.Deals);
    std::string home = a.Home;
    if (home.empty()) home = replay::FreshFolder("tarvellos-demo", error);
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
        std::printf("Table Oak (host alice); you are me_player; %d deals; program folder %s\n",
                    scenario.game.randomDeals, home.c_str());
        for (const std::string& kept : files.Kept) std::printf("Your own %s is used as it is.\n", kept.c_str());
        std::printf("\n");
    }
    int k = 0;
    replay::LostSaves lost;
    session.Events.OnDealFiled = [&](const tracking::FiledDeal& d) {
        ++k;
        const auto saves = d.Saves;
        lost.Add(saves);
        if (human) PrintHumanDeal(k, d, work, saves);
        else std::printf("%s\n", replay::FiledDealJson(k, d, saves).Dump().c_str());
        std::fflush(stdout);
    };
    session.Events.OnGameOver = [&](const tracking::GameOver& g) {
        const auto& r = g.Score;
        const auto& saves = g.Saves;
        lost.Add(saves);
        if (human) {
            const int user = session.App.UserSeat();
            const int uc = (user % 2) * 2, oc = uc ^ 2;
            std::printf("\n  *** Game over: we %d, they %d — %s. ***\n", r[uc], r[oc], r[uc] > r[oc] ? "we won" : "they won");
            if (session.App.Rating()) {
                const auto& rating = *session.App.Rating();
                const std::string shown = core::Trim(rating.MyRating.Caption);
                if (g.RatingRecorded)
                    std::printf("  Rating %s recorded in %s\n\n", shown.c_str(), rating.LastSave.Path.c_str());
                else if (!rating.LastSave.Path.empty())
                    std::printf("  Rating %s NOT recorded: %s: %s\n\n", shown.c_str(), rating.LastSave.Path.c_str(),
                                rating.LastSave.Reason.c_str());
                else
                    std::printf("  Rating %s (not a game to record)\n\n", shown.c_str());
            }
        } else {
            std::printf("%s\n", replay::GameOverJson(r, saves).Dump().c_str());
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
            std::printf("  Rating history %s%s\n", session.App.Rating()->Options.HistoryPath.c_str(),
                        std::filesystem::exists(session.App.Rating()->Options.HistoryPath) ? "" : " (no game finished yet)");
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
