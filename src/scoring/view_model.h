// The view-model vocabulary as this folder's windows use it.
#pragma once

#include "core/view_model.h"

namespace scoring {

using core::Black;
using core::Blue;
using core::Color;
using core::DarkRed;
using core::DrawText;
using core::Font;
using core::Label;
using core::Magenta;
using core::Red;
using core::Shape;
using core::TextWidthFn;
using core::TwipsPerPixel;
using core::White;
using core::WindowModel;
using core::ApproxTextWidth;
using core::LabelTexts;
using core::ToJson;

}  // namespace scoring
