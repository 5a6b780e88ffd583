#include "scoring/score_sheet.h"

#include <cmath>
#include <cstdlib>

#include "core/text.h"

namespace scoring {

namespace {

const Font kSheetFont{"Times New Roman", 13, false};

int Chars(std::string_view s) { return static_cast<int>(core::Len(s)); }

std::string DropLast(const std::string& s) { return core::Left(s, static_cast<std::ptrdiff_t>(core::Len(s)) - 1); }

// Prints into the main surface and, when mirroring, into the score window.
class SheetWriter {
public:
    SheetWriter(ScoreSheet& s, const TextWidthFn& measure) : s_(s), measure_(measure) {}

    void Text(double x, double y, const std::string& text, const Font& f, Color c) {
        s_.Main.Items.push_back(DrawText{x, y, text, f.Name, f.Size, c, f.Bold});
    }
    void Mirror(double x, double y, const std::string& text, const Font& f, Color c) {
        if (s_.Mirroring) s_.Mirror.Items.push_back(DrawText{x, y, text, f.Name, f.Size, c, f.Bold});
    }

    // Ends at column edge `col`: the x is the edge minus one "0" width per character.
    void Right(int col, double y, double my, const std::string& text, const Font& f, Color c) {
        const double x = s_.M.C[static_cast<std::size_t>(col)] - Chars(text) * s_.M.W;
        Text(x, y, text, f, c);
        Mirror(x - MirrorOffsets[static_cast<std::size_t>(col)], my, text, f, c);
    }

    // The digits end at the edge; a minus hangs to their left, so figures
    // of both signs keep their digits in one column.
    void Signed(int col, double y, double my, int v) {
        const std::string digits = std::to_string(std::llabs(static_cast<long long>(v)));
        const double x = s_.M.C[static_cast<std::size_t>(col)] - Chars(digits) * s_.M.W;
        const double off = MirrorOffsets[static_cast<std::size_t>(col)];
        if (v < 0) {
            Font courier = kSheetFont;
            courier.Name = "Courier New";
            const double dash = measure_("-", courier);
            Text(x - dash, y, "-", courier, Black);
            Mirror(x - dash - off, my, "-", courier, Black);
        }
        Text(x, y, digits, kSheetFont, Black);
        Mirror(x - off, my, digits, kSheetFont, Black);
    }

    void Bags(int col, double y, double my, int b) {
        const double x = s_.M.C[static_cast<std::size_t>(col)] - 1.5 * s_.M.W;
        const std::string text = "(" + std::to_string(b) + ")";
        Text(x, y, text, kSheetFont, Black);
        Mirror(x - MirrorOffsets[static_cast<std::size_t>(col)], my, text, kSheetFont, Black);
    }

private:
    ScoreSheet& s_;
    const TextWidthFn& measure_;
};

Label RowCaption(const std::string& caption, int left, int top, int width) {
    Label l;
    l.Caption = caption;
    l.Left = left;
    l.Top = top;
    l.Width = width;
    l.Height = 16;
    l.TextFont = {"Arial", 8, false};
    return l;
}

}  // namespace

int UserSeatFinder::Find(const std::array<std::string, 4>& namesBySeat, const std::vector<std::string>& myIds) {
    auto seatOf = [&](const std::string& id) {
        const std::string lid = core::LCase(id);
        for (int seat = 0; seat < 4; ++seat)
            if (core::Contains(core::LCase(namesBySeat[static_cast<std::size_t>(seat)]), lid)) return seat;
        return -1;
    };
    if (myIdIndex_ > 0 && static_cast<std::size_t>(myIdIndex_) <= myIds.size() &&
        !myIds[static_cast<std::size_t>(myIdIndex_ - 1)].empty()) {
        const int seat = seatOf(myIds[static_cast<std::size_t>(myIdIndex_ - 1)]);
        if (seat >= 0) return seat;
    }
    myIdIndex_ = 0;
    for (std::size_t i = 0; i < myIds.size() && i < core::kMaxOwnIds; ++i) {
        if (myIds[i].empty()) break;
        const int seat = seatOf(myIds[i]);
        if (seat >= 0) {
            myIdIndex_ = static_cast<int>(i) + 1;
            return seat;
        }
    }
    return 0;
}

ScoreSheetMetrics SheetMetrics(int left, const TextWidthFn& measure) {
    ScoreSheetMetrics m;
    m.W = static_cast<float>(measure("0", kSheetFont));
    m.X0 = left + 4 * 5;
    for (std::size_t i = 0; i < 4; ++i) m.C[i] = static_cast<float>(m.X0 + ColumnWidths[i] * m.W);
    return m;
}

ScoreSheet BuildScoreSheet(const ScoreRows& rows, const ScoreSheetInput& in, const TextWidthFn& measure) {
    ScoreSheet s;
    s.Mirroring = in.Online;
    s.M = SheetMetrics(in.Left, measure);
    s.Top = in.Top;
    const int p = s.M.Pitch;
    const double w = s.M.W;
    const int bidsY = in.Top + p;
    s.CurrentY = bidsY + p + 5;
    SheetWriter out(s, measure);

    const int u = in.UserSeat & 3;
    std::array<int, 4> order{};  // left-hand opponent, partner, right-hand opponent, user
    for (int k = 0; k < 4; ++k) order[static_cast<std::size_t>(k)] = (u + 1 + k) % 4;
    auto nameOf = [&](int k) { return in.Names[static_cast<std::size_t>(order[static_cast<std::size_t>(k)])]; };

    // Names: each pair fitted into its room and set towards the pair's figures.
    const double heightA = in.HeightOfA > 0 ? in.HeightOfA : kSheetFont.Size * 96.0 / 72.0 * 1.15;
    auto piecewise = [&](const std::string& name, double& x) {
        std::size_t start = 0;
        for (;;) {
            const std::size_t us = name.find('_', start);
            const std::string part = name.substr(start, us == std::string::npos ? std::string::npos : us - start);
            if (!part.empty()) {
                out.Text(x, in.Top, part, kSheetFont, Black);
                x += measure(part, kSheetFont);
            }
            if (us == std::string::npos) break;
            s.Main.Items.push_back(core::DrawLine{x, in.Top + 0.9 * heightA, x + 4, in.Top + 0.9 * heightA, Black, 1});
            x += 4;
            start = us + 1;
        }
    };
    auto namePair = [&](std::string first, std::string second, double left, double room, int mode) {
        auto width = [&] { return measure(first + "/" + second, kSheetFont); };
        while (width() >= room && !(first.empty() && second.empty())) {
            if (core::Len(first) > core::Len(second)) first = DropLast(first);
            else second = DropLast(second);
        }
        double x = left;
        const double spare = room - width();
        if (spare > 1) x += (mode == 1 ? 0.8 : 0.6) * spare;
        piecewise(first, x);
        Font bold = kSheetFont;
        bold.Bold = true;
        x += 1;
        out.Text(x, in.Top, "/", bold, Black);
        x += measure("/", bold) + 1;
        piecewise(second, x);
    };
    const double theyLeft = s.M.X0 + 5.5 * w;
    const double weLeft = s.M.C[1] + 1.5 * w;
    if (!nameOf(0).empty() || !nameOf(2).empty()) namePair(nameOf(0), nameOf(2), theyLeft, s.M.C[1] - theyLeft, 1);
    if (!nameOf(1).empty() || !nameOf(3).empty()) namePair(nameOf(1), nameOf(3), weLeft, s.M.C[3] - weLeft, 2);

    // Bids under the columns: the opponents', then the partner's and the user's.
    static constexpr std::array<int, 4> orderOfColumn = {0, 2, 1, 3};
    for (int col = 0; col < 4; ++col) {
        const int seat = order[static_cast<std::size_t>(orderOfColumn[static_cast<std::size_t>(col)])];
        const std::string& bid = in.Bids[static_cast<std::size_t>(seat)];
        if (seat == in.FirstLeader) {
            if (bid.empty()) continue;
            Font bold = kSheetFont;
            bold.Bold = true;
            out.Right(col, bidsY, MirrorBidsY, "[" + bid + "]", bold, Blue);
        } else if (!bid.empty()) {
            out.Right(col, bidsY, MirrorBidsY, bid, kSheetFont, Black);
        }
    }

    // Figures: the total before the deal, the deal, the total after it.
    const int r = rows.ScoreRowCount;
    const int theyCol = ScoreRows::OpponentPointsColumn(u);
    const int weCol = ScoreRows::UserPointsColumn(u);
    auto showPts = [&](int g, int pc, int line) {
        const auto d = rows.DealPoints(r, pc);
        out.Signed(g, s.CurrentY + line * p, MirrorFiguresY + line * p, d.Points);
        out.Bags(g + 1, s.CurrentY + line * p, MirrorFiguresY + line * p, d.Bags);
    };
    auto showTotal = [&](int g, int pc, int row, int line) {
        const auto v = rows.At(row);
        out.Signed(g, s.CurrentY + line * p, MirrorFiguresY + line * p, v[static_cast<std::size_t>(pc)]);
        out.Bags(g + 1, s.CurrentY + line * p, MirrorFiguresY + line * p, v[static_cast<std::size_t>(pc + 1)]);
    };
    if (r >= 1) {
        showPts(0, theyCol, 1);
        showPts(2, weCol, 1);
    }
    if (r > 1) {
        showTotal(0, theyCol, r - 1, 0);
        showTotal(2, weCol, r - 1, 0);
        showTotal(0, theyCol, r, 2);
        showTotal(2, weCol, r, 2);
    }

    const int captionWidth = static_cast<int>(std::lround(4 * w));
    s.Label1 = {RowCaption("Bids", in.Left + 2, bidsY, captionWidth),
                RowCaption("Before", in.Left + 2, s.CurrentY, captionWidth),
                RowCaption("Deal", in.Left + 2, s.CurrentY + p, captionWidth),
                RowCaption("After", in.Left + 2, s.CurrentY + 2 * p, captionWidth)};
    s.Label1[1].Visible = s.Label1[3].Visible = r > 1;
    s.Label1[2].Visible = r >= 1;
    // Past the last edge only the closing bag figures "(n)" stand.
    const int right = static_cast<int>(std::lround(s.M.C[3] + 1.3 * w));
    s.Frame = {in.Left, in.Top - 2, right - in.Left, s.CurrentY + 3 * p + 2 - (in.Top - 2), true};
    const int lineLeft = static_cast<int>(std::lround(s.M.X0));
    s.Line1 = {lineLeft, s.CurrentY - 3, right - lineLeft, 0, true};
    const int sumLeft = static_cast<int>(std::lround(s.M.C[0] - 6 * w));
    s.Line2 = {sumLeft, s.CurrentY + 2 * p - 1, right - sumLeft, 0, r > 1};
    return s;
}

void ClearScoreSheet(ScoreSheet& sheet) {
    sheet.Main.Clear();
    sheet.Mirror.Clear();
    for (Label& l : sheet.Label1) l.Visible = false;
    sheet.Frame.Visible = sheet.Line1.Visible = sheet.Line2.Visible = false;
}

void LoadScoreWindow(ScoreWindow& w, bool japanese, Color back, const core::Position& setting, int defaultLeft,
                     int defaultTop) {
    w.Window.Caption = japanese ? " 現在のスコア" : "Score";
    w.Window.BackColor = back;
    w.Window.Width = 270;
    w.Window.Height = 170;
    if (setting.DefaultPlace()) {
        w.Window.Left = defaultLeft;
        w.Window.Top = defaultTop;
    } else {
        w.Window.Left = setting.X;
        w.Window.Top = setting.Y;
    }
    w.pic = {0, 20, 265, 122, true};
    w.picItems.BackColor = back;
    for (int k = 0; k < 4; ++k) {
        Label& l = w.MyName[static_cast<std::size_t>(k)];
        l.Left = 2 + 66 * k;
        l.Top = 2;
        l.Width = 65;
        l.Height = 16;
        l.TextFont = {"Arial", 9, false};
    }
}

void MirrorScore(ScoreWindow& w, const ScoreSheet& sheet) {
    if (!sheet.Mirroring) return;
    w.picItems.Items = sheet.Mirror.Items;
    w.Window.Visible = true;
    ++w.Window.TopmostRequests;
}

void Show_Score(ScoreWindow& w, const ScoreSheet& sheet, const std::array<std::string, 4>& namesBySeat, int userSeat,
                int mode, const TextWidthFn& measure) {
    const int u = userSeat & 3;
    for (int k = 0; k < 4; ++k) {
        Label& l = w.MyName[static_cast<std::size_t>(k)];
        std::string name = namesBySeat[static_cast<std::size_t>((u + k + 1) % 4)];
        while (!name.empty() && measure(name, l.TextFont) > l.Width) name = DropLast(name);
        l.Caption = name;
    }
    w.picItems.Clear();
    // The two column groups of the sheet, each copied as one block that
    // starts far enough left of its first edge to keep a hanging minus
    // before three digits.
    const double cw = sheet.M.W;
    const int width = static_cast<int>(std::lround(12.5 * cw));
    const std::array<int, 2> srcX = {static_cast<int>(std::lround(sheet.M.C[0] - 4.5 * cw)),
                                     static_cast<int>(std::lround(sheet.M.C[2] - 4.5 * cw))};
    const std::array<int, 2> dstX = {5, 5 + width + 20};
    const int y = sheet.CurrentY, p = sheet.M.Pitch;
    for (std::size_t g = 0; g < 2; ++g) {
        if (mode == 1) {
            w.picItems.Items.push_back(core::DrawImage{dstX[g], 22, core::SheetId::MainSurface, srcX[g], y, width, 3 * p});
        } else {
            w.picItems.Items.push_back(
                core::DrawImage{dstX[g], 22, core::SheetId::MainSurface, srcX[g], y - p - 5, width, p});
            w.picItems.Items.push_back(core::DrawImage{dstX[g], 42, core::SheetId::MainSurface, srcX[g], y, width, 4 * p});
        }
    }
    w.Window.Visible = true;
    ++w.Window.TopmostRequests;
}

core::Json ToJson(const ScoreSheet& s) {
    core::Json j = core::Json::Object();
    j.Set("w", s.M.W);
    j.Set("y", s.CurrentY);
    j.Set("main", core::ToJson(s.Main));
    j.Set("mirror", core::ToJson(s.Mirror));
    return j;
}

}  // namespace scoring
