#include "core/text.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <limits>
#include <optional>
#include <system_error>

#include "platform/code_page.h"
#include "platform/durable_file.h"

namespace core {

namespace {

// --- UTF-8 walking ----------------------------------------------------------

// Length in bytes of the character starting at s[i]; a byte that does not
// start a well-formed sequence counts as a character of its own.
std::size_t CharLen(std::string_view s, std::size_t i, char32_t* cp = nullptr) {
    const auto b0 = static_cast<unsigned char>(s[i]);
    if (b0 < 0x80) {
        if (cp) *cp = b0;
        return 1;
    }
    std::size_t n = 0;
    char32_t c = 0, min = 0;
    if ((b0 & 0xE0) == 0xC0) n = 2, c = b0 & 0x1F, min = 0x80;
    else if ((b0 & 0xF0) == 0xE0) n = 3, c = b0 & 0x0F, min = 0x800;
    else if ((b0 & 0xF8) == 0xF0) n = 4, c = b0 & 0x07, min = 0x10000;
    if (n == 0 || i + n > s.size()) {
        if (cp) *cp = 0xFFFFFFFF;
        return 1;
    }
    for (std::size_t k = 1; k < n; ++k) {
        const auto b = static_cast<unsigned char>(s[i + k]);
        if ((b & 0xC0) != 0x80) {
            if (cp) *cp = 0xFFFFFFFF;
            return 1;
        }
        c = (c << 6) | (b & 0x3F);
    }
    if (c < min || c > 0x10FFFF || (c >= 0xD800 && c <= 0xDFFF)) {
        if (cp) *cp = 0xFFFFFFFF;
        return 1;
    }
    if (cp) *cp = c;
    return n;
}

void AppendUtf8(std::string& out, char32_t c) {
    if (c < 0x80) {
        out += static_cast<char>(c);
    } else if (c < 0x800) {
        out += static_cast<char>(0xC0 | (c >> 6));
        out += static_cast<char>(0x80 | (c & 0x3F));
    } else if (c < 0x10000) {
        out += static_cast<char>(0xE0 | (c >> 12));
        out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (c & 0x3F));
    } else {
        out += static_cast<char>(0xF0 | (c >> 18));
        out += static_cast<char>(0x80 | ((c >> 12) & 0x3F));
        out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (c & 0x3F));
    }
}

// Byte offset of the 1-based character position `pos` (s.size() past the end).
std::size_t ByteOffset(std::string_view s, std::size_t pos) {
    std::size_t i = 0;
    for (std::size_t k = 1; k < pos && i < s.size(); ++k) i += CharLen(s, i);
    return std::min(i, s.size());
}

// Character position (1-based) of byte offset `off`, which starts a character.
std::size_t CharPos(std::string_view s, std::size_t off) {
    std::size_t pos = 1;
    for (std::size_t i = 0; i < off && i < s.size(); i += CharLen(s, i)) ++pos;
    return pos;
}

char32_t ToUpper(char32_t c) {
    if (c >= 'a' && c <= 'z') return c - 32;
    if (c < 0x80) return c;
    if (c >= 0xE0 && c <= 0xFE && c != 0xF7) return c - 32;
    if (c == 0xFF) return 0x178;
    if (c == 0x161 || c == 0x153 || c == 0x17E) return c - 1;
    if (c >= 0xFF41 && c <= 0xFF5A) return c - 0x20;
    return c;
}

char32_t ToLower(char32_t c) {
    if (c >= 'A' && c <= 'Z') return c + 32;
    if (c < 0x80) return c;
    if (c >= 0xC0 && c <= 0xDE && c != 0xD7) return c + 32;
    if (c == 0x178) return 0xFF;
    if (c == 0x160 || c == 0x152 || c == 0x17D) return c + 1;
    if (c >= 0xFF21 && c <= 0xFF3A) return c + 0x20;
    return c;
}

template <typename F>
std::string MapChars(std::string_view s, F f) {
    std::string out;
    out.reserve(s.size());
    for (std::size_t i = 0; i < s.size();) {
        char32_t c;
        const std::size_t n = CharLen(s, i, &c);
        if (c == 0xFFFFFFFF) out.append(s.substr(i, n));
        else AppendUtf8(out, f(c));
        i += n;
    }
    return out;
}

bool IsBlank(char c) { return c == ' ' || c == '\t'; }

// --- code page 1252 -----------------------------------------------------------
// Kept as a table so that both platforms agree on the five bytes the code page
// leaves undefined (they map to the C1 controls, as the Windows API does).
constexpr char16_t kCp1252High[32] = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

std::string Cp1252ToUtf8(std::string_view bytes) {
    std::string out;
    out.reserve(bytes.size() + bytes.size() / 4);
    for (char ch : bytes) {
        const auto b = static_cast<unsigned char>(ch);
        AppendUtf8(out, b >= 0x80 && b < 0xA0 ? kCp1252High[b - 0x80] : b);
    }
    return out;
}

std::string Utf8ToCp1252(std::string_view s) {
    std::string out;
    out.reserve(s.size());
    for (std::size_t i = 0; i < s.size();) {
        char32_t c;
        i += CharLen(s, i, &c);
        if (c < 0x80 || (c >= 0xA0 && c <= 0xFF)) {
            out += static_cast<char>(c);
            continue;
        }
        char b = '?';
        for (int k = 0; k < 32; ++k)
            if (kCp1252High[k] == c) b = static_cast<char>(0x80 + k);
        out += b;
    }
    return out;
}

std::string Utf8Sanitised(std::string_view s) {
    std::string out;
    out.reserve(s.size());
    for (std::size_t i = 0; i < s.size();) {
        char32_t c;
        const std::size_t n = CharLen(s, i, &c);
        if (c == 0xFFFFFFFF) out += '?';
        else out.append(s.substr(i, n));
        i += n;
    }
    return out;
}

// --- other code pages through the system ------------------------------------

std::string SystemToUtf8(std::string_view bytes, int codePage) {
    std::optional<std::string> text = platform::SystemDecode(bytes, codePage);
    return text ? std::move(*text) : Utf8Sanitised(bytes);
}

std::string SystemFromUtf8(std::string_view text, int codePage) {
    std::string clean = Utf8Sanitised(text);
    std::optional<std::string> bytes = platform::SystemEncode(clean, codePage);
    return bytes ? std::move(*bytes) : clean;
}

void SystemLinesToUtf8(std::vector<std::string>& lines, int codePage) {
    if (platform::SystemDecodeAll(lines, codePage)) return;
    for (auto& l : lines) l = Utf8Sanitised(l);
}

}  // namespace

// --- characters -------------------------------------------------------------

std::size_t Len(std::string_view s) {
    std::size_t n = 0;
    for (std::size_t i = 0; i < s.size(); i += CharLen(s, i)) ++n;
    return n;
}

std::string Left(std::string_view s, std::ptrdiff_t n) {
    if (n <= 0) return {};
    return std::string(s.substr(0, ByteOffset(s, static_cast<std::size_t>(n) + 1)));
}

std::string Right(std::string_view s, std::ptrdiff_t n) {
    if (n <= 0) return {};
    const std::size_t len = Len(s);
    if (static_cast<std::size_t>(n) >= len) return std::string(s);
    return std::string(s.substr(ByteOffset(s, len - static_cast<std::size_t>(n) + 1)));
}

std::string Mid(std::string_view s, std::ptrdiff_t start, std::ptrdiff_t n) {
    if (start < 1) start = 1;
    const std::size_t from = ByteOffset(s, static_cast<std::size_t>(start));
    if (n < 0) return std::string(s.substr(from));
    if (n == 0) return {};
    std::string_view rest = s.substr(from);
    return std::string(rest.substr(0, ByteOffset(rest, static_cast<std::size_t>(n) + 1)));
}

std::size_t InStr(std::string_view s, std::string_view find) { return InStr(1, s, find); }

std::size_t InStr(std::size_t start, std::string_view s, std::string_view find) {
    if (start < 1) start = 1;
    if (s.empty()) return 0;
    if (start > Len(s)) return 0;
    if (find.empty()) return start;
    const std::size_t from = ByteOffset(s, start);
    // Only matches that begin on a character boundary count.
    for (std::size_t i = from; i < s.size(); i += CharLen(s, i))
        if (s.compare(i, find.size(), find) == 0) return CharPos(s, i);
    return 0;
}

std::size_t InStrRev(std::string_view s, std::string_view find) {
    if (s.empty() || find.empty()) return 0;
    std::size_t found = 0, pos = 1;
    for (std::size_t i = 0; i < s.size(); i += CharLen(s, i), ++pos)
        if (s.compare(i, find.size(), find) == 0) found = pos;
    return found;
}

std::string UCase(std::string_view s) { return MapChars(s, ToUpper); }
std::string LCase(std::string_view s) { return MapChars(s, ToLower); }
bool EqualNoCase(std::string_view a, std::string_view b) { return UCase(a) == UCase(b); }

std::string LTrim(std::string_view s) {
    std::size_t i = 0;
    while (i < s.size() && IsBlank(s[i])) ++i;
    return std::string(s.substr(i));
}

std::string RTrim(std::string_view s) {
    std::size_t n = s.size();
    while (n > 0 && IsBlank(s[n - 1])) --n;
    return std::string(s.substr(0, n));
}

std::string Trim(std::string_view s) {
    std::size_t i = 0, n = s.size();
    while (i < n && IsBlank(s[i])) ++i;
    while (n > i && IsBlank(s[n - 1])) --n;
    return std::string(s.substr(i, n - i));
}

bool StartsWith(std::string_view s, std::string_view prefix) { return s.substr(0, prefix.size()) == prefix; }
bool EndsWith(std::string_view s, std::string_view suffix) {
    return s.size() >= suffix.size() && s.substr(s.size() - suffix.size()) == suffix;
}
bool Contains(std::string_view s, std::string_view part) { return s.find(part) != std::string_view::npos; }

// --- numbers ----------------------------------------------------------------

double Val(std::string_view s) {
    std::size_t i = 0;
    while (i < s.size() && IsBlank(s[i])) ++i;
    bool negative = false;
    if (i < s.size() && (s[i] == '+' || s[i] == '-')) negative = s[i++] == '-';
    double v = 0;
    bool digits = false;
    while (i < s.size() && s[i] >= '0' && s[i] <= '9') {
        v = v * 10 + (s[i++] - '0');
        digits = true;
    }
    if (i < s.size() && s[i] == '.') {
        ++i;
        double scale = 0.1;
        while (i < s.size() && s[i] >= '0' && s[i] <= '9') {
            v += (s[i++] - '0') * scale;
            scale /= 10;
            digits = true;
        }
    }
    if (!digits) return 0;
    // Hundreds of digits overflow a double: such a number is just "very large".
    if (!std::isfinite(v)) v = std::numeric_limits<double>::max();
    return negative ? -v : v;
}

std::int32_t ValInt(std::string_view s) {
    const double v = std::round(Val(s));
    if (v >= static_cast<double>(std::numeric_limits<std::int32_t>::max()))
        return std::numeric_limits<std::int32_t>::max();
    if (v <= static_cast<double>(std::numeric_limits<std::int32_t>::min()))
        return std::numeric_limits<std::int32_t>::min();
    return static_cast<std::int32_t>(v);
}

std::uint32_t HexVal(std::string_view s) {
    std::size_t i = 0;
    while (i < s.size() && IsBlank(s[i])) ++i;
    if (i + 1 < s.size() && s[i] == '&' && (s[i + 1] == 'H' || s[i + 1] == 'h')) i += 2;
    std::uint32_t v = 0;
    for (; i < s.size(); ++i) {
        const char c = s[i];
        int d;
        if (c >= '0' && c <= '9') d = c - '0';
        else if (c >= 'a' && c <= 'f') d = c - 'a' + 10;
        else if (c >= 'A' && c <= 'F') d = c - 'A' + 10;
        else break;
        v = (v << 4) | static_cast<std::uint32_t>(d);
    }
    return v;
}

// --- tokens -----------------------------------------------------------------

std::string NextToken(std::string& text) {
    text = Trim(text);
    std::size_t p = text.find(',');
    if (p == std::string::npos) p = text.find_first_of(" \t");
    if (p == std::string::npos) {
        std::string token;
        token.swap(text);
        return token;
    }
    std::string token = text.substr(0, p);
    text = LTrim(std::string_view(text).substr(p + 1));
    return token;
}

std::string Unquote(std::string_view s) {
    std::string t = Trim(s);
    const std::size_t q = t.find('"');
    if (q == std::string::npos) return t;
    const std::size_t e = t.find('"', q + 1);
    return t.substr(q + 1, e == std::string::npos ? std::string::npos : e - q - 1);
}

// --- code pages -------------------------------------------------------------

bool IsCodePageSupported(int codePage) {
    if (codePage == kCodePageWestern || codePage == kCodePageUtf8) return true;
    return platform::SystemKnowsCodePage(codePage);
}

std::string ToUtf8(std::string_view bytes, int codePage) {
    if (codePage == kCodePageWestern) return Cp1252ToUtf8(bytes);
    if (codePage == kCodePageUtf8) return Utf8Sanitised(bytes);
    return SystemToUtf8(bytes, codePage);
}

std::string FromUtf8(std::string_view text, int codePage) {
    if (codePage == kCodePageWestern) return Utf8ToCp1252(text);
    if (codePage == kCodePageUtf8) return Utf8Sanitised(text);
    return SystemFromUtf8(text, codePage);
}

void LinesToUtf8(std::vector<std::string>& lines, int codePage) {
    if (codePage == kCodePageWestern || codePage == kCodePageUtf8) {
        for (auto& l : lines) l = ToUtf8(l, codePage);
        return;
    }
    SystemLinesToUtf8(lines, codePage);
}

int ByteRoundTrip(int codePage, std::uint8_t byte) {
    const char b = static_cast<char>(byte);
    const std::string back = FromUtf8(ToUtf8(std::string_view(&b, 1), codePage), codePage);
    if (back.empty()) return '?';
    if (back.size() == 1) return static_cast<unsigned char>(back[0]);
    return static_cast<unsigned char>(back[0]) * 256 + static_cast<unsigned char>(back[1]);
}

// --- files ------------------------------------------------------------------

std::filesystem::path PathFromUtf8(const std::string& utf8) {
    return std::filesystem::path(std::u8string(utf8.begin(), utf8.end()));
}

std::string PathToUtf8(const std::filesystem::path& p) {
    const std::u8string u = p.u8string();
    return std::string(u.begin(), u.end());
}

std::vector<std::string> SplitLines(std::string_view bytes) {
    std::vector<std::string> lines;
    std::size_t start = 0;
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        const char c = bytes[i];
        if (c != '\r' && c != '\n') continue;
        lines.emplace_back(bytes.substr(start, i - start));
        if (c == '\r' && i + 1 < bytes.size() && bytes[i + 1] == '\n') ++i;
        start = i + 1;
    }
    if (start < bytes.size()) lines.emplace_back(bytes.substr(start));
    return lines;
}

bool IsFile(const std::string& path) {
    std::error_code ec;
    return std::filesystem::is_regular_file(PathFromUtf8(path), ec);
}

bool ReadFileBytes(const std::string& path, std::string& bytes) {
    // A folder (or device) under the file's name is "no readable file", not
    // an exception from the stream library.
    if (!IsFile(path)) return false;
    try {
        std::ifstream in(PathFromUtf8(path), std::ios::binary);
        if (!in) return false;
        std::string data((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
        if (in.bad()) return false;
        bytes = std::move(data);
    } catch (const std::exception&) {
        return false;
    }
    return true;
}

bool ReadTextFile(const std::string& path, int codePage, std::vector<std::string>& lines) {
    lines.clear();
    std::string bytes;
    if (!ReadFileBytes(path, bytes)) return false;
    // Lines are cut before conversion: in the supported code pages CR and LF
    // never occur inside a character, and a bad byte then spoils one line only.
    lines = SplitLines(bytes);
    LinesToUtf8(lines, codePage);
    return true;
}

namespace {

// What the system said about the last failed call, after `what`; streams
// leave errno as the failing system call set it.
std::string ErrnoText(const char* what) {
    const int e = errno;
    if (e == 0) return what;
    return std::string(what) + ": " + std::strerror(e);
}

std::string Encode(const std::vector<std::string>& lines, int codePage) {
    std::string bytes;
    for (const auto& l : lines) {
        bytes += FromUtf8(l, codePage);
        bytes += "\r\n";
    }
    return bytes;
}

}  // namespace

SaveResult WriteTextFile(const std::string& path, const std::vector<std::string>& lines, int codePage) {
    return WriteFileBytes(path, Encode(lines, codePage));
}

SaveResult WriteFileBytes(const std::string& path, const std::string& bytes) {
    const platform::ReplaceFailure failed = platform::ReplaceFileDurably(PathFromUtf8(path), bytes);
    if (failed) return SaveResult::Failed(path, std::string(failed.Step) + ": " + failed.Error.message());
    return SaveResult::Ok(path);
}

SaveResult AppendTextFile(const std::string& path, const std::vector<std::string>& lines, int codePage) {
    errno = 0;
    std::ofstream out(PathFromUtf8(path), std::ios::binary | std::ios::app);
    if (!out) return SaveResult::Failed(path, ErrnoText("cannot open"));
    const std::string bytes = Encode(lines, codePage);
    out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    out.flush();
    if (!out) return SaveResult::Failed(path, ErrnoText("cannot write"));
    return SaveResult::Ok(path);
}

}  // namespace core
