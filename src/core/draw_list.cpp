#include "core/draw_list.h"

#include <cstdio>

namespace core {

static std::string HexColor(Color c) {
    char buf[16];
    std::snprintf(buf, sizeof buf, "#%02X%02X%02X", static_cast<unsigned>(c & 0xFF),
                  static_cast<unsigned>((c >> 8) & 0xFF), static_cast<unsigned>((c >> 16) & 0xFF));
    return buf;
}

static const char* SheetName(SheetId s) {
    switch (s) {
        case SheetId::CardSheet: return "cards";
        case SheetId::TextSheet: return "text";
        case SheetId::MainSurface: return "main";
    }
    return "?";
}

namespace {
struct ItemJson {
    Json operator()(const DrawText& t) const {
        Json j = ToJson(t);
        j.Set("kind", "text");
        return j;
    }
    Json operator()(const DrawImage& i) const {
        Json j = Json::Object();
        j.Set("kind", "image");
        j.Set("x", i.X);
        j.Set("y", i.Y);
        j.Set("sheet", SheetName(i.Source));
        j.Set("sx", i.SrcX);
        j.Set("sy", i.SrcY);
        j.Set("w", i.Width);
        j.Set("h", i.Height);
        return j;
    }
    Json operator()(const DrawRect& r) const {
        Json j = Json::Object();
        j.Set("kind", "rect");
        j.Set("x", r.X);
        j.Set("y", r.Y);
        j.Set("w", r.Width);
        j.Set("h", r.Height);
        j.Set("color", HexColor(r.LineColor));
        return j;
    }
    Json operator()(const DrawLine& l) const {
        Json j = Json::Object();
        j.Set("kind", "line");
        j.Set("x1", l.X1);
        j.Set("y1", l.Y1);
        j.Set("x2", l.X2);
        j.Set("y2", l.Y2);
        j.Set("color", HexColor(l.LineColor));
        j.Set("width", l.Width);
        return j;
    }
};
}  // namespace

Json ToJson(const DrawList& list) {
    Json j = Json::Object();
    j.Set("back", HexColor(list.BackColor));
    Json items = Json::Array();
    for (const auto& i : list.Items) items.Push(std::visit(ItemJson{}, i));
    j.Set("items", items);
    return j;
}

}  // namespace core
