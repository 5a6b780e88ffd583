// Unknown glyph shapes reach the log once each, in the glyph table's form.
#include "reading/glyph_harvest.h"

#include <gtest/gtest.h>

#include "core/temp_dir.h"
#include "reading/glyphs.h"

namespace {

reading::LineBmp Band(const std::vector<std::uint16_t>& cols) {
    reading::LineBmp line;
    line.Dim(0, static_cast<std::int32_t>(cols.size()) + 1);
    for (std::size_t i = 0; i < cols.size(); ++i) line[static_cast<std::int32_t>(i) + 1] = cols[i];
    return line;
}

TEST(GlyphHarvest, EachUnknownShapeIsWrittenOnceInTableForm) {
    TempDir dir;
    const std::string log = dir.File("trace.log");
    reading::GlyphTable table;
    table.SelectFont(1, 1, "Bid:", "Tricks:");
    // An odd shape, a blank column, the same shape again, then another.
    const reading::LineBmp line = Band({0x7FF, 0x001, 0x7FF, 0, 0x7FF, 0x001, 0x7FF, 0, 0xABC});
    {
        reading::GlyphHarvest harvest(log);
        harvest.Where = "Read Bid";
        table.Harvest = &harvest;
        std::int32_t p = 1;
        EXPECT_EQ(table.GlyphMatch(line, line[p], p), "?");
        p = 5;
        EXPECT_EQ(table.GlyphMatch(line, line[p], p), "?");
        p = 9;
        EXPECT_EQ(table.GlyphMatch(line, line[p], p), "?");
        EXPECT_EQ(harvest.Count(), 2u);
    }
    EXPECT_EQ(dir.Get("trace.log"), "? 7FF0017FF seen in Read Bid at x=1\r\n? ABC seen in Read Bid at x=9\r\n");
    // A later run knows what the log holds already.
    reading::GlyphHarvest again(log);
    table.Harvest = &again;
    std::int32_t p = 1;
    table.GlyphMatch(line, line[p], p);
    EXPECT_EQ(again.Count(), 2u);
    EXPECT_EQ(dir.Get("trace.log"), "? 7FF0017FF seen in Read Bid at x=1\r\n? ABC seen in Read Bid at x=9\r\n");
}

}  // namespace
