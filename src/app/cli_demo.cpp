// tarvellos-cli demo: the companion follows a simulated game of about twelve
// deals in virtual time and tells, deal by deal, what it read and filed.

#include <cstdio>
#include <filesystem>
#include <optional>
#include <string>

#include "app/cli_commands.h"
#include "core/notation.h"
#include "core/text.h"
#include "platform/console.h"
#include "platform/system_info.h"
#include "sim/scenario.h"
#include "replay/session.h"

namespace app {

namespace {

constexpr const char* kDemoScenario = R"JSON({
  "start": "2026-03-05T21:00:00", "language": 1, "screen": [1280, 1024],
  "table": {"name": "Oak", "host": "alice", "dnilPass": false, "suicide": false},
  "settings": ["MyYahooID = me_player", "BidTrickCounter = (*,0),(*,0)", "AlertNilBids = yes"],
  "alertFile": ["righty_two(Staller),"],
  "players": ["me_player", "lefty_one", "partner_x", "righty_two"],
  "ratings": ["1534", "1620", "1480", "1701"],
  "watchers": [["kibitz_a", "1500"]],
  "deals": 12, "seed": 2})JSON";

// A plain decimal number within [lo, hi]; anything else is refused rather
// than quietly replaced by the default.
bool WholeNumber(const std::string& s, long long lo, long long hi, long long& out) {
    if (s.empty() || s.size() > 10 || s.find_first_not_of("0123456789") != std::string::npos) return false;
    out = std::stoll(s);
    return out >= lo && out <= hi;
}

int DemoUsage(const char* why = nullptr) {
    if (why) std::fprintf(stderr, "tarvellos-cli demo: %s\n", why);
    std::fputs(
        "usage: tarvellos-cli demo [--human | --json] [--home DIR] [--seed N] [--deals N]\n"
        "  follows a simulated game in virtual time; --human (the default on a terminal)\n"
        "  prints a summary per deal, --json one JSON object per line\n",
        stderr);
    return 2;
}

std::string DefaultHome() {
    platform::HostSystemInfo host;
    if (const std::optional<std::string> exe = host.ExecutableFolder())
        return core::PathToUtf8(core::PathFromUtf8(*exe) / "demo-home");
    return (std::filesystem::temp_directory_path() / "tarvellos-demo-home").string();
}

std::string Side(int we, int they) { return std::to_string(we) + " / " + std::to_string(they); }

void PrintHumanDeal(int k, const tracking::FiledDeal& d, const std::string& workFolder) {
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
    std::printf("  Filed        %s\n", core::JoinPath(workFolder, d.File + ".spd").c_str());
}

}  // namespace

int RunDemo(const Args& args) {
    bool human = platform::OutputIsTerminal();
    std::string home;
    long long seed = -1, deals = -1;
    for (std::size_t i = 0; i < args.size(); ++i) {
        const std::string& a = args[i];
        if (a == "--human") human = true;
        else if (a == "--json") human = false;
        else if (a == "--home" && i + 1 < args.size()) home = args[++i];
        else if (a == "--seed" && i + 1 < args.size()) {
            if (!WholeNumber(args[++i], 0, 4294967295LL, seed)) return DemoUsage("--seed needs a number from 0 to 4294967295");
        } else if (a == "--deals" && i + 1 < args.size()) {
            if (!WholeNumber(args[++i], 1, 1000, deals)) return DemoUsage("--deals needs a number from 1 to 1000");
        }
        else if (a == "--help" || a == "-h") return DemoUsage(), 0;
        else return DemoUsage();
    }
    const bool ownHome = home.empty();
    if (ownHome) home = DefaultHome();

    sim::Scenario scenario;
    std::string error;
    if (!sim::ParseScenario(kDemoScenario, scenario, error)) {
        std::fprintf(stderr, "tarvellos-cli demo: built-in scenario: %s\n", error.c_str());
        return 1;
    }
    if (seed >= 0) scenario.game.seed = static_cast<std::uint32_t>(seed);
    if (deals > 0) scenario.game.randomDeals = static_cast<int>(deals);
    if (ownHome) {
        // The demo's own folder starts empty each time, so its file names
        // start again at 001.
        std::error_code ec;
        std::filesystem::remove_all(home, ec);
    }

    replay::Session session(scenario, home);
    if (!session.WriteProgramFiles(error)) {
        std::fprintf(stderr, "tarvellos-cli demo: %s\n", error.c_str());
        return 1;
    }
    const std::string work = session.App.Folders().WorkFolder();
    if (human) {
        std::printf("TarvelloS demo: the companion follows a simulated Spades table in virtual time.\n");
        std::printf("Table Oak (host alice); you are me_player; %d deals; program folder %s\n\n",
                    scenario.game.randomDeals, home.c_str());
    }
    int k = 0;
    session.App.OnDealFiled = [&](const tracking::FiledDeal& d) {
        ++k;
        if (human) PrintHumanDeal(k, d, work);
        else std::printf("%s\n", replay::FiledDealJson(k, d).Dump().c_str());
        std::fflush(stdout);
    };
    session.App.OnGameOver = [&](const scoring::ScoreRows::Row& r) {
        if (human) {
            const int user = session.App.UserSeat();
            const int uc = (user % 2) * 2, oc = uc ^ 2;
            std::printf("\n  *** Game over: we %d, they %d — %s. ***\n", r[uc], r[oc], r[uc] > r[oc] ? "we won" : "they won");
            if (session.App.Rating)
                std::printf("  Rating %s recorded in %s\n\n", core::Trim(session.App.Rating->MyRating.Caption).c_str(),
                            session.App.Rating->Options.HistoryPath.c_str());
        } else {
            std::printf("%s\n", replay::GameOverJson(r).Dump().c_str());
        }
        std::fflush(stdout);
    };
    if (!session.Start()) {
        std::fprintf(stderr, "tarvellos-cli demo: the companion did not start:\n%s\n", session.App.Screen.Text().c_str());
        return 1;
    }
    const bool ended = session.Run();
    if (human) {
        std::printf("\nAfter %d deals (%.0f minutes of game time, replayed in virtual time):\n", k,
                    static_cast<double>(session.Clock.Elapsed()) / 60000.0);
        std::printf("  Record files   %s (%d files in the file box)\n", work.c_str(), session.App.filBox.Count());
        const std::string nil = core::JoinPath(work, scoring::NilReportName(false));
        std::printf("  Nil history    %s%s\n", nil.c_str(), std::filesystem::exists(nil) ? "" : " (no Nil bid by your side yet)");
        if (session.App.Rating)
            std::printf("  Rating history %s%s\n", session.App.Rating->Options.HistoryPath.c_str(),
                        std::filesystem::exists(session.App.Rating->Options.HistoryPath) ? "" : " (no game finished yet)");
        if (session.App.Alerts && !session.App.Alerts->View.AlertName.Caption.empty())
            std::printf("  Alert label    %s\n", session.App.Alerts->View.AlertName.Caption.c_str());
        for (const std::string& e : session.App.ErrorLog) std::printf("  Error window   %s\n", e.c_str());
    }
    if (!ended) {
        std::fprintf(stderr, "tarvellos-cli demo: the session did not run to its end (%d of %d deals filed)\n", k,
                     session.DealsPlayed());
        return 1;
    }
    return 0;
}

}  // namespace app
