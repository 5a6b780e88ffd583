// The console tool's arguments: any words give options, help or a usage
// error of one line, never a crash or an exception out of the parser.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "app/args.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < 1 || size > 2048) return 0;
    // First byte picks the command, the rest are words separated by NUL.
    app::Args args;
    std::string word;
    for (std::size_t i = 1; i < size; ++i) {
        if (data[i] == 0) {
            args.push_back(word);
            word.clear();
        } else {
            word += static_cast<char>(data[i]);
        }
    }
    args.push_back(word);
    app::ArgsOutcome o;
    static const char* kKinds[] = {"table", "lasthand", "lasttrick", "score"};
    switch (data[0] % 7) {
        case 0: { app::SettingsArgs a; o = app::ParseSettingsArgs(args, a); break; }
        case 1: { app::ReplayArgs a; o = app::ParseReplayArgs(args, a); break; }
        case 2: {
            app::DemoArgs a;
            o = app::ParseDemoArgs(args, a);
            if (o.GoOn() && (a.Deals > 1000 || a.Seed > 4294967295LL || (a.Deals != -1 && a.Deals < 1))) std::abort();
            break;
        }
        default: { app::ReadArgs a; o = app::ParseReadArgs(kKinds[data[0] % 7 - 3], args, a); break; }
    }
    if (o.Exit != -1 && o.Exit != 0 && o.Exit != 2) std::abort();
    if (o.Exit == 2 && o.Text.find('\n') != std::string::npos) std::abort();
    return 0;
}
