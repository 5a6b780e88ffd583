// The game readers of the product: everything is read from the pixels of
// the game's windows through the reading library.
#pragma once

#include <memory>

#include "platform/desktop.h"
#include "reading/cards.h"
#include "reading/glyph_harvest.h"
#include "reading/glyphs.h"
#include "reading/pixels.h"
#include "reading/score_reader.h"
#include "reading/table_reader.h"
#include "reading/win_titles.h"
#include "tracking/readers.h"

namespace tracking {

class PixelReaders final : public GameReaders {
public:
    PixelReaders(reading::Capture& cap, const reading::WinTitles& titles, platform::Sound& sound);

    void SetGameWindow(platform::WindowHandle h, int gameLanguage) override;
    void ReadTableInfo(TableInfo& info) override;
    void ReadPlayerList(TableInfo& info) override;
    int CaptureBid(Bids4& bids, int& bidCount, int& bidLocCount) override;
    int CaptureTricks(TrickReading& out) override;
    bool ReadLastTrick(std::array<std::string, 4>& cards, int& cardsSeen) override;
    int CaptScore(std::vector<ScoreLine>& lines) override;
    int CaptHand(reading::HandRead& out) override;
    int GetBoardStat(ButtonTable& xy) override;
    bool TestMyTurn() override;
    std::vector<std::string> RatingLines() override;
    void NewDeal() override;
    void SetReduceWidth(int width) override;
    [[nodiscard]] BoxStatus LastBoxStatus() const override { return boxStatus_; }
    void HarvestUnknownGlyphs(const std::string& logPath, int codePage) override;

    reading::TableReader& Table() { return *table_; }
    reading::CardReader& Cards() { return cards_; }
    reading::GlyphTable& Glyphs() { return glyphs_; }

private:
    void NewTableReader(int gameLanguage);
    // Tells the harvest which reader runs, for the log line.
    void Reading(const char* where);

    reading::Capture& cap_;
    const reading::WinTitles& titles_;
    reading::GlyphTable glyphs_;
    std::unique_ptr<reading::GlyphHarvest> harvest_;
    std::unique_ptr<reading::TableReader> table_;
    reading::CardReader cards_;
    reading::ScoreReader score_;
    platform::WindowHandle window_ = 0;
    int language_ = 0;
    std::array<int, 4> lastCounts_{};
    platform::Rect scannedRect_{};
    int reduceWidth_ = 0;
    BoxStatus boxStatus_;
};

// The screen reading of the product, in the order it must be made: the
// titles and the capture first, then the readers that use them.
struct ScreenReading {
    ScreenReading(const platform::Desktop& desktop, platform::Clock& clock)
        : Cap(desktop.windows, desktop.capture, clock), Readers(Cap, Titles, desktop.sound) {}
    reading::WinTitles Titles;
    reading::Capture Cap;
    PixelReaders Readers;
};

// Tricks positions of the table (0 lower left, 1 upper left, 2 upper right,
// 3 lower right) by table position: the tricks label of a player stands on
// the row of the player's bid label.
constexpr std::array<int, 4> kTrickPosOfTablePos = {0, 3, 2, 1};

}  // namespace tracking
