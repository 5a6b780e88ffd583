// The History window: the rating history and the Nil report read back from
// the files the engine writes, and drawn.
#include "ui/history_window.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include "core/text.h"
#include "ui_test_util.h"

namespace {

TEST(HistoryData, RatingLinesOldestFirstSkippingProvisional) {
    const std::vector<std::string> lines = {
        "1561 2013/03/07 22:10:05 Win  ( 520,310) me_player    lefty_one    partner_x    righty_two   USA",
        "prov 2013/03/06 20:00:00 Lost (210,505) me_player    a            b            c            USA",
        "1534 2013/03/05 21:07:44 Lost ( 50,-41) me_player    lefty_one    partner_x    righty_two   USA",
        "garbage",
    };
    const auto pts = ui::ParseRatingHistory(lines);
    ASSERT_EQ(pts.size(), 2u);
    EXPECT_EQ(pts[0].Rating, 1534);
    EXPECT_EQ(pts[0].Day, 5);
    EXPECT_TRUE(pts[0].Lost);
    EXPECT_EQ(pts[1].Rating, 1561);
    EXPECT_EQ(pts[1].Second, 5);
    EXPECT_TRUE(pts[1].Won);
}

TEST(HistoryData, NilRatesFromTheReportText) {
    scoring::NilCounts c;
    c.Success(scoring::NilRowMyBids) = 3;
    c.Failure(scoring::NilRowMyBids) = 1;
    c.Success(scoring::NilRowRuleKept) = 2;
    // The report written for the counts is what the window reads back.
    const auto rates = ui::NilRates(scoring::ReadNilCounts(scoring::NilReportLines(c, false, {})), false);
    ASSERT_EQ(rates.size(), 7u);
    EXPECT_EQ(rates[0].Title, "(1) My NIL Bids");
    EXPECT_DOUBLE_EQ(rates[0].Percent(), 75.0);
    EXPECT_EQ(rates[4].Success, 2);
    EXPECT_DOUBLE_EQ(rates[1].Percent(), 0.0);  // nothing counted: no bar, no division
}

TEST(HistoryWindow, DrawsFromFilesInTheirCodePage) {
    QTemporaryDir dir;
    const std::string history = (dir.path() + "/SpadesHistory.TXT").toStdString();
    std::string text;
    const int ratings[] = {1620, 1598, 1575, 1590, 1561, 1534};
    for (int i = 0; i < 6; ++i)
        text += std::to_string(ratings[i]) + " 2013/03/0" + std::to_string(9 - i) + " 21:00:00 " +
                (i % 2 ? "Lost" : "Win ") + " (500,320) me_player    a            b            c            USA\r\n";
    ASSERT_TRUE(core::WriteFileBytes(history, text));
    scoring::NilCounts c;
    const std::pair<int, std::array<int, 2>> counts[] = {{scoring::NilRowMyBids, {7, 3}}, {scoring::NilRowMyCovers, {4, 4}},
        {scoring::NilRowSetNils, {6, 2}}, {scoring::NilRowRuleKept, {9, 3}}, {scoring::NilRowRuleBroken, {2, 4}}};
    for (const auto& [row, sf] : counts) c.Rows[static_cast<std::size_t>(row)] = sf;
    const std::string report = (dir.path() + "/RecordNILs.TXT").toStdString();
    ASSERT_TRUE(core::WriteTextFile(report, scoring::NilReportLines(c, false, {2013, 3, 9, 21, 0, 0}), 1252));

    ui::HistoryWindow w;
    w.loadFiles(history, report, 1252, false);
    ASSERT_EQ(w.ratings().size(), 6u);
    EXPECT_EQ(w.ratings().back().Rating, 1620);
    EXPECT_DOUBLE_EQ(w.rates()[0].Percent(), 70.0);
    const QImage img = ui::Snapshot(w);
    // The rating line is drawn in blue, the bars in their blue-green.
    EXPECT_GT(uitest::CountHue(img, QRect(0, 0, w.width(), w.height() / 2), 2), 100);
    EXPECT_GT(uitest::CountColor(img, QRect(0, w.height() / 2, w.width(), w.height() / 2), QColor(0, 128, 192)), 500);
    EXPECT_TRUE(uitest::MatchesReference(w, "history"));
}

}  // namespace

namespace {

// The demo writes its pictures with the snapshot helper: the file holds the
// window as painted, at the window's size, without showing it.
TEST(Snapshot, WritesTheWindowAsPng) {
    QTemporaryDir dir;
    ui::HistoryWindow w;
    const QString path = dir.path() + "/history-001.png";
    ASSERT_TRUE(ui::SaveSnapshot(w, path));
    const QImage back(path);
    EXPECT_EQ(back.size(), QSize(ui::HistoryWindow::kWidth, ui::HistoryWindow::kHeight));
    EXPECT_FALSE(w.isVisible());
    EXPECT_FALSE(ui::SaveSnapshot(w, dir.path() + "/missing-folder/x.png"));
}

}  // namespace
