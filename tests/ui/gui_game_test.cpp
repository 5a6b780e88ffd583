// A whole simulated game through the windows, offscreen: after every deal
// the counter, the score sheet, the card play window and the hand display
// show what the engine's models hold, pixel for pixel where they copy from
// the sheets.
#include <QAction>
#include <QApplication>
#include <QCoreApplication>
#include <QPushButton>
#include <QTest>
#include <filesystem>

#include "replay/demo_scenario.h"
#include "replay/program_files.h"
#include "replay/session.h"
#include "sim/scenario.h"
#include "ui/bridge.h"
#include "ui_test_util.h"

namespace {

using uitest::CountDark;

// Pixels of `shot` that differ from the sheet's blocks a draw list copies,
// with the list's origin at `origin`. Where blocks overlap, the later one
// is what shows.
int CopiesDiffering(const QImage& shot, const core::DrawList& list, const QImage& sheet, core::SheetId from,
                    QPoint origin = {}) {
    std::vector<bool> covered(static_cast<std::size_t>(shot.width() * shot.height()));
    const auto copies = list.All<core::DrawImage>();
    int n = 0;
    for (auto c = copies.rbegin(); c != copies.rend(); ++c) {
        for (int y = 0; y < c->Height; ++y)
            for (int x = 0; x < c->Width; ++x) {
                const int sx = origin.x() + c->X + x, sy = origin.y() + c->Y + y;
                if (!shot.rect().contains(sx, sy)) continue;
                const auto at = static_cast<std::size_t>(sy * shot.width() + sx);
                if (covered[at]) continue;
                covered[at] = true;
                if (c->Source == from && shot.pixel(sx, sy) != sheet.pixel(c->SrcX + x, c->SrcY + y)) ++n;
            }
    }
    return n;
}

struct Game {
    explicit Game(int deals, int seed = 2, std::vector<std::string> more = {}, int codePage = 0) {
        std::string err;
        EXPECT_TRUE(replay::DemoScenario(scenario, err)) << err;
        scenario.settings.insert(scenario.settings.end(),
                                 {"CountCards = yes (*,0)", "MyHand = (*,0)", "PasteScoreTable = (*,0)"});
        scenario.settings.insert(scenario.settings.end(), more.begin(), more.end());
        if (codePage) scenario.codepage = codePage;
        scenario.game.randomDeals = deals;
        scenario.game.seed = static_cast<std::uint32_t>(seed);
        home = (std::filesystem::temp_directory_path() /
                ("tarvellos_gui_game_" + std::to_string(QCoreApplication::applicationPid()) + "_" + std::to_string(seed)))
                   .string();
        std::filesystem::remove_all(home);
        EXPECT_TRUE(replay::WriteProgramFiles(scenario, home).Ok);
    }
    ~Game() { std::filesystem::remove_all(home); }
    sim::Scenario scenario;
    std::string home;
};

// The companion with its windows beside the game, ticked by hand: each tick
// first lets one timer interval of the game's time pass.
struct Windowed {
    Windowed(const sim::Scenario& scenario, const std::string& home) : s(scenario, home, &ui) {
        ui.attach(s.App);
        ui.BeforeTick = [this] { s.Advance(static_cast<std::uint32_t>(s.App.TimerInterval())); };
    }
    // Start-up; the timer is left to the test.
    bool Start() {
        if (!s.Start(false, false)) return false;
        ui.start();
        ui.stop();
        return true;
    }
    void TickUntilFiled(int deals) {
        for (int i = 0; i < 20000 && s.App.FiledCount() < deals; ++i) ui.tick();
    }
    ui::CompanionUi ui;
    replay::Session s;
};

TEST(GuiGame, AfterEachDealTheWindowsShowTheModels) {
    Game g(4);
    Windowed run(g.scenario, g.home);
    auto& ui = run.ui;
    auto& s = run.s;
    bool pending = false;
    int checked = 0;
    ui.OnDealFiled = [&](const tracking::FiledDeal&) { pending = true; };
    ui.AfterTick = [&] {
        if (!pending) return;
        pending = false;
        ++checked;
        const auto& m = s.App.Models();
        const ui::CardSheets& sheets = ui.sheets();

        auto* counter = dynamic_cast<ui::FrmCounter*>(ui.window("counter"));
        ASSERT_TRUE(counter && counter->isVisible());
        for (int i = 0; i < 3; ++i) {
            const auto& l = m.Counters.frmCounter.cTrk[static_cast<std::size_t>(i)];
            EXPECT_EQ(counter->model().cTrk[static_cast<std::size_t>(i)].Caption, l.Caption);
            if (l.Visible && !l.Caption.empty()) {
                EXPECT_GT(CountDark(ui::Snapshot(*counter), QRect(l.Left, l.Top, l.Width, l.Height)), 3)
                    << "trick figure " << i;
            }
        }

        const QImage& sheet = ui.scoreSheet()->surface();
        int texts = 0;
        for (const auto& t : m.ScoreSheet.Main.All<core::DrawText>()) {
            const QRect at(static_cast<int>(t.X), static_cast<int>(t.Y), 10, m.ScoreSheet.M.Pitch);
            EXPECT_GT(CountDark(sheet, at), 0) << t.Text << " at " << t.X << "," << t.Y;
            ++texts;
        }
        EXPECT_GE(texts, 8);  // names, bids, the deal's points and bags of both sides

        auto* cardPlay = ui.window("cardplay");
        ASSERT_TRUE(cardPlay->isVisible());
        EXPECT_EQ(m.frmCardPlay.Items.All<core::DrawImage>().size(), 52u);
        EXPECT_EQ(CopiesDiffering(ui::Snapshot(*cardPlay), m.frmCardPlay.Items, sheets.Card, core::SheetId::CardSheet), 0);

        auto* hands = ui.window("hands");
        ASSERT_TRUE(hands->isVisible());
        const QImage handShot = ui::Snapshot(*hands);
        EXPECT_EQ(CopiesDiffering(handShot, m.Hands.Hands.Items, sheets.Text, core::SheetId::TextSheet, {6, 2}), 0);
        EXPECT_EQ(CopiesDiffering(handShot, m.Hands.TrickTable, sheets.Card, core::SheetId::CardSheet), 0);

        auto* score = ui.window("score");
        ASSERT_TRUE(score->isVisible());
        EXPECT_EQ(score->windowTitle(), QStringLiteral("Score"));
    };
    ASSERT_TRUE(run.Start());
    for (int i = 0; i < 40000 && !(s.GameFinished() && s.App.FiledCount() >= s.DealsPlayed()); ++i) ui.tick();
    EXPECT_EQ(checked, 4);
    EXPECT_EQ(s.App.FiledCount(), 4);
}


// The user drags the card play window and the main window, ends the
// program, and finds both where they were left at the next start.
TEST(GuiGame, DraggedWindowsStandWhereTheyWereLeftAfterARestart) {
    Game g(2, 5, {"CFG = Windows.CFG"});
    {
        Windowed first(g.scenario, g.home);
        ASSERT_TRUE(first.Start());
        first.TickUntilFiled(1);
        QWidget* cardPlay = first.ui.window("cardplay");
        ASSERT_TRUE(cardPlay->isVisible());
        cardPlay->move(123, 456);
        first.ui.mainWindow().move(700, 30);
        QCoreApplication::processEvents();
        EXPECT_EQ(first.s.App.Models().frmCardPlay.Window.Left, 123);
        first.ui.mainWindow().close();  // closing the main window is "End"
        for (int i = 0; i < 10 && !first.s.App.Ended(); ++i) first.ui.tick();
        ASSERT_TRUE(first.s.App.Ended());
    }
    Windowed again(g.scenario, g.home);
    ASSERT_TRUE(again.Start());
    EXPECT_EQ(again.ui.mainWindow().pos(), QPoint(700, 30));
    again.TickUntilFiled(1);
    EXPECT_EQ(again.ui.window("cardplay")->pos(), QPoint(123, 456));
}


// The Japanese interface through a deal: the windows' Japanese captions,
// and their pictures written for review.
TEST(GuiGame, JapaneseInterfaceCaptions) {
    Game g(1, 9, {"JPN = yes"}, 932);
    Windowed run(g.scenario, g.home);
    ASSERT_TRUE(run.Start());
    run.TickUntilFiled(1);
    const auto& ui = run.ui;
    ASSERT_TRUE(run.s.App.Settings().JPN);
    EXPECT_EQ(ui.window("cardplay")->windowTitle(), QString::fromUtf8(" プレイ経過"));
    EXPECT_EQ(ui.window("score")->windowTitle(), QString::fromUtf8(" 現在のスコア"));
    EXPECT_EQ(ui.window("hands")->windowTitle(), QString::fromUtf8(" 手札"));
    for (const auto& w : ui.windows())
        if (w.Window->isVisible()) ui::SaveSnapshot(*w.Window, uitest::OutPath(QStringLiteral("jp-") + w.Name));
}


// What the user does in a window reaches the companion, and a tick that a
// wait inside the companion lets the timer start never runs inside another.
TEST(GuiGame, ButtonsBecomeCommandsAndTicksNeverNest) {
    Game g(1, 11);
    Windowed run(g.scenario, g.home);
    auto& ui = run.ui;
    auto& s = run.s;
    int depth = 0, deepest = 0;
    ui.BeforeTick = [&] {
        ++depth;
        deepest = std::max(deepest, depth);
        ui.tick();  // as the timer would, from inside a wait
        s.Advance(static_cast<std::uint32_t>(s.App.TimerInterval()));
        --depth;
    };
    ASSERT_TRUE(run.Start());
    for (int i = 0; i < 200 && s.App.Online() != tracking::OnlineMode::Online; ++i) ui.tick();
    ASSERT_EQ(s.App.Online(), tracking::OnlineMode::Online);
    EXPECT_EQ(deepest, 1);

    QPushButton* pause = ui.mainWindow().button(QStringLiteral("cmdTimer"));
    ASSERT_TRUE(pause);
    QTest::mouseClick(pause, Qt::LeftButton);
    EXPECT_EQ(s.App.Models().frmZ.cmdTimer.Caption, "0");
    EXPECT_EQ(pause->text(), QStringLiteral("0"));
    QTest::mouseClick(pause, Qt::LeftButton);
    EXPECT_EQ(pause->text(), QStringLiteral("Pause"));

    // The History menu opens the charts of the player's files.
    QAction* history = nullptr;
    for (QAction* a : ui.mainWindow().findChildren<QAction*>())
        if (a->text() == QLatin1String("History")) history = a;
    ASSERT_TRUE(history);
    history->trigger();
    bool shown = false;
    for (QWidget* w : QApplication::topLevelWidgets()) shown |= qobject_cast<ui::HistoryWindow*>(w) && w->isVisible();
    EXPECT_TRUE(shown);
}

}  // namespace

namespace {

// A companion stopped at start-up (another instance runs) shows why while
// it waits, and "End" ends the wait.
TEST(GuiGame, FatalStopShowsWhyAndEndsOnEnd) {
    Game g(1, 13);
    Windowed run(g.scenario, g.home);
    run.s.Desktop.SetPrevInstance(true);
    QString shown;
    bool endVisible = false;
    // Two seconds into the wait the user looks, then presses "End".
    run.s.Clock.Schedule(run.s.Clock.TickCount() + 2000, [&] {
        QCoreApplication::sendPostedEvents();
        run.ui.mainWindow().setStartupScreen(run.s.App.StartupScreen());
        shown = QString::fromStdString(run.s.App.StartupScreen().Text());
        QPushButton* end = run.ui.mainWindow().button(QStringLiteral("cmdEnd"));
        endVisible = end && end->isVisibleTo(&run.ui.mainWindow());
        if (end) QTest::mouseClick(end, Qt::LeftButton);
    });
    run.ui.showStartup();
    const std::uint64_t before = run.s.Clock.Elapsed();
    EXPECT_FALSE(run.s.Start(false, false));
    EXPECT_TRUE(shown.contains(QStringLiteral("again"))) << shown.toStdString();
    EXPECT_TRUE(endVisible);
    EXPECT_LT(run.s.Clock.Elapsed() - before, 5000u);  // ended by "End", not by the wait running out
}

}  // namespace
