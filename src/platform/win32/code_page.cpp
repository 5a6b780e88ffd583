// Code pages through the Win32 conversion API.
#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>

#include <algorithm>

#include "platform/code_page.h"

namespace platform {

namespace {

// Strict conversion of a whole text; false when any sequence is undefined.
bool WidenStrict(UINT cp, std::string_view s, std::wstring& out) {
    if (s.empty()) return true;
    const int n = MultiByteToWideChar(cp, MB_ERR_INVALID_CHARS, s.data(), static_cast<int>(s.size()), nullptr, 0);
    if (n <= 0) return false;
    out.resize(static_cast<std::size_t>(n));
    return MultiByteToWideChar(cp, MB_ERR_INVALID_CHARS, s.data(), static_cast<int>(s.size()), out.data(), n) == n;
}

// The system puts its own default character (in the Japanese page the
// middle dot) for an undefined sequence; the program's files and readers
// expect "?", one per character: a lead byte without a valid trail byte is
// one "?" and the byte after it is read again on its own.
std::wstring Widen(UINT cp, std::string_view s) {
    std::wstring out;
    if (WidenStrict(cp, s, out)) return out;
    out.clear();
    for (std::size_t i = 0; i < s.size();) {
        std::wstring piece;
        const auto lead = static_cast<BYTE>(s[i]);
        if (IsDBCSLeadByteEx(cp, lead) && i + 1 < s.size() && WidenStrict(cp, s.substr(i, 2), piece)) {
            out += piece;
            i += 2;
        } else if (!IsDBCSLeadByteEx(cp, lead) && WidenStrict(cp, s.substr(i, 1), piece)) {
            out += piece;
            i += 1;
        } else {
            out += L'?';
            i += 1;
        }
    }
    return out;
}

// With defaultChar, a character the code page lacks becomes "?" rather than
// a look-alike ("é" is not written as "e").
std::string Narrow(UINT cp, const std::wstring& w, bool defaultChar) {
    if (w.empty()) return {};
    const char* def = defaultChar ? "?" : nullptr;
    const DWORD flags = defaultChar ? WC_NO_BEST_FIT_CHARS : 0;
    const int n = WideCharToMultiByte(cp, flags, w.data(), static_cast<int>(w.size()), nullptr, 0, def, nullptr);
    std::string out(static_cast<std::size_t>(std::max(n, 0)), '\0');
    if (n > 0) WideCharToMultiByte(cp, flags, w.data(), static_cast<int>(w.size()), out.data(), n, def, nullptr);
    return out;
}

}  // namespace

bool SystemKnowsCodePage(int codePage) {
    if (codePage <= 0) return false;
    CPINFO info;
    return GetCPInfo(static_cast<UINT>(codePage), &info) != 0;
}

std::optional<std::string> SystemDecode(std::string_view bytes, int codePage) {
    if (!SystemKnowsCodePage(codePage)) return std::nullopt;
    return Narrow(CP_UTF8, Widen(static_cast<UINT>(codePage), bytes), false);
}

bool SystemDecodeAll(std::vector<std::string>& texts, int codePage) {
    if (!SystemKnowsCodePage(codePage)) return false;
    for (auto& t : texts) t = Narrow(CP_UTF8, Widen(static_cast<UINT>(codePage), t), false);
    return true;
}

std::optional<std::string> SystemEncode(std::string_view utf8, int codePage) {
    if (!SystemKnowsCodePage(codePage)) return std::nullopt;
    return Narrow(static_cast<UINT>(codePage), Widen(CP_UTF8, utf8), true);
}

}  // namespace platform
