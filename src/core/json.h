// A small JSON value for the console tool's output and the simulator's
// scenario files. Parsing is done by nlohmann-json; the writer is ours so the
// printed form (", " and ": " separators, bytes of names kept as read) stays
// what scripts and tests compare.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace core {

class Json {
public:
    enum class Type { Null, Bool, Number, String, Array, Object };

    Json() = default;
    Json(std::nullptr_t) {}
    Json(bool b) : type_(Type::Bool), bool_(b) {}
    Json(int v) : type_(Type::Number), num_(v) {}
    Json(std::int64_t v) : type_(Type::Number), num_(static_cast<double>(v)) {}
    Json(double v) : type_(Type::Number), num_(v) {}
    Json(const char* s) : type_(Type::String), str_(s) {}
    Json(std::string s) : type_(Type::String), str_(std::move(s)) {}

    static Json Array() { Json j; j.type_ = Type::Array; return j; }
    static Json Object() { Json j; j.type_ = Type::Object; return j; }
    template <typename T>
    static Json ArrayOf(const std::vector<T>& v) {
        Json j = Array();
        for (const auto& e : v) j.Push(Json(e));
        return j;
    }

    Type type() const { return type_; }
    bool IsNull() const { return type_ == Type::Null; }
    bool IsBool() const { return type_ == Type::Bool; }
    bool IsNumber() const { return type_ == Type::Number; }
    bool IsString() const { return type_ == Type::String; }
    bool IsArray() const { return type_ == Type::Array; }
    bool IsObject() const { return type_ == Type::Object; }

    bool AsBool() const { return bool_; }
    double AsNumber() const { return num_; }
    // The number as an integer, clamped to the 64-bit range (0 for NaN).
    std::int64_t AsInt() const;
    const std::string& AsString() const { return str_; }
    const std::vector<Json>& Items() const { return items_; }
    // Object members in insertion order.
    const std::vector<std::pair<std::string, Json>>& Members() const { return members_; }

    Json& Push(Json v) { type_ = Type::Array; items_.push_back(std::move(v)); return items_.back(); }
    // Sets (or replaces) a member, keeping first-insertion order.
    Json& Set(const std::string& key, Json v);
    const Json* Get(const std::string& key) const;
    bool Has(const std::string& key) const { return Get(key) != nullptr; }
    std::size_t Size() const { return type_ == Type::Array ? items_.size() : members_.size(); }
    const Json& operator[](std::size_t i) const { return items_[i]; }

    // Compact form with ", " and ": " separators, as the console tool prints.
    std::string Dump() const;

    // Strict parse; on failure returns false and says where in `error`.
    static bool Parse(const std::string& text, Json& out, std::string& error);

private:
    void DumpTo(std::string& out) const;
    Type type_ = Type::Null;
    bool bool_ = false;
    double num_ = 0;
    std::string str_;
    std::vector<Json> items_;
    std::vector<std::pair<std::string, Json>> members_;
};

// JSON string literal (with quotes) for UTF-8 text.
std::string JsonQuote(const std::string& s);

}  // namespace core
