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
#include "reading/glyphs.h"
#include "reading/image_file.h"
#include "reading/score_reader.h"
#include "reading/win_titles.h"
#include "sim/sub_windows.h"

using namespace reading;
using platform::Image;

namespace {

constexpr int kSiteLanguages[] = {1, 2, 3, 5, 6, 7, 8, 9};

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
    platform::SimDesktop desk{1280, 1024};
    platform::VirtualClock clock;
    Capture cap{desk, clock};
    WinTitles titles;
    GlyphTable glyphs;
    CardReader cards{cap, glyphs};
    ScoreReader score{cap, glyphs};
};

bool ReadJson(const std::string& path, core::Json& out) {
    std::ifstream f(path, std::ios::binary);
    std::stringstream ss;
    ss << f.rdbuf();
    std::string err;
    return core::Json::Parse(ss.str(), out, err);
}

// The view of the stored "Last Hand" example, taken from its expected reading.
sim::LastHandView ExampleHandView(const core::Json& j) {
    sim::LastHandView v;
    for (std::size_t p = 0; p < 4; ++p) {
        v.Names[p] = j.Get("names")->Items()[p].AsString();
        for (std::size_t c = 0; c < 13; ++c) {
            v.Cards[p][c] = j.Get("cards")->Items()[p].Items()[c].AsString();
            v.Marks[p][c] = static_cast<int>(j.Get("marks")->Items()[p].Items()[c].AsInt());
        }
    }
    return v;
}

void ExpectSameImage(const Image& got, const Image& want) {
    ASSERT_EQ(got.Width, want.Width);
    ASSERT_EQ(got.Height, want.Height);
    int diffs = 0;
    for (int y = 0; y < want.Height; ++y)
        for (int x = 0; x < want.Width; ++x)
            if (got.At(x, y) != want.At(x, y) && ++diffs <= 5)
                ADD_FAILURE() << "pixel (" << x << "," << y << ") " << std::hex << got.At(x, y) << " != " << want.At(x, y);
    EXPECT_EQ(diffs, 0);
}

std::array<std::string, 52> Deck() {
    std::array<std::string, 52> d;
    const std::string ranks = "23456789TJQKA", suits = "CDHS";
    for (int i = 0; i < 52; ++i)
        d[static_cast<std::size_t>(i)] = std::string(1, ranks[static_cast<std::size_t>(i % 13)]) + suits[static_cast<std::size_t>(i / 13)];
    return d;
}

}  // namespace

// --- drawn as the game draws ------------------------------------------------------------

TEST(SubWindowLookTest, LastHandAndScoreMatchTheStoredImages) {
    const std::string dir = std::string(TARVELLOS_SHARED_DIR) + "/examples/readers/";
    GlyphTable glyphs;
    core::Json hand;
    ASSERT_TRUE(ReadJson(dir + "example_lasthand.json", hand));
    Image want;
    std::string err;
    ASSERT_TRUE(LoadImageFile(dir + "example_lasthand.png", want, err)) << err;
    ExpectSameImage(sim::RenderLastHand(ExampleHandView(hand), glyphs), want);

    core::Json score;
    ASSERT_TRUE(ReadJson(dir + "example_score.json", score));
    sim::ScoreWindowView sv;
    for (const auto& l : score.Get("lines")->Items())
        sv.Lines.push_back({static_cast<int>(l[0].AsInt()), static_cast<int>(l[1].AsInt()),
                            static_cast<int>(l[2].AsInt()), static_cast<int>(l[3].AsInt())});
    ASSERT_TRUE(LoadImageFile(dir + "example_score.png", want, err)) << err;
    ExpectSameImage(sim::RenderScoreWindow(sv, glyphs), want);
}

// --- "Last Hand" ------------------------------------------------------------------------

TEST(LastHandRoundTripTest, RandomDealsInEverySiteLanguage) {
    const std::array<std::string, 8> names = {"river_rat", "queen_of_h", "bagmaster_3", "slow_joe",
                                              "Zed", "a", "x_1234567", "Mmw_jq"};
    std::mt19937 rng(11);
    for (int lang : kSiteLanguages) {
        for (int round = 0; round < 3; ++round) {
            auto deck = Deck();
            std::shuffle(deck.begin(), deck.end(), rng);
            sim::LastHandView v;
            v.Language = lang;
            for (std::size_t p = 0; p < 4; ++p) {
                v.Names[p] = names[(p + static_cast<std::size_t>(round) * 4) % names.size()];
                for (std::size_t c = 0; c < 13; ++c) v.Cards[p][c] = deck[p * 13 + c];
            }
            // One card of each trick led it.
            for (int t = 0; t < 13; ++t) v.Marks[rng() % 4][static_cast<std::size_t>(t)] = 1;
            Rig r(lang);
            r.Show(kSubLastHand, sim::RenderLastHand(v, r.glyphs));
            HandRead hand;
            ASSERT_EQ(r.cards.CaptHand(hand), 0) << "language " << lang;
            for (std::size_t p = 0; p < 4; ++p) {
                EXPECT_EQ(hand.Names[p], v.Names[p]) << "language " << lang;
                for (std::size_t c = 0; c < 13; ++c) {
                    EXPECT_EQ(hand.Cards[p][c], v.Cards[p][c]) << "language " << lang << " line " << p << " card " << c;
                    EXPECT_EQ(hand.Marks[p][c], v.Marks[p][c]);
                }
            }
        }
    }
}

TEST(LastHandRoundTripTest, CardLettersPerLanguage) {
    EXPECT_EQ(sim::LastHandCardText("TH", 1), "10H");
    EXPECT_EQ(sim::LastHandCardText("AS", 5), "AP");
    EXPECT_EQ(sim::LastHandCardText("2C", 5), "2F");
    EXPECT_EQ(sim::LastHandCardText("KH", 3), "KC");
    EXPECT_EQ(sim::LastHandCardText("KC", 9), "KT");
    EXPECT_EQ(sim::LastHandCardText("QS", 7), "QP");
    EXPECT_EQ(sim::LastHandCardText("QH", 8), "QH");
}

TEST(LastHandRoundTripTest, AccentedNamesReadOnlyWhereTheSiteUsesThem) {
    for (int lang : kSiteLanguages) {
        sim::LastHandView v;
        v.Language = lang;
        v.Names = {"jos\xC3\xA9", "b\xC3\xA9" "a", "\xC3\xA7" "a", "pepe"};
        auto deck = Deck();
        for (std::size_t p = 0; p < 4; ++p)
            for (std::size_t c = 0; c < 13; ++c) v.Cards[p][c] = deck[p * 13 + c];
        Rig r(lang);
        r.Show(kSubLastHand, sim::RenderLastHand(v, r.glyphs));
        HandRead hand;
        ASSERT_EQ(r.cards.CaptHand(hand), 0) << "an unknown shape in a name does not fail the reading";
        if (lang == 1 || lang == 2) {
            EXPECT_EQ(hand.Names[0], "jos") << "trailing unknown shape trimmed";
            EXPECT_EQ(hand.Names[1], "b?a");
            EXPECT_EQ(hand.Names[2], "a");
        } else {
            EXPECT_EQ(hand.Names[0], "jose") << "language " << lang;
            EXPECT_EQ(hand.Names[1], "bea");
            EXPECT_EQ(hand.Names[2], "ca");
        }
        EXPECT_EQ(hand.Cards[3][12], "AS");
    }
}

TEST(LastHandRoundTripTest, EmptyWindowAndPartialDeal) {
    sim::LastHandView v;  // the game shows the grid before the first deal ends
    Rig r;
    r.Show(kSubLastHand, sim::RenderLastHand(v, r.glyphs));
    HandRead hand;
    EXPECT_EQ(r.cards.CaptHand(hand), 0);
    EXPECT_EQ(hand.Names, (std::array<std::string, 4>{"", "", "", ""}));
    EXPECT_EQ(hand.Cards[2][5], "");
}

// --- "Last Trick" ---------------------------------------------------------------------------

TEST(LastTrickRoundTripTest, EveryCardInEverySlot) {
    for (int i = 0; i < 52; ++i) {
        sim::LastTrickView v;
        for (int k = 0; k < 4; ++k) {
            const int card = (i + 13 * k + k) % 52;
            v.Suits[static_cast<std::size_t>(k)] = card / 13;
            v.Ranks[static_cast<std::size_t>(k)] = card % 13 + 2;
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
    std::vector<std::tuple<int, int, int>> shown;
    r.cards.ShowPlayedCards = true;
    r.cards.DrawPlayedCard = [&](int k, int s, int rank) { shown.emplace_back(k, s, rank); };
    sim::LastTrickView first{{3, 3, 3, 3}, {14, 2, 9, 12}};
    auto h = r.Show(kSubLastTrick, sim::RenderLastTrick(first));
    TrickRead t;
    ASSERT_TRUE(r.cards.ReadLastTrick(t, 0));
    EXPECT_EQ(r.cards.CardsSeen, 4);
    EXPECT_EQ(shown.size(), 4u);

    // The window still shows the same trick: nothing new.
    ASSERT_TRUE(r.cards.ReadLastTrick(t, 2));
    EXPECT_EQ(t.Ranks, (std::array<int, 4>{0, 0, 0, 0}));
    EXPECT_EQ(r.cards.CardsSeen, 4);

    // A new trick sharing one card in the same slot is taken as the old one.
    sim::LastTrickView sharing{{2, 3, 0, 1}, {5, 2, 7, 7}};
    r.desk.SetClientImage(h, sim::RenderLastTrick(sharing));
    ASSERT_TRUE(r.cards.ReadLastTrick(t, 2));
    EXPECT_EQ(t.Suits, (std::array<int, 4>{0, 0, 0, 0}));
    EXPECT_EQ(r.cards.CardsSeen, 4);

    sim::LastTrickView next{{2, 2, 0, 1}, {5, 3, 7, 7}};
    r.desk.SetClientImage(h, sim::RenderLastTrick(next));
    ASSERT_TRUE(r.cards.ReadLastTrick(t, 2));
    EXPECT_EQ(t.Suits, next.Suits);
    EXPECT_EQ(t.Ranks, next.Ranks);
    EXPECT_EQ(r.cards.CardsSeen, 8);
    EXPECT_EQ(r.cards.LastTrickRanks, next.Ranks);
    EXPECT_EQ(shown.size(), 8u);
}

TEST(LastTrickRoundTripTest, AMissingCardFailsTheReading) {
    for (int missing = 0; missing < 4; ++missing) {
        sim::LastTrickView v{{0, 1, 2, 3}, {10, 11, 12, 13}};
        v.Ranks[static_cast<std::size_t>(missing)] = 0;
        Rig r;
        r.Show(kSubLastTrick, sim::RenderLastTrick(v));
        TrickRead t;
        EXPECT_FALSE(r.cards.ReadLastTrick(t, 0)) << "slot " << missing;
        EXPECT_EQ(t.Suits, (std::array<int, 4>{-1, 0, 0, 0}));
        EXPECT_EQ(r.cards.CardsSeen, 0);
    }
}

TEST(LastTrickRoundTripTest, CroppedWindowsNeverReadOutside) {
    sim::LastTrickView v{{0, 1, 2, 3}, {2, 3, 4, 5}};
    const Image full = sim::RenderLastTrick(v);
    for (int w : {1, 60, 131, 200, 245, 269}) {
        for (int hgt : {1, 20, 40, 64, 90, 129}) {
            Image img(w, hgt);
            for (int y = 0; y < hgt; ++y)
                for (int x = 0; x < w; ++x) img.Set(x, y, full.At(x, y));
            Rig r;
            r.Show(kSubLastTrick, img);
            TrickRead t;
            if (r.cards.ReadLastTrick(t, 1)) {
                EXPECT_EQ(t.Suits, v.Suits) << w << "x" << hgt;
                EXPECT_EQ(t.Ranks, v.Ranks);
            } else {
                EXPECT_EQ(t.Suits[0], -1);
            }
        }
    }
}

// --- score window --------------------------------------------------------------------------

TEST(ScoreRoundTripTest, TwentyLinesWithNegativeScores) {
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
        ScoreLines lines;
        ASSERT_EQ(r.score.CaptScore(lines), 0) << "language " << lang;
        ASSERT_EQ(lines.Count, 20);
        for (int n = 1; n <= 20; ++n)
            EXPECT_EQ(lines.Line[static_cast<std::size_t>(n)], v.Lines[static_cast<std::size_t>(n - 1)]) << "line " << n;
    }
}

TEST(ScoreRoundTripTest, ZeroScoresWithBagsAreOverwrittenByTheNextLine) {
    sim::ScoreWindowView v;
    v.Lines = {{50, 1, 60, 0}, {0, 3, 0, 2}, {110, 2, -20, 0}};
    Rig r;
    r.Show(kSubScore, sim::RenderScoreWindow(v, r.glyphs));
    ScoreLines lines;
    ASSERT_EQ(r.score.CaptScore(lines), 0);
    ASSERT_EQ(lines.Count, 2);
    EXPECT_EQ(lines.Line[1], (std::array<std::int32_t, 4>{50, 1, 60, 0}));
    EXPECT_EQ(lines.Line[2], (std::array<std::int32_t, 4>{110, 2, -20, 0}));
}

TEST(ScoreRoundTripTest, EmptyTableShrinksATallWindow) {
    sim::ScoreWindowView v;
    v.Rows = 8;
    Rig r;
    auto h = r.Show(kSubScore, sim::RenderScoreWindow(v, r.glyphs));
    ScoreLines lines;
    EXPECT_EQ(r.score.CaptScore(lines), 0);
    EXPECT_EQ(lines.Count, 0);
    platform::Rect rect;
    ASSERT_TRUE(r.desk.GetWindowRect(h, rect));
    EXPECT_EQ(rect.Height(), 140);
    EXPECT_EQ(rect.Top, 0);
    EXPECT_EQ(rect.Left, 30);
}

// The game redraws its score window at whatever size it is given; here a
// scheduled redraw stands in for it.
struct GrowingScoreWindow {
    GrowingScoreWindow(Rig& r, std::vector<std::array<int, 4>> lines, int rows) : rig(r) {
        view.Lines = std::move(lines);
        view.Rows = rows;
        h = r.Show(kSubScore, sim::RenderScoreWindow(view, r.glyphs));
        for (std::uint32_t t = 1; t < 20000; t += 50) r.clock.Schedule(r.clock.TickCount() + t, [this] { Redraw(); });
    }
    void Redraw() {
        platform::Rect c;
        if (!rig.desk.GetClientRect(h, c)) return;
        view.Rows = (c.Height() - sim::score_window::Height(0)) / sim::score_window::kLinePitch;
        rig.desk.SetClientImage(h, sim::RenderScoreWindow(view, rig.glyphs));
    }
    Rig& rig;
    sim::ScoreWindowView view;
    platform::WindowHandle h;
};

TEST(ScoreRoundTripTest, HiddenLinesMakeTheWindowGrow) {
    std::vector<std::array<int, 4>> six;
    for (int i = 1; i <= 6; ++i) six.push_back({i * 100, i, -i * 10, 0});
    {
        Rig r;
        GrowingScoreWindow win(r, six, 4);
        ScoreLines lines;
        EXPECT_EQ(r.score.CaptScore(lines), 0) << "three rows more are enough within four captures";
        EXPECT_EQ(lines.Count, 6);
        EXPECT_EQ(lines.Line[6], (std::array<std::int32_t, 4>{600, 6, -60, 0}));
        platform::Rect c;
        r.desk.GetClientRect(win.h, c);
        EXPECT_EQ(c.Height(), sim::score_window::Height(7));
    }
    {
        std::vector<std::array<int, 4>> eight = six;
        eight.push_back({700, 7, -70, 0});
        eight.push_back({800, 8, -80, 0});
        Rig r;
        GrowingScoreWindow win(r, eight, 4);
        ScoreLines lines;
        EXPECT_EQ(r.score.CaptScore(lines), 2) << "still hidden after the fourth capture";
        EXPECT_EQ(lines.Count, 7) << "what the last attempt read";
        platform::Rect c;
        r.desk.GetClientRect(win.h, c);
        EXPECT_EQ(c.Height(), sim::score_window::Height(8));
    }
}
