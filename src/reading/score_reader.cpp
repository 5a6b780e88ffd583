#include "reading/score_reader.h"

#include <cstdlib>
#include <string>

namespace reading {

namespace {

// The leading whole number of a text ("-40", "120"); 0 without digits.
std::int32_t NumberOf(const std::string& s) {
    std::size_t i = 0;
    while (i < s.size() && (s[i] == ' ' || s[i] == '\t')) ++i;
    bool negative = false;
    if (i < s.size() && (s[i] == '-' || s[i] == '+')) negative = s[i++] == '-';
    std::int64_t v = 0;
    for (; i < s.size() && s[i] >= '0' && s[i] <= '9'; ++i) {
        v = v * 10 + (s[i] - '0');
        if (v > INT32_MAX) v = INT32_MAX;
    }
    return static_cast<std::int32_t>(negative ? -v : v);
}

}  // namespace

int ScoreReader::CaptScore(ScoreLines& out) {
    out = ScoreLines{};
    for (int attempt = 0; attempt < 4; ++attempt) {
        if (cap_.CaptureSubWindow(kSubScore) == 0) {
            out = ScoreLines{};
            return 0;
        }
        if (ReadOnce(out)) return 0;
    }
    if (cap_.Trace) cap_.Trace("CaptScore: table not read completely in four captures");
    return kScoreIncomplete;
}

bool ScoreReader::ReadOnce(ScoreLines& out) {
    out.Count = 0;
    const BM& bm = cap_.BMSub;
    platform::Windows& windows = cap_.Windows();
    const platform::WindowHandle h = cap_.SubWindowHandle(kSubScore);
    const int f = glyphs_.ReadingFont;
    const int pitch = LinePitch[static_cast<std::size_t>(f >= 0 && f < 3 ? f : 1)];

    // The header's lower edge, then the first text line below it.
    const std::int32_t y0 = cap_.FindGrayRow(10, 35, 50, 55);
    if (y0 <= 36) return false;
    std::int32_t y = cap_.FindBlackRow(10, y0 + 1, 50, y0 + 15) - 1;
    int n = 1;
    LineBmp& line = cap_.LineBMP;
    while (y >= 1 && n <= kMaxScoreLines) {
        if (y + pitch > bm.Height) {
            // A line is hidden below the window's bottom: grow by one line.
            if (const auto r = h != 0 ? windows.WindowRect(h) : std::nullopt)
                windows.Move(h, {0, r->Top, r->Width(), r->Bottom + pitch});
            out.Count = n - 1;
            return false;
        }
        std::int64_t sum = 0;
        std::string last;
        for (int k = 0; k < 4; k += 2) {
            const auto a = static_cast<std::size_t>(k), b = static_cast<std::size_t>(k + 1);
            line.Dim(kScoreColumnFrom[a] - 1, kScoreColumnTo[b]);
            cap_.GetLineBMP("CaptScore", y, 2);
            std::int32_t p = kScoreColumnFrom[a];
            const std::int32_t score = NumberOf(glyphs_.ReadText(line, p));
            out.Line[static_cast<std::size_t>(n)][a] = score;
            sum += std::llabs(score);
            p = kScoreColumnFrom[b];
            last = glyphs_.ReadText(line, p);
            out.Line[static_cast<std::size_t>(n)][b] = NumberOf(last);
        }
        if (sum != 0) {
            ++n;
        } else if (last.empty()) {
            break;  // the table has ended
        }
        y += pitch;
    }
    out.Count = n - 1;
    if (out.Count == 0 && bm.Height > 140 && h != 0)
        if (const auto r = windows.WindowRect(h)) windows.Move(h, {r->Left, 0, r->Right, 140});
    return true;
}

}  // namespace reading
