#pragma once

#include <string>

#include <QImage>
#include <QSize>

class QThreadPool;

namespace kifo {

/// The picture in `data`, no larger than `bounds` (physical pixels, aspect kept, never enlarged),
/// or a null image: for anything but PNG, JPEG and GIF, for a picture of more than 4096 × 4096
/// pixels, and for data that do not decode. Of an animation, the first frame. The size is read and
/// judged before any pixel is decoded.
///
/// **Threading:** any thread.
QImage decodeImage(const std::string& data, QSize bounds);

/// Where pictures are decoded. Not on Qt's global threads: Qt paints on those as well, and the UI
/// thread would wait for a picture in the middle of a frame.
///
/// **Threading:** thread-safe. **Ownership:** ends with the program, after what is still running.
QThreadPool& imageDecoders();

}  // namespace kifo
