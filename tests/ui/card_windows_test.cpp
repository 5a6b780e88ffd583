// The card and score windows painted from fixed models: a card shows the
// sheet's own cell at its trick column and seat row, a marked card its rose
// outline, the hand display its rank cells, the sheet's minus hangs left of
// the digits and the first leader's bid is blue, and the score window's
// blocks are the sheet's own pixels. Layouts are checked against reviewed
// pictures.
#include "ui/card_windows.h"

#include <QPainter>

#include "core/notation.h"
#include "ui_test_util.h"

namespace {

using uitest::CountDark;
using uitest::CountHue;
using uitest::MatchesReference;

constexpr int Blue = 2;

const display::CardSheet& Sheet() {
    static const display::CardSheet s = display::BuildCardSheet();
    return s;
}
const display::TextSheet& Text() {
    static const display::TextSheet s = display::BuildTextSheet();
    return s;
}
const ui::CardSheets& Images() {
    static const ui::CardSheets s = ui::MakeCardSheets(Sheet(), Text());
    return s;
}

// Pixels of a window that differ from a block of a sheet placed at `at`.
int Differing(const QImage& shot, QPoint at, const QImage& sheet, QRect src) {
    int n = 0;
    for (int y = 0; y < src.height(); ++y)
        for (int x = 0; x < src.width(); ++x)
            if (shot.pixel(at.x() + x, at.y() + y) != sheet.pixel(src.x() + x, src.y() + y)) ++n;
    return n;
}

display::CardPlayWindow CardPlayModel(bool japanese) {
    display::CardPlayWindow w;
    display::LoadCardPlay(w, japanese, display::CompanionBack, {}, {10, 10}, 0, 0);
    display::PlayedCards played;
    // Trick 1: the user led the ace of spades (square brackets) and won it.
    played.Code[0] = {314, 302, 313, 305};
    played.Style[0] = {display::StyleSquare, 0, 0, 0};
    played.White[0] = {1, 0, 0, 0};
    // Trick 2: the left-hand opponent's queen of hearts is marked.
    played.Code[1] = {203, -212, 204, 209};
    played.TricksPlayed = 2;
    display::ShowCardPlay(w, played, Sheet());
    return w;
}

TEST(CardPlayWindow, EachCardIsTheSheetsCellAtItsTrickAndRow) {
    ui::FrmCardPlay w(Images());
    w.setModel(CardPlayModel(false));
    EXPECT_EQ(w.windowTitle(), QStringLiteral("CardPlay"));
    const QImage shot = ui::Snapshot(w);
    const int h = Sheet().LineHeight - 1;
    struct Want {
        int Trick, Row, Code, Style;
        bool White;
    };
    // Rows: left-hand opponent, partner, right-hand opponent, the user.
    const Want cards[] = {{0, 3, 314, display::StyleSquare, true}, {0, 0, 302, 0, false}, {0, 1, 313, 0, false},
                          {0, 2, 305, 0, false},                   {1, 1, 204, 0, false}, {1, 3, 203, 0, false}};
    for (const Want& c : cards) {
        const QPoint at(26 * c.Trick + 38, display::CardPlayRowY(c.Row));
        const QRect src(25 * (c.Code % 100 - 2), 16 * (8 * c.Style + 4 * (c.White ? 1 : 0) + c.Code / 100), 25, h);
        EXPECT_EQ(Differing(shot, at, Images().Card, src), 0) << "trick " << c.Trick + 1 << " row " << c.Row;
    }
    // The marked queen: rose outline on the cell's edge, the card inside.
    const QPoint q(26 + 38, display::CardPlayRowY(0));
    EXPECT_EQ(QColor(shot.pixel(q)).rgb(), QColor(255, 0, 128).rgb());
    EXPECT_EQ(QColor(shot.pixel(q.x() + 23, q.y() + h - 1)).rgb(), QColor(255, 0, 128).rgb());
    // Column 3 is empty: only the window's colour.
    const QColor back = ui::ToQColor(display::CompanionBack);
    const QRect empty(26 * 2 + 38, display::CardPlayRowY(0), 25, 60);
    EXPECT_EQ(uitest::CountColor(shot, empty, back), empty.width() * empty.height());
    EXPECT_TRUE(MatchesReference(w, "cardplay-two-tricks"));
}

TEST(CardPlayWindow, JapaneseCaption) {
    ui::FrmCardPlay w(Images());
    w.setModel(CardPlayModel(true));
    EXPECT_EQ(w.windowTitle(), QString::fromUtf8(" プレイ経過"));
}

tracking::HandWindow HandsModel() {
    display::DealRecord rec;
    // Seat s holds one suit from two to ace, played in trick order.
    for (int t = 0; t < 13; ++t)
        for (int s = 0; s < 4; ++s) rec.Trick[t][s] = core::CardText((s * 100) + t + 2);
    rec.Mark[0][0] = display::MarkBrackets;
    tracking::HandWindow w;
    w.Window.Caption = "Hands";
    w.Window.Width = 606;
    w.Window.Height = 262;
    w.Window.BackColor = display::CompanionBack;
    w.Window.Visible = true;
    const std::array<int, 4> seatOfPos = {0, 1, 2, 3};
    w.Hands = display::BuildHandsView(display::HandsFromRecord(rec, true), seatOfPos, Text(), false);
    display::PlayedCards played = display::PlayedFromRecord(rec, seatOfPos);
    w.TrickTable = display::BuildTrickTable(played, Sheet(), tracking::HandsTrickTableLeft, 4);
    return w;
}

TEST(HandWindow, RankCellsAndTrickTableComeFromTheSheets) {
    ui::FrmHands w(Images());
    const auto m = HandsModel();
    w.setModel(m);
    const QImage shot = ui::Snapshot(w);
    // Every copied cell shows the sheet's pixels where it was put (the
    // four hands stand 6, 2 in from the edge).
    int cells = 0;
    for (const auto& c : m.Hands.Items.All<core::DrawImage>()) {
        EXPECT_EQ(Differing(shot, QPoint(c.X + 6, c.Y + 2), Images().Text, QRect(c.SrcX, c.SrcY, c.Width, c.Height)), 0);
        ++cells;
    }
    EXPECT_EQ(cells, 52 + 16);
    for (const auto& c : m.TrickTable.All<core::DrawImage>())
        EXPECT_EQ(Differing(shot, QPoint(c.X, c.Y), Images().Card, QRect(c.SrcX, c.SrcY, c.Width, c.Height)), 0);
    // The spades (North's suit) are printed bold: more ink than the same
    // ranks in plain clubs.
    const QRect boldA = QRect(Text().RankCell(14, true).SrcX, Text().RankCell(14, true).SrcY, 11, 22);
    const QRect plainA = QRect(Text().RankCell(14, false).SrcX, Text().RankCell(14, false).SrcY, 11, 22);
    EXPECT_GT(CountDark(Images().Text, boldA), CountDark(Images().Text, plainA));
    EXPECT_TRUE(MatchesReference(w, "hands-one-suit-each"));
}

scoring::ScoreSheet SheetModel(bool online) {
    scoring::ScoreRows rows;
    rows.AddRow({-40, 8, 120, 3});
    rows.AddRow({-160, 1, 190, 4});
    scoring::ScoreSheetInput in;
    in.Names = {"me_player", "lefty_one", "partner_x", "righty_two"};
    in.Bids = {"4", "3", "2", "5"};
    in.FirstLeader = 1;
    in.UserSeat = 0;
    in.Online = online;
    in.Top = 4;
    return scoring::BuildScoreSheet(rows, in, ui::QtTextMeasure());
}

TEST(ScoreSheet, MinusHangsLeftAndTheLeadersBidIsBlue) {
    QWidget host;
    host.setFixedSize(344, 180);
    QPalette pal = host.palette();
    pal.setColor(QPalette::Window, ui::ToQColor(core::kMainWindowBackColor));
    host.setPalette(pal);
    auto* view = new ui::ScoreSheetView(&host);
    view->setGeometry(0, 0, 344, 180);
    const auto m = SheetModel(false);
    view->setModel(m);
    const QImage& img = view->surface();
    // We lost 120 this deal: "120" ends at c2, the minus stands left of it.
    const double w = m.M.W;
    const int dealY = m.CurrentY + m.M.Pitch;
    const int c2 = static_cast<int>(m.M.C[2]);
    const QRect digits(static_cast<int>(c2 - 3 * w), dealY, static_cast<int>(3 * w), m.M.Pitch);
    const QRect minus(static_cast<int>(c2 - 3 * w) - 10, dealY, 9, m.M.Pitch);
    EXPECT_GT(CountDark(img, digits), 20);
    EXPECT_GT(CountDark(img, minus), 2);
    // Bids line: the left-hand opponent (East) led: "[3]" in blue at c0.
    const int c0 = static_cast<int>(m.M.C[0]);
    const QRect leader(static_cast<int>(c0 - 3 * w), m.Top + m.M.Pitch, static_cast<int>(3 * w), m.M.Pitch);
    EXPECT_GT(CountHue(img, leader, Blue), 10);
    const QRect userBid(static_cast<int>(m.M.C[3] - w), m.Top + m.M.Pitch, static_cast<int>(w), m.M.Pitch);
    EXPECT_EQ(CountHue(img, userBid, Blue), 0);
    EXPECT_GT(CountDark(img, userBid), 5);
    EXPECT_TRUE(MatchesReference(*view, "score-sheet-two-deals"));
}

TEST(ScoreWindow, PastesTheSheetsBlocksAndCutsNames) {
    QWidget host;
    auto* view = new ui::ScoreSheetView(&host);
    view->setGeometry(0, 0, 344, 180);
    const auto sheet = SheetModel(true);
    view->setModel(sheet);
    scoring::ScoreWindow m;
    scoring::LoadScoreWindow(m, false, core::kMainWindowBackColor, {300, 200}, 0, 0);
    const std::array<std::string, 4> names = {"me_player", "a_very_long_player_name", "partner_x", "righty_two"};
    scoring::Show_Score(m, sheet, names, 0, 2, ui::QtTextMeasure());
    ui::FrmScore w(*view);
    w.setModel(m);
    EXPECT_EQ(w.windowTitle(), QStringLiteral("Score"));
    EXPECT_LT(ui::QtTextWidth(m.MyName[0].Caption, m.MyName[0].TextFont), 66);
    EXPECT_NE(m.MyName[0].Caption, names[1]);
    const QImage shot = ui::Snapshot(w);
    for (const auto& b : m.picItems.All<core::DrawImage>()) {
        // What lies beyond the main window's surface is not pasted.
        const QRect src =
            QRect(b.SrcX, b.SrcY, b.Width, std::min(b.Height, m.pic.Height - b.Y)).intersected(view->surface().rect());
        EXPECT_EQ(Differing(shot, QPoint(m.pic.Left + b.X, m.pic.Top + b.Y), view->surface(), src), 0);
    }
    EXPECT_TRUE(MatchesReference(w, "score-window-pasted"));
}

}  // namespace
