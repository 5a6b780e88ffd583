#include "core/startup.h"

#include <algorithm>
#include <filesystem>
#include <system_error>

#include "core/player_files.h"
#include "core/text.h"
#include "platform/clock.h"
#include "platform/system_info.h"

namespace core {

namespace {

#ifdef _WIN32
constexpr const char* kPathSep = "\\";
#else
constexpr const char* kPathSep = "/";
#endif

}  // namespace

std::string StartupScreen::Text() const {
    std::string out;
    for (std::size_t i = 0; i < Lines.size(); ++i) {
        if (i + 1 == Lines.size() && Lines[i].empty()) break;
        if (i) out += '\n';
        out += Lines[i];
    }
    return out;
}

std::string ChooseJapaneseFont(const std::function<bool(const std::string&)>& systemHasFont) {
    if (!systemHasFont) return {};
    if (systemHasFont(kFontMeiryo)) return kFontMeiryo;
    if (systemHasFont(kFontMsPGothic)) return kFontMsPGothic;
    return {};
}

bool IsArchiveOrSystemFolder(const std::string& folder) {
    const std::string up = UCase(folder);
    for (const char* marker : {".ZIP", "TMP", "TEMP", "WINDOWS"})
        if (Contains(up, marker)) return true;
    return false;
}

bool chkZIP(StartupContext& ctx, const std::string& programFolder, bool testFlag) {
    const std::string folder = testFlag ? std::string("WINDOWS\\TEMP") : programFolder;
    if (!IsArchiveOrSystemFolder(folder)) return true;
    StartupScreen& s = ctx.Screen;
    if (!ctx.JapaneseFont.empty()) {
        s.TextFont = ctx.JapaneseFont;
        s.Print(" ZIP の中では実行できません。");
        s.NewLine();
        s.Print(std::string(kExeName) + " を ZIP から抜き出して実行して下さい。");
        s.NewLine();
    } else {
        s.Print(std::string("  UnZip ") + kZipName + " before starting");
        s.NewLine();
        s.Print(std::string("  ") + kExeName + ".");
    }
    s.NewLine();
    s.NewLine();
    s.Print("  App.Path = " + programFolder);
    s.DeleteAllVisible = false;
    FatalStop(ctx);
    return false;
}

bool chkPrevInstance(StartupContext& ctx) {
    if (!ctx.System.PrevInstance()) return true;
    StartupScreen& s = ctx.Screen;
    if (ctx.Japanese) s.Print(std::string("  ") + kExeName + " を２重に起動しようとしています。");
    else s.Print(std::string("  You are going to start ") + kExeName + " again.");
    s.NewLine();
    FatalStop(ctx);
    return false;
}

bool TestOSjp(int codePage) {
    return ByteRoundTrip(codePage, 129) != 129 && ByteRoundTrip(codePage, 193) == 193 &&
           ByteRoundTrip(codePage, 225) != 225;
}

bool TestOSjp(platform::SystemInfo& system) { return TestOSjp(system.AnsiCodePage()); }

void AbsentINIfile(StartupScreen& s, const std::string& programFolder) {
    s.Print("  Initialization file ");
    if (static_cast<double>(Len(programFolder)) > 0.8 * s.WidthChars) {
        s.Print(programFolder + kPathSep + kSettingsFile);
        s.NewLine();
        s.Print("  is not found.");
    } else {
        s.Print(programFolder);
        s.NewLine();
        s.Print(std::string("  ") + kPathSep + kSettingsFile + "  is not found.");
    }
    s.NewLine();
    s.Print(std::string("  ") + kExeName + " is running with standard setting.");
    s.NewLine();
}

void IllegalKeyword(StartupContext& ctx, const SettingsReadResult& result) {
    ctx.Screen.Print("  " + result.IllegalKey + "=" + result.IllegalValue + "   Illegal Keyword!");
    FatalStop(ctx);
}

void EnsureFolder(const std::string& path) {
    std::string p = path;
    if (!p.empty() && (p.back() == '\\' || p.back() == '/')) p.pop_back();
    if (p.empty()) return;
    p = JoinPath("", p);  // "\" is a separator in the names the program uses
    const std::filesystem::path fp = PathFromUtf8(p);
    std::error_code ec;
    if (std::filesystem::is_directory(fp, ec)) return;
    std::filesystem::create_directories(fp, ec);
}

void FatalStop(StartupContext& ctx) {
    StartupScreen& s = ctx.Screen;
    s.DeleteAllEnabled = false;
    if (ctx.Japanese) {
        s.EndFont = ctx.JapaneseFont;
        s.EndCaption = "終了";
    }
    s.EndIsCancel = true;
    s.OtherControlsVisible = false;
    s.DeleteAllVisible = false;
    s.EndVisible = true;
    s.NewLine();
    s.NewLine();
    s.Print(ctx.Japanese ? "  終了 (ESC) ボタンを押して終了して下さい。" : "  Click END (or ESC) and terminate job.");
    s.NewLine();
    s.NewLine();
    s.Print("  Waiting . . .");
    s.NewLine();
    const std::uint32_t start = ctx.Clock.TickCount();
    while (!s.EndRequested) {
        const std::uint32_t waited = ctx.Clock.TickCount() - start;
        if (waited > kFatalStopWaitMs) break;
        ctx.Clock.Wait(std::min(kFatalStopPollMs, kFatalStopWaitMs + 1 - waited));
    }
    s.Ended = true;
}

StartupOutcome RunStartupChecks(StartupContext& ctx, const Folders& folders, bool checkArchive) {
    StartupOutcome out;
    if (checkArchive && !chkZIP(ctx, folders.ProgramFolder)) return out;
    const int codePage = ctx.System.AnsiCodePage();
    out.Settings = LoadSettings(folders, codePage, false);
    Settings& s = out.Settings.Values;
    const bool systemJapanese = TestOSjp(codePage);
    // Messages before the post-read rules follow the settings, but never in
    // a script the system cannot show.
    ctx.Japanese = s.JPN && systemJapanese;
    if (out.Settings.Result.Illegal) {
        IllegalKeyword(ctx, out.Settings.Result);
        return out;
    }
    if (!chkPrevInstance(ctx)) return out;
    ApplyPostReadRules(s, systemJapanese);
    ctx.Japanese = s.JPN;
    if (out.Settings.FileName.empty()) AbsentINIfile(ctx.Screen, folders.ProgramFolder);
    EnsureFolder(folders.WorkFolder());
    // Only now: a second instance must not delete what the running one writes.
    for (const std::string& folder : {folders.ProgramFolder, folders.WorkFolder()})
        for (std::string& p : RemoveLeftoverTempFiles(folder)) out.RemovedTempFiles.push_back(std::move(p));
    out.Continue = true;
    return out;
}

}  // namespace core
