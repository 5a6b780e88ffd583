// Every companion window's view model in one place. The engine writes them;
// the Qt windows paint them; tests and the console tool read them. They are
// plain data in the one vocabulary of core/view_model.h, except the models
// that carry their own layout rules (counters, bid help, error window, file
// box), which stay the classes of the libraries that own those rules.
#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "core/settings.h"
#include "core/view_model.h"
#include "display/card_play.h"
#include "display/card_sheets.h"
#include "display/err_msg.h"
#include "display/file_box.h"
#include "display/hand_view.h"
#include "platform/geometry.h"
#include "platform/sound.h"
#include "scoring/counter.h"
#include "scoring/help_bid.h"
#include "scoring/score_sheet.h"
#include "tracking/readers.h"

namespace tracking {

constexpr const char* kProgramCaption = "TarvelloS  2.5";

// The main window frmZ.
struct MainWindow {
    std::string Caption = kProgramCaption;
    platform::Rect Rect{0, 0, 350, 560};  // wide enough for the score sheet's last column
    bool Topmost = false;
    std::array<core::Label, 4> plName;   // player names by table position
    std::array<core::Label, 4> lblBid;   // bids by table position
    std::array<core::Label, 4> lblSeat;  // seat letters
    core::Button cmdBid = core::MakeButton("Bid"), cmdHand = core::MakeButton("Hand");
    core::Button cmdScore = core::MakeButton("Minimize", false), cmdTimer = core::MakeButton("Pause", false);
    core::Button cmdEnd = core::MakeButton("End", false);
    core::Label cntPlayers = core::MakeLabel("0"), cntBids = core::MakeLabel("0"), cntBidLoc = core::MakeLabel("0");
    core::Label lblMsg = core::MakeLabel("", false), lblLog = core::MakeLabel("log", false);
    core::Label lblBoxState = core::MakeLabel("", false);
    core::Label fraCapture = core::MakeLabel("", false);
    bool LinkMenuEnabled = true, AlertMenuEnabled = true;
    std::string LinkMenuCaption = "Yahoo! Spades";
    int VisualAlarms = 0;        // red boxes drawn
    std::string LastBoardIndex;  // the board's last button index shown on the main window
};

// The bidding board ("Spades Bidding", frmBoard): its buttons, the state of
// the game's bid panel last read and where the panel's buttons sit.
constexpr int BoardOrdinary = 100;
constexpr int BoardDoubleNil = 200;
constexpr int BoardConfirm = 300;
constexpr int kBoardButtons = 22;  // Btn indexes 1..21
constexpr int BoardModeConfirmBit = 4;

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
    std::array<core::Button, kBoardButtons> Btn{};

    // Captions of a board of the given mode (100, 200 or 300).
    void Layout(int mode, bool dnilPassTable);
};

// Window states: 0 not loaded, 1 loaded and hidden, 2 shown and kept on top.
struct CompanionWindowStates {
    int CardPlay = 0;
    int ScoreWindow = 0;
    int RemainingCards = 0;
    int BoxState = 0;
};

// The companion's windows, by name, for events and positions.
enum class CompanionWindow {
    Main, Board, LeftCounter, RightCounter, HelpBid, ErrMsg, AskAlert, Reason, CardPlay, Score, Hands,
    RemainingCards, BoxState, DelWork,
};

// The hand display window: the four hands of the last deal and, beside them,
// the trick table of who played what.
inline constexpr int HandsTrickTableLeft = 470;
struct HandWindow {
    core::WindowModel Window;
    display::HandsView Hands;
    core::DrawList TrickTable;
};

struct CompanionModels {
    explicit CompanionModels(platform::Sound* sound = nullptr)
        : frmErrMsg(sound), CardSheet(display::BuildCardSheet()), TextSheet(display::BuildTextSheet()) {}
    MainWindow frmZ;
    Board frmBoard;
    scoring::Counters Counters;
    scoring::HelpBid frmHelpBid;
    display::ErrMsgWindow frmErrMsg;
    display::FileBox filBox;
    CompanionWindowStates States;
    // The sheets the card displays copy from, built once.
    display::CardSheet CardSheet;
    display::TextSheet TextSheet;
    display::CardPlayWindow frmCardPlay;
    HandWindow Hands;
    display::RemainingCardsBox RemainingCards;  // shown while States.RemainingCards is 2
    scoring::ScoreSheet ScoreSheet;  // drawn on the main window
    scoring::ScoreWindow frmScore;
};

}  // namespace tracking
