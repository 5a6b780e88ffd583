// Deal record files from arbitrary bytes: reading never crashes, and what was
// read survives being written and read again unchanged.
#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

#include "core/text.h"
#include "display/deal_record.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) return 0;
    const int codePage = (data[0] & 1) ? core::kCodePageJapanese : core::kCodePageWestern;
    const std::string bytes(reinterpret_cast<const char*>(data) + 1, size - 1);

    std::vector<std::string> lines;
    for (const std::string& raw : core::SplitLines(bytes)) lines.push_back(core::ToUtf8(raw, codePage));

    display::DealRecord rec;
    const int code = display::ParseRecordLines(lines, rec);
    if (code != display::ErrNone && code != display::ErrInputPastEnd) std::abort();
    if (rec.ScoreRowCount < 0 || rec.ScoreRowCount > display::MaxScoreRows) std::abort();
    if (code != display::ErrNone) return 0;

    // Through the file's own encoding and back.
    std::vector<std::string> again;
    const std::vector<std::string> written = display::FormatRecordLines(rec);
    for (const std::string& line : written) {
        const std::string encoded = core::FromUtf8(line, codePage);
        again.push_back(core::ToUtf8(encoded, codePage));
    }
    display::DealRecord back;
    if (display::ParseRecordLines(again, back) != display::ErrNone) std::abort();
    // Characters the code page cannot hold turn into "?" on the way out, so
    // the comparison is made on the written text.
    if (display::FormatRecordLines(back) != again) std::abort();
    return 0;
}
