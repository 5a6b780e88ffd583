// The game's score window: one line per deal with each side's score and
// bags, read line by line into numbers. The window is resized here so that
// every line is visible, since the game does not scroll it into view.
#pragma once

#include <array>
#include <cstdint>

#include "reading/glyphs.h"
#include "reading/cards.h"
#include "reading/pixels.h"

namespace reading {

constexpr int kMaxScoreLines = 100;
constexpr int kScoreIncomplete = 2;

// Lines 1..Count of Line (entry 0 unused): score and bags of the first side,
// then of the second side.
struct ScoreLines {
    std::array<std::array<std::int32_t, 4>, kMaxScoreLines + 1> Line{};
    int Count = 0;
};

class ScoreReader {
public:
    ScoreReader(Capture& cap, const GlyphTable& glyphs) : cap_(cap), glyphs_(glyphs) {}

    // Reads the score window into `out`. Returns 0 (read, possibly no lines;
    // also when nothing could be captured) or 2 (no table header, or the
    // window was too short, in four captures: the caller reads again later).
    // With 2, `out` holds the lines the last attempt read.
    int CaptScore(ScoreLines& out);

    std::array<int, 3> LinePitch{16, 16, 16};  // by reading font slot

private:
    // One capture and read; true when the table's end was reached.
    bool ReadOnce(ScoreLines& out);

    Capture& cap_;
    const GlyphTable& glyphs_;
};

// Column k of a line is read from x = kScoreColumnFrom[k] to kScoreColumnTo[k].
inline constexpr std::array<std::int32_t, 4> kScoreColumnFrom = {1, 59, 116, 176};
inline constexpr std::array<std::int32_t, 4> kScoreColumnTo = {40, 70, 150, 200};

}  // namespace reading
