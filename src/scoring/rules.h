// The Spades rules as the companion applies them itself: bags and points of
// one deal from the game's cumulative score lines, the projection of the deal
// in play, game over, and the winner of a trick. Plain integer arithmetic on
// plain data; the official score always comes from the game.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace scoring {

// Sides: 0 = "We" (table positions 0 and 2), 1 = "They" (1 and 3); three-entry
// arrays add the sum of both sides as entry 2.
inline constexpr int We = 0;
inline constexpr int They = 1;
inline constexpr int Sum = 2;

// Numeric value of a bid text: its leading number; Nil and double Nil count 0.
int BidNumber(std::string_view bid);  // clamped to 0..13

// Bags taken in one deal from the difference of two running bag counts. The
// game's count drops by 10 when a side is penalised, so a negative difference
// gets the 10 back.
int BagDelta(int d);

// Score lines as the game shows them, cumulative, one per deal.
class ScoreRows {
public:
    static constexpr int MaxRows = 100;
    // Columns of a row.
    static constexpr int NSPoints = 0, NSBags = 1, EWPoints = 2, EWBags = 3;
    using Row = std::array<std::int32_t, 4>;

    // Number of score lines held, 0 to 100. Row 0 is the state before the
    // first deal; row k the line after deal k.
    std::int32_t ScoreRowCount = 0;
    std::array<Row, MaxRows + 1> Rows{};
    // Figures of the latest line, the user's side first (LoadTeamFigures).
    std::array<std::int32_t, 2> TeamScore{};
    std::array<std::int32_t, 2> TeamBags{};

    void Clear();
    // Appends a line; false (and nothing changes) when the table is full.
    bool AddRow(const Row& row);
    // Row r, or a zero row outside 0..ScoreRowCount.
    Row At(int r) const;

    // Points column of the side of `userSeat` (the seat at table position 0)
    // and of the opponents; the bag column is the next one.
    static int UserPointsColumn(int userSeat) { return 2 * (((userSeat % 2) + 2) % 2); }
    static int OpponentPointsColumn(int userSeat) { return UserPointsColumn(userSeat) ^ 2; }

    // Points and bags of deal r (1..ScoreRowCount) for the side whose points
    // column is `pointsColumn`.
    struct DealFigures {
        int Points = 0;
        int Bags = 0;
    };
    DealFigures DealPoints(int r, int pointsColumn) const;

    // TeamScore and TeamBags from the latest line, the user's side first.
    void LoadTeamFigures(int userSeat);
};

// Score of a side if every bid of the deal is made: start + 10 x bid, plus
// 100 per Nil and 200 per double Nil bidder of the side.
int AllMadePoints(int startScore, int teamBid, std::string_view bidA, std::string_view bidB);

// How a side stands against its bid.
enum class ProjectionCase {
    Short,       // fewer tricks than bid and the bid can still be reached
    JustMaking,  // exactly the bid
    Overtricks,  // more than the bid
    Set,         // the bid can no longer be reached
};

struct ProjectionInput {
    std::array<int, 2> StartScore{};
    std::array<int, 2> StartBags{};
    std::array<int, 2> TeamBid{};
    std::array<int, 2> AllMadePoints{};
    std::array<int, 3> DealTricks{};        // side 0, side 1, sum
    std::array<std::string, 4> Bids;        // by table position
    std::array<int, 4> NilBroken{};         // by table position
};

struct SideProjection {
    ProjectionCase Case = ProjectionCase::Short;
    int Overtricks = 0;   // tricks above the bid (Overtricks case)
    int RunningBags = 0;  // start bags + overtricks, not reduced by a penalty
    // Projection from bid and tricks alone; empty in the Short case, where
    // the caller keeps the figure it had.
    std::optional<int> Base;
    // Sum of the Nil results of the side's partners: -100 x kind for a broken
    // Nil, +100 x kind for a made one once all 13 tricks are played.
    int NilDelta = 0;
    // Points-if-all-made figure to show (lowered by 200 x kind per broken Nil).
    int AllMadeShown = 0;
    // Status of the side's last Nil bidder: kind 0 = no Nil status, else
    // 1 Nil / 2 double Nil with NilSet telling broken (true) or made (false).
    int NilStatusKind = 0;
    bool NilSet = false;
};

SideProjection ProjectSide(const ProjectionInput& in, int side);

// Figure the counter shows for a projection: the game's own score once all
// 13 tricks are played, otherwise the projection floored at -200 for display.
std::string ShownProjection(int projected, int tricksSum, int teamScore);

// Game over: a side reached the game point and the scores differ.
enum class GameResult { Running, WeWon, TheyWon };
GameResult GameOver(int weScore, int theyScore, int gamePoint = 500);

// Seat that wins a trick: card codes by seat, the leader's seat, trump suit
// index (3 spades, 4 no trump).
int TrickWinner(const std::array<int, 4>& cards, int leader, int trump = 3);

// Winners and trick counts of a deal record, from its 13 x 4 card texts and
// lead marks (1 = led the trick, 2 = trick not known yet, 0 = otherwise). The
// winner of a trick is the leader of the next; the last known trick is
// decided by its cards, spades trump.
struct TrickCounts {
    std::array<std::array<std::uint8_t, 4>, 13> Winner{};  // 1 = seat won trick
    std::array<std::uint8_t, 4> Tricks{};                  // by seat
};
using TrickCards = std::array<std::array<std::string, 4>, 13>;
using TrickMarks = std::array<std::array<std::uint8_t, 4>, 13>;
TrickCounts DealTrickCounts(const TrickCards& cards, const TrickMarks& marks);

// Thirteen dealt cards per seat, as the trick table shows who played what.
using Hands = std::array<std::array<int, 13>, 4>;
Hands HandsFromTricks(const TrickCards& cards);

}  // namespace scoring
