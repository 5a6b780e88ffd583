// The glyph readers on arbitrary bands: every reader must stay inside the
// band and come back, whatever the column values.
#include <cstddef>
#include <cstdint>
#include <string>

#include "reading/glyphs.h"

namespace {

void Check(bool ok) {
    if (!ok) __builtin_trap();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static reading::GlyphTable table;
    if (size < 3) return 0;
    static const int kLangs[] = {1, 2, 3, 5, 6, 7, 8, 9};
    static const char* const kBid[] = {"Bid:", "ビッド:", "Geboten:", "Dichiara:", "Subasta:", "Apuesta:", "Apuesta:", "Apuesta:"};
    static const char* const kTrick[] = {"Tricks:", "トリック:", "Stiche:", "Prese:", "Bazas:", "Bazas:", "Bazas:", "Bazas:"};
    const int li = data[0] & 7;
    table.SelectFont(1, kLangs[li], kBid[li], kTrick[li]);
    table.ReadingFont = data[1] % 3;
    table.DigitsOn = true;

    // Columns from pairs of bytes; values near the font's shapes are common
    // enough to reach the chains, and the end mark appears now and then.
    reading::LineBmp line;
    const std::int32_t lo = static_cast<std::int32_t>(data[2]) - 128;
    const std::int32_t n = static_cast<std::int32_t>((size - 3) / 2);
    line.Dim(lo, lo + n + 1);
    std::uint16_t any = 0;
    for (std::int32_t i = 0; i < n; ++i) {
        std::uint16_t v = static_cast<std::uint16_t>((data[3 + 2 * i] << 8 | data[4 + 2 * i]) & 0x4FFF);
        if (v & 0x4000) v = reading::kEndMark;
        line[lo + 1 + i] = v;
        any |= v;
    }
    line[lo] = any;
    line[line.hi] = reading::kEndMark;

    std::int32_t p = lo + 1;
    int fields = 0;
    while (p < line.hi && fields++ < 10000) {
        const std::int32_t before = p;
        table.ReadText(line, p);
        Check(p > before || p == 0);
        if (p == 0) break;
    }
    for (std::int32_t x = lo + 1; x < line.hi; ++x) {
        if (line[x] == 0) continue;
        std::int32_t q = x;
        table.GlyphMatch(line, line[x], q);
        Check(q > x && q <= line.hi);
        q = x;
        table.DigitMatch(line, line[x], q, x & 1);
        Check(q >= x && q <= line.hi);
    }
    const std::int32_t at = table.FindText(line, lo + 1, kTrick[li]);
    Check(at == 0 || (at > lo && at <= line.hi));
    table.FindWord(line, "ponent");
    std::string text;
    const std::int32_t s = table.ReadNumber(line, kBid[li], text);
    Check(s == 0 || (s > lo && s < line.hi));
    return 0;
}
