// Code pages through the Win32 conversion API.
#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>

#include <algorithm>

#include "platform/code_page.h"

namespace platform {

namespace {

std::wstring Widen(UINT cp, std::string_view s) {
    if (s.empty()) return {};
    const int n = MultiByteToWideChar(cp, 0, s.data(), static_cast<int>(s.size()), nullptr, 0);
    std::wstring w(static_cast<std::size_t>(std::max(n, 0)), L'\0');
    if (n > 0) MultiByteToWideChar(cp, 0, s.data(), static_cast<int>(s.size()), w.data(), n);
    return w;
}

std::string Narrow(UINT cp, const std::wstring& w, bool defaultChar) {
    if (w.empty()) return {};
    const char* def = defaultChar ? "?" : nullptr;
    const int n = WideCharToMultiByte(cp, 0, w.data(), static_cast<int>(w.size()), nullptr, 0, def, nullptr);
    std::string out(static_cast<std::size_t>(std::max(n, 0)), '\0');
    if (n > 0) WideCharToMultiByte(cp, 0, w.data(), static_cast<int>(w.size()), out.data(), n, def, nullptr);
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
