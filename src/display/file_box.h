// The file box of the main window (filBox): the list of stored deals, the
// selection, and the delete step that waits for "DEL" or "Undo" and keeps one
// backup per record name.
#pragma once

#include <string>
#include <vector>

namespace display {

struct ButtonView {
    std::string Caption;
    std::string ToolTip;
    bool Visible = true;
    bool Enabled = true;
};

// Delete states.
inline constexpr int DelIdle = 0;
inline constexpr int DelWaiting = -1;
inline constexpr int DelUndo = 1;
inline constexpr int DelConfirmed = 2;

inline constexpr int KeyDelete = 46;

class FileBox {
public:
    // Lists the record files of the work folder ("<name><ext>" whose name is
    // not a backup and not the marker file), newest name first. Replaces the
    // entries and clears the selection.
    void Fill(const std::string& workFolder, const std::string& ext = ".spd");
    // A freshly written record: inserted at the top and made the only
    // selected entry.
    void InsertTop(const std::string& name);
    void Clear();

    int Count() const { return static_cast<int>(Entries.size()); }
    void Select(int index, bool selected = true);
    void ClearSelection();
    int SelectedCount() const;
    // The clicked entry's name when a click may load it: no delete pending
    // and no other file operation running (`busy`); else "".
    std::string ClickedName(int index, bool busy) const;

    // Delete key (46) on the box, or the right mouse button while off-line:
    // starts the delete step when something is selected. True if started.
    bool filBox_KeyDown(int keyCode);
    bool filBox_RightButton(bool onlineMode);
    bool BeginDelete();
    // The two answers. "Undo" ends the step; "DEL" moves every selected
    // record to its backup "BAK<name><ext>" (replacing an older backup of
    // the same name) and removes it from the list. Ignored unless waiting.
    void cmdUndo_Click();
    void cmdDEL_Click(const std::string& workFolder, const std::string& ext = ".spd");

    // While a delete waits, the capture buttons "Bid" and "Hand" are
    // disabled; the main window asks this when it draws them.
    bool CaptureButtonsEnabled() const { return DeleteState != DelWaiting; }

    // --- what the window shows -------------------------------------------
    std::vector<std::string> Entries;
    std::vector<bool> Selected;
    std::string ToolTip = "Click and Look a Hand";
    bool Enabled = true;
    ButtonView cmdDEL{"DEL", "Delete the File", false, false};
    ButtonView cmdUndo{"Undo", "Undo Delete", false, false};
    ButtonView cmdDelFiles{"Delete ALL Work Files", "Delete All Work Files in the Box", true, true};
    std::string Focus;  // name of the control with the focus ("cmdDEL" while waiting)
    int DeleteState = DelIdle;

private:
    void EndDelete();
};

}  // namespace display
