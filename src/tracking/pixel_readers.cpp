#include "tracking/pixel_readers.h"

#include "core/notation.h"

namespace tracking {

PixelReaders::PixelReaders(reading::Capture& cap, const reading::WinTitles& titles, platform::Sound& sound)
    : cap_(cap), titles_(titles), cards_(cap, glyphs_, sound), score_(cap, glyphs_) {
    NewTableReader(reading::LangUSA);
}

void PixelReaders::NewTableReader(int gameLanguage) {
    table_ = std::make_unique<reading::TableReader>(cap_, glyphs_, titles_);
    table_->GameLanguage = gameLanguage;
    table_->ReduceWidth = reduceWidth_;
    table_->BoxStatus = [this](const std::string& text, bool found) { boxStatus_ = {text, found}; };
}

void PixelReaders::SetReduceWidth(int width) {
    reduceWidth_ = width;
    table_->ReduceWidth = width;
}

void PixelReaders::SetGameWindow(platform::WindowHandle h, int gameLanguage) {
    if (h != window_) {
        // Another table window: its box, buttons and labels are found afresh.
        NewTableReader(gameLanguage);
        window_ = h;
        language_ = 0;
        lastCounts_ = {};
        scannedRect_ = {};
    }
    if (gameLanguage != language_) {
        language_ = gameLanguage;
        table_->GameLanguage = gameLanguage;
        table_->SelectReadingFont();
        cards_.GameLanguage = gameLanguage;
    }
}

void PixelReaders::ReadTableInfo(TableInfo& info) {
    Reading("the table");
    table_->LocateBox();
    info.BoxFound = table_->BoxLeft != 0 || table_->BoxTop != 0;
    info.Box = {table_->BoxLeft, table_->BoxTop, table_->BoxRight, table_->BoxBottom};
    // The buttons stay where they are while the table window does.
    bool known = true;
    for (int k = 1; k <= 3; ++k) {
        const platform::Point p = table_->SubButtonXY[static_cast<std::size_t>(k)];
        known = known && (p.X != 0 || p.Y != 0);
    }
    const platform::Rect wr = cap_.Windows().WindowRect(cap_.GameWindow).value_or(platform::Rect{});
    if (!known || !(wr == scannedRect_)) {
        table_->SubButtonXY = {};
        table_->ScanButtons();
        scannedRect_ = wr;
    }
    for (int k = 1; k <= 3; ++k) info.ButtonXY[static_cast<std::size_t>(k)] = table_->SubButtonXY[static_cast<std::size_t>(k)];
    info.DNilPassTable = table_->DNilPassTable;
    info.SuicideTable = table_->SuicideTable;
    if (table_->GameLanguage != language_) {
        language_ = table_->GameLanguage;
        cards_.GameLanguage = language_;
        table_->SelectReadingFont();
    }
    info.GameLanguage = table_->GameLanguage;
}

void PixelReaders::ReadPlayerList(TableInfo& info) {
    Reading("the player list");
    table_->MakePlayerList();
    info.PlayerList = table_->TableNames;
    if (static_cast<int>(info.PlayerList.size()) > table_->TableNamesRead && table_->TableNamesRead >= 0)
        info.PlayerList.resize(static_cast<std::size_t>(table_->TableNamesRead));
}

int PixelReaders::CaptureBid(Bids4& bids, int& bidCount, int& bidLocCount) {
    Reading("the bids");
    int status = 0;
    table_->CaptureBid(bids, status);
    bidCount = table_->BidCount;
    bidLocCount = table_->BidLocCount;
    return status;
}

int PixelReaders::CaptureTricks(TrickReading& out) {
    Reading("the tricks");
    std::array<int, 4> byQ{};
    const int found = table_->CaptureTricks(byQ);
    if (found < 0) {
        out.Counts = lastCounts_;
        out.NoTrick = true;
        out.IsNew = false;
        out.TrickNumber = 0;
        for (int c : lastCounts_) out.TrickNumber += c;
        return -1;
    }
    int sum = 0;
    for (int p = 0; p < 4; ++p) {
        out.Counts[static_cast<std::size_t>(p)] = byQ[static_cast<std::size_t>(kTrickPosOfTablePos[static_cast<std::size_t>(p)])];
        sum += out.Counts[static_cast<std::size_t>(p)];
    }
    out.TrickNumber = sum;
    out.NoTrick = found == 0 || sum == 0;
    out.IsNew = out.Counts != lastCounts_;
    lastCounts_ = out.Counts;
    return 0;
}

bool PixelReaders::ReadLastTrick(std::array<std::string, 4>& cards, int& cardsSeen) {
    Reading("\"Last Trick\"");
    reading::TrickRead t;
    if (!cards_.ReadLastTrick(t, 2)) return false;
    bool any = false;
    for (int k = 0; k < 4; ++k) {
        const auto i = static_cast<std::size_t>(k);
        cards[i] = t.Ranks[i] != 0 ? core::CardText(t.Suits[i] * 100 + t.Ranks[i]) : std::string();
        any = any || t.Ranks[i] != 0;
    }
    cardsSeen = cards_.CardsSeen;
    return any;
}

int PixelReaders::CaptScore(std::vector<ScoreLine>& lines) {
    Reading("the score window");
    reading::ScoreLines sl;
    int code = score_.CaptScore(sl);
    // A capture that delivered nothing is not an empty score list (which
    // would mean a new game): the caller reads again.
    if (code == 0 && sl.Count == 0 && cap_.BMSub.Lines == 0) code = reading::kScoreIncomplete;
    lines.clear();
    for (int i = 1; i <= sl.Count && i <= reading::kMaxScoreLines; ++i) lines.push_back(sl.Line[static_cast<std::size_t>(i)]);
    return code;
}

int PixelReaders::CaptHand(reading::HandRead& out) {
    Reading("\"Last Hand\"");
    return cards_.CaptHand(out);
}

int PixelReaders::GetBoardStat(ButtonTable& xy) {
    Reading("the bid panel");
    const int s = table_->GetBoardStat(0);
    xy = table_->BtnXY;
    return s;
}

bool PixelReaders::TestMyTurn() { return table_->TestMyTurn(); }

std::vector<std::string> PixelReaders::RatingLines() { return table_->ReadTextArea(); }

void PixelReaders::HarvestUnknownGlyphs(const std::string& logPath, int codePage) {
    harvest_ = logPath.empty() ? nullptr : std::make_unique<reading::GlyphHarvest>(logPath, codePage);
    glyphs_.Harvest = harvest_.get();
}

void PixelReaders::Reading(const char* where) {
    if (harvest_) harvest_->Where = where;
}

void PixelReaders::NewDeal() {
    cards_.CardsSeen = 0;
    cards_.LastTrickSuits = {};
    cards_.LastTrickRanks = {};
    lastCounts_ = {};
}

}  // namespace tracking
