#include "display/card_play.h"

#include <algorithm>
#include <string>

namespace display {

int CardPlayColumnX(int trick) { return 26 * trick + 38; }

int CardPlayRowY(int row) {
    // In tenths, exactly: (23 p + 19) x 7 + 80, then halves go to even.
    const int tenths = (23 * row + 19) * 7 + 80;
    const int whole = tenths / 10, rest = tenths % 10;
    if (rest > 5 || (rest == 5 && whole % 2 != 0)) return whole + 1;
    return whole;
}

void LoadCardPlay(CardPlayWindow& w, bool japanese, core::Color back, const core::Position& stored,
                  const core::Position& setting, int mainLeft, int mainTop) {
    w.Window.Caption = japanese ? " プレイ経過" : "CardPlay";
    if (stored.X + stored.Y != 0) {
        w.Window.Left = stored.X;
        w.Window.Top = stored.Y;
    } else if (setting.DefaultPlace()) {
        w.Window.Left = mainLeft + 30;
        w.Window.Top = mainTop + 10;
    } else {
        w.Window.Left = setting.X;
        w.Window.Top = setting.Y;
    }
    w.Window.Width = CardPlayWidth;
    w.Window.Height = CardPlayHeight;
    w.Window.BackColor = back;
    w.Items.BackColor = back;
    w.Frame = {1, 1, 380, 87, true};
    w.Line = {1, 19, 380, 0, true};
    for (int t = 0; t < 13; ++t) {
        core::Label& l = w.TrickNo[static_cast<std::size_t>(t)];
        l.Caption = std::to_string(t + 1);
        l.Top = 4;
        l.Left = CardPlayColumnX(t) + 5;
        l.Width = 20;
        l.Height = 13;
        l.TextFont = {"Arial", 8, false};
    }
    // Captions of the rows' players: the relative names unless the caller
    // puts the names of the table there.
    static constexpr std::array<const char*, 4> rowNames = {"LHO", "Pard", "RHO", "Me"};
    for (int p = 0; p < 4; ++p) {
        core::Label& l = w.SeatLabel[static_cast<std::size_t>(p)];
        l.Caption = rowNames[static_cast<std::size_t>(p)];
        l.Left = 4;
        l.Top = CardPlayRowY(p);
        l.Width = 32;
        l.Height = 15;
        l.TextFont = {"Arial", 8, false};
    }
    w.State = CardPlayLoaded;
}

void ShowCardPlay(CardPlayWindow& w, const PlayedCards& played, const CardSheet& sheet) {
    w.Items.Clear();
    const int tricks = std::min(played.TricksPlayed, 13);
    for (int t = 0; t < tricks; ++t)
        for (int p = 0; p < 4; ++p) {
            const auto pos = static_cast<std::size_t>((p + 1) % 4);
            const auto tt = static_cast<std::size_t>(t);
            dspCardP(w.Items, sheet, CardPlayColumnX(t), CardPlayRowY(p), played.Code[tt][pos], played.Style[tt][pos],
                     played.White[tt][pos] != 0);
        }
    w.Window.Visible = true;
    ++w.Window.TopmostRequests;
    w.State = CardPlayDrawn;
}

core::Json ToJson(const CardPlayWindow& w) {
    core::Json j = core::Json::Object();
    j.Set("caption", w.Window.Caption);
    j.Set("visible", w.Window.Visible);
    j.Set("state", w.State);
    j.Set("seats", core::LabelTexts(w.SeatLabel.data(), w.SeatLabel.size()));
    j.Set("cards", core::ToJson(w.Items));
    return j;
}

}  // namespace display
