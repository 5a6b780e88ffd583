// Card, bid and window-title texts come from screen reading and files, so
// any bytes must give a value inside the notation and never crash.
#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

#include "core/notation.h"
#include "reading/win_titles.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text(reinterpret_cast<const char*>(data), size);

    const int code = core::CardCode(text);
    if (code < 0 || code > 4 * 100 + 22) std::abort();
    const int rank = code % 100;
    const int suit = code / 100;
    if (rank >= 2 && rank <= 14 && suit < 4 && core::CardCode(core::CardText(code)) != code) std::abort();
    if (core::SuitIndex(text) > 4) std::abort();
    const int kind = core::BidKind(text);
    if (kind < 0 || kind > 2) std::abort();
    if (kind != 0 && core::ScoreBid(text) != 100 * kind) std::abort();
    (void)core::RankValue(text);

    static const reading::WinTitles titles;
    int lang = size > 0 ? data[0] % 12 : 1;
    std::string t = text;
    if (titles.NormalizeTitle(t, size > 1 ? data[1] % 5 : 0, lang) && t.empty()) std::abort();
    std::vector<std::string> list = {text, "Ultima baza", text.substr(0, size / 2)};
    (void)titles.FindSubWindows(list, lang);
    (void)reading::IsPopupTitle(text);
    (void)reading::TableCaption("T", text);
    return 0;
}
