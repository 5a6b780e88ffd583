#include "display/hand_view.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <string>

#include "core/notation.h"

namespace display {

namespace {

int Round(double v) { return static_cast<int>(std::lround(v)); }

// Table position showing a compass seat; 0 when none does.
int PosOfSeat(const std::array<int, 4>& seatOfPos, int seat) {
    for (int p = 0; p < 4; ++p)
        if (seatOfPos[static_cast<std::size_t>(p)] == seat) return p;
    return 0;
}

core::DrawImage At(core::DrawImage cell, int x, int y) {
    cell.X = x;
    cell.Y = y;
    return cell;
}

void ULcard(core::DrawList& list, double x1, double x2, double rowTop, core::Color color) {
    list.Items.push_back(core::DrawLine{x1, rowTop + UnderlineDrop, x2, rowTop + UnderlineDrop, color, 1});
}

// Suit mark at (x, y + 1); clubs one pixel further right and, like
// diamonds, one pixel lower, where their marks sit high in the typeface.
void dspSuitMarkH(core::DrawList& list, const TextSheet& sheet, double& x, double y, int suit) {
    if (suit < 0 || suit > 3) return;
    double dy = 1;
    if (suit == core::Clubs) {
        x += 1;
        dy = 2;
    } else if (suit == core::Diamonds) {
        dy = 2;
    }
    list.Items.push_back(At(sheet.SuitCell(suit), Round(x), Round(y + dy)));
    x += sheet.Metrics.SuitWidth;
}

void dspCardH(core::DrawList& list, const TextSheet& sheet, double& x, double y, int code, bool bold) {
    const int rank = std::abs(code) % 100;
    if (rank >= 2 && rank <= 14) {
        list.Items.push_back(At(sheet.RankCell(rank, bold), Round(x), Round(y + 2)));
        if (code < 0) ULcard(list, x, x + sheet.Metrics.RankWidth - 2, y, Rose);
    }
    x += sheet.Metrics.RankWidth;
}

}  // namespace

PlayedCards PlayedFromRecord(const DealRecord& rec, const std::array<int, 4>& seatOfPos, const TrickWinners* winners) {
    PlayedCards out;
    for (int t = 0; t < TrickCount; ++t) {
        for (int p = 0; p < 4; ++p) {
            const int seat = seatOfPos[static_cast<std::size_t>(p)] & 3;
            const std::string& text = rec.Trick[static_cast<std::size_t>(t)][static_cast<std::size_t>(seat)];
            const int code = text.empty() ? 0 : core::CardCode(text);
            if (code % 100 < 2 || code % 100 > 14) continue;
            out.Code[static_cast<std::size_t>(t)][static_cast<std::size_t>(p)] = code;
            out.Style[static_cast<std::size_t>(t)][static_cast<std::size_t>(p)] =
                rec.Mark[static_cast<std::size_t>(t)][static_cast<std::size_t>(seat)];
            if (winners)
                out.White[static_cast<std::size_t>(t)][static_cast<std::size_t>(p)] =
                    (*winners)[static_cast<std::size_t>(t)][static_cast<std::size_t>(seat)] != 0;
            out.TricksPlayed = t + 1;
        }
    }
    return out;
}

core::DrawList BuildTrickTable(const PlayedCards& played, const CardSheet& sheet, int left, int top) {
    core::DrawList list;
    list.BackColor = sheet.Back;
    constexpr int numbersWidth = 22;
    // Columns in the order the heads name them: LHO, Pard, RHO, Me.
    static constexpr std::array<int, 4> posOfColumn = {1, 2, 3, 0};
    for (int c = 0; c < 4; ++c)
        list.Items.push_back(core::DrawText{double(left + numbersWidth + TrickTablePitchX * c + 3), double(top),
                                            std::string(core::RelNames[static_cast<std::size_t>(c)]), "Arial", 8,
                                            core::Black, false});
    for (int t = 0; t < TrickCount; ++t) {
        const int y = top + TrickTableHeadHeight + sheet.LineHeight * t;
        list.Items.push_back(
            core::DrawText{double(left), double(y + 1), std::to_string(t + 1), "Arial", 8, core::Black, false});
        for (int c = 0; c < 4; ++c) {
            const auto p = static_cast<std::size_t>(posOfColumn[static_cast<std::size_t>(c)]);
            const auto tt = static_cast<std::size_t>(t);
            dspCardP(list, sheet, left + numbersWidth + TrickTablePitchX * c, y, played.Code[tt][p], played.Style[tt][p],
                     played.White[tt][p] != 0);
        }
    }
    return list;
}

std::vector<int> SortHand(std::vector<int> codes, bool descending) {
    std::stable_sort(codes.begin(), codes.end(), [](int a, int b) { return std::abs(a) > std::abs(b); });
    if (!descending) std::reverse(codes.begin(), codes.end());
    return codes;
}

int FourHands::KnownCards() const {
    int n = 0;
    for (const auto& seat : Rows)
        for (const auto& row : seat) n += static_cast<int>(row.Cards.size());
    return n;
}

FourHands HandsFromCodes(const std::array<std::array<int, 13>, 4>& handsBySeat, bool descending) {
    FourHands h;
    for (int seat = 0; seat < 4; ++seat) {
        std::vector<int> codes;
        for (int c : handsBySeat[static_cast<std::size_t>(seat)]) {
            const int a = std::abs(c);
            if (a / 100 <= 3 && a % 100 >= 2 && a % 100 <= 14) codes.push_back(c);
        }
        for (int c : SortHand(std::move(codes), descending))
            h.Rows[static_cast<std::size_t>(seat)][static_cast<std::size_t>(std::abs(c) / 100)].Cards.push_back(c);
    }
    return h;
}

FourHands HandsFromRecord(const DealRecord& rec, bool descending) {
    std::array<std::array<int, 13>, 4> bySeat{};
    for (int t = 0; t < TrickCount; ++t)
        for (int seat = 0; seat < 4; ++seat) {
            const std::string& text = rec.Trick[static_cast<std::size_t>(t)][static_cast<std::size_t>(seat)];
            bySeat[static_cast<std::size_t>(seat)][static_cast<std::size_t>(t)] = text.empty() ? 0 : core::CardCode(text);
        }
    return HandsFromCodes(bySeat, descending);
}

void FindShortSuits(FourHands& hands) {
    for (std::size_t suit = 0; suit < 4; ++suit) {
        int known = 0, voids = 0;
        for (const auto& seat : hands.Rows) {
            known += static_cast<int>(seat[suit].Cards.size());
            if (seat[suit].Status == SuitVoid) ++voids;
        }
        if (known == 13) {
            for (auto& seat : hands.Rows) seat[suit].Status = SuitVoid;
            hands.SuitMarked[suit] = true;
        } else if (voids == 3) {
            // Every unseen card of the suit is the fourth seat's (the other
            // three are void already).
            for (auto& seat : hands.Rows)
                if (seat[suit].Status != SuitVoid) seat[suit].Status = SuitHoldsRest;
        }
    }
    for (auto& seat : hands.Rows) {
        int voids = 0;
        for (const auto& row : seat) voids += row.Status == SuitVoid;
        if (voids == 3)
            for (auto& row : seat)
                if (row.Status != SuitVoid) row.Status = SuitHoldsRest;
    }
}

HandsView BuildHandsView(FourHands hands, const std::array<int, 4>& seatOfPos, const TextSheet& sheet,
                         bool countingAllowed, const core::TextWidthFn& measure) {
    HandsView v;
    v.Items.BackColor = sheet.Items.BackColor;
    if (!countingAllowed) {
        if (hands.KnownCards() < 52) return v;
        for (auto& seat : hands.Rows)
            for (auto& row : seat) row.Status = SuitOpen;
        hands.SuitMarked = {};
    } else {
        FindShortSuits(hands);
    }
    v.Visible = true;
    const core::Font slashFont{"Courier New", 14, false};
    const double slash = measure("/", slashFont);
    for (int seat = 0; seat < 4; ++seat) {
        const auto& anchor = HandAnchors[static_cast<std::size_t>(PosOfSeat(seatOfPos, seat))];
        v.Anchor[static_cast<std::size_t>(seat)] = anchor;
        double y = anchor[1] + HandLinePitch * 0.1;
        for (int suit = core::Spades; suit >= core::Clubs; --suit) {
            const SuitRow& row = hands.Rows[static_cast<std::size_t>(seat)][static_cast<std::size_t>(suit)];
            double x = anchor[0];
            dspSuitMarkH(v.Items, sheet, x, y, suit);
            for (int code : row.Cards) dspCardH(v.Items, sheet, x, y, code, suit == core::Spades);
            if (row.Status == SuitVoid) {
                v.Items.Items.push_back(core::DrawText{x, y, "/", slashFont.Name, slashFont.Size, core::Black, false});
                const double second = x + slash - 6;
                v.Items.Items.push_back(core::DrawText{second, y, "/", slashFont.Name, slashFont.Size, core::Black, false});
                if (hands.SuitMarked[static_cast<std::size_t>(suit)]) {
                    const double end = second + slash;
                    v.Items.Items.push_back(core::DrawLine{double(anchor[0]), y + 8, end, y + 8, StrikeGrey, 1});
                    v.Items.Items.push_back(core::DrawLine{double(anchor[0]), y + 11, end, y + 11, StrikeGrey, 1});
                }
            } else if (row.Status == SuitHoldsRest) {
                ULcard(v.Items, anchor[0], x - 1, y, core::Blue);
            }
            y += HandLinePitch;
        }
    }
    return v;
}

RemainingCardsBox spdShow_AllCards(bool countingAllowed) {
    RemainingCardsBox box;
    box.Visible = countingAllowed;
    if (!countingAllowed) return box;
    double y = 0;
    for (int suit = core::Spades; suit >= core::Clubs; --suit) {
        y += 2;
        box.Items.Items.push_back(
            core::DrawText{2, y, "AKQJT98765432", "Courier New", 10, core::SuitColor(suit), false});
        y += RemainingLineHeight;
    }
    return box;
}

}  // namespace display
