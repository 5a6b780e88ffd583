#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>

#include "sim/scenario.h"
#include "tracking/session.h"
#include "reading/image_file.h"

namespace {

std::string TempHome(const std::string& name) {
    auto p = std::filesystem::temp_directory_path() / ("tarvellos_tracking_" + name);
    std::filesystem::remove_all(p);
    return p.string();
}

sim::Scenario Parse(const std::string& text) {
    sim::Scenario sc;
    std::string err;
    EXPECT_TRUE(sim::ParseScenario(text, sc, err)) << err;
    return sc;
}

const char* kTwoDeals = R"JSON({"start": "2026-03-05T21:00:00", "language": 1, "screen": [1280, 1024],
  "table": {"name": "Oak", "host": "alice", "dnilPass": false, "suicide": false},
  "settings": ["MyYahooID = me_player", "BidTrickCounter = (*,0),(*,0)"],
  "players": ["me_player", "lefty_one", "partner_x", "righty_two"],
  "ratings": ["1534", "1620", "1480", "1701"],
  "deals": 2, "seed": 7})JSON";

TEST(Session, TwoRandomDealsAreFiled) {
    sim::Scenario sc = Parse(kTwoDeals);
    tracking::Session s(sc, TempHome("two"));
    std::string err;
    ASSERT_TRUE(s.WriteProgramFiles(err)) << err;
    std::vector<std::string> lines;
    s.App.OnDealFiled = [&](const tracking::FiledDeal& d) {
        lines.push_back(tracking::FiledDealJson(static_cast<int>(lines.size()) + 1, d).Dump());
    };
    s.App.Trace = [](const std::string& l) { std::fprintf(stderr, "trace: %s\n", l.c_str()); };
    ASSERT_TRUE(s.Start());
    s.Advance(6000);
    {
        auto& t = s.App.Table;
        platform::Rect r; s.Desktop.GetWindowRect(s.App.GameWindow, r);
        std::fprintf(stderr, "gw %lld rect %d %d %d %d box %d (%d %d %d %d) btn %d,%d %d,%d %d,%d lang %d names %zu\n",
            (long long)s.App.GameWindow, r.Left, r.Top, r.Right, r.Bottom, t.BoxFound, t.Box.Left, t.Box.Top, t.Box.Right, t.Box.Bottom,
            t.ButtonXY[1].X, t.ButtonXY[1].Y, t.ButtonXY[2].X, t.ButtonXY[2].Y, t.ButtonXY[3].X, t.ButtonXY[3].Y, s.App.GameLanguage, t.PlayerList.size());
        reading::SaveImagePng("/tmp/screen.png", s.Desktop.Compose(), err);
    }
    bool ok = s.Run(30 * 60 * 1000);
    for (auto& l : lines) std::fprintf(stderr, "%s\n", l.c_str());
    for (auto& e : s.App.ErrorLog) std::fprintf(stderr, "error: %s\n", e.c_str());
    std::fprintf(stderr, "online %d filed %d played %d bidcount %d tick %d\n", s.App.OnlineMode, s.App.FiledCount,
                 s.DealsPlayed(), s.App.BidCount, s.App.TickCount);
    EXPECT_TRUE(ok);
}

}  // namespace
