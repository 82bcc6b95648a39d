// A picture's drawing written as a PNG image by the runner: the shapes in
// pixels on a white ground, polygons filled and outlined, polylines drawn.
#pragma once

#include <string>

#include "frame/panel.h"

namespace tf {

// False when the file cannot be written or the picture has no size.
bool save_picture_png(const Control& picture, const std::string& file);

}  // namespace tf
