#pragma once

#include <string>

#include <QImage>
#include <QSize>

namespace kifo {

/// The picture in `data`, no larger than `bounds` (physical pixels, aspect kept, never enlarged),
/// or a null image: for anything but PNG, JPEG and GIF, for a picture of more than 4096 × 4096
/// pixels, and for data that do not decode. Of an animation, the first frame. The size is read and
/// judged before any pixel is decoded.
///
/// **Threading:** any thread.
QImage decodeImage(const std::string& data, QSize bounds);

}  // namespace kifo
