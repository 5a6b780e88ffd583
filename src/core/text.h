// Text as the program handles it: UTF-8 std::string inside, counted in
// characters (not bytes) wherever the program cuts or measures a text, and
// the ANSI code page (1252 Western, 932 Japanese, ...) with CR LF only at
// the file boundary.
//
// Positions are 1-based as in the program's algorithms: Mid(s, 1, 1) is the
// first character and InStr gives 0 when nothing is found. Invalid UTF-8
// never crashes: each stray byte counts as one character and is kept as it is.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "core/save_result.h"

namespace core {

// --- characters -------------------------------------------------------------

// Number of characters.
std::size_t Len(std::string_view s);
// The first n characters (all of s when it is shorter; "" for n <= 0).
std::string Left(std::string_view s, std::ptrdiff_t n);
// The last n characters.
std::string Right(std::string_view s, std::ptrdiff_t n);
// n characters from the 1-based position start (a start below 1 counts as 1;
// n < 0 means to the end).
std::string Mid(std::string_view s, std::ptrdiff_t start, std::ptrdiff_t n = -1);
// 1-based character position of the first `find` at or after character
// position `start`; 0 when absent. An empty `find` gives `start` (0 when s is
// empty or start is past its end), as the original language does.
std::size_t InStr(std::string_view s, std::string_view find);
std::size_t InStr(std::size_t start, std::string_view s, std::string_view find);
// 1-based position of the last occurrence; 0 when absent.
std::size_t InStrRev(std::string_view s, std::string_view find);

// Upper / lower case of ASCII, Latin-1, the Latin letters of code page 1252
// (Š Œ Ž Ÿ) and the full-width Latin letters; everything else unchanged.
std::string UCase(std::string_view s);
std::string LCase(std::string_view s);
// Case-insensitive equality (by UCase).
bool EqualNoCase(std::string_view a, std::string_view b);

// Blanks (spaces and tabs) removed at both ends / the start / the end.
std::string Trim(std::string_view s);
std::string LTrim(std::string_view s);
std::string RTrim(std::string_view s);

bool StartsWith(std::string_view s, std::string_view prefix);
bool EndsWith(std::string_view s, std::string_view suffix);
bool Contains(std::string_view s, std::string_view part);

// --- numbers ----------------------------------------------------------------

// The leading decimal number of a text as the program reads numbers: leading
// blanks skipped, an optional sign, digits and an optional fraction ("2.5",
// "-7", ".5"); anything after it is ignored; 0 when there is no number.
double Val(std::string_view s);
// Val rounded to the nearest integer and clamped to the 32-bit range.
std::int32_t ValInt(std::string_view s);
// A hexadecimal number with or without the "&H" prefix (any case): leading
// blanks skipped, the leading hexadecimal digits read, 0 when there are none;
// only the low 32 bits are kept. "&HFFE0C0", "ffe0c0" -> 0xFFE0C0.
std::uint32_t HexVal(std::string_view s);

// --- tokens -----------------------------------------------------------------

// The list rule: trims `text`, cuts it at the first "," (or, without one, at
// the first blank) and returns what stands before; `text` keeps the rest with
// its leading blanks removed. Without a separator the whole text is the token
// and `text` becomes empty. The token is not trimmed on its right.
std::string NextToken(std::string& text);
// Trimmed text; when it holds a double quote, the part between the first and
// the second one (to the end when there is no second).
std::string Unquote(std::string_view s);

// --- code pages -------------------------------------------------------------

constexpr int kCodePageWestern = 1252;
constexpr int kCodePageJapanese = 932;
constexpr int kCodePageUtf8 = 65001;

// Whether conversions with this code page are possible on this system.
bool IsCodePageSupported(int codePage);
// Bytes in the code page -> UTF-8. Bytes that are not valid there each become
// "?"; never fails.
std::string ToUtf8(std::string_view bytes, int codePage);
// UTF-8 -> bytes in the code page. Characters the code page cannot hold (and
// invalid UTF-8) each become "?".
std::string FromUtf8(std::string_view text, int codePage);
// ToUtf8 of every line, in place (one converter for them all).
void LinesToUtf8(std::vector<std::string>& lines, int codePage);
// The single-byte round trip: byte -> character in the code page -> byte(s).
// A character that comes back as two bytes gives lead * 256 + trail; one that
// does not come back gives the byte of "?" (63).
int ByteRoundTrip(int codePage, std::uint8_t byte);

// --- files ------------------------------------------------------------------

// A file-system path from a UTF-8 name and back (names on disk are UTF-8
// here; on Windows the conversion goes through the wide API).
std::filesystem::path PathFromUtf8(const std::string& utf8);
std::string PathToUtf8(const std::filesystem::path& p);

// True for an existing regular file (not a folder).
bool IsFile(const std::string& path);
// Reads a whole file as it is. False when it is not a readable file.
bool ReadFileBytes(const std::string& path, std::string& bytes);
// Writes bytes to a temporary file in the folder of `path` ("<name>.tmp~")
// that then replaces `path`; the old file stays untouched when anything
// fails, and the result says why.
SaveResult WriteFileBytes(const std::string& path, const std::string& bytes);

// Splits bytes at any line end (CR LF, LF or CR). A final line end does not
// start another line, so "a\r\nb\r\n" gives "a", "b".
std::vector<std::string> SplitLines(std::string_view bytes);
// Reads a text file in the code page into UTF-8 lines. False (and no lines)
// when the file cannot be opened.
bool ReadTextFile(const std::string& path, int codePage, std::vector<std::string>& lines);
// Writes UTF-8 lines in the code page, each ended by CR LF, to a temporary
// file in the same folder that then replaces `path`; the old file stays
// untouched when anything fails.
SaveResult WriteTextFile(const std::string& path, const std::vector<std::string>& lines, int codePage);
// Appends lines (CR LF each) to a file, creating it when missing (log files).
SaveResult AppendTextFile(const std::string& path, const std::vector<std::string>& lines, int codePage);

}  // namespace core
