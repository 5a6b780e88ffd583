// The auxiliary windows as the simulator draws them, read back by the
// readers in every site language, and compared with stored images of how
// the game draws them.
#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <random>
#include <sstream>
#include <string>

#include "core/json.h"
#include "platform/sim_desktop.h"
#include "reading/cards.h"
#include "reading/image_file.h"
#include "reading/score_reader.h"
#include "reading/win_titles.h"
#include "sim/rules.h"
#include "sim/sub_windows.h"

using namespace reading;
using platform::Image;

namespace {

constexpr int kSiteLanguages[] = {1, 2, 3, 5, 6, 7, 8, 9};
using Lines = std::vector<std::array<int, 4>>;

struct Rig {
    explicit Rig(int lang = 1) {
        glyphs.ReadingFont = 1;
        glyphs.DigitsOn = true;
        glyphs.SelectFont(1, lang, titles.BidLabel(lang), titles.TrickLabel(lang));
        cap.FontIndex = 1;
        cards.GameLanguage = lang;
    }
    platform::WindowHandle Show(int slot, const Image& client) {
        auto h = desk.AddWindow("w", {30, 40, 30 + client.Width + 8, 40 + client.Height + 27});
        desk.SetClientImage(h, client);
        cap.SubWindow[static_cast<std::size_t>(slot)].Handle = h;
        return h;
    }
    // Reads the score window; the lines read in `got`.
    int Score(Lines& got) {
        ScoreLines lines;
        const int status = score.CaptScore(lines);
        got.assign(lines.Line.begin() + 1, lines.Line.begin() + 1 + lines.Count);
        return status;
    }
    platform::SimDesktop desk{1280, 1024};
    platform::VirtualClock clock;
    Capture cap{desk, clock};
    WinTitles titles;
    GlyphTable glyphs;
    CardReader cards{cap, glyphs};
    ScoreReader score{cap, glyphs};
};

core::Json ReadJson(const std::string& path) {
    std::ifstream f(path, std::ios::binary);
    std::stringstream ss;
    ss << f.rdbuf();
    core::Json j;
    std::string err;
    EXPECT_TRUE(core::Json::Parse(ss.str(), j, err)) << path << ": " << err;
    return j;
}

void ExpectSameImage(const Image& got, const std::string& path) {
    Image want;
    std::string err;
    ASSERT_TRUE(LoadImageFile(path, want, err)) << err;
    ASSERT_EQ(got.Width, want.Width);
    ASSERT_EQ(got.Height, want.Height);
    std::size_t diffs = 0;
    for (std::size_t i = 0; i < want.Pixels.size(); ++i) diffs += got.Pixels[i] != want.Pixels[i];
    EXPECT_EQ(diffs, 0u) << "pixels differing from " << path;
}

}  // namespace

TEST(SubWindowLookTest, LastHandAndScoreMatchTheStoredImages) {
    const std::string dir = std::string(TARVELLOS_SHARED_DIR) + "/examples/readers/";
    GlyphTable glyphs;
    const core::Json hand = ReadJson(dir + "example_lasthand.json");
    sim::LastHandView v;
    for (std::size_t p = 0; p < 4; ++p) {
        v.Names[p] = (*hand.Get("names"))[p].AsString();
        for (std::size_t c = 0; c < 13; ++c) {
            v.Cards[p][c] = (*hand.Get("cards"))[p][c].AsString();
            v.Marks[p][c] = static_cast<int>((*hand.Get("marks"))[p][c].AsInt());
        }
    }
    ExpectSameImage(sim::RenderLastHand(v, glyphs), dir + "example_lasthand.png");
    const core::Json score = ReadJson(dir + "example_score.json");
    sim::ScoreWindowView sv;
    for (const auto& l : score.Get("lines")->Items())
        sv.Lines.push_back({static_cast<int>(l[0].AsInt()), static_cast<int>(l[1].AsInt()),
                            static_cast<int>(l[2].AsInt()), static_cast<int>(l[3].AsInt())});
    ExpectSameImage(sim::RenderScoreWindow(sv, glyphs), dir + "example_score.png");
}

// Random deals and names; the last round's accented names are read only
// where the site's font has the letters, and an unknown shape in a name
// never fails the reading.
TEST(LastHandRoundTripTest, EverySiteLanguage) {
    const std::array<std::string, 8> names = {"river_rat", "queen_of_h", "bagmaster_3", "slow_joe",
                                              "Zed", "a", "x_1234567", "Mmw_jq"};
    const std::array<std::string, 4> accented = {"jos\xC3\xA9", "b\xC3\xA9" "a", "\xC3\xA7" "a", "pepe"};
    std::mt19937 rng(11);
    for (int lang : kSiteLanguages) {
        for (std::size_t round = 0; round < 3; ++round) {
            SCOPED_TRACE("language " + std::to_string(lang) + " round " + std::to_string(round));
            std::vector<sim::Card> deck = sim::FullDeck();
            std::shuffle(deck.begin(), deck.end(), rng);
            sim::LastHandView v;
            v.Language = lang;
            std::array<std::string, 4> want = {"jos", "b?a", "a", "pepe"};  // trailing unknown shape trimmed
            if (lang != 1 && lang != 2) want = {"jose", "bea", "ca", "pepe"};
            for (std::size_t p = 0; p < 4; ++p) {
                v.Names[p] = round == 2 ? accented[p] : names[(p + round * 4) % names.size()];
                if (round < 2) want[p] = v.Names[p];
                for (std::size_t c = 0; c < 13; ++c) v.Cards[p][c] = sim::CardText(deck[p * 13 + c]);
            }
            for (std::size_t t = 0; t < 13; ++t) v.Marks[rng() % 4][t] = 1;  // one card of each trick led it
            Rig r(lang);
            r.Show(kSubLastHand, sim::RenderLastHand(v, r.glyphs));
            HandRead hand;
            ASSERT_EQ(r.cards.CaptHand(hand), 0);
            EXPECT_EQ(hand.Names, want);
            EXPECT_EQ(hand.Cards, v.Cards);
            for (std::size_t p = 0; p < 4; ++p)
                for (std::size_t c = 0; c < 13; ++c) EXPECT_EQ(hand.Marks[p][c], v.Marks[p][c]);
        }
    }
    // The game shows the empty grid before the first deal ends.
    Rig r;
    r.Show(kSubLastHand, sim::RenderLastHand({}, r.glyphs));
    HandRead hand;
    EXPECT_EQ(r.cards.CaptHand(hand), 0);
    EXPECT_EQ(hand.Names, (std::array<std::string, 4>{}));
    EXPECT_EQ(hand.Cards[2][5], "");
}

TEST(LastTrickRoundTripTest, EveryCardInEverySlot) {
    for (int i = 0; i < 52; ++i) {
        sim::LastTrickView v;
        for (std::size_t k = 0; k < 4; ++k) {
            const int card = (i + 14 * static_cast<int>(k)) % 52;
            v.Suits[k] = card / 13;
            v.Ranks[k] = card % 13 + 2;
        }
        Rig r;
        r.Show(kSubLastTrick, sim::RenderLastTrick(v));
        TrickRead t;
        ASSERT_TRUE(r.cards.ReadLastTrick(t, 1)) << "trick " << i;
        EXPECT_EQ(t.Suits, v.Suits);
        EXPECT_EQ(t.Ranks, v.Ranks);
        EXPECT_EQ(r.cards.LastTrickSuits, v.Suits);
        EXPECT_EQ(r.cards.CardsSeen, 0) << "mode 1 only stores";
    }
}

TEST(LastTrickRoundTripTest, ModeTwoTakesOnlyANewTrick) {
    Rig r;
    int shown = 0;
    r.cards.ShowPlayedCards = true;
    r.cards.DrawPlayedCard = [&](int, int, int) { ++shown; };
    auto h = r.Show(kSubLastTrick, sim::RenderLastTrick({{3, 3, 3, 3}, {14, 2, 9, 12}}));
    TrickRead t;
    ASSERT_TRUE(r.cards.ReadLastTrick(t, 0));
    EXPECT_EQ(r.cards.CardsSeen, 4);
    EXPECT_EQ(shown, 4);
    const std::array<int, 4> none{};
    // The same trick again, then a new one sharing one card in the same slot:
    // both taken as the old trick.
    ASSERT_TRUE(r.cards.ReadLastTrick(t, 2));
    EXPECT_EQ(t.Ranks, none);
    r.desk.SetClientImage(h, sim::RenderLastTrick({{2, 3, 0, 1}, {5, 2, 7, 7}}));
    ASSERT_TRUE(r.cards.ReadLastTrick(t, 2));
    EXPECT_EQ(t.Suits, none);
    EXPECT_EQ(r.cards.CardsSeen, 4);

    const sim::LastTrickView next{{2, 2, 0, 1}, {5, 3, 7, 7}};
    r.desk.SetClientImage(h, sim::RenderLastTrick(next));
    ASSERT_TRUE(r.cards.ReadLastTrick(t, 2));
    EXPECT_EQ(t.Suits, next.Suits);
    EXPECT_EQ(t.Ranks, next.Ranks);
    EXPECT_EQ(r.cards.LastTrickRanks, next.Ranks);
    EXPECT_EQ(r.cards.CardsSeen, 8);
    EXPECT_EQ(shown, 8);
}

TEST(LastTrickRoundTripTest, MissingCardsAndCroppedWindowsFailCleanly) {
    const std::array<int, 4> failed{-1, 0, 0, 0};
    for (std::size_t missing = 0; missing < 5; ++missing) {
        sim::LastTrickView v{{0, 1, 2, 3}, {10, 11, 12, 13}};
        if (missing < 4) v.Ranks[missing] = 0;
        Rig r;
        if (missing < 4) r.Show(kSubLastTrick, sim::RenderLastTrick(v));  // 4: no window at all
        TrickRead t;
        t.Ranks = {3, 3, 3, 3};
        EXPECT_FALSE(r.cards.ReadLastTrick(t, 0)) << "slot " << missing;
        EXPECT_EQ(t.Suits, failed);
        EXPECT_EQ(t.Ranks, (std::array<int, 4>{}));
        EXPECT_EQ(r.cards.CardsSeen, 0);
        EXPECT_EQ(r.desk.CaptureCount(), missing < 4 ? 2 : 0) << "two attempts";
    }
    const sim::LastTrickView v{{0, 1, 2, 3}, {2, 3, 4, 5}};
    const Image full = sim::RenderLastTrick(v);
    for (int w : {1, 60, 131, 200, 245, 269}) {
        for (int hgt : {1, 20, 40, 64, 90, 129}) {
            Image img(w, hgt);
            for (int y = 0; y < hgt; ++y)
                for (int x = 0; x < w; ++x) img.Set(x, y, full.At(x, y));
            Rig r;
            r.Show(kSubLastTrick, img);
            TrickRead t;
            const bool ok = r.cards.ReadLastTrick(t, 1);
            EXPECT_EQ(t.Suits, ok ? v.Suits : failed) << w << "x" << hgt;
            if (ok) { EXPECT_EQ(t.Ranks, v.Ranks); }
        }
    }
}

TEST(ScoreRoundTripTest, TwentyLinesWithNegativeScoresInEveryLanguage) {
    std::mt19937 rng(5);
    sim::ScoreWindowView v;
    for (int i = 0; i < 20; ++i) {
        int us = static_cast<int>(rng() % 1200) - 400;
        if (us == 0) us = 10;  // a line with both scores 0 is not a line
        v.Lines.push_back({us, static_cast<int>(rng() % 10), -static_cast<int>(rng() % 300) + (i == 3 ? 0 : 1),
                           static_cast<int>(rng() % 10)});
    }
    for (int lang : kSiteLanguages) {
        Rig r(lang);
        r.Show(kSubScore, sim::RenderScoreWindow(v, r.glyphs));
        Lines got;
        EXPECT_EQ(r.Score(got), 0) << "language " << lang;
        EXPECT_EQ(got, v.Lines) << "language " << lang;
    }
}

TEST(ScoreRoundTripTest, ZeroLinesAndEmptyTables) {
    // Zero scores with bags are overwritten by the next line.
    Rig r;
    r.Show(kSubScore, sim::RenderScoreWindow({{{50, 1, 60, 0}, {0, 3, 0, 2}, {110, 2, -20, 0}}}, r.glyphs));
    Lines got;
    EXPECT_EQ(r.Score(got), 0);
    EXPECT_EQ(got, (Lines{{50, 1, 60, 0}, {110, 2, -20, 0}}));

    // An empty table shrinks a tall window.
    Rig tall;
    auto h = tall.Show(kSubScore, sim::RenderScoreWindow({{}, 8}, tall.glyphs));
    EXPECT_EQ(tall.Score(got), 0);
    EXPECT_TRUE(got.empty());
    platform::Rect rect;
    ASSERT_TRUE(tall.desk.GetWindowRect(h, rect));
    EXPECT_EQ(rect, (platform::Rect{30, 0, 30 + 228, 140}));
}

// The game redraws its score window at whatever size it is given; here
// redraws scheduled on the clock stand in for it.
TEST(ScoreRoundTripTest, HiddenLinesMakeTheWindowGrowForFourCaptures) {
    for (int count : {6, 8}) {
        SCOPED_TRACE(count);
        Rig r;
        sim::ScoreWindowView view{{}, 4};
        for (int i = 1; i <= count; ++i) view.Lines.push_back({i * 100, i, -i * 10, 0});
        const auto h = r.Show(kSubScore, sim::RenderScoreWindow(view, r.glyphs));
        for (std::uint32_t t = 1; t < 20000; t += 50)
            r.clock.Schedule(r.clock.TickCount() + t, [&] {
                platform::Rect c;
                if (!r.desk.GetClientRect(h, c)) return;
                view.Rows = (c.Height() - sim::score_window::Height(0)) / sim::score_window::kLinePitch;
                r.desk.SetClientImage(h, sim::RenderScoreWindow(view, r.glyphs));
            });
        Lines got;
        // Three rows more are enough within four captures; five are not, and
        // the caller gets what the last attempt read.
        EXPECT_EQ(r.Score(got), count == 6 ? 0 : 2);
        EXPECT_EQ(got, Lines(view.Lines.begin(), view.Lines.begin() + 7 - (count == 6)));
        platform::Rect c, w;
        r.desk.GetClientRect(h, c);
        r.desk.GetWindowRect(h, w);
        EXPECT_EQ(c.Height(), sim::score_window::Height(count == 6 ? 7 : 8)) << "one line pitch more per capture";
        EXPECT_TRUE(w.Left == 0 && w.Top == 40) << "moved to the screen's left edge, top kept";
    }
}
