// Drawn surfaces beyond plain text: block copies out of a prepared sheet,
// rectangle outlines and lines, kept in one ordered list so a later item
// paints over an earlier one exactly as the logic laid them down.
#pragma once

#include <cstdint>
#include <variant>
#include <vector>

#include "core/json.h"
#include "core/view_model.h"

namespace core {

// Where a block copy takes its pixels from.
enum class SheetId : std::uint8_t {
    CardSheet,    // the pixel-font card sheet (built by the logic as an image)
    TextSheet,    // the text-font sheet (painted by the window layer from its item list)
    MainSurface,  // the main window's own drawing (the score window pastes from it)
};

// A plain copy of Width x Height pixels from (SrcX, SrcY) of a sheet to (X, Y).
struct DrawImage {
    int X = 0, Y = 0;
    SheetId Source = SheetId::CardSheet;
    int SrcX = 0, SrcY = 0, Width = 0, Height = 0;
    bool operator==(const DrawImage&) const = default;
};

// A one-pixel rectangle outline covering Width x Height pixels from (X, Y).
struct DrawRect {
    int X = 0, Y = 0, Width = 0, Height = 0;
    Color LineColor = Black;
    bool operator==(const DrawRect&) const = default;
};

// A line from (X1, Y1) to (X2, Y2), end point included.
struct DrawLine {
    double X1 = 0, Y1 = 0, X2 = 0, Y2 = 0;
    Color LineColor = Black;
    int Width = 1;
    bool operator==(const DrawLine&) const = default;
};

using DrawItem = std::variant<DrawText, DrawImage, DrawRect, DrawLine>;

struct DrawList {
    Color BackColor = White;  // what a clear fills the surface with
    std::vector<DrawItem> Items;

    void Clear() { Items.clear(); }
    template <class T>
    std::vector<T> All() const {
        std::vector<T> out;
        for (const auto& i : Items)
            if (const T* p = std::get_if<T>(&i)) out.push_back(*p);
        return out;
    }
};

Json ToJson(const DrawList& list);

}  // namespace core
