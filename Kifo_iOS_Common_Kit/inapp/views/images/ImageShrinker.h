#pragma once

#include <QImage>
#include <QSize>

namespace kifo {

/// The picture brought down to `bounds`, its shape kept: each pixel is the mean of those that it
/// stands for. One that is no larger is as it was. Premultiplied ARGB either way.
///
/// `QImage::scaled` would do the same on the threads that Qt shares with its painting, and whatever
/// the UI thread paints would wait until it is through.
///
/// **Threading:** any thread; does all of its work on the caller's.
QImage shrunk(const QImage& image, QSize bounds);

}  // namespace kifo
