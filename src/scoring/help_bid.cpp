#include "scoring/help_bid.h"

#include <algorithm>
#include <climits>
#include <cstdint>

#include "core/notation.h"

namespace scoring {

namespace {

// Form design, in pixels. The fourth-seat help is one column of figures;
// the third-seat help has a second column at x = 240.
constexpr int HeaderTop = 4;
constexpr int TheyTop = 24;
constexpr int WeTop = 48;
constexpr int We2Top = 70;
constexpr int FrameHeight = 26;
constexpr int ThirdWidth = 380;
constexpr int ThirdHeight = 1680 / TwipsPerPixel;
constexpr int FourthWidth = 2735 / TwipsPerPixel;
constexpr int FourthHeight = 1980 / TwipsPerPixel;

Label MakeLabel(int left, int top, int width, const std::string& text, double size = 10) {
    Label l;
    l.Caption = text;
    l.Left = left;
    l.Top = top;
    l.Width = width;
    l.Height = 18;
    l.TextFont.Size = size;
    return l;
}

int Clamp32(std::int64_t v) { return static_cast<int>(std::clamp<std::int64_t>(v, INT32_MIN, INT32_MAX)); }

}  // namespace

HelpBid::HelpBid(TextWidthFn measure) : measure_(measure ? std::move(measure) : TextWidthFn(ApproxTextWidth)) {
    Window.Caption = "Help Bid in 4-th Seat";
    Window.Width = FourthWidth;
    Window.Height = FourthHeight;
    Window.BackColor = White;
    picFont_.Name = "Arial";
    picFont_.Size = 10;
    pic = {0, 0, ThirdWidth, ThirdHeight - FrameHeight, true};
    Capt[0] = MakeLabel(36, HeaderTop, 52, "    Bid  ");
    Capt[1] = MakeLabel(100, HeaderTop, 60, "Score");
    Capt[2] = MakeLabel(4, TheyTop, 30, "They");
    Capt[3] = MakeLabel(4, WeTop, 30, "  We");
    for (int i = 4; i < 9; ++i) {
        Capt[i] = MakeLabel(0, 0, 0, "");
        Capt[i].Visible = false;
    }
    // Header of the second column of figures (third seat only).
    Capt[9] = MakeLabel(244, HeaderTop, 60, "Score");
    TheyBid[0] = MakeLabel(36, TheyTop, 52, "");
    TheyBid[1] = MakeLabel(190, TheyTop, 46, "");
    YouBid[0] = MakeLabel(36, WeTop, 52, "");
    YouBid[1] = MakeLabel(190, WeTop, 46, "");
    YouBid[2] = MakeLabel(36, We2Top, 52, "");
    Shape1 = {1, 1, 99, FourthHeight - FrameHeight - 2, true};
    Line1 = {0, TheyTop - 3, ThirdWidth, 0, true};
    Line3 = {0, WeTop - 3, ThirdWidth, 0, true};
    Line5 = {186, 0, 0, ThirdHeight - FrameHeight, true};
}

bool HelpBid::Show_HelpBid(const ScoreRows& rows, int userSeat, const Bids4& bids, int bidCount,
                           const std::string& logSetting) {
    if (rows.ScoreRowCount <= 0 || (bidCount != 2 && bidCount != 3)) return false;
    const ScoreRows::Row last = rows.At(rows.ScoreRowCount);
    const int weScore = last[ScoreRows::UserPointsColumn(userSeat)];
    const int theyScore = last[ScoreRows::OpponentPointsColumn(userSeat)];
    const std::int64_t weNew = std::int64_t{weScore} + core::ScoreBid(bids[0]) + core::ScoreBid(bids[2]);
    const std::int64_t theyNew = std::int64_t{theyScore} + core::ScoreBid(bids[1]) + core::ScoreBid(bids[3]);
    HelpTable we, they;
    we.Score = {weScore, weScore};
    they.Score = {theyScore, theyScore};
    we.NewScore = {Clamp32(weNew), Clamp32(weNew)};
    they.NewScore = {Clamp32(theyNew), Clamp32(theyNew)};
    const bool always = !logSetting.empty();

    if (bidCount == 3) {
        if (!always && theyNew <= 490) return false;
        TheyBid[0].Caption = bids[1] + ", " + bids[3];
        // The largest bid that leaves us at or below them, and one more.
        const std::int64_t gap = std::clamp<std::int64_t>(theyNew - weNew, 0, 130);
        const int n = static_cast<int>(gap / 10);
        YouBid[0].Caption = bids[2] + ", " + std::to_string(n);
        we.NewScore[0] = Clamp32(weNew + 10 * n);
        YouBid[2].Caption = bids[2] + ", " + std::to_string(n + 1);
        we.NewScore[1] = Clamp32(std::int64_t{we.NewScore[0]} + 10);
        HelpState = HelpFourthSeat;
        TheyTable = they;
        WeTable = we;
        ShowScore4(they, we);
        return true;
    }

    if (bids[2].empty() || bids[3].empty()) return false;
    if (!always && theyNew <= 450) return false;
    // Tricks left to the user and the left-hand opponent; none is the floor.
    const int rest = std::max(0, 13 - BidNumber(bids[2]) - BidNumber(bids[3]));
    // Smallest bid that keeps us ahead even if the left-hand opponent bids
    // all the remaining tricks.
    int v = 0;
    for (int i = rest; i >= 1; --i) {
        if (theyNew + 10 * (rest - i) < weNew + 10 * i) v = i;
    }
    std::array<std::string, 2> me, lho;
    std::array<int, 2> meAdd{}, lhoN{};
    if (v == 0) {
        me = {"N", "1"};
        meAdd = {100, 10};
        lhoN = {rest, rest - 1};
    } else if (v == 1) {
        me = {"1", "N"};
        meAdd = {10, 100};
        lhoN = {rest - 1, rest};
    } else {
        me = {std::to_string(v), std::to_string(v - 1)};
        meAdd = {10 * v, 10 * (v - 1)};
        lhoN = {rest - v, rest - v + 1};
    }
    for (int k = 0; k < 2; ++k) {
        lhoN[k] = std::max(0, lhoN[k]);
        YouBid[k].Caption = bids[2] + ", " + me[k];
        TheyBid[k].Caption = bids[3] + ", " + std::to_string(lhoN[k]);
        we.NewScore[k] = Clamp32(weNew + meAdd[k]);
        they.NewScore[k] = Clamp32(theyNew + 10 * lhoN[k]);
    }
    HelpState = HelpThirdSeat;
    TheyTable = they;
    WeTable = we;
    ShowScore3(they, we);
    return true;
}

void HelpBid::ShowScore3(const HelpTable& they, const HelpTable& we) {
    Window.Caption = "Help Bid in 3-rd Seat";
    Window.Width = ThirdWidth;
    Window.Height = ThirdHeight;
    Shape1 = {1, 1, 99, ThirdHeight - FrameHeight - 2, true};
    Line1 = {0, TheyTop - 3, ThirdWidth, 0, true};
    Line3 = {0, WeTop - 3, ThirdWidth, 0, true};
    Line5 = {186, 0, 0, ThirdHeight - FrameHeight, true};
    for (auto& l : YouBid) l.Visible = false;
    // A fourth-seat help shown earlier hid these; this layout uses them.
    TheyBid[0].Visible = TheyBid[1].Visible = true;
    Capt[9].Visible = true;
    Items.clear();
    const double xs[2] = {92, 240};
    for (int k = 0; k < 2; ++k) {
        curY_ = TheyBid[0].Top;
        PrintLine(xs[k], they.Score[k], they.NewScore[k]);
    }
    for (int k = 0; k < 2; ++k) {
        curY_ = YouBid[0].Top;
        PrintLine(xs[k], we.Score[k], we.NewScore[k]);
        // The partner's bid in black, the suggested one (from the comma on)
        // in blue.
        const std::string& text = YouBid[k].Caption;
        const auto comma = text.find(',');
        curX_ += measure_(" ", picFont_);
        PrintText(text.substr(0, comma), picFont_, Black);
        if (comma != std::string::npos) PrintText(text.substr(comma), picFont_, Blue);
    }
    Show();
}

void HelpBid::ShowScore4(const HelpTable& they, const HelpTable& we) {
    Window.Caption = "Help 4-th Bid";
    Items.clear();
    TheyBid[1].Visible = false;
    YouBid[1].Visible = false;
    Capt[9].Visible = false;
    TheyBid[0].Visible = YouBid[0].Visible = YouBid[2].Visible = true;
    Window.Height = FourthHeight;
    Window.Width = FourthWidth;
    Shape1.Width = 99;
    Line1.Width = Line3.Width = FourthWidth;
    Line5.Visible = false;
    curY_ = TheyBid[0].Top;
    PrintLine(92, they.Score[0], they.NewScore[0]);
    curY_ = YouBid[0].Top;
    PrintLine(92, we.Score[0], we.NewScore[0]);
    curY_ = YouBid[2].Top;
    PrintLine(92, we.Score[1], we.NewScore[1]);
    Show();
}

void HelpBid::PrintLine(double x, int score, int newScore) {
    curX_ = x;
    PrintSigned(score, picFont_, Black);
    curX_ += 3;
    Font symbol = picFont_;
    symbol.Name = "Symbol";
    // Character 174 of the Symbol typeface: the right arrow.
    PrintText("\u2192", symbol, Black, -2);
    curX_ += 2;
    PrintSigned(newScore, picFont_, Black);
}

void HelpBid::PrintSigned(int v, const Font& font, Color color) {
    const std::string digits = v < 0 ? std::to_string(-static_cast<std::int64_t>(v)) : std::to_string(v);
    if (v < 0) {
        // The minus hangs left of the digits so they stay aligned.
        Font courier = font;
        courier.Name = "Courier New";
        const double w = measure_("-", courier);
        Items.push_back({curX_ - w, curY_, "-", courier.Name, courier.Size, color, courier.Bold});
    }
    PrintText(digits, font, color);
}

void HelpBid::PrintText(const std::string& text, const Font& font, Color color, double dy) {
    Items.push_back({curX_, curY_ + dy, text, font.Name, font.Size, color, font.Bold});
    curX_ += measure_(text, font);
}

void HelpBid::Show() {
    Window.Visible = true;
    ++Window.TopmostRequests;
}

void HelpBid::HideForBidCount(int bidCount) {
    if ((HelpState == HelpThirdSeat && bidCount >= 3) || (HelpState == HelpFourthSeat && bidCount == 4)) {
        Window.Visible = false;
        HelpState = HelpHidden;
    }
}

void HelpBid::Close() {
    Window.Visible = false;
    HelpState = HelpClosed;
}

void HelpBid::Place(platform::Point setting, platform::Point gameWindowTopLeft) {
    if (setting.X == -100) {
        Window.Left = gameWindowTopLeft.X + 60;
        Window.Top = gameWindowTopLeft.Y + 120;
    } else {
        Window.Left = setting.X;
        Window.Top = setting.Y;
    }
}

core::Json HelpBid::ToJson() const {
    core::Json j = core::Json::Object();
    j.Set("visible", Window.Visible);
    j.Set("caption", Window.Caption);
    j.Set("HelpState", HelpState);
    core::Json you = core::Json::Array();
    for (const auto& l : YouBid) you.Push(l.Visible ? l.Caption : std::string());
    core::Json they = core::Json::Array();
    for (const auto& l : TheyBid) they.Push(l.Visible ? l.Caption : std::string());
    j.Set("YouBid", you);
    j.Set("TheyBid", they);
    core::Json items = core::Json::Array();
    for (const auto& d : Items) items.Push(scoring::ToJson(d));
    j.Set("pic", items);
    return j;
}

}  // namespace scoring
