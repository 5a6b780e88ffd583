#include "reading/glyph_harvest.h"

#include <cstdio>

#include "core/text.h"

namespace reading {

namespace {

// Longest shape kept: wider than any glyph, so a smear of ink across a band
// does not become one line of hundreds of columns.
constexpr std::size_t kMaxColumns = 32;

}  // namespace

GlyphHarvest::GlyphHarvest(std::string logPath, int codePage) : path_(std::move(logPath)), codePage_(codePage) {
    std::vector<std::string> lines;
    if (!core::ReadTextFile(path_, codePage_, lines)) return;
    for (const std::string& l : lines) {
        if (!core::StartsWith(l, "? ")) continue;
        const std::size_t end = l.find(' ', 2);
        seen_.insert(l.substr(2, end == std::string::npos ? std::string::npos : end - 2));
    }
}

std::string GlyphHarvest::HexForm(const std::vector<std::uint16_t>& columns) {
    std::string out;
    char buf[8];
    for (std::uint16_t c : columns) {
        std::snprintf(buf, sizeof buf, "%03X", static_cast<unsigned>(c & 0xFFF));
        out += buf;
    }
    return out;
}

bool GlyphHarvest::Note(const LineBmp& line, std::int32_t x) {
    std::vector<std::uint16_t> cols;
    for (std::int32_t p = x; line.InRange(p) && p < line.hi && line[p] != 0 && cols.size() < kMaxColumns; ++p)
        cols.push_back(line[p]);
    return Note(cols, x);
}

bool GlyphHarvest::Note(const std::vector<std::uint16_t>& columns, std::int32_t x) {
    if (columns.empty()) return true;
    const std::string hex = HexForm(columns);
    if (!seen_.insert(hex).second) return true;
    const std::string line = "? " + hex + " seen in " + (Where.empty() ? std::string("reading") : Where) + " at x=" +
                             std::to_string(x);
    return core::AppendTextFile(path_, {line}, codePage_).Saved;
}

}  // namespace reading
