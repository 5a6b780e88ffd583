// The bidding board ("Spades Bidding", frmBoard) as a model: its buttons,
// the state of the game's bid panel last read and where its buttons sit.
// The companion drives it (reading the panel, clicking the game's buttons).
#pragma once

#include <array>
#include <string>

#include "platform/geometry.h"
#include "tracking/readers.h"

namespace tracking {

constexpr int BoardOrdinary = 100;
constexpr int BoardDoubleNil = 200;
constexpr int BoardConfirm = 300;
constexpr int kBoardButtons = 22;  // Btn indexes 1..21
constexpr int BoardModeConfirmBit = 4;

struct BoardButton {
    std::string Caption;
    bool Visible = false;
};

struct Board {
    std::string Caption = "Spades Bidding";
    bool Loaded = false;
    bool Visible = false;
    bool Topmost = false;
    int Mode = 0;                 // 100, 200 or 300 as last shown
    int BoardMode = 0;            // 0 off, 2 DNil Pass Only, 7 placed; bit 4 asks for confirmation
    int BoardStat = 0;            // panel last read
    int LastBoardStat = 0;
    ButtonTable BtnXY{};          // screen positions of the game's panel buttons
    int RememberedBid = 0;        // index waiting for confirmation
    bool DNilSignalGiven = false; // the Double Nil with pass signal of this deal
    std::array<BoardButton, kBoardButtons> Btn{};

    // Captions of a board of the given mode (100, 200 or 300).
    void Layout(int mode, bool dnilPassTable);
};

}  // namespace tracking
