// The hand displays of the main window: the trick table (who played what in
// each trick, from the card sheet), the four-hands view (from the text-font
// sheet) with its short-suit marks, hands sorted by the card-order setting,
// and the "Remaining Cards" box. Each is a draw list built from plain data.
#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "core/draw_list.h"
#include "core/view_model.h"
#include "display/card_sheets.h"
#include "display/deal_record.h"

namespace display {

// Cards played in a deal by table position (0 = the user, 1 the left-hand
// opponent, 2 the partner, 3 the right-hand opponent), with each cell's frame
// style and background (0 companion colour, 1 white). Code 0 = no card yet.
struct PlayedCards {
    std::array<std::array<int, 4>, TrickCount> Code{};
    std::array<std::array<std::uint8_t, 4>, TrickCount> Style{};
    std::array<std::array<std::uint8_t, 4>, TrickCount> White{};
    int TricksPlayed = 0;  // tricks with at least one card, 0 to 13
};

// Per trick and compass seat, 1 for the seat that won the trick.
using TrickWinners = std::array<std::array<std::uint8_t, 4>, TrickCount>;

// The played cards of a deal record: the seat at table position p is
// seatOfPos[p]; styles are the record's marks. With winners given, the
// winning card of each trick stands on white.
PlayedCards PlayedFromRecord(const DealRecord& rec, const std::array<int, 4>& seatOfPos,
                             const TrickWinners* winners = nullptr);

// The trick table: column heads "LHO", "Pard", "RHO", "Me" and the trick
// numbers as texts, one card cell per trick and player. (left, top) is the
// table's place on the main window.
inline constexpr int TrickTablePitchX = 26;
inline constexpr int TrickTableHeadHeight = 16;
core::DrawList BuildTrickTable(const PlayedCards& played, const CardSheet& sheet, int left = 0, int top = 0);

// Sorts a seat's cards: ordered by code from high to low (spades first, ace
// high); ascending reverses that (clubs first, two first). Marked (negative)
// codes sort as their card.
std::vector<int> SortHand(std::vector<int> codes, bool descending);

// Per-suit status of a seat's row in the four-hands view.
inline constexpr int SuitOpen = 0;
inline constexpr int SuitVoid = 1;      // nothing more of the suit in this hand
inline constexpr int SuitHoldsRest = 2; // the hand holds every unseen card of the suit

struct SuitRow {
    std::vector<int> Cards;  // in display order; negative = marked
    int Status = SuitOpen;
};

struct FourHands {
    std::array<std::array<SuitRow, 4>, 4> Rows;  // [compass seat][suit]
    std::array<bool, 4> SuitMarked{};            // set by FindShortSuits: every card of the suit known
    int KnownCards() const;
};

// The hands of a deal by compass seat (codes, 0 = unknown), sorted by the
// card order and split into suit rows.
FourHands HandsFromCodes(const std::array<std::array<int, 13>, 4>& handsBySeat, bool descending);
// The four hands of a deal record (every card the record shows a seat play).
FourHands HandsFromRecord(const DealRecord& rec, bool descending);

// Marks suits whose thirteen cards are all known (void everywhere) and
// infers the holder of the rest of a suit when three seats are void in it.
void FindShortSuits(FourHands& hands);

struct HandsView {
    bool Visible = false;
    // Top-left of each compass seat's block.
    std::array<std::array<int, 2>, 4> Anchor{};
    core::DrawList Items;
};

// Places of the four blocks by table position (the user at the bottom, the
// left-hand opponent left, the partner on top, the right-hand opponent right).
inline constexpr std::array<std::array<int, 2>, 4> HandAnchors = {{{150, 152}, {0, 76}, {150, 0}, {300, 76}}};
// Line pitch of the view (76 / 4.2 pixels) and the drop of a card's underline
// below its row's top.
inline constexpr double HandLinePitch = 76.0 / 4.2;
inline constexpr int UnderlineDrop = 16;
inline constexpr core::Color StrikeGrey = 0x646464;  // RGB (100, 100, 100)

// Show_4Hands: every seat's suits from spades down to clubs, the suit mark
// then the cards, spades in bold, voids struck, the holder of a suit's rest
// underlined. Card counting is what lets a deal in progress, its voids and
// its inferred holdings be shown: without countingAllowed only a complete
// deal is drawn and no status marks are made.
HandsView BuildHandsView(FourHands hands, const std::array<int, 4>& seatOfPos, const TextSheet& sheet,
                         bool countingAllowed, const core::TextWidthFn& measure = core::ApproxTextWidth);

// The "Remaining Cards" box: four lines, spades down to clubs, each the
// ranks "A" down to "2", two pixels further down before each line. A
// counting aid, so it is shown only while counting is allowed.
struct RemainingCardsBox {
    bool Visible = false;  // the box and its frame
    core::DrawList Items;
};
inline constexpr int RemainingLineHeight = 16;
RemainingCardsBox spdShow_AllCards(bool countingAllowed);

}  // namespace display
