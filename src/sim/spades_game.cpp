#include "sim/spades_game.h"

#include <algorithm>
#include <utility>

#include "core/text.h"

#include "sim/computer_player.h"

namespace sim {

const char* EventName(EventKind k) {
    switch (k) {
        case EventKind::DealStart: return "DealStart";
        case EventKind::PromptOff: return "PromptOff";
        case EventKind::BidPanelUp: return "BidPanelUp";
        case EventKind::Bid: return "Bid";
        case EventKind::PassDone: return "PassDone";
        case EventKind::Card: return "Card";
        case EventKind::TrickTaken: return "TrickTaken";
        case EventKind::ScoreLineAdded: return "ScoreLine";
        case EventKind::GameOver: return "GameOver";
        case EventKind::NewGame: return "NewGame";
        case EventKind::Finished: return "Finished";
    }
    return "?";
}

SpadesGame::SpadesGame(platform::VirtualClock& clock, GameSetup setup)
    : clock_(clock), setup_(std::move(setup)), rng_(setup_.seed) {
    state_.tableName = setup_.tableName;
    state_.host = setup_.host;
    state_.dnilPass = setup_.dnilPass;
    state_.suicide = setup_.suicide;
    state_.players = setup_.players;
    state_.watchers = setup_.watchers;
    state_.userSeat = setup_.userSeat;
}

SpadesGame::~SpadesGame() {
    if (pending_) clock_.Cancel(pending_);
}

void SpadesGame::Start() {
    if (state_.phase != Phase::Idle || pending_) return;
    After(setup_.timing.startMs, &SpadesGame::BeginDeal);
}

void SpadesGame::Changed() {
    ++version_;
    if (onChange_) onChange_();
}

void SpadesGame::Log(EventKind k, int seat, std::string text) {
    ++eventCount_;
    ++kindCount_[static_cast<std::size_t>(k)];
    GameEvent e{clock_.TickCount(), k, seat, std::move(text)};
    if (!keep_ || keep_(e)) events_.push_back(std::move(e));
}

void SpadesGame::After(std::uint32_t ms, void (SpadesGame::*step)()) {
    if (pending_) clock_.Cancel(pending_);
    pending_ = clock_.Schedule(clock_.TickCount() + ms, [this, step] {
        pending_ = 0;
        (this->*step)();
    });
}

std::uint32_t SpadesGame::Between(std::uint32_t lo, std::uint32_t hi) {
    if (hi <= lo) return lo;
    return lo + static_cast<std::uint32_t>(rng_() % (hi - lo + 1));
}

bool SpadesGame::DoubleNilOpen(int seat) const {
    if (script_ && script_->bids[seat] == "D") return true;
    ScoreLine last{};
    if (!state_.scoreLines.empty()) last = state_.scoreLines.back();
    int own = last[SideOf(seat) * 2], other = last[(1 - SideOf(seat)) * 2];
    return other - own >= setup_.doubleNilDeficit;
}

std::string SpadesGame::AutoBid(int seat) {
    if (script_) return script_->bids[seat];
    BidView view;
    view.hand = held_[seat];
    view.seat = seat;
    view.bids = state_.bids;
    view.suicide = setup_.suicide;
    view.doubleNilAllowed = DoubleNilOpen(seat);
    return ChooseBid(view, rng_);
}

void SpadesGame::RefreshHands() {
    for (int s = 0; s < kSeats; ++s) {
        state_.hands[s].clear();
        for (Card c : held_[s]) state_.hands[s].push_back(CardText(c));
    }
}

bool SpadesGame::DealsLeft() const {
    if (!setup_.scripted.empty()) return dealsDone_ < static_cast<int>(setup_.scripted.size());
    if (setup_.games > 0 && gamesDone_ >= setup_.games) return false;
    return setup_.randomDeals == 0 || dealsDone_ < setup_.randomDeals;
}

void SpadesGame::BeginDeal() {
    if (!DealsLeft()) {
        state_.phase = Phase::Finished;
        state_.finished = true;
        state_.turn = -1;
        state_.waitPrompt = false;
        state_.bidPanel = BidPanel::None;
        Log(EventKind::Finished, -1, "");
        Changed();
        return;
    }
    script_ = setup_.scripted.empty() ? nullptr : &setup_.scripted[static_cast<std::size_t>(dealsDone_)];
    int dealer;
    if (script_) {
        dealer = script_->dealer;
        dealt_ = script_->hands;
    } else {
        if (state_.dealer < 0)
            dealer = setup_.firstDealer >= 0 ? setup_.firstDealer % kSeats : static_cast<int>(rng_() % kSeats);
        else
            dealer = NextSeat(state_.dealer);
        std::vector<Card> deck = FullDeck();
        for (std::size_t i = deck.size() - 1; i > 0; --i) std::swap(deck[i], deck[rng_() % (i + 1)]);
        for (int s = 0; s < kSeats; ++s)
            dealt_[s].assign(deck.begin() + s * kTricks, deck.begin() + (s + 1) * kTricks);
    }
    for (auto& h : dealt_) std::sort(h.begin(), h.end());
    held_ = dealt_;
    ++dealsDone_;

    state_.phase = Phase::Prompt;
    state_.dealNumber = dealsDone_;
    ++state_.dealInGame;
    state_.dealer = dealer;
    state_.turn = -1;
    state_.bids = {};
    state_.waitPrompt = true;
    state_.bidPanel = BidPanel::None;
    state_.tricks = {};
    state_.currentTrick = TrickView{};
    RefreshHands();

    trickIndex_ = 0;
    trick_ = {};
    spadesBroken_ = false;
    record_ = FinishedDeal{};
    record_.dealNumber = dealsDone_;
    record_.dealer = dealer;
    for (int s = 0; s < kSeats; ++s) record_.names[s] = setup_.players[s].name;

    Log(EventKind::DealStart, dealer, std::to_string(dealsDone_));
    Changed();
    After(setup_.timing.promptMs, &SpadesGame::EndPrompt);
}

void SpadesGame::EndPrompt() {
    state_.waitPrompt = false;
    state_.phase = Phase::Bidding;
    state_.turn = NextSeat(state_.dealer);
    Log(EventKind::PromptOff, -1, "");
    Changed();
    BeginBidTurn();
}

void SpadesGame::BeginBidTurn() {
    const int seat = state_.turn;
    if (seat == setup_.userSeat) {
        state_.bidPanel = DoubleNilOpen(seat) ? BidPanel::DoubleNil : BidPanel::Ordinary;
        Log(EventKind::BidPanelUp, seat, state_.bidPanel == BidPanel::DoubleNil ? "DoubleNil" : "Ordinary");
        Changed();
        After(setup_.timing.userBidTimeoutMs, &SpadesGame::UserBidTimeout);
    } else {
        After(Between(setup_.timing.bidMinMs, setup_.timing.bidMaxMs), &SpadesGame::ComputerBid);
    }
}

void SpadesGame::ComputerBid() { RecordBid(state_.turn, AutoBid(state_.turn)); }

void SpadesGame::UserBidTimeout() { RecordBid(setup_.userSeat, AutoBid(setup_.userSeat)); }

bool SpadesGame::UserBid(const std::string& bid) {
    if (state_.phase != Phase::Bidding || state_.turn != setup_.userSeat) return false;
    if (state_.bidPanel == BidPanel::DoubleNil) {
        if (bid != "D") return false;
    } else if (state_.bidPanel == BidPanel::Ordinary) {
        if (bid != "N" && BidTricks(bid) == 0) return false;
    } else {
        return false;
    }
    if (setup_.suicide && !SuicideAllows(state_.bids, setup_.userSeat, bid)) return false;
    RecordBid(setup_.userSeat, bid);
    return true;
}

bool SpadesGame::UserShowCards() {
    if (state_.phase != Phase::Bidding || state_.bidPanel != BidPanel::DoubleNil) return false;
    state_.bidPanel = BidPanel::Ordinary;
    Log(EventKind::BidPanelUp, setup_.userSeat, "Ordinary");
    Changed();
    After(setup_.timing.userBidTimeoutMs, &SpadesGame::UserBidTimeout);
    return true;
}

void SpadesGame::RecordBid(int seat, const std::string& bid) {
    if (pending_) {
        clock_.Cancel(pending_);
        pending_ = 0;
    }
    state_.bids[seat] = bid;
    state_.bidPanel = BidPanel::None;
    Log(EventKind::Bid, seat, bid);
    const bool allIn = std::all_of(state_.bids.begin(), state_.bids.end(), [](const std::string& b) { return !b.empty(); });
    if (!allIn) {
        state_.turn = NextSeat(seat);
        Changed();
        BeginBidTurn();
        return;
    }
    state_.turn = -1;
    bool pass = false;
    if (setup_.dnilPass && !script_)
        for (const auto& b : state_.bids) pass = pass || b == "D";
    if (pass) {
        state_.phase = Phase::Passing;
        Changed();
        After(setup_.timing.passMs, &SpadesGame::DoPass);
    } else {
        Changed();
        After(setup_.timing.firstLeadMs, &SpadesGame::BeginPlay);
    }
}

void SpadesGame::DoPass() {
    // The Double Nil bidder hands its two highest cards to the partner and
    // gets the partner's two lowest back.
    auto cost = [](Card c) { return RankOf(c) + (SuitOf(c) == kSpades ? 100 : 0); };
    auto byCost = [&](Card a, Card b) { return cost(a) < cost(b); };
    std::string text;
    for (int seat = 0; seat < kSeats; ++seat) {
        if (state_.bids[seat] != "D") continue;
        Hand& mine = held_[seat];
        Hand& pard = held_[PartnerOf(seat)];
        std::sort(mine.begin(), mine.end(), byCost);
        Hand give(mine.end() - 2, mine.end());
        mine.resize(mine.size() - 2);
        std::sort(pard.begin(), pard.end(), byCost);
        Hand back(pard.begin(), pard.begin() + 2);
        pard.erase(pard.begin(), pard.begin() + 2);
        pard.insert(pard.end(), give.begin(), give.end());
        mine.insert(mine.end(), back.begin(), back.end());
        std::sort(mine.begin(), mine.end());
        std::sort(pard.begin(), pard.end());
        if (!text.empty()) text += ";";
        text += CardText(give[0]) + "," + CardText(give[1]) + ">" + CardText(back[0]) + "," + CardText(back[1]);
    }
    dealt_ = held_;
    RefreshHands();
    Log(EventKind::PassDone, -1, text);
    Changed();
    After(setup_.timing.firstLeadMs, &SpadesGame::BeginPlay);
}

void SpadesGame::BeginPlay() {
    state_.phase = Phase::Playing;
    leader_ = NextSeat(state_.dealer);
    trick_ = {};
    state_.currentTrick = TrickView{};
    state_.currentTrick.number = 1;
    state_.currentTrick.leader = leader_;
    state_.turn = leader_;
    Changed();
    After(Between(setup_.timing.cardMinMs, setup_.timing.cardMaxMs), &SpadesGame::PlayCard);
}

void SpadesGame::PlayCard() {
    const int seat = state_.turn;
    Card card;
    if (script_ && script_->hasPlay) {
        card = script_->play[static_cast<std::size_t>(trickIndex_)][static_cast<std::size_t>(seat)];
    } else {
        PlayView view;
        view.hand = held_[seat];
        view.seat = seat;
        view.bids = state_.bids;
        view.tricks = state_.tricks;
        view.trick = trick_;
        view.leader = leader_;
        view.spadesBroken = spadesBroken_;
        card = ChoosePlay(view);
    }
    Hand& hand = held_[seat];
    hand.erase(std::remove(hand.begin(), hand.end(), card), hand.end());
    trick_[seat] = card;
    if (SuitOf(card) == kSpades) spadesBroken_ = true;
    state_.currentTrick.cards[seat] = CardText(card);
    RefreshHands();
    Log(EventKind::Card, seat, CardText(card));
    if (NextSeat(seat) == leader_) {
        state_.turn = -1;
        Changed();
        After(setup_.timing.collectMs, &SpadesGame::CollectTrick);
    } else {
        state_.turn = NextSeat(seat);
        Changed();
        After(Between(setup_.timing.cardMinMs, setup_.timing.cardMaxMs), &SpadesGame::PlayCard);
    }
}

void SpadesGame::CollectTrick() {
    const int winner = TrickWinner(trick_, leader_);
    const auto t = static_cast<std::size_t>(trickIndex_);
    ++state_.tricks[winner];
    TrickView done = state_.currentTrick;
    done.winner = winner;
    state_.lastTrick = done;
    for (int s = 0; s < kSeats; ++s) record_.cards[s][t] = CardText(trick_[s]);
    record_.leader[t] = leader_;
    record_.winner[t] = winner;
    Log(EventKind::TrickTaken, winner, std::to_string(trickIndex_ + 1));
    ++trickIndex_;
    trick_ = {};
    state_.currentTrick = TrickView{};
    if (trickIndex_ == kTricks) {
        state_.turn = -1;
        Changed();
        After(setup_.timing.scoreMs, &SpadesGame::FinishDeal);
        return;
    }
    leader_ = winner;
    state_.currentTrick.number = trickIndex_ + 1;
    state_.currentTrick.leader = leader_;
    state_.turn = leader_;
    Changed();
    After(Between(setup_.timing.cardMinMs, setup_.timing.cardMaxMs), &SpadesGame::PlayCard);
}

void SpadesGame::FinishDeal() {
    ScoreLine prev{};
    if (!state_.scoreLines.empty()) prev = state_.scoreLines.back();
    ScoreLine line = ScoreDeal(prev, state_.bids, state_.tricks);
    state_.scoreLines.push_back(line);
    record_.bids = state_.bids;
    record_.tricks = state_.tricks;
    record_.valid = true;
    state_.lastHand = record_;
    state_.phase = Phase::DealOver;
    Log(EventKind::ScoreLineAdded, -1,
        std::to_string(line[0]) + "," + std::to_string(line[1]) + "," + std::to_string(line[2]) + "," +
            std::to_string(line[3]));
    if (IsGameOver(line, setup_.gamePoint)) {
        state_.gameOver = true;
        state_.phase = Phase::GameOver;
        RenewRatings(line);
        Log(EventKind::GameOver, line[0] > line[2] ? 0 : 1, "");
        Changed();
        After(setup_.timing.gameOverMs, &SpadesGame::NewGame);
        return;
    }
    Changed();
    After(setup_.timing.nextDealMs, &SpadesGame::BeginDeal);
}

void SpadesGame::NewGame() {
    // After the last deal the final score stays on the table.
    if (DealsLeft()) {
        state_.scoreLines.clear();
        state_.gameOver = false;
        ++state_.gameNumber;
        state_.dealInGame = 0;
        for (int s = 0; s < kSeats; ++s)
            if (!laterRatings_[s].empty()) state_.players[s].rating = std::exchange(laterRatings_[s], std::string());
        Log(EventKind::NewGame, -1, std::to_string(state_.gameNumber));
        Changed();
    }
    BeginDeal();
}

namespace {

bool Provisional(const std::string& rating) {
    return core::StartsWith(rating, "pr") || core::StartsWith(rating, "\xE4\xBB\xAE\xE3\x83\xAC");  // "仮レ"
}

}  // namespace

void SpadesGame::RenewRatings(const ScoreLine& final) {
    const std::size_t game = static_cast<std::size_t>(gamesDone_++);
    std::array<std::string, kSeats> next;
    for (int s = 0; s < kSeats; ++s) next[s] = state_.players[s].rating;
    if (game < setup_.ratingsAfterGame.size()) {
        next = setup_.ratingsAfterGame[game];
    } else {
        // A few points up for a win, down for a loss, different each game.
        const int u = state_.userSeat;
        const bool won = (final[0] > final[2]) == (u % 2 == 0);
        const int step = 3 + static_cast<int>((game * 5) % 9);
        const int now = Provisional(next[u]) ? 1500 : core::ValInt(next[u]);
        if (now > 0) next[u] = std::to_string(now + (won ? step : -step));
    }
    constexpr std::size_t kTextLines = 4;
    for (int s = 0; s < kSeats; ++s) {
        if (next[s] == state_.players[s].rating) continue;
        if (Provisional(state_.players[s].rating) && core::ValInt(next[s]) > 0) {
            // The list shows the new rating from the next game on.
            state_.textArea.push_back(state_.players[s].name + " newrating: " + next[s]);
            if (state_.textArea.size() > kTextLines) state_.textArea.erase(state_.textArea.begin());
            laterRatings_[s] = next[s];
        } else {
            state_.players[s].rating = next[s];
        }
    }
}

}  // namespace sim
