// The size of a picture file from its header: BMP, JPEG and placeable WMF,
// for a platform that records what a picture control would show.
#pragma once

#include <string>

namespace tf {

// Width and height in pixels; false for a file that is missing, short or
// not one of the three kinds. A placeable metafile is measured at 96 dots
// an inch.
bool picture_size(const std::string& file, int& width, int& height);

}  // namespace tf
