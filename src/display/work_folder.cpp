#include "display/work_folder.h"

#include <algorithm>
#include <filesystem>
#include <system_error>

#include "core/folders.h"
#include "core/text.h"
#include "display/deal_record.h"
#include "display/err_msg.h"
#include "display/file_box.h"

namespace display {

namespace fs = std::filesystem;

namespace {

bool IsDigit(const std::string& ch) { return ch.size() == 1 && ch[0] >= '0' && ch[0] <= '9'; }

// Files of the folder whose names end with `ext` (any case), UTF-8 names.
std::vector<std::string> FilesWithExt(const fs::path& folder, const std::string& ext) {
    std::vector<std::string> out;
    std::error_code ec;
    fs::directory_iterator it(folder, ec);
    for (; !ec && it != fs::directory_iterator(); it.increment(ec)) {
        std::error_code fec;
        if (!it->is_regular_file(fec)) continue;
        std::string name = core::PathToUtf8(it->path().filename());
        if (core::Len(name) > core::Len(ext) &&
            core::EqualNoCase(core::Right(name, static_cast<std::ptrdiff_t>(core::Len(ext))), ext))
            out.push_back(std::move(name));
    }
    std::sort(out.begin(), out.end());
    return out;
}

// Rough pixel width of a line in the dialog's 9-point font; wide characters
// take two cells.
int TextWidth(const std::string& line) {
    int cells = 0;
    for (std::size_t i = 1; i <= core::Len(line); ++i) cells += HasJapanese(core::Mid(line, static_cast<std::ptrdiff_t>(i), 1)) ? 2 : 1;
    return cells * 7;
}

}  // namespace

std::string RecordExtension(int tableMode) { return tableMode == TableModeBridge ? ".brg" : ".spd"; }

WorkScan ScanWorkFolder(const std::string& workFolder, const std::string& ext) {
    WorkScan scan;
    const fs::path folder = core::PathFromUtf8(workFolder);
    for (const std::string& file : FilesWithExt(folder, ext)) {
        const std::string upper = core::UCase(file);
        const std::size_t len = core::Len(file);
        if (core::Left(upper, 6) == "BAKBAK") {
            std::error_code ec;
            if (fs::remove(folder / core::PathFromUtf8(file), ec)) ++scan.Removed;
        } else if (core::Left(upper, 3) == "BAK" && len == 16 && IsDigit(core::Mid(file, 4, 1))) {
            if (scan.Backups.size() < MaxScanNames) scan.Backups.push_back(core::Mid(file, 4, 9));
        } else if (len == 13 && IsDigit(core::Left(file, 1))) {
            if (scan.Records.size() < MaxScanNames) scan.Records.push_back(core::Left(file, 9));
        }
    }
    return scan;
}

void PrepareDelWork(DelWorkDialog& dlg, const WorkScan& scan, const std::string& ext,
                    const std::string& workFolder, bool japanese, const platform::Rect& mainWindow) {
    std::error_code ec;
    fs::path full = fs::absolute(core::PathFromUtf8(workFolder), ec);
    const std::string path = ec ? workFolder : core::PathToUtf8(full.lexically_normal());
    const std::string pattern = " ( *" + ext + ")";

    dlg = DelWorkDialog{};
    dlg.RestoreMode = !scan.Backups.empty() && scan.Records.empty();
    if (dlg.RestoreMode) {
        if (japanese) {
            dlg.ButtonCaption = "作業用ファイルを復元する";
            dlg.Lines = {" 作業用ファイル" + pattern + " を復元できます。", " 復元しますか ？"};
        } else {
            dlg.ButtonCaption = "Restore Work Files";
            dlg.Lines = {" Restore Work Files" + pattern + " in Work Folder", path, "  Do you want them get Restored ?"};
        }
    } else if (japanese) {
        dlg.ButtonCaption = "作業用フォルダを空にする";
        dlg.Lines = {" 下記フォルダ内の全ファイル" + pattern + " を削除します。", path, " よろしいですか ？"};
    } else {
        dlg.ButtonCaption = "Delete All Files";
        dlg.Lines = {" Delete All Files" + pattern + " in Work Folder", path, "  May really Delete All ?"};
    }
    if (japanese) {
        dlg.CancelCaption = "取り消し";
        dlg.CancelFont = "メイリオ";
    }

    int width = 300;
    for (const std::string& line : dlg.Lines) width = std::max(width, TextWidth(line) + 24);
    const int height = static_cast<int>(dlg.Lines.size()) * 20 + 70;
    dlg.Rect = {mainWindow.Left, mainWindow.Top, mainWindow.Left + width, mainWindow.Top + height};
}

DelWorkResult cmdDelFiles_Click(const std::string& workFolder, int tableMode, bool japanese,
                                const platform::Rect& mainWindow, bool busy,
                                const std::function<void(DelWorkDialog&)>& ask, FileBox& box,
                                DealRecord& rec) {
    DelWorkResult res;
    if (busy || !ask) return res;
    const std::string ext = RecordExtension(tableMode);
    WorkScan scan = ScanWorkFolder(workFolder, ext);

    DelWorkDialog dlg;
    PrepareDelWork(dlg, scan, ext, workFolder, japanese, mainWindow);
    dlg.Visible = true;
    ask(dlg);
    dlg.Visible = false;
    res.Ran = true;
    res.Restored = dlg.RestoreMode;
    if (!dlg.Confirmed) return res;
    res.Confirmed = true;

    const fs::path folder = core::PathFromUtf8(workFolder);
    std::vector<std::string> restored;
    if (dlg.RestoreMode) {
        for (const std::string& name : scan.Backups) {
            const std::string from = core::FindFileNoCase(workFolder, "BAK" + name + ext);
            // A record written since the scan is newer than its backup.
            if (from.empty() || core::FileExistsNoCase(workFolder, name + ext)) continue;
            std::error_code ec;
            fs::rename(core::PathFromUtf8(from), folder / core::PathFromUtf8(name + ext), ec);
            if (!ec) {
                ++res.Renamed;
                restored.push_back(name);
            }
        }
    } else {
        // Only backups of this table's records: other files that happen to
        // begin with "BAK" are the user's.
        for (const std::string& file : FilesWithExt(folder, ext)) {
            if (core::Left(core::UCase(file), 3) != "BAK") continue;
            std::error_code ec;
            if (fs::remove(folder / core::PathFromUtf8(file), ec)) ++res.Deleted;
        }
        for (const std::string& name : scan.Records) {
            const std::string from = core::FindFileNoCase(workFolder, name + ext);
            if (from.empty()) continue;
            std::error_code ec;
            fs::rename(core::PathFromUtf8(from), folder / core::PathFromUtf8("BAK" + name + ext), ec);
            if (!ec) ++res.Renamed;
        }
    }

    box.Clear();
    if (!restored.empty()) {
        std::sort(restored.begin(), restored.end(), std::greater<>());
        box.Entries = restored;
        box.Selected.assign(restored.size(), false);
    }
    rec.ScoreRowCount = 0;
    return res;
}

}  // namespace display
