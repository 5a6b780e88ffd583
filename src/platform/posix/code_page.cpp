// Code pages through iconv.
#include "platform/code_page.h"

#include <iconv.h>

#include <algorithm>
#include <cerrno>

namespace platform {

namespace {

std::string IconvName(int codePage) {
    if (codePage == 932) return "CP932";
    return "CP" + std::to_string(codePage);
}

// Bytes of the UTF-8 character starting at s[i] (1 for a stray byte; the
// input is well-formed when it comes from core).
std::size_t Utf8Step(std::string_view s, std::size_t i) {
    const auto b = static_cast<unsigned char>(s[i]);
    const std::size_t n = b < 0x80 ? 1 : (b & 0xE0) == 0xC0 ? 2 : (b & 0xF0) == 0xE0 ? 3 : (b & 0xF8) == 0xF0 ? 4 : 1;
    return std::min(n, s.size() - i);
}

// One iconv conversion; every input that cannot be converted becomes "?"
// and the conversion goes on after it.
class Iconv {
public:
    Iconv(const std::string& to, const std::string& from) : cd_(iconv_open(to.c_str(), from.c_str())) {}
    ~Iconv() {
        if (ok()) iconv_close(cd_);
    }
    Iconv(const Iconv&) = delete;
    Iconv& operator=(const Iconv&) = delete;
    bool ok() const { return cd_ != reinterpret_cast<iconv_t>(-1); }

    // `utf8Input`: an unconvertible spot skips one UTF-8 character, else one byte.
    std::string Convert(std::string_view in, bool utf8Input) {
        std::string out;
        iconv(cd_, nullptr, nullptr, nullptr, nullptr);
        std::size_t pos = 0;
        char buf[4096];
        while (pos < in.size()) {
            char* src = const_cast<char*>(in.data() + pos);
            std::size_t srcLeft = in.size() - pos;
            char* dst = buf;
            std::size_t dstLeft = sizeof buf;
            const std::size_t r = iconv(cd_, &src, &srcLeft, &dst, &dstLeft);
            const int err = errno;
            out.append(buf, static_cast<std::size_t>(dst - buf));
            pos = in.size() - srcLeft;
            if (r != static_cast<std::size_t>(-1)) continue;
            if (err == E2BIG) continue;
            // EILSEQ or EINVAL (an incomplete sequence at the end).
            out += '?';
            if (pos < in.size()) pos += utf8Input ? Utf8Step(in, pos) : 1;
            iconv(cd_, nullptr, nullptr, nullptr, nullptr);
        }
        // Flush any shift state.
        char* dst = buf;
        std::size_t dstLeft = sizeof buf;
        iconv(cd_, nullptr, nullptr, &dst, &dstLeft);
        out.append(buf, static_cast<std::size_t>(dst - buf));
        return out;
    }

private:
    iconv_t cd_;
};

}  // namespace

bool SystemKnowsCodePage(int codePage) {
    if (codePage <= 0) return false;
    Iconv a("UTF-8", IconvName(codePage)), b(IconvName(codePage), "UTF-8");
    return a.ok() && b.ok();
}

std::optional<std::string> SystemDecode(std::string_view bytes, int codePage) {
    if (codePage <= 0) return std::nullopt;
    Iconv cv("UTF-8", IconvName(codePage));
    if (!cv.ok()) return std::nullopt;
    return cv.Convert(bytes, false);
}

bool SystemDecodeAll(std::vector<std::string>& texts, int codePage) {
    if (codePage <= 0) return false;
    Iconv cv("UTF-8", IconvName(codePage));
    if (!cv.ok()) return false;
    for (auto& t : texts) t = cv.Convert(t, false);
    return true;
}

std::optional<std::string> SystemEncode(std::string_view utf8, int codePage) {
    if (codePage <= 0) return std::nullopt;
    Iconv cv(IconvName(codePage), "UTF-8");
    if (!cv.ok()) return std::nullopt;
    return cv.Convert(utf8, true);
}

}  // namespace platform
