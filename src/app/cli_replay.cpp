// tarvellos-cli replay SCENARIO.json --out DIR: one simulated session in
// virtual time, JSON Lines on stdout (one per filed deal, one per game).
#include <cstdio>
#include <fstream>
#include <sstream>
#include <string>

#include "app/cli_commands.h"
#include "sim/scenario.h"
#include "replay/session.h"

namespace app {

namespace {

int ReplayUsage() {
    std::fputs("usage: tarvellos-cli replay SCENARIO.json --out DIR\n", stderr);
    return 2;
}

}  // namespace

int RunReplay(const Args& args) {
    std::string scenarioPath, out;
    for (std::size_t i = 0; i < args.size(); ++i) {
        if (args[i] == "--out" && i + 1 < args.size()) {
            out = args[++i];
        } else if (args[i] == "--help" || args[i] == "-h") {
            ReplayUsage();
            return 0;
        } else if (!args[i].empty() && args[i][0] == '-') {
            std::fprintf(stderr, "tarvellos-cli replay: unknown option '%s'\n", args[i].c_str());
            return ReplayUsage();
        } else if (scenarioPath.empty()) {
            scenarioPath = args[i];
        } else {
            std::fprintf(stderr, "tarvellos-cli replay: unexpected argument '%s'\n", args[i].c_str());
            return ReplayUsage();
        }
    }
    if (scenarioPath.empty() || out.empty()) return ReplayUsage();

    std::ifstream in(scenarioPath, std::ios::binary);
    if (!in) {
        std::fprintf(stderr, "tarvellos-cli replay: cannot read %s\n", scenarioPath.c_str());
        return 1;
    }
    std::stringstream buf;
    buf << in.rdbuf();
    sim::Scenario scenario;
    std::string error;
    if (!sim::ParseScenario(buf.str(), scenario, error)) {
        std::fprintf(stderr, "tarvellos-cli replay: %s: %s\n", scenarioPath.c_str(), error.c_str());
        return 1;
    }

    replay::Session session(scenario, out);
    if (!session.WriteProgramFiles(error)) {
        std::fprintf(stderr, "tarvellos-cli replay: %s\n", error.c_str());
        return 1;
    }
    int deal = 0, unwritten = 0;
    session.Events.OnDealFiled = [&deal, &unwritten](const tracking::FiledDeal& d) {
        std::printf("%s\n", replay::FiledDealJson(++deal, d).Dump().c_str());
        std::fflush(stdout);
        if (d.File.empty()) ++unwritten;  // the record file could not be written
    };
    session.Events.OnGameOver = [](const tracking::GameOver& g) {
        std::printf("%s\n", replay::GameOverJson(g.Score).Dump().c_str());
        std::fflush(stdout);
    };
    if (!session.Start()) {
        std::fprintf(stderr, "tarvellos-cli replay: the companion did not start:\n%s\n", session.App.StartupScreen().Text().c_str());
        return 1;
    }
    const bool ended = session.Run();
    // What the error window showed, each message once with how often.
    for (std::size_t i = 0; i < session.App.ErrorLog().size();) {
        std::size_t j = i;
        while (j < session.App.ErrorLog().size() && session.App.ErrorLog()[j] == session.App.ErrorLog()[i]) ++j;
        std::fprintf(stderr, "error window: %s%s\n", session.App.ErrorLog()[i].c_str(),
                     j - i > 1 ? (" (" + std::to_string(j - i) + " times)").c_str() : "");
        i = j;
    }
    if (unwritten > 0) {
        std::fprintf(stderr, "tarvellos-cli replay: %d of %d record files could not be written in %s\n", unwritten, deal,
                     session.App.Folders().WorkFolder().c_str());
        return 1;
    }
    if (!ended) {
        std::fprintf(stderr, "tarvellos-cli replay: the session did not run to its end: %d of %d deals filed\n",
                     session.App.FiledCount(), session.DealsPlayed());
        return 1;
    }
    return 0;
}

}  // namespace app
