#include "replay/actions.h"

#include <algorithm>
#include <cmath>

namespace replay {

namespace {

using tracking::Companion;
using tracking::CompanionWindow;

// What a command takes as "arg".
enum class Arg { None, Number, Text, YesNo, SeatReason, WindowAt };

struct Command {
    const char* Name;
    Arg Kind;
    int Lo, Hi;  // Number: the allowed range
    const char* Help;
    std::function<void(Companion&, const core::Json&)> Run;
};

int Int(const core::Json& j) { return static_cast<int>(j.AsInt()); }

const std::vector<std::pair<const char*, CompanionWindow>>& MovableWindows() {
    static const std::vector<std::pair<const char*, CompanionWindow>> w = {
        {"main", CompanionWindow::Main},
        {"leftCounter", CompanionWindow::LeftCounter},
        {"rightCounter", CompanionWindow::RightCounter},
        {"helpBid", CompanionWindow::HelpBid}};
    return w;
}

const std::vector<Command>& Commands() {
    static const std::vector<Command> c = {
        {"togglePause", Arg::None, 0, 0, "the pause button", [](Companion& a, const core::Json&) { a.TogglePause(); }},
        {"toggleAutoBid", Arg::None, 0, 0, "right click on \"Bid\"",
         [](Companion& a, const core::Json&) { a.ToggleAutoBid(); }},
        {"toggleAutoHand", Arg::None, 0, 0, "right click on \"Hand\"",
         [](Companion& a, const core::Json&) { a.ToggleAutoHand(); }},
        {"captureBids", Arg::None, 0, 0, "\"Bid\"", [](Companion& a, const core::Json&) { a.CaptureBidsNow(); }},
        {"captureHand", Arg::None, 0, 0, "\"Hand\"", [](Companion& a, const core::Json&) { a.CaptureHandNow(); }},
        {"end", Arg::None, 0, 0, "\"End\" (the window positions are saved)",
         [](Companion& a, const core::Json&) { a.End(); }},
        {"recordRatingNow", Arg::None, 0, 0, "right click on \"End\": the rating read and recorded",
         [](Companion& a, const core::Json&) { a.RecordRatingNow(); }},
        {"pressBoardButton", Arg::Number, 1, 21, "a button of the bidding board, 1 .. 21",
         [](Companion& a, const core::Json& j) { a.PressBoardButton(Int(j)); }},
        {"pressScoreButton", Arg::None, 0, 0, "\"Minimize\" / \"Show Score\" / \"Hide Score\"",
         [](Companion& a, const core::Json&) { a.PressScoreButton(); }},
        {"resizeMain", Arg::Number, 0, 10000, "the main window's new height in pixels",
         [](Companion& a, const core::Json& j) { a.ResizeMain(Int(j)); }},
        {"restartTable", Arg::None, 0, 0, "\"Restart\"", [](Companion& a, const core::Json&) { a.RestartTable(); }},
        {"openRecord", Arg::Text, 0, 0, "a record of the file box by name, e.g. \"03_05_001\"",
         [](Companion& a, const core::Json& j) { (void)a.OpenRecord(j.AsString()); }},
        {"selectRecord", Arg::Number, 0, 99999, "selects the file box entry of this index (0 = the newest)",
         [](Companion& a, const core::Json& j) { a.SelectRecord(Int(j)); }},
        {"deleteRecord", Arg::None, 0, 0, "the Delete key on the file box",
         [](Companion& a, const core::Json&) { (void)a.DeleteRecord(); }},
        {"confirmDelete", Arg::None, 0, 0, "\"DEL\"", [](Companion& a, const core::Json&) { a.ConfirmDelete(); }},
        {"undoDelete", Arg::None, 0, 0, "\"Undo\"", [](Companion& a, const core::Json&) { a.UndoDelete(); }},
        {"emptyWorkFolder", Arg::YesNo, 0, 0,
         "\"Delete ALL Work Files\"; true answers the dialog with its button, false cancels it",
         [](Companion& a, const core::Json& j) { (void)a.EmptyWorkFolder(j.AsBool()); }},
        {"chooseSeatMenuEntry", Arg::SeatReason, 0, 3,
         "[table position 0 .. 3, \"reason\"]: the seat menu, and the reason dialog answered (\"\" closes it)",
         [](Companion& a, const core::Json& j) { a.ChooseSeatMenuEntry(Int(j[0]), j[1].AsString()); }},
        {"pressPromptButton", Arg::None, 0, 0, "the alert prompt's button",
         [](Companion& a, const core::Json&) { a.PressPromptButton(); }},
        {"pressNoneButton", Arg::None, 0, 0, "\"None\": the table checked again",
         [](Companion& a, const core::Json&) { a.PressNoneButton(); }},
        {"moveCompanionWindow", Arg::WindowAt, -10000, 10000,
         "[\"main\" | \"leftCounter\" | \"rightCounter\" | \"helpBid\", x, y]: the player drags a window",
         [](Companion& a, const core::Json& j) {
             for (const auto& [name, w] : MovableWindows())
                 if (j[0].AsString() == name) a.MoveCompanionWindow(w, Int(j[1]), Int(j[2]));
         }},
    };
    return c;
}

bool WholeIn(const core::Json& j, int lo, int hi) {
    return j.IsNumber() && j.AsNumber() == std::floor(j.AsNumber()) && j.AsNumber() >= lo && j.AsNumber() <= hi;
}

// Empty when `arg` suits the command, else what is wrong with it.
std::string CheckArg(const Command& c, const core::Json& arg) {
    const std::string range = std::to_string(c.Lo) + " .. " + std::to_string(c.Hi);
    switch (c.Kind) {
        case Arg::None: return arg.IsNull() ? "" : "takes no arg";
        case Arg::Number: return WholeIn(arg, c.Lo, c.Hi) ? "" : "needs a whole number " + range;
        case Arg::Text: return arg.IsString() && !arg.AsString().empty() ? "" : "needs a text";
        case Arg::YesNo: return arg.IsBool() ? "" : "needs true or false";
        case Arg::SeatReason:
            return arg.IsArray() && arg.Size() == 2 && WholeIn(arg[0], c.Lo, c.Hi) && arg[1].IsString()
                       ? ""
                       : "needs [a table position " + range + ", a reason text]";
        case Arg::WindowAt: {
            bool known = false;
            if (arg.IsArray() && arg.Size() == 3 && arg[0].IsString())
                for (const auto& w : MovableWindows()) known = known || arg[0].AsString() == w.first;
            return known && WholeIn(arg[1], c.Lo, c.Hi) && WholeIn(arg[2], c.Lo, c.Hi)
                       ? ""
                       : "needs [\"main\", \"leftCounter\", \"rightCounter\" or \"helpBid\", x, y]";
        }
    }
    return "?";
}

// Days since 1970-01-01 of a civil date (proleptic Gregorian).
std::int64_t DayNumber(int y, int m, int d) {
    y -= m <= 2 ? 1 : 0;
    const std::int64_t era = (y >= 0 ? y : y - 399) / 400;
    const std::int64_t yoe = y - era * 400;
    const std::int64_t doy = (153 * (m + (m > 2 ? -3 : 9)) + 2) / 5 + d - 1;
    const std::int64_t doe = yoe * 365 + yoe / 4 - yoe / 100 + doy;
    return era * 146097 + doe - 719468;
}

std::int64_t Seconds(const platform::LocalTime& t) {
    return DayNumber(t.Year, t.Month, t.Day) * 86400 + t.Hour * 3600 + t.Minute * 60 + t.Second;
}

}  // namespace

bool CompileActions(const sim::Scenario& scenario, std::vector<Action>& out, std::string& error) {
    // A session of more than a few weeks is no scenario.
    constexpr std::int64_t kMaxSeconds = 30LL * 86400;
    out.clear();
    for (const sim::ScenarioAction& a : scenario.actions) {
        const auto c = std::find_if(Commands().begin(), Commands().end(),
                                    [&](const Command& k) { return a.command == k.Name; });
        if (c == Commands().end()) {
            error = a.path + ".do: \"" + a.command + "\" is not a command (see tarvellos-cli replay --help)";
            return false;
        }
        if (const std::string wrong = CheckArg(*c, a.arg); !wrong.empty()) {
            error = a.path + ".arg: " + a.command + " " + wrong;
            return false;
        }
        const std::int64_t after = Seconds(a.at) - Seconds(scenario.start);
        if (after < 0 || after > kMaxSeconds) {
            error = a.path + ".at: must lie between the start and 30 days after it";
            return false;
        }
        const core::Json arg = a.arg;
        const auto run = c->Run;
        out.push_back({static_cast<std::uint32_t>(after * 1000), a.path + " " + a.command, a.command == "end",
                       [run, arg](Companion& app) { run(app, arg); }});
    }
    std::stable_sort(out.begin(), out.end(), [](const Action& x, const Action& y) { return x.AfterMs < y.AfterMs; });
    return true;
}

std::vector<std::string> ActionHelp() {
    std::vector<std::string> lines;
    for (const Command& c : Commands()) lines.push_back(std::string(c.Name) + ": " + c.Help);
    return lines;
}

bool ParseSessionScenario(const std::string& text, sim::Scenario& out, std::string& error) {
    std::vector<Action> actions;
    return sim::ParseScenario(text, out, error) && CompileActions(out, actions, error);
}

}  // namespace replay
