// A Spades game at one table, paced on the virtual clock like the real
// game: a wait prompt, the bids one by one (the bid panel when the user is
// to bid), the tricks card by card, the "Last Trick" and "Last Hand"
// contents, a score line per deal and a new game once a side reaches 500.
// Pure logic: renderers turn TableState into the game's window images.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <random>
#include <string>
#include <vector>

#include "platform/sim/virtual_clock.h"
#include "sim/rules.h"

namespace sim {

// Delays of the table in milliseconds. Random ranges are drawn from the
// game's seeded generator.
struct Timing {
    std::uint32_t startMs = 3000;          // Start() -> first deal's wait prompt
    std::uint32_t promptMs = 2500;         // wait prompt before the bidding
    std::uint32_t bidMinMs = 1000, bidMaxMs = 2000;  // between two bid labels
    std::uint32_t userBidTimeoutMs = 20000;  // bid panel up without a click
    std::uint32_t passMs = 3000;           // Double Nil card pass
    std::uint32_t firstLeadMs = 1500;      // last bid -> first card
    std::uint32_t cardMinMs = 1000, cardMaxMs = 1800;  // between two cards
    std::uint32_t collectMs = 1500;        // full trick on the table -> taken
    std::uint32_t scoreMs = 1000;          // last trick taken -> score line, last hand
    std::uint32_t nextDealMs = 5000;       // score line -> next deal's wait prompt
    std::uint32_t gameOverMs = 12000;      // final score line -> empty score list
};

struct Player {
    std::string name;
    std::string rating;  // as the player list shows it
};

// A deal given by a scenario. Hands are the cards as played (after any
// Double Nil pass); without `play` the computer players play them.
struct ScriptedDeal {
    int dealer = 0;
    Hands hands;
    std::array<std::string, kSeats> bids;  // "1".."13", "N", "D"
    bool hasPlay = false;
    std::array<std::array<Card, kSeats>, kTricks> play{};  // [trick][seat]
};

struct GameSetup {
    std::string tableName = "Oak";
    std::string host;
    bool dnilPass = false;  // Double Nil bidders exchange two cards with the partner
    bool suicide = false;   // one partner of each side must bid Nil
    std::array<Player, kSeats> players;
    std::vector<Player> watchers;
    int userSeat = 0;
    std::uint32_t seed = 1;
    // Scripted deals are played in order; without them `randomDeals` deals
    // are dealt from the seed (0 = no end).
    std::vector<ScriptedDeal> scripted;
    int randomDeals = 0;
    // Random deals: the table closes after this many finished games (0 = by
    // randomDeals alone).
    int games = 0;
    // The ratings the player list shows after each finished game, by seat;
    // a game without an entry moves the user's rating by a few points.
    std::vector<std::array<std::string, kSeats>> ratingsAfterGame;
    int firstDealer = -1;  // random deals: -1 = from the seed
    int gamePoint = 500;
    // Double Nil is open to a side trailing by at least this much.
    int doubleNilDeficit = 100;
    Timing timing;
};

enum class Phase { Idle, Prompt, Bidding, Passing, Playing, DealOver, GameOver, Finished };

// The panel the table shows the user on the user's turn to bid: the Double
// Nil panel ("DoubleNil" and "Show" buttons) comes first when a Double Nil
// is open, the ordinary panel has 1 .. 13 and Nil.
enum class BidPanel { None, DoubleNil, Ordinary };

struct TrickView {
    int number = 0;                        // 1 .. 13; 0 = none
    std::array<std::string, kSeats> cards; // by seat, "" = not played
    int leader = -1;
    int winner = -1;                       // -1 until complete
};

struct FinishedDeal {
    bool valid = false;
    int dealNumber = 0;
    int dealer = 0;
    std::array<std::string, kSeats> names;
    std::array<std::string, kSeats> bids;
    std::array<int, kSeats> tricks{};
    // cards[seat][t]: the card the seat played to trick t; each seat's line
    // thus lists its thirteen cards in the order played.
    std::array<std::array<std::string, kTricks>, kSeats> cards;
    std::array<int, kTricks> leader{};
    std::array<int, kTricks> winner{};
};

struct TableState {
    std::string tableName, host;
    bool dnilPass = false, suicide = false;
    std::array<Player, kSeats> players;
    std::vector<Player> watchers;
    int userSeat = 0;

    Phase phase = Phase::Idle;
    int gameNumber = 1;   // 1-based
    int dealNumber = 0;   // deals begun since Start(), 1-based; 0 before the first
    int dealInGame = 0;   // 1-based within the current game
    int dealer = -1;
    int turn = -1;        // seat to bid or to play, -1 = nobody
    std::array<std::string, kSeats> bids;  // shown so far, "" = none
    bool waitPrompt = false;
    BidPanel bidPanel = BidPanel::None;
    std::array<int, kSeats> tricks{};      // taken in this deal
    std::array<std::vector<std::string>, kSeats> hands;  // cards still held, sorted
    TrickView currentTrick;
    TrickView lastTrick;
    FinishedDeal lastHand;
    std::vector<ScoreLine> scoreLines;     // this game's lines, oldest first
    // The table's text area below the table, oldest line first (the game
    // announces a provisional player's first rating there).
    std::vector<std::string> textArea;
    bool gameOver = false;                 // the final line of a game is shown
    bool finished = false;                 // no more deals
};

enum class EventKind {
    DealStart, PromptOff, BidPanelUp, Bid, PassDone, Card, TrickTaken, ScoreLineAdded, GameOver, NewGame, Finished
};

struct GameEvent {
    std::uint32_t tick = 0;
    EventKind kind = EventKind::DealStart;
    int seat = -1;
    std::string text;  // the bid, the card, "4,3,5,1" tricks ...
};

const char* EventName(EventKind k);

class SpadesGame {
public:
    SpadesGame(platform::VirtualClock& clock, GameSetup setup);
    ~SpadesGame();
    SpadesGame(const SpadesGame&) = delete;
    SpadesGame& operator=(const SpadesGame&) = delete;

    // Schedules the first deal; everything else happens in clock waits.
    void Start();
    const TableState& State() const { return state_; }
    const GameSetup& Setup() const { return setup_; }
    // Bumped on every change of State(); the callback runs after each change.
    std::uint64_t Version() const { return version_; }
    void OnChange(std::function<void()> fn) { onChange_ = std::move(fn); }
    const std::vector<GameEvent>& Events() const { return events_; }
    // Events of every kind so far, also those not kept, and of one kind.
    std::size_t EventCount() const { return eventCount_; }
    int EventCount(EventKind k) const { return kindCount_[static_cast<std::size_t>(k)]; }
    // Long runs keep only the events `keep` accepts (all by default), so the
    // log does not grow with every card; the others are only counted.
    void KeepEvents(std::function<bool(const GameEvent&)> keep) { keep_ = std::move(keep); }

    // A click on the bid panel: "1" .. "13" or "N" on the ordinary panel,
    // "D" on the Double Nil panel. False (and nothing happens) when the
    // panel is not up or the bid is not allowed.
    bool UserBid(const std::string& bid);
    // "Show" on the Double Nil panel: the ordinary panel replaces it.
    bool UserShowCards();

    // Full hands of the current deal as dealt (after any pass), for tests.
    const Hands& DealtHands() const { return dealt_; }

private:
    void Changed();
    void Log(EventKind k, int seat, std::string text);
    void After(std::uint32_t ms, void (SpadesGame::*step)());
    std::uint32_t Between(std::uint32_t lo, std::uint32_t hi);
    bool DoubleNilOpen(int seat) const;
    std::string AutoBid(int seat);
    void RefreshHands();
    bool DealsLeft() const;

    void BeginDeal();
    void EndPrompt();
    void BeginBidTurn();
    void ComputerBid();
    void UserBidTimeout();
    void RecordBid(int seat, const std::string& bid);
    void DoPass();
    void BeginPlay();
    void PlayCard();
    void CollectTrick();
    void FinishDeal();
    void NewGame();
    void RenewRatings(const ScoreLine& final);

    platform::VirtualClock& clock_;
    GameSetup setup_;
    TableState state_;
    std::mt19937 rng_;
    std::uint64_t version_ = 0;
    std::function<void()> onChange_;
    std::vector<GameEvent> events_;
    std::size_t eventCount_ = 0;
    std::array<int, static_cast<std::size_t>(EventKind::Finished) + 1> kindCount_{};
    std::function<bool(const GameEvent&)> keep_;
    int pending_ = 0;  // id of the scheduled next step

    int dealsDone_ = 0;  // deals begun
    int gamesDone_ = 0;  // games finished
    // Ratings a provisional player gets in the list when the next game begins.
    std::array<std::string, kSeats> laterRatings_;
    const ScriptedDeal* script_ = nullptr;
    Hands dealt_;
    Hands held_;
    int trickIndex_ = 0;
    std::array<Card, kSeats> trick_{};
    int leader_ = 0;
    bool spadesBroken_ = false;
    FinishedDeal record_;
};

}  // namespace sim
