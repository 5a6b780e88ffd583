#include "app/args.h"

#include <algorithm>
#include <cstdio>

#include <CLI/CLI.hpp>

namespace app {

namespace {

// The site languages of the title table; rows 4 and 10 have no site.
const CLI::Validator kSiteLanguage =
    CLI::IsMember({1, 2, 3, 5, 6, 7, 8, 9}).description("1, 2, 3, 5, 6, 7, 8 or 9");

ArgsOutcome Parse(CLI::App& app, const Args& args) {
    // CLI11 takes the arguments last first.
    std::vector<std::string> reversed(args.rbegin(), args.rend());
    // Options are "--name" everywhere; a leading "/" is a path (under Wine
    // every Unix path starts with one), never an option.
    app.allow_windows_style_options(false);
    try {
        app.parse(reversed);
    } catch (const CLI::CallForHelp&) {
        return {0, app.help()};
    } catch (const CLI::ParseError& e) {
        std::string what = e.what();
        std::replace(what.begin(), what.end(), '\n', ' ');
        return {2, app.get_name() + ": " + what + " (see --help)"};
    }
    return {};
}

}  // namespace

ArgsOutcome ParseSettingsArgs(const Args& args, SettingsArgs& out) {
    CLI::App app{"What start-up would make of the settings file of a program folder, as one JSON object.",
                 "tarvellos-cli settings"};
    app.add_option("--home", out.Home, "program folder (default: the executable's folder)");
    app.add_option("--codepage", out.CodePage, "the system's ANSI code page (default: by the locale)");
    return Parse(app, args);
}

ArgsOutcome ParseReadArgs(const std::string& kind, const Args& args, ReadArgs& out) {
    CLI::App app{"Reads a stored image (PNG or BMP) of a game window and prints what the readers found as JSON.",
                 "tarvellos-cli read " + kind};
    app.add_option("IMAGE", out.Image, "the stored image")->required();
    if (kind == "table" || kind == "lasthand")
        app.add_option("--lang", out.Lang, "site language of the game")->check(kSiteLanguage);
    if (kind == "table") {
        app.add_flag("--dnilpass", out.DnilPass, "the table passes double Nil bids");
        app.add_option("--annotate", out.Annotate, "write a copy of the image with what was found marked");
    }
    return Parse(app, args);
}

ArgsOutcome ParseReplayArgs(const Args& args, ReplayArgs& out) {
    CLI::App app{"Follows a simulated session in virtual time; JSON Lines on stdout.", "tarvellos-cli replay"};
    app.add_option("SCENARIO", out.Scenario, "scenario file (JSON)")->required();
    app.add_option("--out", out.Out, "program folder of the session; files the player has there are kept")
        ->required();
    return Parse(app, args);
}

ArgsOutcome ParseDemoArgs(const Args& args, DemoArgs& out) {
    CLI::App app{"Follows a simulated game in virtual time and tells, deal by deal, what the companion read and filed.",
                 "tarvellos-cli demo"};
    bool human = false, json = false;
    auto* h = app.add_flag("--human", human, "a summary per deal (the default on a terminal)");
    app.add_flag("--json", json, "one JSON object per line")->excludes(h);
    app.add_option("--home", out.Home,
                   "program folder; files the player has there are kept (default: a new folder of its own)");
    app.add_option("--seed", out.Seed, "seed of the simulated game")->check(CLI::Range(0LL, 4294967295LL));
    app.add_option("--deals", out.Deals, "number of deals")->check(CLI::Range(1LL, 1000LL));
    app.add_option("--games", out.Games, "play until this many games are over")->check(CLI::Range(1LL, 100LL));
    app.add_flag("--same-ratings", out.SameRatings, "the ratings do not change after a game");
    ArgsOutcome o = Parse(app, args);
    if (human) out.Human = 1;
    if (json) out.Human = 0;
    return o;
}

ArgsOutcome ParseWatchArgs(const Args& args, WatchArgs& out) {
    CLI::App app{"Follows the game on this desktop in real time and files what the companion files, without windows "
                 "of its own.",
                 "tarvellos-cli watch"};
    app.add_option("--home", out.Home, "program folder (default: the executable's folder)");
    app.add_option("--deals", out.Deals, "stop after this many filed deals")->check(CLI::Range(1LL, 100000LL));
    app.add_option("--timeout", out.Timeout, "stop after this many seconds")->check(CLI::Range(0.1, 1e7));
    app.add_flag("--json", out.Json, "one JSON object per filed deal and per game end, as replay prints");
    return Parse(app, args);
}

int Finish(const ArgsOutcome& o) {
    if (o.Exit == 0) std::fputs(o.Text.c_str(), stdout);
    else std::fprintf(stderr, "%s\n", o.Text.c_str());
    return o.Exit;
}

}  // namespace app
