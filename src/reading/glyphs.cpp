#include "reading/glyphs.h"

#include <algorithm>

#include "reading/glyph_harvest.h"

namespace reading {

namespace {

// The fonts as the game draws them: name, blank, three hex digits per
// column (bit 11 = top row). 1-102 regular, 103-146 bold.
const char* const kGlyphEntries[kGlyphEntryCount] = {
    "0 3F84044044043F8",
    "1 1002007FC",
    "2 20440C414464384",
    "3 2084044444443B8",
    "4 0300D03107FC010",
    "5 1C8684484484478",
    "6 3F8444484484278",
    "7 40041C4E0500600",
    "8 3B84444444443B8",
    "9 3C84244244443F8",
    "~ 020040040020020040",
    "@ 07C18223924448448447C4C42053090F2",
    "A 00C0703A04203A007000C",
    "B 7FC4444444444443B8",
    "C 1F0208404404404208110",
    "D 7FC4044044044042081F0",
    "E 7FC444444444444444",
    "F 7FC440440440440400",
    "G 1F0208404404444248170",
    "H 7FC0400400400400407FC",
    "I 4047FC404",
    "J 0180040040047F8",
    "K 7FC0200400A0110208404",
    "L 7FC004004004004004",
    "M 7FC3000F000C0F03007FC",
    "N 7FC2001800400300087FC",
    "O 1F02084044044042081F0",
    "P 7FC440440440440380",
    "Q 1F02084044144142081F4",
    "R 7FC440440440460458384",
    "S 398444444444444338",
    "T 4004004007FC400400400",
    "U 7F00080040040040087F0",
    "V 6001C003000C0301C0600",
    "W 7000F000C07038040038007000C1F0600",
    "X 4043180A00401B0208404",
    "Y 40030008007C080300400",
    "Z 00440C434444584604404",
    "( 0F8306401",
    ") 4013060F8",
    "[ 7FF401",
    "] 4017FF",
    ".. 004000000004",
    "- 020020020000",
    "a 0981241241280FC",
    "&atilde; 0985249245288FC",
    "&aacute; 0981245249280FC",
    "a 4981241241280FC",
    "b 7FC0881041040F8",
    "d 0F81041040887FC",
    "d 4F81041040887FC",
    "q 0F81041040881FF",
    "c 0F8104104088",
    "&ccedil; 0F8106105088",
    "c 4F8104104088",
    "e 0F81241241240E8",
    "&egrave; 0F89245241240E8",
    "&eacute; 0F81245249240E8",
    "e 4F81241241240E8",
    "f 1003FC500400",
    "f 5003FC500400",
    "f 1003FC500",
    "f 5003FC500",
    "g 0F91051050891FE",
    "g 4F91051050891FE",
    "h 7FC0801001000FC",
    "i 5FC000",
    "j 0015FE000",
    "j 4015FE000",
    "k 7FC020060098104",
    "l 7FC000",
    "m 1FC0801001000FC0801001000FC",
    "m 5FC0801001000FC0801001000FC",
    "n 1FC0801001000FC",
    "n 5FC0801001000FC",
    "o 0F81041041040F8",
    "&oacute; 0F81045049040F8",
    "o 4F81041041040F8",
    "p 1FF0881041040F8",
    "p 5FF0881041040F8",
    "r 1FC080100",
    "r 5FC080100",
    "s 0C8124124124098",
    "s 4C8124124124098",
    "t 1007FC104",
    "t 5007FC104",
    "u 1F80040040081FC",
    "u 5F80040040081FC",
    "w 18007000C07018007000C070180",
    "w 58007000C07018007000C070180",
    "v 18007000C070180",
    "v 58007000C070180",
    "x 1040D80300C8104",
    "x 5040D80300C8104",
    "y 18007100E070180",
    "y 58007100E070180",
    "z 10411C1241C4104",
    "z 50411C1241C4104",
    "_ 001001001001001001001",
    "_ 401001001001001001001",
    ". 004000",
    ": 104000",
    "0 7E0FF0C38818C38FF07E0",
    "1 600C00FF8FF8",
    "2 618E388788D8998F18E18",
    "3 460C70838918918FF0EE0",
    "4 0E01E0760C60FF8FF8060",
    "5 3B0FB8F18B18B18BF08E0",
    "6 7E0FF0D98998998DF8CF0",
    "7 8008008389F8F80E00800",
    "8 E70FF8998998998FF8E70",
    "9 F30FB89989989B8FF07E0",
    "_ 001001001001001001001001",
    "_ 001001001001001001001",
    "a 2306786D86987F03F8008",
    "a 2306786D86987F03F8",
    "b FF8FF83106187383F01E0",
    "c 1E03F0618618738330",
    "d 1E03F0738618330FF8FF8",
    "e 1E03F06D86D86D83D81D0",
    "f 600FF8FF8600600",
    "f 600FF8FF8600603",
    "g 1E63F773B61B3337FF7FE",
    "h FF8FF83006006007F83F8",
    "j 0030037FF7FE",
    "j 0037FF7FE",
    "j 00B0037FF7FE",
    "k FF8FF81C03E0678418",
    "m 7F87F82006007F83F86006007F83F8",
    "n 7F87F83006006007F83F8",
    "o 1E03F07386187383F01E0",
    "p 7FF7FF3306187383F01E0",
    "q 1E03F07386183307FF7FF",
    "r 7F87F8300600600",
    "s 3907D86D86D86F8270",
    "t 600FF0FF8618618",
    "t 600FF0FF861861B",
    "u 7F07F80180180307F87F8",
    "v 7007C00F80380F87C0700",
    "w 6007C01F80383F07003F00381F87C0600",
    "x 6187381E01E0738618",
    "y 6007E11FF01F1FC7E0600",
    "z 6386786D8798718",
    "i 7F87F8",
    ". 018018",
    "@ 1F030C4068F2BF97096096113F97F9F898024123E4",
};

std::string TrimBlanks(std::string_view s) {
    std::size_t a = 0, b = s.size();
    while (a < b && (s[a] == ' ' || s[a] == '\t')) ++a;
    while (b > a && (s[b - 1] == ' ' || s[b - 1] == '\t')) --b;
    return std::string(s.substr(a, b - a));
}

std::string HexPart(const std::string& entry) {
    const std::size_t sp = entry.find(' ');
    return sp == std::string::npos ? std::string() : entry.substr(sp + 1);
}

int HexDigit(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    return 0;
}

// Code point of the first UTF-8 character (0 for an empty text).
std::uint32_t FirstCodePoint(std::string_view s) {
    if (s.empty()) return 0;
    const auto c0 = static_cast<unsigned char>(s[0]);
    if (c0 < 0x80) return c0;
    int n = c0 >= 0xF0 ? 3 : c0 >= 0xE0 ? 2 : 1;
    std::uint32_t cp = c0 & (0x3F >> n);
    for (int i = 1; i <= n && i < static_cast<int>(s.size()); ++i) cp = (cp << 6) | (static_cast<unsigned char>(s[i]) & 0x3F);
    return cp;
}

}  // namespace

std::vector<std::string> SplitChars(std::string_view text) {
    std::vector<std::string> out;
    std::size_t i = 0;
    while (i < text.size()) {
        const auto c = static_cast<unsigned char>(text[i]);
        std::size_t n = c < 0x80 ? 1 : c >= 0xF0 ? 4 : c >= 0xE0 ? 3 : c >= 0xC0 ? 2 : 1;
        if (i + n > text.size()) n = text.size() - i;
        out.emplace_back(text.substr(i, n));
        i += n;
    }
    return out;
}

GlyphTable::GlyphTable() { LoadGlyphTable(); }

void GlyphTable::LoadGlyphTable() {
    TableText.assign(kGlyphEntryCount + 1, std::string());
    for (int i = 0; i < kGlyphEntryCount; ++i) TableText[static_cast<std::size_t>(i + 1)] = kGlyphEntries[i];
    FontACount = kFontACount;

    // Keep each shape once; later duplicates (entry 114 = entry 99) are dropped.
    Glyphs.assign(1, Glyph{});
    std::vector<std::string> seen;
    FontFirst = {0, 1, 0};
    FontLast = {0, 0, 0};
    for (int i = 1; i <= kGlyphEntryCount; ++i) {
        const std::string entry = TrimBlanks(TableText[static_cast<std::size_t>(i)]);
        if (entry.empty()) break;
        const std::string hex = HexPart(entry);
        if (std::find(seen.begin(), seen.end(), hex) != seen.end()) continue;
        seen.push_back(hex);
        if (static_cast<int>(Glyphs.size()) >= kGlyphCapacity) break;

        Glyph g;
        std::size_t cut = entry.find(',');
        if (cut == std::string::npos) cut = entry.find(' ');
        const std::string name = entry.substr(0, cut);
        std::string digits = cut == std::string::npos ? std::string() : entry.substr(cut + 1);
        digits.erase(0, digits.find_first_not_of(' ') == std::string::npos ? digits.size() : digits.find_first_not_of(' '));
        const int width = std::min(static_cast<int>(digits.size() / 3), kMaxGlyphColumns);
        g.Width = static_cast<std::int16_t>(width);
        for (int k = 1; k <= width; ++k) {
            const std::size_t o = static_cast<std::size_t>(3 * (k - 1));
            g.Column[static_cast<std::size_t>(k)] =
                static_cast<std::uint16_t>((HexDigit(digits[o]) << 8) | (HexDigit(digits[o + 1]) << 4) | HexDigit(digits[o + 2]));
        }
        g.Key0 = g.Column[1];
        g.Source = name;
        if (!name.empty() && name[0] == '&') {
            g.Name = name.size() > 1 ? std::string(1, name[1]) : std::string();
            g.AccentKey = g.Column[1];
        } else {
            g.Name = name;
            if (FirstCodePoint(name) > 255) g.WideKey = g.Column[1];
        }
        Glyphs.push_back(g);
    }
    FontLast[1] = GlyphCount();

    // Shapes of the other fonts the game mixes in stay unread.
    const std::string off = "パ()バル";
    for (int e = FontFirst[1]; e <= FontLast[1]; ++e) {
        Glyph& g = Glyphs[static_cast<std::size_t>(e)];
        if (!g.Name.empty() && off.find(g.Name) != std::string::npos) g.Column[1] = 0;
    }
}

void GlyphTable::SelectFont(int f, int gameLanguage, std::string_view bidLabel, std::string_view trickLabel) {
    if (f < 0 || f > 2) return;
    SelectedFont = f;
    Language = gameLanguage;
    const int first = FontFirst[static_cast<std::size_t>(f)];
    const int last = FontLast[static_cast<std::size_t>(f)];

    for (int e = first; e >= 1 && e <= last; ++e) {
        Glyph& g = Glyphs[static_cast<std::size_t>(e)];
        if (g.WideKey != 0) {
            g.Column[1] = gameLanguage == kLangJapanese ? g.WideKey : 0;
        } else if (g.AccentKey != 0) {
            g.Column[1] = (gameLanguage == kLangEnglish || gameLanguage == kLangJapanese) ? 0 : g.AccentKey;
        }
    }

    std::fill(GlyphHead.begin(), GlyphHead.end(), 0);
    for (auto& g : Glyphs) g.Next = 0;
    for (int e = last; e >= first && e >= 1; --e) {
        Glyph& g = Glyphs[static_cast<std::size_t>(e)];
        const std::uint16_t key = g.Column[1];
        if (key == 0 || key >= GlyphHead.size()) continue;
        g.Next = GlyphHead[key];
        GlyphHead[key] = static_cast<std::int16_t>(e);
    }

    DigitMask = {0xFFE, 0xFFE, 0xFF8};

    std::vector<std::string> labelChars;
    for (const auto& c : SplitChars(std::string(bidLabel) + std::string(trickLabel)))
        if (std::find(labelChars.begin(), labelChars.end(), c) == labelChars.end()) labelChars.push_back(c);
    std::vector<std::string> digitChars = SplitChars(gameLanguage == kLangItalian ? "0123456789ZQ" : "0123456789DN");
    const std::vector<std::string>* sets[2] = {&labelChars, &digitChars};
    for (int l = 0; l < 2; ++l) {
        auto& list = DigitList[static_cast<std::size_t>(l)];
        list.fill(0);
        int n = 0;
        for (int e = first; e >= 1 && e <= FontACount && e <= last && n < kDigitListSize; ++e) {
            const Glyph& g = Glyphs[static_cast<std::size_t>(e)];
            if (g.AccentKey != 0 || SplitChars(g.Name).size() != 1) continue;
            if (std::find(sets[l]->begin(), sets[l]->end(), g.Name) == sets[l]->end()) continue;
            list[static_cast<std::size_t>(n++)] = static_cast<std::int16_t>(e);
        }
    }
}

std::string GlyphTable::GlyphMatch(const LineBmp& line, std::uint16_t v, std::int32_t& p) const {
    if (p < line.lo) p = line.lo;
    if (p < line.hi && v >= 1 && v < GlyphHead.size()) {
        for (int e = GlyphHead[v]; e > 0; e = Glyphs[static_cast<std::size_t>(e)].Next) {
            const Glyph& g = Glyphs[static_cast<std::size_t>(e)];
            bool ok = true;
            for (int k = 2; k <= g.Width; ++k) {
                const std::int32_t x = p + k - 1;
                if (x >= line.hi || line[x] != g.Column[static_cast<std::size_t>(k)]) {
                    ok = false;
                    break;
                }
            }
            if (ok) {
                p += std::max<std::int32_t>(g.Width, 1);
                return g.Name;
            }
        }
    }
    if (Harvest && p < line.hi) Harvest->Note(line, p);
    while (p < line.hi && line[p] != 0) ++p;
    return "?";
}

std::string GlyphTable::ReadText(const LineBmp& line, std::int32_t& p) const {
    if (p < line.lo) {
        p = 0;
        return "";
    }
    std::string out;
    while (p < line.hi) {
        const std::uint16_t v = line[p];
        if (v == 0) {
            ++p;
        } else if (v == kEndMark) {
            ++p;
            break;
        } else {
            out += GlyphMatch(line, v, p);
        }
    }
    return out;
}

namespace {

// A target text with the byte offset of each character, so glyph names are
// compared in place without splitting them.
struct Chars {
    std::string_view text;
    std::vector<std::size_t> off;  // n + 1 entries
    explicit Chars(std::string_view t) : text(t) {
        for (std::size_t i = 0; i < t.size(); ++i)
            if ((static_cast<unsigned char>(t[i]) & 0xC0) != 0x80) off.push_back(i);
        off.push_back(t.size());
    }
    std::size_t size() const { return off.size() - 1; }
    // Does g, of n characters, stand at character k?
    bool At(std::size_t k, const std::string& g, std::size_t n) const {
        if (n == 0 || k + n > size()) return false;
        const std::size_t len = off[k + n] - off[k];
        if (len != g.size()) return false;
        if (len == 1) return text[off[k]] == g[0];
        return text.compare(off[k], len, g) == 0;
    }
};

std::size_t CharCount(const std::string& g) {
    std::size_t n = 0;
    for (char c : g)
        if ((static_cast<unsigned char>(c) & 0xC0) != 0x80) ++n;
    return n;
}

}  // namespace

std::int32_t GlyphTable::FindText(const LineBmp& line, std::int32_t start, std::string_view target) const {
    const Chars t(target);
    if (t.size() == 0) return 0;
    std::int32_t p = std::max(start, line.lo + 1);
    std::size_t k = 0;
    while (p < line.hi) {
        const std::uint16_t v = line[p];
        if (v == 0) {
            ++p;
            continue;
        }
        const std::string g = GlyphMatch(line, v, p);
        const std::size_t n = CharCount(g);
        if (t.At(k, g, n)) {
            k += n;
        } else {
            // The shape that broke the match may begin it again.
            k = t.At(0, g, n) ? n : 0;
        }
        if (k == t.size()) return p;
    }
    return 0;
}

bool GlyphTable::FindWord(const LineBmp& line, std::string_view target) const {
    return FindText(line, line.lo + 1, target) != 0;
}

std::string GlyphTable::DigitMatch(const LineBmp& line, std::uint16_t v, std::int32_t& p, int list) const {
    if (p < line.lo) p = line.lo;
    if (p >= line.hi) return "?";
    const std::uint16_t mask = Mask();
    const auto& cand = DigitList[static_cast<std::size_t>(list == 0 ? 0 : 1)];
    for (int i = 0; i < kDigitListTried; ++i) {
        const int e = cand[static_cast<std::size_t>(i)];
        if (e <= 0) break;
        const Glyph& g = Glyphs[static_cast<std::size_t>(e)];
        if ((g.Column[1] & mask) != (v & mask)) continue;
        bool ok = true;
        for (int k = 2; k <= g.Width; ++k) {
            const std::int32_t x = p + k - 1;
            if (x >= line.hi || (line[x] & mask) != (g.Column[static_cast<std::size_t>(k)] & mask)) {
                ok = false;
                break;
            }
        }
        if (ok) {
            p += std::max<std::int32_t>(g.Width, 1);
            return g.Name;
        }
    }
    while (p < line.hi && (line[p] & mask) != 0) ++p;
    return "?";
}

std::int32_t GlyphTable::ReadNumber(const LineBmp& line, std::string_view label, std::string& text) const {
    if (!DigitsOn) return 0;
    const Chars lab(label);
    if (lab.size() == 0) return 0;
    const std::uint16_t mask = Mask();
    std::int32_t p = line.lo + 1, start = 0;
    std::size_t k = 0;
    bool found = false;
    while (p < line.hi) {
        if ((line[p] & mask) == 0) {
            ++p;
            continue;
        }
        const std::int32_t q = p;
        const std::string ch = DigitMatch(line, line[p], p, 0);
        const std::size_t n = CharCount(ch);
        if (n == 1 && lab.At(k, ch, 1)) {
            ++k;
        } else {
            // The shape that broke the match may begin the label again.
            k = n == 1 && lab.At(0, ch, 1) ? 1 : 0;
        }
        if (k > 0 && start == 0) start = q;
        if (k == lab.size()) {
            found = true;
            break;
        }
    }
    if (!found) return 0;

    std::string r;
    std::int32_t limit = line.hi;
    while (p < limit) {
        if ((line[p] & mask) == 0) {
            ++p;
            continue;
        }
        const std::string ch = DigitMatch(line, line[p], p, 1);
        if (ch == "?") break;
        if (ch == "1") {
            if (r == "1") {
                r = "11";
                break;
            }
            r = "1";
            limit = std::min(p + 10, line.hi);
            continue;
        }
        const bool digit = ch.size() == 1 && ch[0] >= '0' && ch[0] <= '9';
        const bool letter = ch.size() == 1 && ch[0] >= 'A' && ch[0] <= 'Z';
        if (digit || letter) r += ch;
        break;
    }
    text = std::string(label) + r;
    return start;
}

}  // namespace reading
