#include "core/json.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>

namespace core {

Json& Json::Set(const std::string& key, Json v) {
    type_ = Type::Object;
    for (auto& m : members_)
        if (m.first == key) {
            m.second = std::move(v);
            return m.second;
        }
    members_.emplace_back(key, std::move(v));
    return members_.back().second;
}

const Json* Json::Get(const std::string& key) const {
    if (type_ != Type::Object) return nullptr;
    for (const auto& m : members_)
        if (m.first == key) return &m.second;
    return nullptr;
}

std::string JsonQuote(const std::string& s) {
    std::string out = "\"";
    for (unsigned char c : s) {
        switch (c) {
            case '"': out += "\\\""; break;
            case '\\': out += "\\\\"; break;
            case '\n': out += "\\n"; break;
            case '\r': out += "\\r"; break;
            case '\t': out += "\\t"; break;
            default:
                if (c < 0x20) {
                    char buf[8];
                    std::snprintf(buf, sizeof buf, "\\u%04x", c);
                    out += buf;
                } else {
                    out += static_cast<char>(c);
                }
        }
    }
    return out + "\"";
}

void Json::DumpTo(std::string& out) const {
    switch (type_) {
        case Type::Null: out += "null"; break;
        case Type::Bool: out += bool_ ? "true" : "false"; break;
        case Type::Number: {
            if (std::isfinite(num_) && num_ == std::floor(num_) && std::fabs(num_) < 9.0e15) {
                out += std::to_string(static_cast<long long>(num_));
            } else {
                char buf[32];
                std::snprintf(buf, sizeof buf, "%.17g", std::isfinite(num_) ? num_ : 0.0);
                out += buf;
            }
            break;
        }
        case Type::String: out += JsonQuote(str_); break;
        case Type::Array:
            out += '[';
            for (std::size_t i = 0; i < items_.size(); ++i) {
                if (i) out += ", ";
                items_[i].DumpTo(out);
            }
            out += ']';
            break;
        case Type::Object:
            out += '{';
            for (std::size_t i = 0; i < members_.size(); ++i) {
                if (i) out += ", ";
                out += JsonQuote(members_[i].first);
                out += ": ";
                members_[i].second.DumpTo(out);
            }
            out += '}';
            break;
    }
}

std::string Json::Dump() const {
    std::string out;
    DumpTo(out);
    return out;
}

namespace {

struct Parser {
    const std::string& s;
    std::size_t pos = 0;
    std::string error;
    int depth = 0;

    bool Fail(const std::string& what) {
        if (error.empty()) error = what + " at offset " + std::to_string(pos);
        return false;
    }
    void Skip() {
        while (pos < s.size() && (s[pos] == ' ' || s[pos] == '\t' || s[pos] == '\n' || s[pos] == '\r')) ++pos;
    }
    bool Literal(const char* word) {
        std::size_t n = std::char_traits<char>::length(word);
        if (s.compare(pos, n, word) != 0) return Fail("unexpected text");
        pos += n;
        return true;
    }
    static void AppendUtf8(std::string& out, unsigned cp) {
        if (cp < 0x80) {
            out += static_cast<char>(cp);
        } else if (cp < 0x800) {
            out += static_cast<char>(0xC0 | (cp >> 6));
            out += static_cast<char>(0x80 | (cp & 0x3F));
        } else if (cp < 0x10000) {
            out += static_cast<char>(0xE0 | (cp >> 12));
            out += static_cast<char>(0x80 | ((cp >> 6) & 0x3F));
            out += static_cast<char>(0x80 | (cp & 0x3F));
        } else {
            out += static_cast<char>(0xF0 | (cp >> 18));
            out += static_cast<char>(0x80 | ((cp >> 12) & 0x3F));
            out += static_cast<char>(0x80 | ((cp >> 6) & 0x3F));
            out += static_cast<char>(0x80 | (cp & 0x3F));
        }
    }
    bool Hex4(unsigned& v) {
        if (pos + 4 > s.size()) return Fail("short \\u escape");
        v = 0;
        for (int i = 0; i < 4; ++i) {
            char c = s[pos++];
            v <<= 4;
            if (c >= '0' && c <= '9') v |= static_cast<unsigned>(c - '0');
            else if (c >= 'a' && c <= 'f') v |= static_cast<unsigned>(c - 'a' + 10);
            else if (c >= 'A' && c <= 'F') v |= static_cast<unsigned>(c - 'A' + 10);
            else return Fail("bad \\u escape");
        }
        return true;
    }
    bool String(std::string& out) {
        ++pos;  // opening quote
        while (pos < s.size()) {
            char c = s[pos++];
            if (c == '"') return true;
            if (static_cast<unsigned char>(c) < 0x20) return Fail("control character in string");
            if (c != '\\') {
                out += c;
                continue;
            }
            if (pos >= s.size()) break;
            char e = s[pos++];
            switch (e) {
                case '"': out += '"'; break;
                case '\\': out += '\\'; break;
                case '/': out += '/'; break;
                case 'b': out += '\b'; break;
                case 'f': out += '\f'; break;
                case 'n': out += '\n'; break;
                case 'r': out += '\r'; break;
                case 't': out += '\t'; break;
                case 'u': {
                    unsigned cp = 0;
                    if (!Hex4(cp)) return false;
                    if (cp >= 0xD800 && cp < 0xDC00 && pos + 1 < s.size() && s[pos] == '\\' && s[pos + 1] == 'u') {
                        pos += 2;
                        unsigned lo = 0;
                        if (!Hex4(lo)) return false;
                        cp = 0x10000 + ((cp - 0xD800) << 10) + (lo - 0xDC00);
                    }
                    AppendUtf8(out, cp);
                    break;
                }
                default: return Fail("bad escape");
            }
        }
        return Fail("unterminated string");
    }
    bool Value(Json& out) {
        if (++depth > 200) return Fail("nesting too deep");
        Skip();
        if (pos >= s.size()) return Fail("unexpected end");
        char c = s[pos];
        bool ok = true;
        if (c == '{') {
            out = Json::Object();
            ++pos;
            Skip();
            if (pos < s.size() && s[pos] == '}') {
                ++pos;
            } else {
                for (;;) {
                    Skip();
                    if (pos >= s.size() || s[pos] != '"') { ok = Fail("expected a member name"); break; }
                    std::string key;
                    if (!String(key)) { ok = false; break; }
                    Skip();
                    if (pos >= s.size() || s[pos] != ':') { ok = Fail("expected ':'"); break; }
                    ++pos;
                    Json v;
                    if (!Value(v)) { ok = false; break; }
                    out.Set(key, std::move(v));
                    Skip();
                    if (pos < s.size() && s[pos] == ',') { ++pos; continue; }
                    if (pos < s.size() && s[pos] == '}') { ++pos; break; }
                    ok = Fail("expected ',' or '}'");
                    break;
                }
            }
        } else if (c == '[') {
            out = Json::Array();
            ++pos;
            Skip();
            if (pos < s.size() && s[pos] == ']') {
                ++pos;
            } else {
                for (;;) {
                    Json v;
                    if (!Value(v)) { ok = false; break; }
                    out.Push(std::move(v));
                    Skip();
                    if (pos < s.size() && s[pos] == ',') { ++pos; continue; }
                    if (pos < s.size() && s[pos] == ']') { ++pos; break; }
                    ok = Fail("expected ',' or ']'");
                    break;
                }
            }
        } else if (c == '"') {
            std::string str;
            ok = String(str);
            out = Json(std::move(str));
        } else if (c == 't') {
            ok = Literal("true");
            out = Json(true);
        } else if (c == 'f') {
            ok = Literal("false");
            out = Json(false);
        } else if (c == 'n') {
            ok = Literal("null");
            out = Json();
        } else if (c == '-' || (c >= '0' && c <= '9')) {
            std::size_t start = pos;
            if (s[pos] == '-') ++pos;
            while (pos < s.size() && ((s[pos] >= '0' && s[pos] <= '9') || s[pos] == '.' || s[pos] == 'e' ||
                                      s[pos] == 'E' || s[pos] == '+' || s[pos] == '-'))
                ++pos;
            std::string num = s.substr(start, pos - start);
            char* end = nullptr;
            double v = std::strtod(num.c_str(), &end);
            if (end == num.c_str() || *end != '\0') ok = Fail("bad number");
            out = Json(v);
        } else {
            ok = Fail("unexpected character");
        }
        --depth;
        return ok;
    }
};

}  // namespace

bool Json::Parse(const std::string& text, Json& out, std::string& error) {
    Parser p{text, 0, {}, 0};
    Json v;
    if (!p.Value(v)) {
        error = p.error;
        return false;
    }
    p.Skip();
    if (p.pos != text.size()) {
        error = "trailing text at offset " + std::to_string(p.pos);
        return false;
    }
    out = std::move(v);
    return true;
}

}  // namespace core
