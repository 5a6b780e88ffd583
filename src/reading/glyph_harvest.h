// Shapes the glyph table does not know, collected from what the readers saw,
// so the table can be completed. Each shape is written to the log once, in
// the table's own form: "? " then three hex digits per column, then where it
// was seen. Switched on by giving a GlyphTable a harvest (Harvest pointer).
#pragma once

#include <cstdint>
#include <string>
#include <unordered_set>
#include <vector>

#include "reading/pixels.h"

namespace reading {

class GlyphHarvest {
public:
    // Shapes already in the log at `logPath` are not written again.
    explicit GlyphHarvest(std::string logPath, int codePage = 1252);

    // What is reading now ("Read Bid", "CaptHand"); set by the caller.
    std::string Where;

    // The unknown shape starting at column x of the band: its columns up to
    // the next blank one. Writes it when new. False only when the log could
    // not be written.
    bool Note(const LineBmp& line, std::int32_t x);
    bool Note(const std::vector<std::uint16_t>& columns, std::int32_t x);

    // "3F8404404404" for columns 0x3F8, 0x404, ...
    static std::string HexForm(const std::vector<std::uint16_t>& columns);

    std::size_t Count() const { return seen_.size(); }

private:
    std::string path_;
    int codePage_;
    std::unordered_set<std::string> seen_;
};

}  // namespace reading
