// The settings reader on arbitrary file contents: the first byte picks the
// code page, the rest is the file. Whatever it reads must come out as a
// complete settings object.
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "core/settings.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) return 0;
    const int codePage = (data[0] & 1) ? 932 : 1252;
    const std::string_view bytes(reinterpret_cast<const char*>(data + 1), size - 1);
    core::Settings s;
    const core::SettingsReadResult r =
        core::ParseSettingsBytes(bytes, codePage, s, [](const std::string& name) { return name.size() % 2 == 0; });
    if (!r.Illegal) core::ApplyPostReadRules(s, codePage == 932);
    if (s.MyIds.size() > core::kMaxOwnIds) __builtin_trap();
    if (r.Illegal && r.IllegalKey.empty()) __builtin_trap();
    const std::string out = core::SettingsJson(s).Dump();
    if (out.empty()) __builtin_trap();
    return 0;
}
