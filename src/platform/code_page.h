// Conversions between UTF-8 and the code pages the system itself knows
// (Japanese 932 and others). Western 1252 and UTF-8 are converted by core
// without the system; these are for the rest.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace platform {

// Whether the system converts this code page to and from UTF-8.
[[nodiscard]] bool SystemKnowsCodePage(int codePage);
// Bytes in the code page -> UTF-8; every byte sequence the code page does
// not define becomes "?". Nothing when the system cannot convert the page.
[[nodiscard]] std::optional<std::string> SystemDecode(std::string_view bytes, int codePage);
// The same for many texts at once, in place; false (texts untouched) when
// the system cannot convert the page.
[[nodiscard]] bool SystemDecodeAll(std::vector<std::string>& texts, int codePage);
// Well-formed UTF-8 -> bytes in the code page; every character the code page
// cannot hold becomes "?". Nothing when the system cannot convert the page.
[[nodiscard]] std::optional<std::string> SystemEncode(std::string_view utf8, int codePage);

}  // namespace platform
