// The user's alert file: any bytes must read without harm, and what is
// written back must read again to the same user entries (less the repeats
// that differ only in letter case), so a rewrite never loses an entry.
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>
#include <unordered_set>
#include <vector>

#include "core/text.h"
#include "players/alert_list.h"

namespace {

std::vector<std::string> UserEntries(const players::AlertList& list) {
    std::vector<std::string> out;
    for (std::int32_t i = list.SeparatorIndex() + 1; i <= list.AlertCount; ++i) out.push_back(list.Entry(i));
    return out;
}

void Check(bool ok) {
    if (!ok) __builtin_trap();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const std::string dir = [] {
        auto d = std::filesystem::temp_directory_path() / "tarvellos_alert_fuzz";
        std::filesystem::create_directories(d);
        return d.string();
    }();
    int codePage = (size > 0 && (data[0] & 1)) ? 932 : 1252;
    std::string bytes(reinterpret_cast<const char*>(data), size);
    std::string in = dir + "/in.txt", out = dir + "/out.txt";
    if (!core::WriteFileBytes(in, bytes)) return 0;

    players::AlertList list;
    players::ReadDefaultAlertList(list);
    std::int32_t builtIn = list.AlertCount;
    const players::AlertFileResult read = players::ReadAlertList(in, list, codePage);
    // Bytes that are no text (a NUL among them) are refused whole: the
    // built-in entries stay and nothing of the file is taken.
    if (bytes.find('\0') != std::string::npos) {
        Check(read == players::AlertFileResult::Unreadable && list.FileUnreadable);
        Check(list.AlertCount == builtIn);
        return 0;
    }
    Check(read == players::AlertFileResult::Ok);
    Check(list.SeparatorIndex() == builtIn);
    Check(list.Size() > list.AlertCount);
    for (std::int32_t i = 1; i <= list.AlertCount; ++i) Check(!list.Entry(i).empty());

    // What a rewrite must keep: each entry once, ignoring letter case, and
    // none that repeats a built-in one.
    std::unordered_set<std::string> seen;
    for (std::int32_t i = 1; i <= builtIn; ++i) seen.insert(core::LCase(list.Entry(i)));
    std::vector<std::string> expected;
    for (const std::string& e : UserEntries(list))
        if (seen.insert(core::LCase(e)).second) expected.push_back(e);

    // Work in UTF-8 so that the code page's "?" for unmapped characters
    // does not count as a loss.
    std::string text = players::FormatAlertFile(list, codePage == 932);
    players::AlertList again;
    players::ReadDefaultAlertList(again);
    players::AppendAlertText(text, again);
    Check(UserEntries(again) == expected);

    Check(players::WriteAlertList(list, out, codePage == 932, codePage) == players::AlertFileResult::Ok);
    return 0;
}
