#include "sim/sim_game_desktop.h"

#include <algorithm>

#include "sim/glyph_draw.h"

namespace sim {

namespace {

constexpr std::uint32_t kWhite = 0x00FFFFFF;
constexpr std::uint32_t kButtonFace = 0x00D4D0C8;
constexpr std::uint32_t kBlack = 0x00000000;
constexpr std::uint32_t kRepaintMs = 250;

// Frame of a simulated window around its client area (SimWindow's default).
constexpr int kFrameW = 8, kFrameH = 27;

platform::Point ClientSizeOf(int slot) {
    switch (slot) {
        case SimGameDesktop::kLastTrick: return {last_trick::kWidth, last_trick::kHeight};
        case SimGameDesktop::kLastHand: return {last_hand::kWidth, last_hand::kHeight};
        default: return {score_window::kWidth, score_window::Height(5)};
    }
}

// Copies `img` into the window's client area row by row; the part of the
// client area that the picture does not cover gets `fill`. With `part`
// (client coordinates) only that rectangle is copied.
void Blit(platform::SimDesktop& desk, platform::WindowHandle h, const platform::Image& img, std::uint32_t fill,
          platform::Rect part = {}) {
    platform::SimWindow* w = desk.Find(h);
    if (!w) return;
    platform::Image& dst = w->Pixels;
    const int left = w->ClientInset.Left, top = w->ClientInset.Top;
    const int cw = dst.Width - left - w->ClientInset.Right, ch = dst.Height - top - w->ClientInset.Bottom;
    if (cw <= 0 || ch <= 0) return;
    if (part.Width() <= 0 || part.Height() <= 0) part = {0, 0, cw, ch};
    const int x0 = std::clamp(part.Left, 0, cw), x1 = std::clamp(part.Right, 0, cw);
    const int y0 = std::clamp(part.Top, 0, ch), y1 = std::clamp(part.Bottom, 0, ch);
    for (int y = y0; y < y1; ++y) {
        auto row = dst.Pixels.begin() + static_cast<std::ptrdiff_t>((top + y) * dst.Width + left);
        int x = x0;
        if (y < img.Height && x0 < img.Width) {
            const int n = std::min(x1, img.Width);
            auto src = img.Pixels.begin() + static_cast<std::ptrdiff_t>(y * img.Width);
            std::copy(src + x0, src + n, row + x0);
            x = n;
        }
        if (x < x1) std::fill(row + x, row + x1, fill);
    }
}

const reading::WinTitles& Titles() {
    static const reading::WinTitles titles;
    return titles;
}

bool Inside(const platform::Rect& r, platform::Point p) {
    return p.X >= r.Left && p.X < r.Right && p.Y >= r.Top && p.Y < r.Bottom;
}

}  // namespace

void PlainTablePicture(const TableState& state, const TableContext& ctx, TablePicture& pic) {
    // Only the bid panel changes once the table is drawn.
    const platform::Rect panel{120, 290, 330, 400};
    const bool full = pic.Client.Width != ctx.ClientWidth || pic.Client.Height != ctx.ClientHeight;
    if (full) {
        pic.Client = platform::Image(ctx.ClientWidth, ctx.ClientHeight, kWhite);
        pic.Dirty = {};
    } else {
        pic.Client.FillRect(panel.Left, panel.Top, panel.Right, panel.Bottom, kWhite);
        pic.Dirty = panel;
    }
    pic.Buttons.clear();
    const reading::WinTitles& titles = Titles();
    auto button = [&](TableButtonKind kind, platform::Rect r, const std::string& label, std::string bid = {}) {
        if (full || r.Top >= panel.Top) {
            pic.Client.FillRect(r.Left, r.Top, r.Right, r.Bottom, kButtonFace);
            if (ctx.Glyphs && !label.empty())
                DrawGlyphText(pic.Client, r.Left + 4, r.Top + 4, label, kBlack, *ctx.Glyphs);
        }
        pic.Buttons.push_back({kind, r, std::move(bid)});
    };
    const TableButtonKind kinds[3] = {TableButtonKind::LastTrick, TableButtonKind::LastHand, TableButtonKind::Score};
    for (int k = 1; k <= 3; ++k)
        button(kinds[k - 1], {8, 50 + 25 * k, 108, 70 + 25 * k}, titles.ButtonWord(ctx.Language, k));
    if (ctx.Glyphs && full) {
        if (state.dnilPass) DrawGlyphText(pic.Client, 12, 160, titles.ButtonWord(ctx.Language, 4), kBlack, *ctx.Glyphs);
        if (state.suicide) DrawGlyphText(pic.Client, 12, 180, titles.ButtonWord(ctx.Language, 5), kBlack, *ctx.Glyphs);
    }
    if (state.bidPanel == BidPanel::Ordinary) {
        for (int b = 1; b <= 14; ++b) {
            int row = (b - 1) / 5, col = (b - 1) % 5;
            platform::Rect r{130 + 32 * col, 300 + 24 * row, 158 + 32 * col, 320 + 24 * row};
            std::string bid = b == 14 ? "N" : std::to_string(b);
            button(TableButtonKind::Bid, r, bid == "N" ? "Nil" : bid, bid);
        }
    } else if (state.bidPanel == BidPanel::DoubleNil) {
        button(TableButtonKind::DoubleNil, {130, 300, 220, 320}, titles.DoubleNilWord(ctx.Language));
        button(TableButtonKind::ShowCards, {230, 300, 300, 320}, titles.ShowWord(ctx.Language));
    }
}

SimGameDesktop::SimGameDesktop(platform::SimDesktop& desktop, platform::VirtualClock& clock, const Scenario& scenario,
                               TableRenderer table)
    : desktop_(desktop), clock_(clock), language_(core::LanguageRow(scenario.language)), renderer_(std::move(table)) {
    if (!renderer_) renderer_ = PlainTablePicture;
    const auto& row = titles_.Row(language_);
    glyphs_.SelectFont(1, language_, row.bidLabel, row.trickLabel);
    game_ = std::make_unique<SpadesGame>(clock_, scenario.game);
    // The table window stands right of the screen's corner, where the game
    // opens its sub-windows.
    const int w = std::min(800, scenario.screenWidth), h = std::min(600, scenario.screenHeight);
    const int left = std::max(0, std::min(420, scenario.screenWidth - w));
    const int top = std::max(0, std::min(40, scenario.screenHeight - h));
    tableRect_ = {left, top, left + w, top + h};
    desktop_.SetScreenSize(scenario.screenWidth, scenario.screenHeight);
    desktop_.SetAnsiCodePage(scenario.codepage);
}

SimGameDesktop::~SimGameDesktop() {
    if (tickJob_) clock_.Cancel(tickJob_);
    desktop_.OnClick({});
    game_->OnChange({});
}

std::string SimGameDesktop::TableTitle() const {
    const TableState& s = game_->State();
    return titles_.Title(language_, reading::SlotTable) + " Table: " + s.tableName + " Host: " + s.host;
}

platform::WindowHandle SimGameDesktop::SubWindow(int slot) const {
    if (slot < 1 || slot > 3) return 0;
    platform::WindowHandle h = sub_[static_cast<std::size_t>(slot)];
    return h && desktop_.Find(h) ? h : 0;
}

void SimGameDesktop::Start(bool openSubWindows) {
    if (table_) return;
    table_ = desktop_.AddWindow(TableTitle(), tableRect_);
    desktop_.OnClick([this](const platform::SimClick& c) { OnClick(c); });
    game_->OnChange([this] { Repaint(false); });
    if (openSubWindows)
        for (int slot = 1; slot <= 3; ++slot) OpenSubWindow(slot);
    Repaint(true);
    tickJob_ = clock_.Schedule(clock_.TickCount() + kRepaintMs, [this] { RepaintTick(); });
    game_->Start();
}

void SimGameDesktop::RepaintTick() {
    tickJob_ = clock_.Schedule(clock_.TickCount() + kRepaintMs, [this] { RepaintTick(); });
    Repaint(false);
}

platform::Rect SimGameDesktop::SubRectAtCorner(int slot) const {
    platform::Point c = ClientSizeOf(slot);
    return {0, 0, c.X + kFrameW, c.Y + kFrameH};
}

void SimGameDesktop::OpenSubWindow(int slot) {
    if (slot < 1 || slot > 3 || !table_) return;
    auto& h = sub_[static_cast<std::size_t>(slot)];
    if (h && desktop_.Find(h)) {
        desktop_.Restore(h);
        desktop_.BringToTop(h);
        return;
    }
    h = desktop_.AddWindow(titles_.Title(language_, slot), SubRectAtCorner(slot));
    paintedKey_[static_cast<std::size_t>(slot)].clear();
    PaintSub(slot, true);
}

void SimGameDesktop::CloseSubWindow(int slot) {
    if (slot < 1 || slot > 3) return;
    auto& h = sub_[static_cast<std::size_t>(slot)];
    if (h) desktop_.CloseWindow(h);
    h = 0;
}

void SimGameDesktop::CloseTable() {
    for (int slot = 1; slot <= 3; ++slot) CloseSubWindow(slot);
    if (table_) desktop_.CloseWindow(table_);
    table_ = 0;
    picture_.Buttons.clear();
}

void SimGameDesktop::ReopenTable() {
    if (table_) return;
    table_ = desktop_.AddWindow(TableTitle(), tableRect_);
    paintedKey_[0].clear();
    PaintTable(true);
}

LastTrickView SimGameDesktop::LastTrickViewOf(const TableState& s) {
    LastTrickView v;
    if (s.lastTrick.number == 0) return v;
    for (int k = 0; k < kSeats; ++k) {
        Card c = ParseCard(s.lastTrick.cards[static_cast<std::size_t>((s.userSeat + k) % kSeats)]);
        v.Suits[static_cast<std::size_t>(k)] = c ? SuitOf(c) : 0;
        v.Ranks[static_cast<std::size_t>(k)] = c ? RankOf(c) : 0;
    }
    return v;
}

LastHandView SimGameDesktop::LastHandViewOf(const TableState& s, int language) {
    LastHandView v;
    v.Language = language;
    if (!s.lastHand.valid) return v;
    for (std::size_t seat = 0; seat < kSeats; ++seat) {
        v.Names[seat] = s.lastHand.names[seat];
        for (std::size_t t = 0; t < kTricks; ++t) {
            v.Cards[seat][t] = s.lastHand.cards[seat][t];
            v.Marks[seat][t] = s.lastHand.leader[t] == static_cast<int>(seat) ? 1 : 0;
        }
    }
    return v;
}

ScoreWindowView SimGameDesktop::ScoreViewOf(const TableState& s, int clientHeight) {
    ScoreWindowView v;
    v.Lines = s.scoreLines;
    // The window does not scroll by itself: every row whose top lies inside
    // the client area is drawn, the last one cut off at the bottom edge, so
    // a blank row the reader sees whole really ends the table.
    const int below = clientHeight - (score_window::kTableTop + 1);
    v.Rows = below > 0 ? (below + score_window::kLinePitch - 1) / score_window::kLinePitch : 0;
    return v;
}

void SimGameDesktop::Repaint(bool force) {
    PaintTable(force);
    for (int slot = 1; slot <= 3; ++slot) PaintSub(slot, force);
}

void SimGameDesktop::PaintTable(bool force) {
    if (!table_ || !desktop_.Find(table_)) return;
    const platform::Rect client = desktop_.ClientRect(table_).value_or(platform::Rect{});
    const std::string key = std::to_string(game_->Version());
    platform::Point size{client.Width(), client.Height()};
    if (!force && key == paintedKey_[0] && size == paintedSize_[0]) return;
    TableContext ctx{language_, size.X, size.Y, &glyphs_};
    const bool whole = force || !(size == paintedSize_[0]);
    renderer_(game_->State(), ctx, picture_);
    Blit(desktop_, table_, picture_.Client, kWhite, whole ? platform::Rect{} : picture_.Dirty);
    paintedKey_[0] = key;
    paintedSize_[0] = size;
    ++repaints_;
}

void SimGameDesktop::PaintSub(int slot, bool force) {
    platform::WindowHandle h = SubWindow(slot);
    if (!h) return;
    const auto i = static_cast<std::size_t>(slot);
    const TableState& s = game_->State();
    const platform::Rect client = desktop_.ClientRect(h).value_or(platform::Rect{});
    platform::Point size{client.Width(), client.Height()};
    std::string key;
    if (slot == kLastTrick) {
        key = std::to_string(s.dealNumber) + "/" + std::to_string(s.lastTrick.number);
        for (const auto& c : s.lastTrick.cards) key += c;
    } else if (slot == kLastHand) {
        key = std::to_string(s.lastHand.valid ? s.lastHand.dealNumber : 0);
    } else {
        key = std::to_string(s.gameNumber) + "/" + std::to_string(s.scoreLines.size());
    }
    if (!force && key == paintedKey_[i] && size == paintedSize_[i]) return;
    if (slot == kLastTrick)
        Blit(desktop_, h, RenderLastTrick(LastTrickViewOf(s)), last_trick::kTableColor);
    else if (slot == kLastHand)
        Blit(desktop_, h, RenderLastHand(LastHandViewOf(s, language_), glyphs_), kWhite);
    else
        Blit(desktop_, h, RenderScoreWindow(ScoreViewOf(s, size.Y), glyphs_), kWhite);
    paintedKey_[i] = key;
    paintedSize_[i] = size;
    ++repaints_;
}

void SimGameDesktop::OnClick(const platform::SimClick& click) {
    if (click.Target == 0) {
        ++strayClicks_;
        return;
    }
    bool ours = click.Target == table_;
    for (int slot = 1; slot <= 3; ++slot) ours = ours || click.Target == SubWindow(slot);
    if (!ours) {
        ++strayClicks_;
        return;
    }
    if (click.Target != table_) return;
    const std::optional<platform::Point> origin = desktop_.ClientOrigin(table_);
    if (!origin) return;
    const platform::Point at{click.At.X - origin->X, click.At.Y - origin->Y};
    const std::vector<TableButtonArea> buttons = picture_.Buttons;  // a bid repaints and replaces them
    for (const auto& b : buttons) {
        if (!Inside(b.Area, at)) continue;
        switch (b.Kind) {
            case TableButtonKind::LastTrick: OpenSubWindow(kLastTrick); break;
            case TableButtonKind::LastHand: OpenSubWindow(kLastHand); break;
            case TableButtonKind::Score: OpenSubWindow(kScore); break;
            case TableButtonKind::Bid: game_->UserBid(b.Bid); break;
            case TableButtonKind::DoubleNil: game_->UserBid("D"); break;
            case TableButtonKind::ShowCards: game_->UserShowCards(); break;
        }
        return;
    }
}

}  // namespace sim
