#include "replay/sim_table.h"

#include <algorithm>
#include <memory>

#include "sim/glyph_draw.h"

#include "tracking/pixel_readers.h"

namespace replay {

using namespace tracking;

namespace {

// Frame of a simulated window around its client area.
constexpr int kInsetLeft = 4, kInsetTop = 23, kInsetRight = 4, kInsetBottom = 4;

bool SameView(const sim::TableView& a, const sim::TableView& b) {
    return a.Language == b.Language && a.Width == b.Width && a.Height == b.Height && a.Title == b.Title &&
           a.SeatNames == b.SeatNames && a.Bids == b.Bids && a.Tricks == b.Tricks && a.WaitPrompt == b.WaitPrompt &&
           a.MyTurn == b.MyTurn && a.TrickCards == b.TrickCards && a.Highlight == b.Highlight &&
           a.Buttons == b.Buttons && a.DNilPassMarker == b.DNilPassMarker && a.SuicideMarker == b.SuicideMarker &&
           a.Panel == b.Panel && a.TextArea == b.TextArea && a.Players.size() == b.Players.size() &&
           std::equal(a.Players.begin(), a.Players.end(), b.Players.begin(),
                      [](const sim::TablePlayerRow& x, const sim::TablePlayerRow& y) {
                          return x.Id == y.Id && x.Rating == y.Rating;
                      });
}

}  // namespace

sim::TableView TableViewOf(const sim::TableState& s, int language, int width, int height) {
    sim::TableView v;
    v.Language = language;
    v.Width = width;
    v.Height = height;
    for (int k = 0; k < 4; ++k) {
        const int seat = (s.userSeat + k) % 4;
        v.SeatNames[static_cast<std::size_t>(k)] = s.players[static_cast<std::size_t>(seat)].name;
        const std::string& bid = s.bids[static_cast<std::size_t>(seat)];
        const bool dealOn = s.phase == sim::Phase::Bidding || s.phase == sim::Phase::Passing ||
                            s.phase == sim::Phase::Playing || s.phase == sim::Phase::DealOver;
        if (dealOn && !bid.empty()) v.Bids[static_cast<std::size_t>(k)] = bid;
        const bool playOn = s.phase == sim::Phase::Playing || s.phase == sim::Phase::DealOver;
        if (playOn)
            v.Tricks[static_cast<std::size_t>(kTrickPosOfTablePos[static_cast<std::size_t>(k)])] =
                s.tricks[static_cast<std::size_t>(seat)];
    }
    v.WaitPrompt = s.waitPrompt ? 0 : -1;
    v.MyTurn = s.turn == s.userSeat && (s.phase == sim::Phase::Bidding || s.phase == sim::Phase::Playing);
    for (int k = 0; k < 4; ++k) v.Players.push_back({s.players[static_cast<std::size_t>(k)].name, s.players[static_cast<std::size_t>(k)].rating});
    for (const auto& w : s.watchers) v.Players.push_back({w.name, w.rating});
    v.TextArea = s.textArea;
    v.DNilPassMarker = s.dnilPass;
    v.SuicideMarker = s.suicide;
    v.Panel = s.bidPanel == sim::BidPanel::Ordinary ? 100 : s.bidPanel == sim::BidPanel::DoubleNil ? 200 : 0;
    return v;
}

sim::TableRenderer RenderedTable() {
    auto last = std::make_shared<sim::TableView>();
    auto drawn = std::make_shared<bool>(false);
    return [last, drawn](const sim::TableState& s, const sim::TableContext& ctx, sim::TablePicture& pic) {
        using L = sim::TableLayout;
        const int w = ctx.ClientWidth + kInsetLeft + kInsetRight, h = ctx.ClientHeight + kInsetTop + kInsetBottom;
        sim::TableView v = TableViewOf(s, ctx.Language, w, h);
        const bool same = *drawn && SameView(v, *last) && pic.Client.Width == ctx.ClientWidth &&
                          pic.Client.Height == ctx.ClientHeight;
        if (!same && ctx.Glyphs) {
            const platform::Image full = sim::RenderTableWindow(v, *ctx.Glyphs);
            pic.Client = platform::Image(ctx.ClientWidth, ctx.ClientHeight);
            for (int y = 0; y < ctx.ClientHeight; ++y) {
                const auto src = full.Pixels.begin() + static_cast<std::ptrdiff_t>((y + kInsetTop) * full.Width + kInsetLeft);
                std::copy(src, src + ctx.ClientWidth,
                          pic.Client.Pixels.begin() + static_cast<std::ptrdiff_t>(y * ctx.ClientWidth));
            }
            *last = v;
            *drawn = true;
        }
        // Nothing new drawn: copy next to nothing.
        pic.Dirty = same ? platform::Rect{0, 0, 1, 1} : platform::Rect{};
        // Buttons in client coordinates.
        pic.Buttons.clear();
        auto area = [](int x, int y, int bw, int bh) {
            return platform::Rect{x - kInsetLeft, y - kInsetTop, x + bw - kInsetLeft, y + bh - kInsetTop};
        };
        const sim::TableButtonKind kinds[3] = {sim::TableButtonKind::LastTrick, sim::TableButtonKind::LastHand,
                                               sim::TableButtonKind::Score};
        for (int i = 1; i <= 3; ++i)
            pic.Buttons.push_back({kinds[i - 1], area(L::kButtonLeft, L::kButtonTop + i * L::kButtonStep, L::kButtonWidth,
                                                      L::kButtonHeight), {}});
        if (v.Panel == 100) {
            for (int b = 1; b <= 14; ++b) {
                const int row = (b - 1) / 5, col = (b - 1) % 5;
                const int x = L::kPanelLeft + 6 + col * L::kBidButtonStep, y = L::kPanelTop + 3 + row * L::kBidRowStep;
                pic.Buttons.push_back({sim::TableButtonKind::Bid, area(x, y, b == 14 ? 30 : L::kBidButtonWidth, L::kBidButtonHeight),
                                       b == 14 ? "N" : std::to_string(b)});
            }
        } else if (v.Panel == 200 && ctx.Glyphs) {
            const sim::SiteTexts& t = sim::TextsFor(ctx.Language);
            const int w1 = sim::GlyphTextWidth(t.DoubleNilButton, *ctx.Glyphs) + 14;
            const int w2 = sim::GlyphTextWidth(t.ShowButton, *ctx.Glyphs) + 14;
            pic.Buttons.push_back({sim::TableButtonKind::DoubleNil, area(L::kPanelLeft + 6, L::kPanelTop + 3, w1, L::kBidButtonHeight), {}});
            pic.Buttons.push_back({sim::TableButtonKind::ShowCards, area(L::kPanelLeft + 16 + w1, L::kPanelTop + 3, w2, L::kBidButtonHeight), {}});
        }
    };
}

}  // namespace replay
