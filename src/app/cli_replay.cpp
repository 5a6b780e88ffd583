// tarvellos-cli replay SCENARIO.json --out DIR: one simulated session in
// virtual time, JSON Lines on stdout (one per filed deal, one per game).
#include <cstdio>
#include <string>

#include "app/cli_commands.h"
#include "core/text.h"
#include "replay/json_lines.h"
#include "replay/program_files.h"
#include "replay/session.h"
#include "sim/scenario.h"

namespace app {

int RunReplay(const Args& args) {
    ReplayArgs a;
    const ArgsOutcome parsed = ParseReplayArgs(args, a);
    if (!parsed.GoOn()) return Finish(parsed);

    std::string text;
    if (!core::IsFile(a.Scenario) || !core::ReadFileBytes(a.Scenario, text)) {
        std::fprintf(stderr, "tarvellos-cli replay: cannot read %s (not a readable file)\n", a.Scenario.c_str());
        return 1;
    }
    sim::Scenario scenario;
    std::string error;
    if (!replay::ParseSessionScenario(text, scenario, error)) {
        std::fprintf(stderr, "tarvellos-cli replay: %s: %s\n", a.Scenario.c_str(), error.c_str());
        return 1;
    }

    // The player's own settings and alert files in DIR are kept: the session
    // then runs with them rather than the scenario's.
    const replay::ProgramFiles files = replay::WriteProgramFiles(scenario, a.Out);
    if (!files.Ok) {
        std::fprintf(stderr, "tarvellos-cli replay: %s\n", files.Error.c_str());
        return 1;
    }
    for (const std::string& kept : files.Kept)
        std::fprintf(stderr, "tarvellos-cli replay: kept the existing %s (the scenario's copy was not written)\n",
                     kept.c_str());

    replay::Session session(scenario, a.Out);
    replay::LostSaves lost;
    int deal = 0;
    session.Events.OnDealFiled = [&](const tracking::FiledDeal& d) {
        const auto saves = d.Saves;
        lost.Add(saves);
        lost.Recovered(d.Retried);
        std::printf("%s\n", replay::FiledDealJson(++deal, d, saves).Dump().c_str());
        std::fflush(stdout);
    };
    session.Events.OnGameOver = [&](const tracking::GameOver& g) {
        lost.Add(g.Saves);
        std::printf("%s\n", replay::GameOverJson(g).Dump().c_str());
        std::fflush(stdout);
    };
    session.OnAction = [&](const replay::Action& act) {
        std::printf("%s\n", replay::ActionJson(act, session.App).Dump().c_str());
        std::fflush(stdout);
    };
    if (!session.Start()) {
        std::string screen = session.App.StartupScreen().Text();
        for (char& c : screen)
            if (c == '\n') c = ' ';
        std::fprintf(stderr, "tarvellos-cli replay: the companion did not start: %s\n", screen.c_str());
        return 1;
    }
    const bool ended = session.Run();
    // What the error window showed, each message once with how often.
    for (std::size_t i = 0; i < session.App.ErrorLog().size();) {
        std::size_t j = i;
        while (j < session.App.ErrorLog().size() && session.App.ErrorLog()[j] == session.App.ErrorLog()[i]) ++j;
        std::string shown = session.App.ErrorLog()[i];
        for (char& c : shown)
            if (c == '\n' || c == '\r') c = ' ';
        std::fprintf(stderr, "error window: %s%s\n", shown.c_str(),
                     j - i > 1 ? (" (" + std::to_string(j - i) + " times)").c_str() : "");
        i = j;
    }
    for (const std::string& line : lost.Lines()) std::fprintf(stderr, "tarvellos-cli replay: %s\n", line.c_str());
    if (lost.Any()) return 1;
    if (!ended) {
        std::fprintf(stderr, "tarvellos-cli replay: the session did not run to its end: %d of %d deals filed\n",
                     session.App.FiledCount(), session.DealsPlayed());
        return 1;
    }
    return 0;
}

}  // namespace app
