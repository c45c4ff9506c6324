#include <QGraphicsEffect>
#include <QTimer>

#include "Kifo_iOS_Common_Kit/inapp/views/popup/PopUpWindow.h"
#include "bench/Table.h"
#include "bench/popups/PlainOverlay.h"
#include "bench/popups/PopupBenches.h"
#include "bench/popups/PopupStand.h"

namespace kifo::bench {
namespace {

constexpr int kOpenings = 200;
constexpr int kFadedOpenings = 30;

using Clock = WatchedApplication::Clock;

double since(Clock::time_point begin, Clock::time_point end) {
  return std::chrono::duration<double, std::micro>(end - begin).count();
}

/// With a fade the first frame is empty; the first one in which something of the panel is seen.
bool isSeen(QWidget* popup) {
  const auto* panel = popup->findChild<QWidget*>("popupView");
  const auto* effect = panel->graphicsEffect();
  return !effect || effect->property("opacity").toDouble() > 0;
}

Samples popups(PopupStand& stand, PopupType kind, int openings) {
  Samples samples;
  const auto item = PopupStand::campaign(kind);
  for (int i = 0; i < openings; ++i) {
    const auto begin = Clock::now();
    stand.show(kind, item);
    samples.add(since(begin, stand.application().frameOf("PopUpWindow", isSeen)));
    PopupStand::close(qobject_cast<PopUpWindow*>(stand.application().framed()));
  }
  return samples;
}

/// The same way to the screen: one turn of the event loop, then the overlay.
Samples overlays(PopupStand& stand, PopupType kind) {
  Samples samples;
  PopUpWindow* popup = stand.open(kind, PopupStand::campaign(kind));
  popup->hide();  // it is only what the overlays mirror
  for (int i = 0; i < kOpenings; ++i) {
    const auto begin = Clock::now();
    QTimer::singleShot(0, &stand.window(), [&] {
      auto* overlay = new PlainOverlay(popup, &stand.window());
      overlay->show();
      overlay->raise();
    });
    samples.add(since(begin, stand.application().frameOf(PlainOverlay::name)));
    QWidget* overlay = stand.application().framed();
    overlay->deleteLater();
    WatchedApplication::spinUntilGone(overlay);
  }
  PopupStand::close(popup);
  return samples;
}

void measure(PopupStand& stand, PopupType kind) {
  popups(stand, kind, 5);
  const Samples ours = popups(stand, kind, kOpenings);
  const Samples bare = overlays(stand, kind);
  row(std::string(rawValue(kind)) + ", the whole popup",
      "median " + microseconds(ours.median()) + ", 99 % " + microseconds(ours.quantile(0.99)),
      "bare Qt: median " + microseconds(bare.median()) + ", 99 % " +
          microseconds(bare.quantile(0.99)) + "; wanted 50000 µs");
}

}  // namespace

void frameBench() {
  section("from the show operation to the first painted frame, 1280 x 800");
  PopUpOptions still;
  still.reducedMotion = true;
  PopupStand stand(still);
  for (const PopupType kind : PopupStand::kinds) measure(stand, kind);
  stand.setOptions({});
  const Samples faded = popups(stand, PopupType::survey, kFadedOpenings);
  row("SURVEY, the first frame of its fade",
      "median " + microseconds(faded.median()) + ", 99 % " + microseconds(faded.quantile(0.99)),
      "one frame later by design");
}

}  // namespace kifo::bench
