#include <QBuffer>
#include <QImage>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPainter>
#include <QRadioButton>
#include <algorithm>
#include <cstdio>
#include <vector>

#include "Kifo_iOS_Common_Kit/inapp/views/popup/PopUpWindow.h"
#include "bench/Table.h"
#include "bench/popups/PlainOverlay.h"
#include "bench/popups/PopupBenches.h"
#include "bench/popups/PopupStand.h"

namespace kifo::bench {
namespace {

using std::chrono::milliseconds;
using Stretch = WatchedApplication::Stretch;

constexpr int kRuns = 5;
constexpr milliseconds kFade{220};  ///< As the popups do it.
constexpr milliseconds kFaded{280};

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

/// The two stretches of one life that tell most.
struct Life {
  Stretch hardest;
  Stretch longest;
};

Life lived(PopupStand& stand) {
  return {stand.application().hardest(), stand.application().longest()};
}

Life lifeOf(PopupStand& stand, PopupType kind, const std::shared_ptr<AppCommunicationItem>& item,
            milliseconds linger) {
  stand.application().forgetStretches();
  PopUpWindow* popup = stand.open(kind, item);
  WatchedApplication::spin(kFaded);
  live(stand, popup, linger);
  WatchedApplication::spinUntilGone(popup);
  return lived(stand);
}

/// The same life of an overlay of Qt's own widgets with the same content.
Life bareLifeOf(PopupStand& stand, PopupType kind,
                const std::shared_ptr<AppCommunicationItem>& item) {
  PopUpWindow* mirrored = stand.open(kind, item);
  mirrored->hide();
  stand.application().forgetStretches();
  const auto show = [&] {
    auto* overlay = new PlainOverlay(mirrored, &stand.window());
    overlay->fade(0, 1, kFade);
    overlay->show();
    overlay->raise();
  };
  QMetaObject::invokeMethod(&stand.window(), show, Qt::QueuedConnection);
  stand.application().frameOf(PlainOverlay::name);
  auto* overlay = static_cast<PlainOverlay*>(stand.application().framed());
  WatchedApplication::spin(kFaded);
  for (QRadioButton* option : overlay->findChildren<QRadioButton*>()) click(option);
  resizeAbout(stand.window(), [overlay](QSize size) { overlay->resize(size); });
  overlay->fade(1, 0, kFade);
  WatchedApplication::spin(kFaded);
  overlay->deleteLater();
  WatchedApplication::spinUntilGone(overlay);
  const Life life = lived(stand);
  PopupStand::close(mirrored);
  return life;
}

std::string inMilliseconds(double microseconds) {
  char text[32];
  std::snprintf(text, sizeof text, "%.1f", microseconds / 1000);
  return text;
}

/// "own time 2.5 (3.1), passed 2.6 (9.0) ms": the medians, and the worst of all lives.
std::string figures(std::vector<Life> lives) {
  const auto medianAndWorst = [&lives](auto of) {
    std::ranges::sort(lives, {}, of);
    return inMilliseconds(of(lives[lives.size() / 2])) + " (" + inMilliseconds(of(lives.back())) +
           ")";
  };
  return "own time " + medianAndWorst([](const Life& life) { return life.hardest.cpu; }) +
         ", passed " + medianAndWorst([](const Life& life) { return life.longest.wall; }) + " ms";
}

/// What the longest stretch of all was.
std::string whatOf(const std::vector<Life>& lives) {
  const Stretch& worst = std::ranges::max_element(lives, {}, [](const Life& life) {
                           return life.longest.wall;
                         })->longest;
  return worst.what.toStdString() + ", own time " + inMilliseconds(worst.cpu) + ", " +
         std::to_string(worst.pages) + " new pages";
}

/// Ours and the peer alternately, so that the machine's load affects both.
void measure(PopupStand& stand, const std::string& what, PopupType kind,
             const std::shared_ptr<AppCommunicationItem>& item,
             milliseconds linger = milliseconds(0)) {
  std::vector<Life> ours;
  std::vector<Life> bare;
  for (int run = 0; run < kRuns; ++run) {
    ours.push_back(lifeOf(stand, kind, item, linger));
    bare.push_back(bareLifeOf(stand, kind, item));
  }
  row(what, figures(ours), whatOf(ours) + "; wanted 8.0 ms");
  row("  bare Qt widgets", figures(bare), whatOf(bare));
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
  const std::vector<Life> first{lifeOf(stand, PopupType::popup, item, {})};
  row("the first popup of the process, a POPUP", figures(first), whatOf(first));
}

void measureIn(QSize window, bool withPictures) {
  section("the longest stretch on the UI thread while a popup fades in, lives and closes, " +
          std::to_string(window.width()) + " x " + std::to_string(window.height()) +
          ": the median and the (worst) of " + std::to_string(kRuns));
  PopupStand stand({}, window);
  measureFirst(stand);
  for (const PopupType kind : PopupStand::kinds) {
    measure(stand, std::string(rawValue(kind)), kind, PopupStand::campaign(kind));
  }
  if (withPictures) measurePictures(stand);
  measure(stand, "POPUP with 10,000 characters of text", PopupType::popup, longCampaign());
}

}  // namespace

void stretchBench() {
  measureIn({1280, 800}, true);
}

void wideStretchBench() {
  measureIn({3840, 2160}, false);
}

}  // namespace kifo::bench
