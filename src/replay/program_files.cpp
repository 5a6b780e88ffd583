#include "replay/program_files.h"

#include <filesystem>
#include <system_error>

#include "core/folders.h"
#include "core/settings.h"
#include "core/text.h"

namespace replay {

ProgramFiles WriteProgramFiles(const sim::Scenario& scenario, const std::string& programFolder) {
    ProgramFiles out;
    std::error_code ec;
    std::filesystem::create_directories(core::PathFromUtf8(programFolder), ec);
    if (ec) {
        out.Error = "cannot create the folder " + programFolder + ": " + ec.message();
        return out;
    }
    const int cp = scenario.codepage;
    const auto place = [&](std::initializer_list<const char*> names, const std::vector<std::string>& lines) {
        for (const char* name : names) {
            const std::string existing = core::FindFileNoCase(programFolder, name);
            if (!existing.empty()) {
                out.Kept.push_back(existing);
                return true;
            }
        }
        core::SaveResult r = core::WriteTextFile(core::JoinPath(programFolder, *names.begin()), lines, cp);
        out.Saves.push_back(r);
        if (!r) out.Error = "cannot write " + r.Path + ": " + r.Reason;
        return r.Saved;
    };
    if (!place({core::kSettingsFile, core::kSettingsFileJapanese}, scenario.settings)) return out;
    if (!scenario.alertFile.empty() && !place({core::kAlertFileDefault}, scenario.alertFile)) return out;
    out.Ok = true;
    return out;
}

}  // namespace replay
