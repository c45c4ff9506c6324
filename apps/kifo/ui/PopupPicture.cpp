#include "apps/kifo/ui/PopupPicture.h"

#include <QApplication>
#include <QEventLoop>
#include <QPainter>
#include <QPalette>
#include <QTimer>
#include <QWidget>
#include <cmath>

#include "Kifo_iOS_Common_Kit/inapp/views/popup/PopUpWindow.h"

namespace kifo::tool {
namespace {

constexpr int kLargestPicture = 2048;
constexpr int kPatience = 10'000;  // milliseconds for all pictures of a campaign

Qt::LayoutDirection directionOf(const Look& look) {
  if (look.direction == Direction::automatic) return Qt::LayoutDirectionAuto;
  return look.direction == Direction::rightToLeft ? Qt::RightToLeft : Qt::LeftToRight;
}

std::vector<std::string> picturesOf(const PopupRequest& request) {
  const auto& shown = request.preferences;
  std::vector<std::string> urls = shown.images;
  if (shown.image) urls.push_back(*shown.image);
  for (const auto& choice : shown.choices) {
    if (choice && choice->imageUrl) urls.push_back(*choice->imageUrl);
  }
  return urls;
}

QImage pictureOverWidget(const std::shared_ptr<const PopupRequest>& request,
                         const PopUpOptions& options, const Look& look) {
  QWidget host;
  host.setAttribute(Qt::WA_DontShowOnScreen);
  PopupPicture::dress(host, look);
  host.show();
  PopUpWindow popup(request, options, &host);
  popup.present();
  settle();
  QImage image(QSize(static_cast<int>(std::lround(look.width * look.scale)),
                     static_cast<int>(std::lround(look.height * look.scale))),
               QImage::Format_RGB32);
  image.setDevicePixelRatio(look.scale);
  image.fill(host.palette().color(QPalette::Window));
  host.render(&image);
  return image;
}

}  // namespace

void settle() {
  for (int round = 0; round < 5; ++round) {
    QApplication::processEvents();
    QApplication::sendPostedEvents(nullptr, QEvent::LayoutRequest);
  }
}

PopupPicture::PopupPicture(Toolkit toolkit)
    : toolkit_(toolkit),
      loader_(std::make_shared<ImageLoader>(QSize(kLargestPicture, kLargestPicture))) {}

PopUpOptions PopupPicture::options(const Look& look) const {
  PopUpOptions options;
  options.fontScale = look.fontSize;
  options.layoutDirection = directionOf(look);
  options.imageLoader = loader_;
  return options;
}

QPalette PopupPicture::paletteOf(const Look& look) {
  QPalette palette = QApplication::palette();
  const bool isDark = look.theme == Theme::dark;
  palette.setColor(QPalette::Window, isDark ? QColor(0x16, 0x18, 0x1C) : QColor(0xF4, 0xF2, 0xEE));
  palette.setColor(QPalette::WindowText, isDark ? Qt::white : Qt::black);
  return palette;
}

void PopupPicture::dress(QWidget& host, const Look& look) {
  host.setPalette(paletteOf(look));
  host.setAutoFillBackground(true);
  host.resize(look.width, look.height);
  if (look.direction != Direction::automatic) host.setLayoutDirection(directionOf(look));
}

QImage PopupPicture::of(const std::shared_ptr<const PopupRequest>& request, const Look& look) {
  awaitPictures(*request);
  PopUpOptions popUpOptions = options(look);
  popUpOptions.reducedMotion = true;
  return toolkit_ == Toolkit::quick ? pictureInScene(request, popUpOptions, look)
                                    : pictureOverWidget(request, popUpOptions, look);
}

void PopupPicture::awaitPictures(const PopupRequest& request) {
  QObject context;
  QEventLoop loop;
  std::size_t awaited = 0;
  for (const auto& url : picturesOf(request)) {
    ++awaited;
    loader_->load(url, &context, [&](const QImage&) {
      if (--awaited == 0) loop.quit();
    });
  }
  if (awaited == 0) return;
  QTimer::singleShot(kPatience, &loop, &QEventLoop::quit);
  loop.exec();
}

}  // namespace kifo::tool
