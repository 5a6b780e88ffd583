// The bid help for the third and fourth seat (frmHelpBid): near the end of a
// game, which bids of the user bring the user's side ahead of the opponents,
// as two candidate lines "score -> new score" per side. A view model: labels,
// frame shapes and a draw list for the picture box.
#pragma once

#include <array>
#include <string>
#include <vector>

#include "core/json.h"
#include "platform/geometry.h"
#include "scoring/counter.h"
#include "scoring/rules.h"
#include "scoring/view_model.h"

namespace scoring {

// One side's two candidate lines: the score now and where the line takes it.
struct HelpTable {
    std::array<int, 2> Score{};
    std::array<int, 2> NewScore{};
};

// HelpState values.
enum HelpStates { HelpClosed = 0, HelpHidden = 1, HelpThirdSeat = 2, HelpFourthSeat = 3 };

class HelpBid {
public:
    explicit HelpBid(TextWidthFn measure = ApproxTextWidth);

    WindowModel Window;
    Shape pic;                    // the picture box the figures are printed into
    std::vector<DrawText> Items;  // what is printed into pic
    std::array<Label, 3> YouBid;  // bid pairs of the user's side
    std::array<Label, 2> TheyBid; // bid pairs of the opponents
    std::array<Label, 10> Capt;   // headers: "    Bid  ", "Score", "They", "  We", ...
    Shape Shape1, Line1, Line3, Line5;

    int HelpState = HelpClosed;
    HelpTable TheyTable, WeTable;

    // Works out and shows the help for the user's third (bidCount 2) or
    // fourth (bidCount 3) bid from the latest score line. `userSeat` is the
    // compass seat at table position 0; `bids` by table position; a non-empty
    // `logSetting` shows the help whatever the scores. True when shown.
    bool Show_HelpBid(const ScoreRows& rows, int userSeat, const Bids4& bids, int bidCount,
                      const std::string& logSetting);

    void ShowScore3(const HelpTable& they, const HelpTable& we);
    void ShowScore4(const HelpTable& they, const HelpTable& we);
    // Prints "score -> new score" at x on the current line.
    void PrintLine(double x, int score, int newScore);

    // The bid step's check: the third-seat help goes once three bids are
    // known, the fourth-seat help once all four are.
    void HideForBidCount(int bidCount);
    // The user closed the window.
    void Close();
    // Loading: the HelpBidIn4thSeat position, or beside the game window when
    // its x is -100.
    void Place(platform::Point setting, platform::Point gameWindowTopLeft);

    core::Json ToJson() const;

private:
    void PrintSigned(int v, const Font& font, Color color);
    void PrintText(const std::string& text, const Font& font, Color color, double dy = 0);
    void Show();

    TextWidthFn measure_;
    Font picFont_;
    double curX_ = 0, curY_ = 0;
};

}  // namespace scoring
