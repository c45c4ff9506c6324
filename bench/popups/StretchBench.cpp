#include <QBuffer>
#include <QImage>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPainter>
#include <QRadioButton>
#include <algorithm>
#include <vector>

#include "Kifo_iOS_Common_Kit/inapp/views/PopUpWindow.h"
#include "bench/Table.h"
#include "bench/popups/PlainOverlay.h"
#include "bench/popups/PopupBenches.h"
#include "bench/popups/PopupStand.h"

namespace kifo::bench {
namespace {

using std::chrono::milliseconds;
using Stretch = WatchedApplication::Stretch;

constexpr int kRuns = 5;

void click(QWidget* widget) {
  const QPointF at = QRectF(widget->rect()).center();
  const QPointF there = widget->mapToGlobal(at);
  for (const auto type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease}) {
    const bool down = type == QEvent::MouseButtonPress;
    QCoreApplication::postEvent(
        widget, new QMouseEvent(type, at, there, Qt::LeftButton,
                                down ? Qt::LeftButton : Qt::NoButton, Qt::NoModifier));
  }
  WatchedApplication::spin(milliseconds(10));
}

void type(QWidget* field, const QString& text) {
  field->setFocus();
  for (const QChar letter : text) {
    QCoreApplication::postEvent(field, new QKeyEvent(QEvent::KeyPress, 0, Qt::NoModifier, letter));
    WatchedApplication::spin(milliseconds(5));
  }
}

void resize(QWidget& window, QSize size, const std::function<void(QSize)>& follow) {
  const auto both = [&window, size, follow] {
    window.resize(size);
    if (follow) follow(size);
  };
  QMetaObject::invokeMethod(&window, both, Qt::QueuedConnection);
  WatchedApplication::spin(milliseconds(40));
}

void resizeAbout(QWidget& window, const std::function<void(QSize)>& follow = {}) {
  const QSize size = window.size();
  for (const double share : {0.9, 0.6, 1.0}) resize(window, size * share, follow);
}

/// What a user does with whatever the popup has, and a host with its window.
void live(PopupStand& stand, PopUpWindow* popup, milliseconds linger) {
  const auto options = popup->findChildren<QRadioButton*>();
  for (QRadioButton* option : options) click(option);
  if (auto* field = popup->findChild<QLineEdit*>(); field && field->isVisible()) {
    type(field, QStringLiteral("Rather good, thank you"));
  }
  resizeAbout(stand.window());
  WatchedApplication::spin(linger);
  click(popup->findChild<QWidget*>("closeButton"));
}

Stretch lifeOf(PopupStand& stand, PopupType kind, const std::shared_ptr<AppCommunicationItem>& item,
               milliseconds linger) {
  stand.application().forgetStretches();
  PopUpWindow* popup = stand.open(kind, item);
  WatchedApplication::spin(milliseconds(260));
  live(stand, popup, linger);
  WatchedApplication::spinUntilGone(popup);
  return stand.application().longest();
}

void report(const std::string& what, std::vector<Stretch> lives, const std::string& beside) {
  std::ranges::sort(lives, {}, &Stretch::cpu);
  const Stretch& median = lives[lives.size() / 2];
  const Stretch& worst = lives.back();
  row(what, "median " + microseconds(median.cpu) + ", worst " + microseconds(worst.cpu),
      median.what.toStdString() + beside);
}

void measure(PopupStand& stand, const std::string& what, PopupType kind,
             const std::shared_ptr<AppCommunicationItem>& item,
             milliseconds linger = milliseconds(0)) {
  std::vector<Stretch> lives;
  for (int run = 0; run < kRuns; ++run) lives.push_back(lifeOf(stand, kind, item, linger));
  report(what, lives, "; wanted 8000 µs");
}

/// The same life of an overlay of Qt's own widgets, without any fade.
void measureBare(PopupStand& stand, PopupType kind) {
  PopUpWindow* popup = stand.open(kind, PopupStand::campaign(kind));
  popup->hide();
  std::vector<Stretch> lives;
  for (int run = 0; run < kRuns; ++run) {
    stand.application().forgetStretches();
    QMetaObject::invokeMethod(
        &stand.window(),
        [&] {
          auto* overlay = new PlainOverlay(popup, &stand.window());
          overlay->show();
          overlay->raise();
        },
        Qt::QueuedConnection);
    stand.application().frameOf(PlainOverlay::name);
    QWidget* overlay = stand.application().framed();
    for (QRadioButton* option : overlay->findChildren<QRadioButton*>()) click(option);
    resizeAbout(stand.window(), [overlay](QSize size) { overlay->resize(size); });
    overlay->deleteLater();
    WatchedApplication::spinUntilGone(overlay);
    lives.push_back(stand.application().longest());
  }
  PopupStand::close(popup);
  report("the floor: bare Qt widgets as in " + std::string(rawValue(kind)), lives, "");
}

/// A photograph's size and unrest, below the cap of what is fetched.
std::string photograph(const char* format) {
  QImage image(4000, 3000, QImage::Format_RGB32);
  for (int y = 0; y < image.height(); ++y) {
    auto* line = reinterpret_cast<QRgb*>(image.scanLine(y));
    for (int x = 0; x < image.width(); ++x) {
      line[x] = qRgb(x * 255 / 4000, y * 255 / 3000, ((x / 3) ^ (y / 5)) & 0x3F);
    }
  }
  QByteArray bytes;
  QBuffer buffer(&bytes);
  buffer.open(QIODevice::WriteOnly);
  image.save(&buffer, format, 90);
  return bytes.toStdString();
}

void measurePictures(PopupStand& stand) {
  for (const char* format : {"JPEG", "PNG"}) {
    stand.setPicture(photograph(format));
    measure(stand, std::string("POPUP with a 4000 x 3000 ") + format, PopupType::popup,
            PopupStand::campaignWithPicture(), milliseconds(1500));
  }
  measure(stand, "POPUP with a carousel of three such", PopupType::popup,
          PopupStand::campaignWithCarousel(), milliseconds(5000));
}

std::shared_ptr<AppCommunicationItem> longCampaign() {
  auto item = PopupStand::campaign(PopupType::popup);
  std::string text;
  while (text.size() < 10000) text += "as many words as a careless campaign holds ";
  item->text->text = text;
  return item;
}

/// Loads fonts and whatever else Qt makes when something is first shown.
void measureFirst(PopupStand& stand) {
  const auto item = PopupStand::campaign(PopupType::popup);
  const Stretch first = lifeOf(stand, PopupType::popup, item, {});
  row("the first popup of the process, a POPUP", microseconds(first.cpu),
      first.what.toStdString() + "");
}

void measureIn(QSize window, bool withPictures) {
  section("the longest stretch on the UI thread while a popup fades in, lives and closes, " +
          std::to_string(window.width()) + " x " + std::to_string(window.height()));
  PopupStand stand({}, window);
  measureFirst(stand);
  for (const PopupType kind : PopupStand::kinds) {
    measure(stand, std::string(rawValue(kind)), kind, PopupStand::campaign(kind));
  }
  if (withPictures) measurePictures(stand);
  measure(stand, "POPUP with 10,000 characters of text", PopupType::popup, longCampaign());
  measureBare(stand, PopupType::survey);
}

}  // namespace

void stretchBench() {
  measureIn({1280, 800}, true);
}

void wideStretchBench() {
  measureIn({3840, 2160}, false);
}

}  // namespace kifo::bench
