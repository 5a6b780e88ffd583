// The windows that show a deal's cards and its score: the card play window,
// the hand display (the four hands and the trick table), the score sheet of
// the main window and the small score window. They are loaded when the
// companion goes on-line and refilled by the trick steps and by every
// filed deal; the card sheets they copy from are built once.
#pragma once

#include "platform/geometry.h"

namespace tracking {

struct Engine;

// On-line: the windows the settings switch on get their place and captions.
void LoadDealViews(Engine& e, const platform::Rect& game);
// The capture clears the hand display before it reads the new hands.
void ClearHandsView(Engine& e);
// After a trick was read: the cards of the deal so far, and the "Remaining
// Cards" box when the settings switch it on.
void ShowTricksPlayed(Engine& e);
// After a deal was filed: the card play window from the record, the hand
// display, the score sheet and its mirror.
void ShowFiledDeal(Engine& e);
// Before a new game: the sheet loses its figures.
void ClearDealScore(Engine& e);

}  // namespace tracking
