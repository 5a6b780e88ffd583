// Emptying the work folder in one step that can be undone ("Delete ALL Work
// Files"): every record file takes its backup name; when only backups are
// left, the same button offers to restore them. frmDelWork is the
// confirmation dialog, kept here as a model.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "platform/geometry.h"

namespace display {

struct DealRecord;
class FileBox;

inline constexpr std::size_t MaxScanNames = 10000;

// Record file extension of a table mode: ".brg" for the bridge-bidding
// table (mode 0), ".spd" otherwise.
std::string RecordExtension(int tableMode);

struct WorkScan {
    std::vector<std::string> Records;  // 9-character names ("03_05_001")
    std::vector<std::string> Backups;  // the same names, of "BAK..." files
    int Removed = 0;                   // backups of backups deleted
};

// Scans the work folder for "*<ext>": deletes backups of backups
// ("BAKBAK..."), lists backups ("BAK" + digit..., 16 characters) and record
// files (13 characters beginning with a digit); leaves everything else.
WorkScan ScanWorkFolder(const std::string& workFolder, const std::string& ext);

// frmDelWork.
struct DelWorkDialog {
    std::string Caption = " Empty Work Folder";
    bool RestoreMode = false;
    std::string ButtonCaption;  // the delete/restore button
    std::string CancelCaption = "Cancel";
    std::string CancelFont;     // "" = the dialog's font
    std::vector<std::string> Lines;  // the text pieces, one per line
    platform::Rect Rect;             // over the main window, sized to the text
    bool Visible = false;
    bool Confirmed = false;

    void cmdDelete_Click() { Confirmed = true; Visible = false; }
    void cmdCancel_Click() { Confirmed = false; Visible = false; }
};

// Fills the dialog for the scan result.
void PrepareDelWork(DelWorkDialog& dlg, const WorkScan& scan, const std::string& ext,
                    const std::string& workFolder, bool japanese, const platform::Rect& mainWindow);

struct DelWorkResult {
    bool Ran = false;        // the dialog was shown
    bool Confirmed = false;  // and answered with the delete/restore button
    bool Restored = false;   // restore mode
    int Renamed = 0;         // files that took their new name
    int Deleted = 0;         // older backups removed
};

// cmdDelFiles_Click: unless another file operation is running (`busy`),
// scans, fills the dialog and shows it through `ask` (modal; returns after
// the user answered, the dialog's Confirmed says how). On confirmation
// renames the files, then clears the file box (refilled with the restored
// names after a restore) and sets the record's score row count to 0; the
// caller then refreshes the main window's deal displays.
DelWorkResult cmdDelFiles_Click(const std::string& workFolder, int tableMode, bool japanese,
                                const platform::Rect& mainWindow, bool busy,
                                const std::function<void(DelWorkDialog&)>& ask, FileBox& box,
                                DealRecord& rec);

}  // namespace display
