#include "sim/scenario.h"

#include <algorithm>
#include <cmath>
#include <set>

#include "core/text.h"

namespace sim {

namespace {

const char* const kSeatNames[kSeats] = {"North", "East", "South", "West"};

// Limits of a scenario: generous for any real table, small enough that a
// hostile file cannot make the simulator run for hours or stall on a name.
constexpr std::size_t kMaxScenarioBytes = 8u << 20;
constexpr std::size_t kMaxDeals = 1000;
constexpr std::size_t kMaxTextChars = 64;      // names of players, watchers, table and host
constexpr std::size_t kMaxLineChars = 1000;    // a settings or alert line
constexpr std::size_t kMaxLines = 2000;        // settings and alert lines each
constexpr std::size_t kMaxWatchers = 100;
constexpr double kMaxRatingNumber = 999999999;  // a rating given as a number
const char* const kSuitNames[4] = {"clubs", "diamonds", "hearts", "spades"};

std::string Lower(std::string s) {
    for (char& c : s)
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    return s;
}

std::string Trim(const std::string& s) {
    std::size_t b = s.find_first_not_of(" \t\r\n"), e = s.find_last_not_of(" \t\r\n");
    return b == std::string::npos ? "" : s.substr(b, e - b + 1);
}

// Small helpers that fill `error` with the member path and return false.
struct Reader {
    std::string& error;

    bool Fail(const std::string& path, const std::string& what) {
        error = path + ": " + what;
        return false;
    }
    bool Keys(const core::Json& obj, const std::string& path, std::initializer_list<const char*> allowed) {
        for (const auto& m : obj.Members()) {
            bool ok = false;
            for (const char* a : allowed) ok = ok || m.first == a;
            if (!ok) return Fail(path.empty() ? m.first : path + "." + m.first, "unknown member");
        }
        return true;
    }
    bool Int(const core::Json* j, const std::string& path, long long lo, long long hi, long long& out) {
        if (!j) return Fail(path, "missing");
        if (!j->IsNumber() || j->AsNumber() != std::floor(j->AsNumber()))
            return Fail(path, "must be a whole number");
        double v = j->AsNumber();
        if (v < static_cast<double>(lo) || v > static_cast<double>(hi))
            return Fail(path, "must be between " + std::to_string(lo) + " and " + std::to_string(hi));
        out = static_cast<long long>(v);
        return true;
    }
    bool Int(const core::Json* j, const std::string& path, int lo, int hi, int& out) {
        long long v = 0;
        if (!Int(j, path, static_cast<long long>(lo), static_cast<long long>(hi), v)) return false;
        out = static_cast<int>(v);
        return true;
    }
    bool Str(const core::Json* j, const std::string& path, std::string& out, bool allowEmpty = false,
             std::size_t maxChars = kMaxTextChars) {
        if (!j) return Fail(path, "missing");
        if (!j->IsString()) return Fail(path, "must be a text");
        if (!allowEmpty && Trim(j->AsString()).empty()) return Fail(path, "must not be empty");
        if (j->AsString().size() > maxChars * 4 || core::Len(j->AsString()) > maxChars)
            return Fail(path, "longer than " + std::to_string(maxChars) + " characters");
        out = j->AsString();
        return true;
    }
    // A text, or a number written without quotes (ratings).
    bool Text(const core::Json* j, const std::string& path, std::string& out) {
        if (j && j->IsNumber()) {
            const double v = j->AsNumber();
            if (v != std::floor(v) || std::fabs(v) > kMaxRatingNumber)
                return Fail(path, "must be a whole number up to " + std::to_string(static_cast<long long>(kMaxRatingNumber)) +
                                      " or a text");
            out = std::to_string(static_cast<long long>(v));
            return true;
        }
        return Str(j, path, out);
    }
    bool Bool(const core::Json* j, const std::string& path, bool& out) {
        if (!j) return Fail(path, "missing");
        if (!j->IsBool()) return Fail(path, "must be true or false");
        out = j->AsBool();
        return true;
    }
    bool Array(const core::Json* j, const std::string& path, std::size_t size, bool exact = true) {
        if (!j) return Fail(path, "missing");
        if (!j->IsArray()) return Fail(path, "must be a list");
        if (exact && j->Size() != size)
            return Fail(path, "has " + std::to_string(j->Size()) + " entries, needs " + std::to_string(size));
        return true;
    }
    bool Lines(const core::Json* j, const std::string& path, std::vector<std::string>& out) {
        if (!Array(j, path, 0, false)) return false;
        if (j->Size() > kMaxLines) return Fail(path, "more than " + std::to_string(kMaxLines) + " lines");
        out.clear();
        for (std::size_t i = 0; i < j->Size(); ++i) {
            std::string s;
            if (!Str(&(*j)[i], path + "[" + std::to_string(i) + "]", s, true, kMaxLineChars)) return false;
            out.push_back(s);
        }
        return true;
    }
};

int DaysInMonth(int y, int m) {
    static const int days[12] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    if (m == 2 && ((y % 4 == 0 && y % 100 != 0) || y % 400 == 0)) return 29;
    return days[m - 1];
}

bool ParseStart(const std::string& s, platform::LocalTime& t) {
    // YYYY-MM-DDTHH:MM:SS
    if (s.size() != 19 || s[4] != '-' || s[7] != '-' || s[10] != 'T' || s[13] != ':' || s[16] != ':') return false;
    auto num = [&](std::size_t at, std::size_t len, int& out) {
        out = 0;
        for (std::size_t i = at; i < at + len; ++i) {
            if (s[i] < '0' || s[i] > '9') return false;
            out = out * 10 + (s[i] - '0');
        }
        return true;
    };
    if (!num(0, 4, t.Year) || !num(5, 2, t.Month) || !num(8, 2, t.Day) || !num(11, 2, t.Hour) ||
        !num(14, 2, t.Minute) || !num(17, 2, t.Second))
        return false;
    if (t.Year < 1980 || t.Month < 1 || t.Month > 12 || t.Day < 1 || t.Day > DaysInMonth(t.Year, t.Month) ||
        t.Hour > 23 || t.Minute > 59 || t.Second > 59)
        return false;
    t = platform::AddSeconds(t, 0);  // fills in the weekday
    return true;
}

bool ReadBid(Reader& r, const core::Json& j, const std::string& path, bool dnilPass, std::string& out) {
    if (j.IsNumber()) {
        int v = 0;
        if (!r.Int(&j, path, 1, 13, v)) return false;
        out = std::to_string(v);
        return true;
    }
    if (!j.IsString()) return r.Fail(path, "a bid is \"1\" .. \"13\", \"N\", \"D\" or \"DP\"");
    const std::string& s = j.AsString();
    if (s == "DP") {
        if (!dnilPass) return r.Fail(path, "\"DP\" is only bid at a Double Nil pass table");
        out = "D";
        return true;
    }
    if (!IsValidBid(s)) return r.Fail(path, "\"" + s + "\" is not a bid (\"1\" .. \"13\", \"N\", \"D\" or \"DP\")");
    out = s;
    return true;
}

bool ReadDeal(Reader& r, const core::Json& j, const std::string& path, const GameSetup& game, ScriptedDeal& deal) {
    if (!j.IsObject()) return r.Fail(path, "must be an object with dealer, hands, bids and play");
    if (!r.Keys(j, path, {"dealer", "hands", "bids", "play"})) return false;
    if (!r.Int(j.Get("dealer"), path + ".dealer", 0, 3, deal.dealer)) return false;

    const core::Json* hands = j.Get("hands");
    if (!r.Array(hands, path + ".hands", kSeats)) return false;
    std::set<Card> seen;
    for (int s = 0; s < kSeats; ++s) {
        const std::string hp = path + ".hands[" + std::to_string(s) + "]";
        const core::Json& h = (*hands)[static_cast<std::size_t>(s)];
        if (!r.Array(&h, hp, 0, false)) return false;
        if (h.Size() != kTricks)
            return r.Fail(hp, std::to_string(h.Size()) + " cards in " + kSeatNames[s] + "'s hand, needs 13");
        deal.hands[s].clear();
        for (std::size_t c = 0; c < h.Size(); ++c) {
            const std::string cp = hp + "[" + std::to_string(c) + "]";
            std::string text;
            if (!r.Str(&h[c], cp, text)) return false;
            Card card = ParseCard(text);
            if (!card) return r.Fail(cp, "\"" + text + "\" is not a card (rank 2-9TJQKA then suit CDHS, e.g. \"TH\")");
            if (!seen.insert(card).second) return r.Fail(cp, text + " is dealt twice");
            deal.hands[s].push_back(card);
        }
        std::sort(deal.hands[s].begin(), deal.hands[s].end());
    }

    const core::Json* bids = j.Get("bids");
    if (!r.Array(bids, path + ".bids", kSeats)) return false;
    for (int s = 0; s < kSeats; ++s)
        if (!ReadBid(r, (*bids)[static_cast<std::size_t>(s)], path + ".bids[" + std::to_string(s) + "]", game.dnilPass,
                     deal.bids[s]))
            return false;
    if (game.suicide)
        for (int side = 0; side < 2; ++side)
            if (IsNilBid(deal.bids[side]) == IsNilBid(deal.bids[side + 2]))
                return r.Fail(path + ".bids", std::string("at a suicide table exactly one of ") + kSeatNames[side] +
                                                  " and " + kSeatNames[side + 2] + " bids Nil or Double Nil");

    const core::Json* play = j.Get("play");
    deal.hasPlay = play != nullptr;
    if (!play) return true;
    if (!r.Array(play, path + ".play", kTricks)) return false;
    Hands held = deal.hands;
    int leader = NextSeat(deal.dealer);
    bool broken = false;
    for (int t = 0; t < kTricks; ++t) {
        const std::string tp = path + ".play[" + std::to_string(t) + "]";
        const core::Json& row = (*play)[static_cast<std::size_t>(t)];
        if (!r.Array(&row, tp, kSeats)) return false;
        std::array<Card, kSeats> cards{};
        for (int s = 0; s < kSeats; ++s) {
            std::string text;
            const std::string cp = tp + "[" + std::to_string(s) + "]";
            if (!r.Str(&row[static_cast<std::size_t>(s)], cp, text)) return false;
            cards[s] = ParseCard(text);
            if (!cards[s]) return r.Fail(cp, "\"" + text + "\" is not a card");
        }
        std::array<Card, kSeats> trick{};
        for (int i = 0; i < kSeats; ++i) {
            const int s = (leader + i) % kSeats;
            const std::string cp = tp + "[" + std::to_string(s) + "]";
            const Card c = cards[s];
            const std::string who = std::string(kSeatNames[s]) + " plays " + CardText(c);
            Hand& hand = held[s];
            if (std::find(hand.begin(), hand.end(), c) == hand.end()) {
                bool dealt = std::find(deal.hands[s].begin(), deal.hands[s].end(), c) != deal.hands[s].end();
                return r.Fail(cp, who + (dealt ? ", which was already played" : ", which is not in the hand"));
            }
            Hand legal = LegalPlays(hand, trick, leader, broken);
            if (std::find(legal.begin(), legal.end(), c) == legal.end()) {
                if (i == 0) return r.Fail(cp, who + ": spades may not be led before they are broken");
                return r.Fail(cp, who + " but must follow " + kSuitNames[SuitOf(trick[leader])]);
            }
            trick[s] = c;
            hand.erase(std::find(hand.begin(), hand.end(), c));
            if (SuitOf(c) == kSpades) broken = true;
        }
        deal.play[static_cast<std::size_t>(t)] = trick;
        leader = TrickWinner(trick, leader);
    }
    return true;
}

}  // namespace

std::string SettingValue(const std::vector<std::string>& settings, const std::string& key) {
    const std::string k = Lower(Trim(key));
    for (const auto& line : settings) {
        std::size_t eq = line.find('=');
        if (eq == std::string::npos) continue;
        if (Lower(Trim(line.substr(0, eq))) == k) return Trim(line.substr(eq + 1));
    }
    return "";
}

int UserSeatFromSettings(const std::vector<std::string>& settings, const std::array<Player, kSeats>& players) {
    std::string ids = SettingValue(settings, "MyYahooID");
    std::size_t pos = 0;
    while (pos <= ids.size()) {
        std::size_t comma = ids.find(',', pos);
        std::string id = Lower(Trim(ids.substr(pos, comma == std::string::npos ? std::string::npos : comma - pos)));
        if (!id.empty())
            for (int s = 0; s < kSeats; ++s)
                if (Lower(Trim(players[s].name)) == id) return s;
        if (comma == std::string::npos) break;
        pos = comma + 1;
    }
    return 0;
}

bool ScenarioFromJson(const core::Json& json, Scenario& out, std::string& error) {
    Reader r{error};
    Scenario sc;
    if (!json.IsObject()) return r.Fail("scenario", "must be a JSON object");
    if (!r.Keys(json, "", {"start", "language", "screen", "table", "settings", "alertFile", "players", "ratings",
                           "watchers", "codepage", "deals", "seed", "games", "ratingsAfterGame", "actions"}))
        return false;

    std::string start;
    if (!r.Str(json.Get("start"), "start", start)) return false;
    if (!ParseStart(start, sc.start)) return r.Fail("start", "\"" + start + "\" is not a date and time like 2026-03-05T21:00:00");

    int row = 0;
    if (!r.Int(json.Get("language"), "language", 1, 9, row)) return false;
    sc.language = core::LanguageOfRow(row);
    if (sc.language == core::GameLanguage::French)
        return r.Fail("language", "4 (France) has no game titles; use 1-3 or 5-9");

    const core::Json* screen = json.Get("screen");
    if (!r.Array(screen, "screen", 2)) return false;
    if (!r.Int(&(*screen)[0], "screen[0]", 640, 10000, sc.screenWidth)) return false;
    if (!r.Int(&(*screen)[1], "screen[1]", 480, 10000, sc.screenHeight)) return false;

    if (const core::Json* cp = json.Get("codepage")) {
        if (!r.Int(cp, "codepage", 0, 65535, sc.codepage)) return false;
        if (sc.codepage != 1252 && sc.codepage != 932) return r.Fail("codepage", "must be 1252 or 932");
    }

    GameSetup& g = sc.game;
    const core::Json* table = json.Get("table");
    if (!table) return r.Fail("table", "missing");
    if (!table->IsObject()) return r.Fail("table", "must be an object with name, host, dnilPass and suicide");
    if (!r.Keys(*table, "table", {"name", "host", "dnilPass", "suicide"})) return false;
    if (!r.Str(table->Get("name"), "table.name", g.tableName)) return false;
    if (!r.Str(table->Get("host"), "table.host", g.host)) return false;
    if (!r.Bool(table->Get("dnilPass"), "table.dnilPass", g.dnilPass)) return false;
    if (!r.Bool(table->Get("suicide"), "table.suicide", g.suicide)) return false;
    if (g.tableName.find(' ') != std::string::npos) return r.Fail("table.name", "must not contain blanks");
    if (g.host.find(' ') != std::string::npos) return r.Fail("table.host", "must not contain blanks");

    if (!r.Lines(json.Get("settings"), "settings", sc.settings)) return false;
    if (json.Has("alertFile") && !r.Lines(json.Get("alertFile"), "alertFile", sc.alertFile)) return false;

    const core::Json* players = json.Get("players");
    if (!r.Array(players, "players", kSeats)) return false;
    const core::Json* ratings = json.Get("ratings");
    if (!r.Array(ratings, "ratings", kSeats)) return false;
    for (int s = 0; s < kSeats; ++s) {
        const auto i = static_cast<std::size_t>(s);
        if (!r.Str(&(*players)[i], "players[" + std::to_string(s) + "]", g.players[s].name)) return false;
        if (g.players[s].name.find(' ') != std::string::npos)
            return r.Fail("players[" + std::to_string(s) + "]", "a player name has no blanks");
        for (int o = 0; o < s; ++o)
            if (Lower(g.players[o].name) == Lower(g.players[s].name))
                return r.Fail("players[" + std::to_string(s) + "]", "\"" + g.players[s].name + "\" sits twice");
        if (!r.Text(&(*ratings)[i], "ratings[" + std::to_string(s) + "]", g.players[s].rating)) return false;
    }

    if (const core::Json* w = json.Get("watchers")) {
        if (!r.Array(w, "watchers", 0, false)) return false;
        if (w->Size() > kMaxWatchers) return r.Fail("watchers", "more than " + std::to_string(kMaxWatchers) + " watchers");
        for (std::size_t i = 0; i < w->Size(); ++i) {
            const std::string wp = "watchers[" + std::to_string(i) + "]";
            const core::Json& e = (*w)[i];
            if (!e.IsArray() || e.Size() != 2) return r.Fail(wp, "must be [name, rating]");
            Player p;
            if (!r.Str(&e[0], wp + "[0]", p.name) || !r.Text(&e[1], wp + "[1]", p.rating)) return false;
            g.watchers.push_back(p);
        }
    }

    if (const core::Json* seed = json.Get("seed")) {
        long long v = 0;
        if (!r.Int(seed, "seed", 0LL, 4294967295LL, v)) return false;
        g.seed = static_cast<std::uint32_t>(v);
    }

    if (const core::Json* after = json.Get("ratingsAfterGame")) {
        if (!r.Array(after, "ratingsAfterGame", 0, false)) return false;
        if (after->Size() > kMaxDeals) return r.Fail("ratingsAfterGame", "more than " + std::to_string(kMaxDeals) + " games");
        for (std::size_t i = 0; i < after->Size(); ++i) {
            const std::string gp = "ratingsAfterGame[" + std::to_string(i) + "]";
            if (!r.Array(&(*after)[i], gp, kSeats)) return false;
            std::array<std::string, kSeats> texts;
            for (int s = 0; s < kSeats; ++s)
                if (!r.Text(&(*after)[i][static_cast<std::size_t>(s)], gp + "[" + std::to_string(s) + "]", texts[s]))
                    return false;
            g.ratingsAfterGame.push_back(texts);
        }
    }

    if (const core::Json* actions = json.Get("actions")) {
        if (!r.Array(actions, "actions", 0, false)) return false;
        if (actions->Size() > kMaxLines) return r.Fail("actions", "more than " + std::to_string(kMaxLines) + " actions");
        for (std::size_t i = 0; i < actions->Size(); ++i) {
            ScenarioAction a;
            a.path = "actions[" + std::to_string(i) + "]";
            const core::Json& j = (*actions)[i];
            if (!j.IsObject()) return r.Fail(a.path, "must be an object with at, do and arg");
            if (!r.Keys(j, a.path, {"at", "do", "arg"})) return false;
            std::string at;
            if (!r.Str(j.Get("at"), a.path + ".at", at)) return false;
            if (!ParseStart(at, a.at)) return r.Fail(a.path + ".at", "\"" + at + "\" is not a date and time like 2026-03-05T21:09:00");
            if (!r.Str(j.Get("do"), a.path + ".do", a.command)) return false;
            if (const core::Json* arg = j.Get("arg")) a.arg = *arg;
            sc.actions.push_back(std::move(a));
        }
    }

    const core::Json* deals = json.Get("deals");
    if (!deals) return r.Fail("deals", "missing");
    if (deals->IsNumber()) {
        if (!r.Int(deals, "deals", 1, 1000, g.randomDeals)) return false;
    } else if (deals->IsArray()) {
        if (deals->Size() == 0) return r.Fail("deals", "the list is empty");
        if (deals->Size() > kMaxDeals) return r.Fail("deals", "more than " + std::to_string(kMaxDeals) + " deals");
        for (std::size_t i = 0; i < deals->Size(); ++i) {
            ScriptedDeal d;
            if (!ReadDeal(r, (*deals)[i], "deals[" + std::to_string(i) + "]", g, d)) return false;
            g.scripted.push_back(d);
        }
    } else {
        return r.Fail("deals", "must be a number of random deals or a list of deals");
    }

    if (const core::Json* games = json.Get("games")) {
        if (!deals->IsNumber()) return r.Fail("games", "goes with a number of random deals");
        if (!r.Int(games, "games", 1, 100, g.games)) return false;
    }

    g.userSeat = UserSeatFromSettings(sc.settings, g.players);
    out = std::move(sc);
    return true;
}

bool ParseScenario(const std::string& text, Scenario& out, std::string& error) {
    if (text.size() > kMaxScenarioBytes) {
        error = "scenario: larger than " + std::to_string(kMaxScenarioBytes >> 20) + " MB";
        return false;
    }
    core::Json json;
    std::string why;
    if (!core::Json::Parse(text, json, why)) {
        error = "not valid JSON: " + why;
        return false;
    }
    return ScenarioFromJson(json, out, error);
}

}  // namespace sim
