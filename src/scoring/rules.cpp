#include "scoring/rules.h"

#include <algorithm>
#include <climits>

#include "core/notation.h"

namespace scoring {

int BidNumber(std::string_view bid) {
    if (core::BidKind(bid) > 0) return 0;
    // ScoreBid is ten times the leading number, rounded; integer division
    // gives the number back for every real bid text. Nothing outside 0..13 is
    // a bid, so a misread text cannot throw the arithmetic off the scale.
    return std::clamp(core::ScoreBid(bid) / 10, 0, 13);
}

int BagDelta(int d) { return d < 0 ? d + 10 : d; }

void ScoreRows::Clear() {
    ScoreRowCount = 0;
    Rows = {};
    TeamScore = {};
    TeamBags = {};
}

bool ScoreRows::AddRow(const Row& row) {
    if (ScoreRowCount < 0 || ScoreRowCount >= MaxRows) return false;
    Rows[++ScoreRowCount] = row;
    return true;
}

ScoreRows::Row ScoreRows::At(int r) const {
    if (r < 0 || r > ScoreRowCount || r > MaxRows) return {};
    return Rows[r];
}

ScoreRows::DealFigures ScoreRows::DealPoints(int r, int pointsColumn) const {
    if (pointsColumn != NSPoints && pointsColumn != EWPoints) return {};
    const Row now = At(r);
    const Row before = At(r - 1);
    DealFigures f;
    // 64-bit on the way so absurd rows from a damaged file cannot overflow.
    const auto clamp = [](std::int64_t v) {
        return static_cast<int>(std::max<std::int64_t>(INT32_MIN, std::min<std::int64_t>(INT32_MAX, v)));
    };
    f.Points = clamp(std::int64_t{now[pointsColumn]} - before[pointsColumn]);
    f.Bags = BagDelta(clamp(std::int64_t{now[pointsColumn + 1]} - before[pointsColumn + 1]));
    return f;
}

void ScoreRows::LoadTeamFigures(int userSeat) {
    const Row last = At(ScoreRowCount);
    const int us = UserPointsColumn(userSeat);
    const int them = OpponentPointsColumn(userSeat);
    TeamScore = {last[us], last[them]};
    TeamBags = {last[us + 1], last[them + 1]};
}

int AllMadePoints(int startScore, int teamBid, std::string_view bidA, std::string_view bidB) {
    int v = startScore + 10 * teamBid;
    for (std::string_view b : {bidA, bidB}) v += 100 * core::BidKind(b);
    return v;
}

SideProjection ProjectSide(const ProjectionInput& in, int side) {
    SideProjection p;
    if (side != We && side != They) return p;
    const int other = 1 - side;
    const int t = in.DealTricks[side];
    const int b = in.TeamBid[side];
    const int d = t - b;
    const int start = in.StartScore[side];
    p.AllMadeShown = in.AllMadePoints[side];
    p.RunningBags = in.StartBags[side];
    if (d == 0) {
        p.Case = ProjectionCase::JustMaking;
        p.Base = start + 10 * t;
    } else if (d > 0) {
        p.Case = ProjectionCase::Overtricks;
        p.Overtricks = d;
        p.RunningBags = in.StartBags[side] + d;
        // The ten-bag penalty is taken once, however far past ten it goes.
        p.Base = start + 10 * b + d - (p.RunningBags >= 10 ? 100 : 0);
    } else if (in.DealTricks[Sum] >= 13 || in.DealTricks[other] + b > 13) {
        p.Case = ProjectionCase::Set;
        p.Base = start - 10 * b;
    }
    for (int j : {side, side + 2}) {
        const int k = core::BidKind(in.Bids[j]);
        if (k == 0) continue;
        if (in.NilBroken[j] != 0) {
            p.NilDelta -= 100 * k;
            // The +100 x kind counted for success becomes -100 x kind.
            p.AllMadeShown -= 200 * k;
            p.NilStatusKind = k;
            p.NilSet = true;
        } else if (in.DealTricks[Sum] >= 13) {
            p.NilDelta += 100 * k;
            p.NilStatusKind = k;
            p.NilSet = false;
        }
    }
    return p;
}

std::string ShownProjection(int projected, int tricksSum, int teamScore) {
    if (tricksSum >= 13) return std::to_string(teamScore);
    if (projected < -200) return "-200";
    return std::to_string(projected);
}

GameResult GameOver(int weScore, int theyScore, int gamePoint) {
    if (weScore == theyScore) return GameResult::Running;
    if (weScore < gamePoint && theyScore < gamePoint) return GameResult::Running;
    return weScore > theyScore ? GameResult::WeWon : GameResult::TheyWon;
}

int TrickWinner(const std::array<int, 4>& cards, int leader, int trump) {
    if (leader < 0 || leader > 3) return 0;
    const int led = core::SuitOfCode(cards[leader]);
    int winner = leader;
    for (int p = 0; p < 4; ++p) {
        if (core::SuitOfCode(cards[p]) == led && cards[p] > cards[winner]) winner = p;
    }
    if (trump != core::NoTrump && led != trump) {
        int bestRank = 0;
        for (int p = 0; p < 4; ++p) {
            if (core::SuitOfCode(cards[p]) == trump && core::RankOfCode(cards[p]) > bestRank) {
                bestRank = core::RankOfCode(cards[p]);
                winner = p;
            }
        }
    }
    return winner;
}

TrickCounts DealTrickCounts(const TrickCards& cards, const TrickMarks& marks) {
    TrickCounts c;
    const auto win = [&c](int t, int seat) {
        c.Winner[t][seat] = 1;
        ++c.Tricks[seat];
    };
    int t = 0;
    for (; t < 12; ++t) {
        bool unknown = false;
        for (int p = 0; p < 4; ++p) {
            if (marks[t + 1][p] == 1) {
                win(t, p);
                break;
            }
            if (marks[t + 1][p] == 2) {
                unknown = true;
                break;
            }
        }
        if (unknown) break;
    }
    // The last known trick has no following lead: its cards decide.
    for (int p = 0; p < 4; ++p) {
        if (marks[t][p] == 2) break;
        if (marks[t][p] == 1) {
            std::array<int, 4> codes{};
            for (int s = 0; s < 4; ++s) codes[s] = core::CardCode(cards[t][s]);
            win(t, TrickWinner(codes, p, core::Spades));
            break;
        }
    }
    return c;
}

Hands HandsFromTricks(const TrickCards& cards) {
    Hands h{};
    for (int t = 0; t < 13; ++t)
        for (int s = 0; s < 4; ++s) h[s][t] = core::CardCode(cards[t][s]);
    return h;
}

}  // namespace scoring
