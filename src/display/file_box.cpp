#include "display/file_box.h"

#include <algorithm>
#include <filesystem>
#include <system_error>

#include "core/folders.h"
#include "core/text.h"
#include "display/deal_record.h"

namespace display {

namespace fs = std::filesystem;

void FileBox::Fill(const std::string& workFolder, const std::string& ext) {
    Clear();
    std::error_code ec;
    fs::directory_iterator it(core::PathFromUtf8(workFolder), ec);
    std::vector<std::string> names;
    for (; !ec && it != fs::directory_iterator(); it.increment(ec)) {
        std::error_code fec;
        if (!it->is_regular_file(fec)) continue;
        const std::string file = core::PathToUtf8(it->path().filename());
        if (!core::EqualNoCase(core::Right(file, static_cast<std::ptrdiff_t>(core::Len(ext))), ext)) continue;
        if (core::EqualNoCase(file, MarkerFileName)) continue;
        if (core::EqualNoCase(core::Left(file, 3), "BAK")) continue;
        const std::string name = core::Left(file, static_cast<std::ptrdiff_t>(core::Len(file) - core::Len(ext)));
        if (name.empty()) continue;
        names.push_back(name);
    }
    std::sort(names.begin(), names.end(), std::greater<>());
    Entries = std::move(names);
    Selected.assign(Entries.size(), false);
}

void FileBox::InsertTop(const std::string& name) {
    Entries.insert(Entries.begin(), name);
    Selected.assign(Entries.size(), false);
    Selected[0] = true;
}

void FileBox::Clear() {
    Entries.clear();
    Selected.clear();
}

void FileBox::Select(int index, bool selected) {
    if (index < 0 || index >= Count()) return;
    Selected.resize(Entries.size(), false);
    Selected[index] = selected;
}

void FileBox::ClearSelection() { Selected.assign(Entries.size(), false); }

int FileBox::SelectedCount() const {
    return static_cast<int>(std::count(Selected.begin(), Selected.end(), true));
}

std::string FileBox::ClickedName(int index, bool busy) const {
    if (busy || DeleteState != DelIdle || index < 0 || index >= Count()) return "";
    return Entries[index];
}

bool FileBox::filBox_KeyDown(int keyCode) { return keyCode == KeyDelete && BeginDelete(); }

bool FileBox::filBox_RightButton(bool onlineMode) { return !onlineMode && BeginDelete(); }

bool FileBox::BeginDelete() {
    if (DeleteState != DelIdle || SelectedCount() == 0) return false;
    DeleteState = DelWaiting;
    Enabled = false;
    cmdDelFiles.Enabled = false;
    cmdUndo.Visible = cmdUndo.Enabled = true;
    cmdDEL.Visible = cmdDEL.Enabled = true;
    Focus = "cmdDEL";
    return true;
}

void FileBox::cmdUndo_Click() {
    if (DeleteState != DelWaiting) return;
    DeleteState = DelUndo;
    EndDelete();
}

void FileBox::cmdDEL_Click(const std::string& workFolder, const std::string& ext) {
    if (DeleteState != DelWaiting) return;
    DeleteState = DelConfirmed;
    Selected.resize(Entries.size(), false);
    for (int i = Count() - 1; i >= 0; --i) {
        if (!Selected[i]) continue;
        const std::string file = core::FindFileNoCase(workFolder, Entries[i] + ext);
        // The older backup is only given up when there is a record to take
        // its place; renaming replaces it in one step.
        if (!file.empty()) {
            std::string backup = core::FindFileNoCase(workFolder, "BAK" + Entries[i] + ext);
            if (backup.empty()) backup = core::JoinPath(workFolder, "BAK" + Entries[i] + ext);
            std::error_code ec;
            fs::rename(core::PathFromUtf8(file), core::PathFromUtf8(backup), ec);
            if (ec) continue;  // still there: keep it listed
        }
        Entries.erase(Entries.begin() + i);
        Selected.erase(Selected.begin() + i);
    }
    EndDelete();
}

void FileBox::EndDelete() {
    cmdUndo.Visible = cmdUndo.Enabled = false;
    cmdDEL.Visible = cmdDEL.Enabled = false;
    DeleteState = DelIdle;
    Enabled = true;
    cmdDelFiles.Enabled = true;
    Focus.clear();
}

}  // namespace display
