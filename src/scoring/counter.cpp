#include "scoring/counter.h"

#include "core/notation.h"

namespace scoring {

namespace {

// Form design: three rows (We, They, Sum) of 20 pixels.
constexpr int RowTop[3] = {4, 24, 44};
constexpr int RowHeight = 18;
constexpr int ClientHeight = 66;
constexpr int FrameHeight = 26;  // caption bar and borders around the client area

Label MakeLabel(int left, int top, int width, double size, const std::string& design = {},
                const std::string& font = "Arial") {
    Label l;
    l.Caption = design;
    l.Left = left;
    l.Top = top;
    l.Width = width;
    l.Height = RowHeight;
    l.TextFont.Name = font;
    l.TextFont.Size = size;
    return l;
}

void MakeCaptions(std::array<Label, 3>& capt) {
    const char* texts[3] = {" We", "They", "Sum"};
    for (int i = 0; i < 3; ++i) capt[i] = MakeLabel(3, RowTop[i], 28, 10, texts[i], "Arial Narrow");
}

// Bid colour of a side: red when one of its partners bid Nil or double Nil.
Color SideBidColor(const Bids4& bids, int s) {
    return core::BidKind(bids[s]) + core::BidKind(bids[s + 2]) > 0 ? Red : Black;
}

// Colours of the bids once all four are in: the sum tells how the tricks
// are shared out (13 or more: over-bid, 10 or less: bags to come).
void ColourBids(std::array<Label, 3>& cBid, int bidCount, int sum) {
    if (bidCount != 4) {
        for (auto& l : cBid) l.ForeColor = Black;
        return;
    }
    cBid[2].ForeColor = sum >= 13 ? DarkRed : sum >= 11 ? Black : Magenta;
}

std::string Bracketed(const char* open, int v, const char* close) {
    return open + std::to_string(v) + close;
}

int ShownCount(const std::string& caption) {
    // The shown count is the label's caption; an empty one counts 0.
    int v = 0;
    for (char c : caption) {
        if (c < '0' || c > '9') break;
        if (v < 100) v = v * 10 + (c - '0');
    }
    return v;
}

void Status(Label& l, const std::string& text, double size, bool bold) {
    l.Caption = text;
    l.TextFont.Size = size;
    l.TextFont.Bold = bold;
    l.Visible = true;
}

}  // namespace

// ---------------------------------------------------------------- left ----

LeftCounter::LeftCounter(bool japanese) {
    Window.Caption = japanese ? "左カウンタ" : " Counter";
    Window.Width = 150;
    Window.Height = ClientHeight + FrameHeight;
    Window.BackColor = White;
    Shape1 = {1, 1, 140, ClientHeight - 2, true};
    MakeCaptions(Capt);
    for (int i = 0; i < 3; ++i) cBid[i] = MakeLabel(32, RowTop[i], 26, 12);
    for (int s = 0; s < 2; ++s) {
        cPts0[s] = MakeLabel(60, RowTop[s], 40, 10, "000");
        cBag0[s] = MakeLabel(102, RowTop[s], 34, 10, "(0)");
    }
    ClrCounter();
}

void LeftCounter::ShowCounterInit(const Side2& score, const Side2& bags, const Bids4& bids, int bidCount) {
    for (int s = 0; s < 2; ++s) {
        TeamBid[s] = BidNumber(bids[s]) + BidNumber(bids[s + 2]);
        cBid[s].Caption = std::to_string(TeamBid[s]);
        cBid[s].ForeColor = SideBidColor(bids, s);
        cPts0[s].Caption = std::to_string(score[s]);
        cPts0[s].ForeColor = score[s] < 0 ? Blue : Black;
        cBag0[s].Caption = Bracketed("(", bags[s], ")");
    }
    const int sum = TeamBid[0] + TeamBid[1];
    cBid[2].Caption = std::to_string(sum);
    ColourBids(cBid, bidCount, sum);
    Window.Visible = true;
}

void LeftCounter::ClrCounter() {
    for (auto& l : cBid) l.Caption.clear();
    for (int s = 0; s < 2; ++s) {
        cPts0[s].Caption.clear();
        cBag0[s].Caption.clear();
    }
    Window.Visible = false;
}

void LeftCounter::Place(const CounterPlacementInput& in) {
    if (in.Saved) {
        Window.Left = in.Saved->X;
        Window.Top = in.Saved->Y;
    } else if (in.Setting.X == 0) {
        // A configured left edge of 0 keeps the counter at the screen edge.
        Window.Left = 0;
        Window.Top = in.Setting.Y;
    } else {
        Window.Left = in.TableAt.X - 11 - Window.Width;
        Window.Top = in.TableAt.Y - 10;
    }
}

void LeftCounter::SetBoldBidTrick(bool bold) {
    for (auto& l : cBid) l.TextFont.Bold = bold;
}

core::Json LeftCounter::ToJson() const {
    core::Json j = core::Json::Object();
    j.Set("visible", Window.Visible);
    j.Set("caption", Window.Caption);
    j.Set("cBid", LabelTexts(cBid.data(), cBid.size()));
    j.Set("cPts0", LabelTexts(cPts0.data(), cPts0.size()));
    j.Set("cBag0", LabelTexts(cBag0.data(), cBag0.size()));
    return j;
}

// --------------------------------------------------------------- right ----

RightCounter::RightCounter(bool japanese) {
    Window.Caption = japanese ? " 右カウンタ" : " Counter";
    Window.Height = ClientHeight + FrameHeight;
    Window.BackColor = White;
    Shape1 = {1, 1, NarrowShapeWidth, ClientHeight - 2, true};
    MakeCaptions(Capt);
    for (int i = 0; i < 3; ++i) {
        cBid[i] = MakeLabel(32, RowTop[i], 24, 12);
        cTrk[i] = MakeLabel(58, RowTop[i], 24, 12);
    }
    for (int s = 0; s < 2; ++s) {
        cPts0[s] = MakeLabel(84, RowTop[s], 34, 9, "000");
        cBag0[s] = MakeLabel(118, RowTop[s], 22, 9, "(0)");
        aPt[s] = MakeLabel(140, RowTop[s], 36, 9, "[000]");
        cPts[s] = MakeLabel(176, RowTop[s], 30, 10, "000");
        cPts[s].TextFont.Bold = true;
        cBag[s] = MakeLabel(NarrowWidth + 2, RowTop[s], WideWidth - NarrowWidth - 8, 12, "+ 2 = 2");
    }
    SetWidth1();
    ClrCounter();
}

void RightCounter::ShowCounterInit(const Side2& score, const Side2& bags, const Bids4& bids, int bidCount) {
    Window.Visible = true;
    SetWidth1();
    for (auto& l : cTrk) l.Caption.clear();
    for (int s = 0; s < 2; ++s) {
        StartScore[s] = score[s];
        StartBags[s] = bags[s];
        TeamBid[s] = BidNumber(bids[s]) + BidNumber(bids[s + 2]);
        cBid[s].Caption = std::to_string(TeamBid[s]);
        cBid[s].ForeColor = SideBidColor(bids, s);
        cPts0[s].Caption = std::to_string(score[s]);
        cBag0[s].Caption = Bracketed("(", bags[s], ")");
        cBag[s].Caption.clear();
        cBag[s].ForeColor = Black;
        cBag[s].Visible = false;
        base_[s].reset();
        ProjectedScore[s] = score[s];
    }
    const int sum = TeamBid[0] + TeamBid[1];
    cBid[2].Caption = std::to_string(sum);
    ColourBids(cBid, bidCount, sum);
    for (int s = 0; s < 2; ++s) {
        AllMadePoints[s] = scoring::AllMadePoints(StartScore[s], TeamBid[s], bids[s], bids[s + 2]);
    }
    for (int s = 0; s < 2; ++s) {
        const int v = AllMadePoints[s];
        aPt[s].Caption = Bracketed("[", v, "]");
        // The literal 500: the usual game point, whatever the setting says.
        aPt[s].ForeColor = (v > AllMadePoints[1 - s] && v >= 500) ? Red : Black;
        if (v < 0) aPt[s].ForeColor = Blue;
    }
}

void RightCounter::ShowCounterNow(const Side2& score, std::array<int, 3>& tricks, const Bids4& bids,
                                  const std::array<int, 4>& nilBroken) {
    for (int k = 0; k < 3; ++k) {
        const int shown = ShownCount(cTrk[k].Caption);
        if (tricks[k] > shown) cTrk[k].Caption = std::to_string(tricks[k]);
        else tricks[k] = shown;
    }
    ProjectionInput in;
    in.StartScore = StartScore;
    in.StartBags = StartBags;
    in.TeamBid = TeamBid;
    in.AllMadePoints = AllMadePoints;
    in.DealTricks = tricks;
    in.Bids = bids;
    in.NilBroken = nilBroken;
    for (int s = 0; s < 2; ++s) {
        const SideProjection p = ProjectSide(in, s);
        switch (p.Case) {
            case ProjectionCase::JustMaking:
                Status(cBag[s], "Just Making", 11, false);
                cBag[s].ForeColor = Blue;
                break;
            case ProjectionCase::Overtricks:
                Status(cBag[s], " + " + std::to_string(p.Overtricks) + " = " + std::to_string(p.RunningBags), 12,
                       true);
                break;
            case ProjectionCase::Set:
                Status(cBag[s], "   Set", 12, true);
                cBag[s].ForeColor = Magenta;
                break;
            case ProjectionCase::Short:
                break;
        }
        if (p.Base) base_[s] = p.Base;
        if (p.Case != ProjectionCase::Short) SetWidth2();
        if (p.NilStatusKind > 0) {
            const std::string& word = NilWords[p.NilStatusKind];
            if (p.NilSet) {
                Status(cBag[s], word + " Set", 12, true);
                cBag[s].ForeColor = Red;
            } else {
                Status(cBag[s], word.substr(0, 1) + " Making", 12, true);
                cBag[s].ForeColor = Blue;
            }
            SetWidth2();
        }
        aPt[s].Caption = Bracketed("[", p.AllMadeShown, "]");
        // The Nil result is recomputed from the kept base on every update, so
        // repeated updates never count a broken Nil twice.
        if (base_[s]) ProjectedScore[s] = *base_[s] + p.NilDelta;
        if (tricks[Sum] >= 13) cPts[s].Caption = std::to_string(score[s]);
        else if (base_[s]) cPts[s].Caption = ShownProjection(ProjectedScore[s], tricks[Sum], score[s]);
        else cPts[s].Caption.clear();  // no projection yet in this deal
    }
    ++Window.TopmostRequests;
}

void RightCounter::ClrCounter() {
    for (int k = 0; k < 3; ++k) {
        cBid[k].Caption.clear();
        cTrk[k].Caption.clear();
    }
    for (int s = 0; s < 2; ++s) {
        cPts0[s].Caption.clear();
        cPts[s].Caption.clear();
        cBag0[s].Caption.clear();
        cBag[s].Caption.clear();
    }
    Window.Visible = false;
}

void RightCounter::SetWidth1() {
    Window.Width = NarrowWidth;
    Shape1.Width = NarrowShapeWidth;
}

void RightCounter::SetWidth2() {
    Window.Width = WideWidth;
    Shape1.Width = WideShapeWidth;
}

void RightCounter::Place(const CounterPlacementInput& in) {
    if (in.Saved) {
        Window.Left = in.Saved->X;
        Window.Top = in.Saved->Y;
    } else if (in.Setting.X != -100) {
        Window.Left = in.Setting.X;
        Window.Top = in.Setting.Y;
    } else {
        Window.Left = in.TableAt.X + 6;
        Window.Top = in.TableAt.Y + 67;
    }
}

void RightCounter::SetBoldBidTrick(bool bold) {
    for (auto& l : cBid) l.TextFont.Bold = bold;
    for (auto& l : cTrk) l.TextFont.Bold = bold;
}

core::Json RightCounter::ToJson() const {
    core::Json j = core::Json::Object();
    j.Set("visible", Window.Visible);
    j.Set("caption", Window.Caption);
    j.Set("width", Window.Width);
    j.Set("cBid", LabelTexts(cBid.data(), cBid.size()));
    j.Set("cPts0", LabelTexts(cPts0.data(), cPts0.size()));
    j.Set("cBag0", LabelTexts(cBag0.data(), cBag0.size()));
    j.Set("cTrk", LabelTexts(cTrk.data(), cTrk.size()));
    j.Set("cPts", LabelTexts(cPts.data(), cPts.size()));
    j.Set("cBag", LabelTexts(cBag.data(), cBag.size()));
    j.Set("aPt", LabelTexts(aPt.data(), aPt.size()));
    return j;
}

// ------------------------------------------------------------ the pair ----

void Counters::ShowBids(const Side2& score, const Side2& bags, const Bids4& bids, int bidCount) {
    frmCounter0.ShowCounterInit(score, bags, bids, bidCount);
    CounterShown = 1;
}

void Counters::StartPlay(const Side2& score, const Side2& bags, const Bids4& bids) {
    frmCounter0.ClrCounter();
    frmCounter.ShowCounterInit(score, bags, bids, 4);
    CounterShown = 2;
}

void Counters::HideCounter() {
    if (CounterShown == 1) frmCounter0.ClrCounter();
    else if (CounterShown == 2) frmCounter.ClrCounter();
    CounterShown = 0;
}

}  // namespace scoring
