// tarvellos-cli settings [--home DIR] [--codepage N]: what start-up would
// make of the settings file of a program folder, as one JSON object.
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <system_error>

#ifdef _WIN32
#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>
#endif

#include "app/cli_commands.h"
#include "core/folders.h"
#include "core/json.h"
#include "core/settings.h"
#include "core/text.h"

namespace app {

namespace {

int UsageError(const std::string& message) {
    std::fprintf(stderr, "tarvellos-cli settings: %s (see --help)\n", message.c_str());
    return 2;
}

std::string ExecutableFolder() {
    std::error_code ec;
#ifdef _WIN32
    wchar_t buf[32768];
    const DWORD n = GetModuleFileNameW(nullptr, buf, 32768);
    if (n == 0 || n >= 32768) return ".";
    return core::PathToUtf8(std::filesystem::path(std::wstring(buf, n)).parent_path());
#else
    const std::filesystem::path exe = std::filesystem::read_symlink("/proc/self/exe", ec);
    if (ec) return ".";
    return core::PathToUtf8(exe.parent_path());
#endif
}

// The system's ANSI code page as a console run sees it: Japanese when the
// locale's language is, Western otherwise.
int LocaleCodePage() {
    for (const char* var : {"LC_ALL", "LC_CTYPE", "LANG"}) {
        const char* v = std::getenv(var);
        if (v && *v) return core::StartsWith(v, "ja") ? core::kCodePageJapanese : core::kCodePageWestern;
    }
    return core::kCodePageWestern;
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
    if (!homeGiven) home = ExecutableFolder();
    std::error_code ec;
    if (!std::filesystem::is_directory(core::PathFromUtf8(home), ec))
        return UsageError("no such folder '" + home + "'");
    if (!codePageGiven) codePage = LocaleCodePage();
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
