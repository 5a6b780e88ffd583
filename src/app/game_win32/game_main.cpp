// tarvellos-game (Windows): the simulated Spades game as real windows, for
// trying the companion on a real desktop and for the end-to-end tests.
#include <CLI/CLI.hpp>

#include <cstdio>
#include <string>

#include "app/game_win32/game_windows.h"
#include "core/text.h"
#include "replay/demo_scenario.h"
#include "sim/scenario.h"

int main(int argc, char** argv) {
    CLI::App app{"Shows a simulated Spades game as real windows: the table window, \"Last Trick\", \"Last Hand\" "
                 "and the score window, which repaint as the game goes on and react to clicks on their buttons.",
                 "tarvellos-game"};
    std::string scenarioFile;
    long long seed = -1;
    double speed = 1.0;
    auto* scenarioOpt = app.add_option("--scenario", scenarioFile, "scenario file (JSON) of the game to play");
    app.add_option("--seed", seed, "play the built-in table with random deals from this seed")
        ->check(CLI::NonNegativeNumber)
        ->excludes(scenarioOpt);
    app.add_option("--speed", speed, "game seconds per real second (default 1)")->check(CLI::Range(0.01, 1000.0));
    // A leading "/" is a path (under Wine every Unix path has one), never an option.
    app.allow_windows_style_options(false);
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& e) {
        // Help is a success; any other parse error is a usage error (2), as
        // for the console tool.
        const int code = app.exit(e);
        return code == 0 ? 0 : 2;
    }

    sim::Scenario scenario;
    std::string error;
    if (!scenarioFile.empty()) {
        std::string text;
        if (!core::IsFile(scenarioFile) || !core::ReadFileBytes(scenarioFile, text)) {
            std::fprintf(stderr, "tarvellos-game: cannot read %s (not a readable file)\n", scenarioFile.c_str());
            return 1;
        }
        if (!sim::ParseScenario(text, scenario, error)) {
            std::fprintf(stderr, "tarvellos-game: %s: %s\n", scenarioFile.c_str(), error.c_str());
            return 1;
        }
    } else if (!replay::DemoScenario(scenario, error, seed)) {
        std::fprintf(stderr, "tarvellos-game: built-in scenario: %s\n", error.c_str());
        return 1;
    }
    game_win32::GameWindows game(scenario, speed);
    return game.Run();
}
