// The card play window: the cards of the current deal, one column per trick
// and one row per player (left-hand opponent, partner, right-hand opponent,
// the user), each a cell of the card sheet with its frame style.
#pragma once

#include <array>

#include "core/draw_list.h"
#include "core/settings.h"
#include "core/view_model.h"
#include "display/card_sheets.h"
#include "display/hand_view.h"

namespace display {

// Window states: loaded, then drawn at least once (the capture driver only
// refills a window that has been drawn).
inline constexpr int CardPlayUnloaded = 0;
inline constexpr int CardPlayLoaded = 1;
inline constexpr int CardPlayDrawn = 2;

inline constexpr int CardPlayWidth = 390;
inline constexpr int CardPlayHeight = 122;

// Column x of trick t (0-12): 26 t + 38.
int CardPlayColumnX(int trick);
// Row y of row p (0-3): (2.3 p + 1.9) x 7 + 8, rounded half to even: 21, 37, 54, 70.
int CardPlayRowY(int row);

struct CardPlayWindow {
    core::WindowModel Window;
    core::Shape Frame;                      // outline at (1, 1), 380 x 87
    core::Shape Line;                       // under the trick numbers, y 19
    std::array<core::Label, 13> TrickNo;    // "1".."13"
    std::array<core::Label, 4> SeatLabel;   // one per row
    core::DrawList Items;                   // the cards
    int State = CardPlayUnloaded;
};

// Form_Load: caption, place and size, background, frame, line and trick
// numbers. The place is the stored window position when its x + y is not 0,
// else the CountCards setting, whose default place (x = -100) is the main
// window's left + 30, top + 10.
void LoadCardPlay(CardPlayWindow& w, bool japanese, core::Color back, const core::Position& stored,
                  const core::Position& setting, int mainLeft, int mainTop);

// ShowCardPlay: clears the cards and draws those of the tricks played; row p
// shows table position (p + 1) mod 4. Shows the window.
void ShowCardPlay(CardPlayWindow& w, const PlayedCards& played, const CardSheet& sheet);

core::Json ToJson(const CardPlayWindow& w);

}  // namespace display
