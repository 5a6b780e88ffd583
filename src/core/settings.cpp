#include "core/settings.h"

#include <cmath>
#include <filesystem>
#include <limits>
#include <system_error>

#include "core/startup.h"
#include "core/text.h"

namespace core {

namespace {

// The forms of one key = value line.
struct Line {
    std::string Key;       // lower-cased
    std::string Unquoted;  // raw value, or the quoted part of it
    std::string Value;     // Unquoted lower-cased

    bool Flag() const { return StartsWith(Value, "y") || Value == "on"; }
    std::int32_t Number() const { return ValInt(Value); }
    std::int32_t Milliseconds() const {
        const double ms = std::round(Val(Value) * 1000.0);
        if (ms >= static_cast<double>(std::numeric_limits<std::int32_t>::max()))
            return std::numeric_limits<std::int32_t>::max();
        if (ms <= static_cast<double>(std::numeric_limits<std::int32_t>::min()))
            return std::numeric_limits<std::int32_t>::min();
        return static_cast<std::int32_t>(ms);
    }
};

std::string UnquoteValue(const std::string& raw) {
    const std::size_t q = raw.find('"');
    if (q == std::string::npos) return raw;
    const std::size_t e = raw.find('"', q + 1);
    return raw.substr(q + 1, e == std::string::npos ? std::string::npos : e - q - 1);
}

// "(x,y)" anywhere in the text; no "(" leaves the pair as it is.
void ParsePosition(const std::string& value, Position& pos) {
    const std::size_t p = value.find('(');
    if (p == std::string::npos) return;
    std::string rest = value.substr(p + 1);
    if (StartsWith(rest, "*,")) {
        pos = {Position::kDefaultPlace, Position::kDefaultPlace};
        return;
    }
    pos.X = ValInt(NextToken(rest));
    pos.Y = ValInt(rest);
}

using Apply = void (*)(Settings&, const Line&, const FileExistsFn&);

struct Key {
    const char* Names[2];
    Apply Fn;
};

#define SET(body) [](Settings& s, const Line& l, const FileExistsFn& exists) { (void)s; (void)l; (void)exists; body; }
#define FLAG(member) SET(s.member = l.Flag())
#define POS(member) SET(ParsePosition(l.Value, s.member))

// In the order the reader tests them; the first match handles the line.
const Key kKeys[] = {
    {{"link"}, SET(if (l.Value == "usa" || l.Value == "uk") s.link = l.Value)},
    {{"ニル集計"}, FLAG(NilTally)},
    {{"CFG"}, SET(s.CFG = l.Unquoted)},
    {{"TopMostScoreWindow"}, SET(if (l.Flag()) s.TopMostScoreWindow = 2)},
    {{"GamePoint"}, SET(s.GamePoint = l.Number())},
    {{"AlertPlayers", "ブラックリスト"}, SET(if (!l.Value.empty() && exists && exists(l.Value)) s.AlertFile = l.Value)},
    {{"MyYahooID"}, SET({
         std::string text = l.Value;
         s.MyIds.clear();
         while (!text.empty() && s.MyIds.size() < kMaxOwnIds) s.MyIds.push_back(NextToken(text));
     })},
    {{"AutoCapt Bid"}, FLAG(AutoCaptBid)},
    {{"AutoCapt Hand"}, FLAG(AutoCaptHand)},
    {{"WaitTime Bid"}, SET(s.WaitBidMs = l.Milliseconds())},
    {{"WaitTime Hand"}, SET(s.WaitHandMs = l.Milliseconds())},
    {{"AlertTime"}, SET(s.AlertTimeMs = l.Milliseconds())},
    {{"AlertSound"}, SET(s.AlertSound = l.Value)},
    {{"AlertWinning"}, SET(s.AlertWinning = l.Value)},
    {{"AlertLosing"}, SET(s.AlertLosing = l.Value)},
    {{"Reduce SpadesWindow"}, SET({
         if (l.Value == "yes" || l.Value == "on") s.ReduceOn = true;
         else if (l.Value == "no" || l.Value == "off") s.ReduceOn = false;
         else s.ReduceWidth = l.Number();
     })},
    {{"Minimize LastHand"}, FLAG(MinimizeLastHand)},
    {{"DebugWindow"}, FLAG(DebugWindow)},
    {{"BOX の状態を表示"}, FLAG(ShowBoxState)},
    {{"log"}, SET(if (!l.Unquoted.empty()) s.log = l.Unquoted)},
    {{"history"}, SET(if (!l.Unquoted.empty()) s.history = l.Unquoted)},
    {{"日本語表示", "JPN"}, SET(if (l.Flag()) s.JPN = true)},
    {{"Text Output"}, FLAG(TextOutput)},
    {{"BackColor"}, SET(if (!l.Value.empty()) s.BackColor = HexVal(l.Value))},
    {{"BackColor2"}, SET(if (!l.Value.empty()) s.BackColor2 = HexVal(l.Value))},
    {{"BackColor3"}, SET(if (!l.Unquoted.empty()) s.BackColor3 = "#" + l.Value)},
    {{"BackColor4"}, SET(if (!l.Unquoted.empty()) s.BackColor4 = "#" + l.Value)},
    {{"BackColor5"}, SET(if (!l.Unquoted.empty()) s.BackColor5 = "#" + l.Value)},
    {{"Score Table", "スコアの表"}, FLAG(ScoreTable)},
    {{"Card Order", "カードの順序"}, SET({
         if (l.Value == "降順" || l.Value == "descending") s.CardOrderDescending = true;
         else if (l.Value == "昇順" || l.Value == "ascending") s.CardOrderDescending = false;
     })},
    {{"Suit Marks"}, SET({
         if (Contains(l.Value, "symbol")) s.SuitMarksSymbol = true;
         if (Contains(l.Value, "giff")) s.SuitMarksImages = true;
         if (l.Value.size() >= 2 && l.Value.front() == '(' && l.Value.back() == ')') {
             std::string items = l.Value.substr(1, l.Value.size() - 2);
             for (int suit : {3, 2, 1, 0}) {  // spades, hearts, diamonds, clubs
                 if (items.empty()) break;
                 s.SuitMarkWidths[static_cast<std::size_t>(suit)] = ValInt(NextToken(items));
             }
         }
     })},
    {{"strict"}, FLAG(strict)},
    {{"AlertNilBids"}, FLAG(AlertNilBids)},
    {{"AlertFailNil"}, FLAG(AlertFailNil)},
    {{"AlertSuicideTable"}, FLAG(AlertSuicideTable)},
    {{"AlertDnilPassTable"}, FLAG(AlertDnilPassTable)},
    {{"AlertCanDNilPass"}, FLAG(AlertCanDNilPass)},
    {{"BoldBidTrick"}, FLAG(BoldBidTrick)},
    {{"ShowTrickBox"}, FLAG(ShowTrickBox)},
    {{"BridgeWindowWidth"}, SET(s.BridgeWindowWidth = l.Number())},
    {{"BidTrickCounter"}, SET({
         const std::size_t p = l.Value.find("),");
         if (p == std::string::npos) {
             ParsePosition(l.Value, s.LeftCounterPos);
         } else {
             ParsePosition(l.Value.substr(0, p + 1), s.LeftCounterPos);
             ParsePosition(l.Value.substr(p + 2), s.RightCounterPos);
         }
     })},
    {{"TopMostBiddingBoard"}, FLAG(TopMostBiddingBoard)},
    {{"BiddingBoard"}, SET({
         if (StartsWith(l.Value, "(")) {
             s.BoardMode = 7;
             ParsePosition(l.Value, s.BoardPos);
         }
         if (Contains(l.Value, "dnil pass only")) s.BoardMode = 2;
         if (Contains(l.Value, "modal")) s.BoardModal = true;
     })},
    {{"残りのカード"}, POS(RemainingCardsPos)},
    {{"ShowBiddingSequence"}, POS(BiddingSequencePos)},
    {{"CountCards"}, SET({
         ParsePosition(l.Value, s.CountCardsPos);
         if (s.CountCardsPos.X != 0) s.CardCounting = true;
     })},
    {{"PasteScoreTable"}, POS(PasteScoreTable)},
    {{"MyHand"}, SET({
         if (Contains(l.Value, "single")) s.MyHandLayout = 1;
         if (Contains(l.Value, "double")) s.MyHandLayout = 0;
         if (StartsWith(l.Value, "(")) ParsePosition(l.Value, s.MyHandPos);
     })},
    {{"HelpBidIn4thSeat"}, POS(HelpBidIn4thSeat)},
    {{"AskAlert"}, POS(AskAlertPos)},
    {{"TopmostPlayerInfo"}, FLAG(TopmostPlayerInfo)},
};

#undef POS
#undef FLAG
#undef SET

// Key names as the reader compares them (lower-cased once).
struct KeyTable {
    std::vector<std::pair<std::string, Apply>> Entries;
    KeyTable() {
        for (const Key& k : kKeys)
            for (const char* n : k.Names)
                if (n) Entries.emplace_back(LCase(n), k.Fn);
    }
};

}  // namespace

SettingsReadResult ReadSettingsLines(const std::vector<std::string>& lines, Settings& s,
                                     const FileExistsFn& fileExists) {
    static const KeyTable table;  // constant, built on first use
    SettingsReadResult result;
    for (const std::string& raw : lines) {
        const std::string text = Trim(raw);
        if (text.empty() || text[0] == '#') continue;
        const std::size_t eq = text.find('=');
        if (eq == std::string::npos) continue;
        const std::string rawKey = Trim(std::string_view(text).substr(0, eq));
        const std::string rawValue = Trim(std::string_view(text).substr(eq + 1));
        Line l;
        l.Key = LCase(rawKey);
        l.Unquoted = UnquoteValue(rawValue);
        l.Value = LCase(l.Unquoted);
        Apply fn = nullptr;
        for (const auto& [name, f] : table.Entries)
            if (name == l.Key) {
                fn = f;
                break;
            }
        if (fn) {
            fn(s, l, fileExists);
            continue;
        }
        if (l.Key.empty()) continue;
        result.Illegal = true;
        result.IllegalKey = rawKey;
        result.IllegalValue = rawValue;
        break;
    }
    return result;
}

SettingsReadResult ParseSettingsBytes(std::string_view bytes, int codePage, Settings& s,
                                      const FileExistsFn& fileExists) {
    std::vector<std::string> lines = SplitLines(bytes);
    LinesToUtf8(lines, codePage);
    return ReadSettingsLines(lines, s, fileExists);
}

std::string FindSettingsFile(const Folders& folders, std::string& path) {
    for (const char* name : {kSettingsFileJapanese, kSettingsFile}) {
        std::string found = FindFileNoCase(folders.ProgramFolder, name);
        std::error_code ec;
        if (!found.empty() && !std::filesystem::is_directory(PathFromUtf8(found), ec)) {
            path = found;
            return name;
        }
    }
    path.clear();
    return {};
}

void ApplyPostReadRules(Settings& s, bool systemJapanese) {
    s.GamePoint = 500;
    if (s.JPN) {
        if (s.AlertFile == kAlertFileDefault) s.AlertFile = kAlertFileJapanese;
        if (s.history == kHistoryFileDefault) s.history = kHistoryFileJapanese;
        if (!systemJapanese) s.JPN = false;
    }
}

SettingsLoad LoadSettings(const Folders& folders, int codePage, bool applyPostReadRules) {
    SettingsLoad load;
    load.FileName = FindSettingsFile(folders, load.Path);
    if (!load.FileName.empty()) {
        std::vector<std::string> lines;
        if (ReadTextFile(load.Path, codePage, lines)) {
            const FileExistsFn exists = [&folders](const std::string& name) {
                return folders.ProgramFileExists(name);
            };
            load.Result = ReadSettingsLines(lines, load.Values, exists);
        } else {
            // Present but unreadable: start-up runs on with the defaults.
            load.FileName.clear();
            load.Path.clear();
        }
    }
    if (applyPostReadRules && !load.Result.Illegal) ApplyPostReadRules(load.Values, TestOSjp(codePage));
    return load;
}

namespace {

Json Pair(const Position& p) {
    Json a = Json::Array();
    a.Push(Json(p.X));
    a.Push(Json(p.Y));
    return a;
}

}  // namespace

Json SettingsJson(const Settings& s) {
    Json j = Json::Object();
    j.Set("link", s.link);
    j.Set("ニル集計", s.NilTally);
    j.Set("CFG", s.CFG);
    j.Set("TopMostScoreWindow", s.TopMostScoreWindow);
    j.Set("GamePoint", s.GamePoint);
    j.Set("AlertPlayers", s.AlertFile);
    j.Set("MyYahooID", Json::ArrayOf(s.MyIds));
    j.Set("AutoCapt Bid", s.AutoCaptBid);
    j.Set("AutoCapt Hand", s.AutoCaptHand);
    j.Set("WaitTime Bid", s.WaitBidMs);
    j.Set("WaitTime Hand", s.WaitHandMs);
    j.Set("AlertTime", s.AlertTimeMs);
    j.Set("AlertSound", s.AlertSound);
    j.Set("AlertWinning", s.AlertWinning);
    j.Set("AlertLosing", s.AlertLosing);
    Json reduce = Json::Object();
    reduce.Set("on", s.ReduceOn);
    reduce.Set("width", s.ReduceWidth);
    j.Set("Reduce SpadesWindow", reduce);
    j.Set("Minimize LastHand", s.MinimizeLastHand);
    j.Set("DebugWindow", s.DebugWindow);
    j.Set("BOX の状態を表示", s.ShowBoxState);
    j.Set("log", s.log);
    j.Set("history", s.history);
    j.Set("日本語表示", s.JPN);
    j.Set("Text Output", s.TextOutput);
    j.Set("BackColor", static_cast<std::int64_t>(s.BackColor));
    j.Set("BackColor2", static_cast<std::int64_t>(s.BackColor2));
    j.Set("BackColor3", s.BackColor3);
    j.Set("BackColor4", s.BackColor4);
    j.Set("BackColor5", s.BackColor5);
    j.Set("Score Table", s.ScoreTable);
    j.Set("Card Order", s.CardOrderDescending ? "descending" : "ascending");
    Json marks = Json::Object();
    marks.Set("symbol", s.SuitMarksSymbol);
    marks.Set("images", s.SuitMarksImages);
    Json widths = Json::Array();
    for (int suit : {3, 2, 1, 0}) widths.Push(Json(s.SuitMarkWidths[static_cast<std::size_t>(suit)]));
    marks.Set("widths", widths);
    j.Set("Suit Marks", marks);
    j.Set("strict", s.strict);
    j.Set("AlertNilBids", s.AlertNilBids);
    j.Set("AlertFailNil", s.AlertFailNil);
    j.Set("AlertSuicideTable", s.AlertSuicideTable);
    j.Set("AlertDnilPassTable", s.AlertDnilPassTable);
    j.Set("AlertCanDNilPass", s.AlertCanDNilPass);
    j.Set("BoldBidTrick", s.BoldBidTrick);
    j.Set("ShowTrickBox", s.ShowTrickBox);
    j.Set("BridgeWindowWidth", s.BridgeWindowWidth);
    Json counters = Json::Array();
    counters.Push(Pair(s.LeftCounterPos));
    counters.Push(Pair(s.RightCounterPos));
    j.Set("BidTrickCounter", counters);
    j.Set("TopMostBiddingBoard", s.TopMostBiddingBoard);
    Json board = Json::Object();
    board.Set("mode", s.BoardMode);
    board.Set("modal", s.BoardModal);
    board.Set("pos", Pair(s.BoardPos));
    j.Set("BiddingBoard", board);
    j.Set("残りのカード", Pair(s.RemainingCardsPos));
    j.Set("ShowBiddingSequence", Pair(s.BiddingSequencePos));
    j.Set("CountCards", Pair(s.CountCardsPos));
    j.Set("PasteScoreTable", Pair(s.PasteScoreTable));
    Json hand = Json::Object();
    hand.Set("layout", s.MyHandLayout);
    hand.Set("pos", Pair(s.MyHandPos));
    j.Set("MyHand", hand);
    j.Set("HelpBidIn4thSeat", Pair(s.HelpBidIn4thSeat));
    j.Set("AskAlert", Pair(s.AskAlertPos));
    j.Set("TopmostPlayerInfo", s.TopmostPlayerInfo);
    return j;
}

}  // namespace core
