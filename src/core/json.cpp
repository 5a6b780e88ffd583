#include "core/json.h"

#include <cmath>
#include <cstdio>
#include <cstdint>
#include <cstdlib>

#include <nlohmann/json.hpp>

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

std::int64_t Json::AsInt() const {
    // A double at or beyond 2^63 does not convert: out of range is undefined.
    if (!(num_ == num_)) return 0;
    if (num_ >= 9223372036854775807.0) return INT64_MAX;
    if (num_ <= -9223372036854775808.0) return INT64_MIN;
    return static_cast<std::int64_t>(num_);
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

// Deepest nesting accepted: the parser recurses, so a hostile file of
// brackets must be refused before it gets there.
constexpr int kMaxDepth = 200;

bool NestingWithin(const std::string& text, int limit, std::size_t& where) {
    int depth = 0;
    bool inString = false, escaped = false;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        if (inString) {
            if (escaped) escaped = false;
            else if (c == '\\') escaped = true;
            else if (c == '"') inString = false;
        } else if (c == '"') {
            inString = true;
        } else if (c == '[' || c == '{') {
            if (++depth > limit) {
                where = i;
                return false;
            }
        } else if (c == ']' || c == '}') {
            --depth;
        }
    }
    return true;
}

Json FromLib(const nlohmann::ordered_json& v) {
    switch (v.type()) {
        case nlohmann::ordered_json::value_t::boolean: return Json(v.get<bool>());
        case nlohmann::ordered_json::value_t::number_integer:
        case nlohmann::ordered_json::value_t::number_unsigned:
        case nlohmann::ordered_json::value_t::number_float: return Json(v.get<double>());
        case nlohmann::ordered_json::value_t::string: return Json(v.get<std::string>());
        case nlohmann::ordered_json::value_t::array: {
            Json a = Json::Array();
            for (const auto& e : v) a.Push(FromLib(e));
            return a;
        }
        case nlohmann::ordered_json::value_t::object: {
            Json o = Json::Object();
            for (const auto& [k, e] : v.items()) o.Set(k, FromLib(e));
            return o;
        }
        default: return Json();
    }
}

}  // namespace

bool Json::Parse(const std::string& text, Json& out, std::string& error) {
    std::size_t where = 0;
    if (!NestingWithin(text, kMaxDepth, where)) {
        error = "nesting too deep at offset " + std::to_string(where);
        return false;
    }
    nlohmann::ordered_json v;
    try {
        v = nlohmann::ordered_json::parse(text);
    } catch (const nlohmann::json::exception& e) {
        // "[json.exception.parse_error.101] parse error at line 1, column 5: ..."
        std::string what = e.what();
        const std::size_t cut = what.find("] ");
        error = cut == std::string::npos ? what : what.substr(cut + 2);
        return false;
    }
    out = FromLib(v);
    return true;
}

}  // namespace core
