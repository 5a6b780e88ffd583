// The console tool's arguments, command by command: what each accepts, with
// --help for free. Parsing only; the commands check values that need the
// system (files, code pages).
#pragma once

#include <string>
#include <vector>

namespace app {

using Args = std::vector<std::string>;

// What parsing decided: go on (Exit < 0), or end now with Exit (0 after help,
// 2 for a usage error) having printed Text (help on stdout, the error as one
// line on stderr).
struct ArgsOutcome {
    int Exit = -1;
    std::string Text;
    bool GoOn() const { return Exit < 0; }
};

struct SettingsArgs {
    std::string Home;
    std::string CodePage;  // as given; "" = the system's
};
struct ReadArgs {
    std::string Image;
    int Lang = 1;
    bool DnilPass = false;     // table only
    std::string Annotate;      // table only
};
struct ReplayArgs {
    std::string Scenario, Out;
};
struct DemoArgs {
    int Human = -1;  // -1 = by the terminal, 0 = --json, 1 = --human
    std::string Home;
    long long Seed = -1, Deals = -1, Games = -1;
    bool SameRatings = false;  // the player list shows the same ratings after every game
};

// `program` is the name shown in messages ("tarvellos-cli demo").
ArgsOutcome ParseSettingsArgs(const Args& args, SettingsArgs& out);
// kind: table, lasthand, lasttrick or score.
ArgsOutcome ParseReadArgs(const std::string& kind, const Args& args, ReadArgs& out);
ArgsOutcome ParseReplayArgs(const Args& args, ReplayArgs& out);
ArgsOutcome ParseDemoArgs(const Args& args, DemoArgs& out);

// Prints the outcome's text where it belongs; returns its exit code.
int Finish(const ArgsOutcome& o);

}  // namespace app
