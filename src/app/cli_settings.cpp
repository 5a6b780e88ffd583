// tarvellos-cli settings [--home DIR] [--codepage N]: what start-up would
// make of the settings file of a program folder, as one JSON object.
#include <cstdio>
#include <filesystem>
#include <string>
#include <system_error>

#include "app/cli_commands.h"
#include "core/folders.h"
#include "core/json.h"
#include "core/settings.h"
#include "core/text.h"
#include "platform/system_info.h"

namespace app {

namespace {

int UsageError(const std::string& message) {
    std::fprintf(stderr, "tarvellos-cli settings: %s (see --help)\n", message.c_str());
    return 2;
}

bool ParseCodePage(const std::string& text, int& codePage) {
    if (text.empty() || text.size() > 6) return false;
    for (char c : text)
        if (c < '0' || c > '9') return false;
    codePage = std::stoi(text);
    return codePage > 0;
}

}  // namespace

int RunSettings(const Args& args) {
    SettingsArgs a;
    const ArgsOutcome parsed = ParseSettingsArgs(args, a);
    if (!parsed.GoOn()) return Finish(parsed);
    std::string home = a.Home;
    const bool homeGiven = !home.empty();
    int codePage = 0;
    const bool codePageGiven = !a.CodePage.empty();
    if (codePageGiven && !ParseCodePage(a.CodePage, codePage))
        return UsageError("--codepage needs a code page number, not '" + a.CodePage + "'");
    platform::HostSystemInfo host;
    if (!homeGiven) home = core::FoldersFor("", host).ProgramFolder;
    std::error_code ec;
    if (!std::filesystem::is_directory(core::PathFromUtf8(home), ec))
        return UsageError("no such folder '" + home + "'");
    if (!codePageGiven) codePage = host.AnsiCodePage();
    if (!core::IsCodePageSupported(codePage))
        return UsageError("code page " + std::to_string(codePage) + " is not supported here");

    core::Folders folders;
    folders.ProgramFolder = home;
    const core::SettingsLoad load = core::LoadSettings(folders, codePage);

    core::Json out = core::Json::Object();
    out.Set("file", load.FileName.empty() ? core::Json(nullptr) : core::Json(load.FileName));
    if (load.Result.Illegal) {
        core::Json illegal = core::Json::Object();
        illegal.Set("key", load.Result.IllegalKey);
        illegal.Set("value", load.Result.IllegalValue);
        out.Set("illegal", illegal);
    } else {
        out.Set("illegal", core::Json(nullptr));
    }
    out.Set("settings", core::SettingsJson(load.Values));
    const std::string text = out.Dump() + "\n";
    std::fwrite(text.data(), 1, text.size(), stdout);
    return std::fflush(stdout) == 0 ? 0 : 1;
}

}  // namespace app
