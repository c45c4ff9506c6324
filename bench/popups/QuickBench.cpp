// Popups in a Qt Quick scene, beside a bare popup of Qt Quick's own items in the same run.
#include <malloc.h>

#include <QEventLoop>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickView>
#include <memory>

#include "Kifo_iOS_Common_Kit/inapp/InAppReporter.h"
#include "Kifo_iOS_Common_Kit/inapp/quick/QuickPopup.h"
#include "Kifo_iOS_Common_Kit/ports/NullPorts.h"
#include "bench/Table.h"
#include "bench/popups/PopupBenches.h"
#include "bench/popups/PopupStand.h"
#include "platform/qt/QuickPopupPresenter.h"
#include "platform/qt/QuickScreenProvider.h"

namespace kifo::bench {
namespace {

using Clock = WatchedApplication::Clock;

constexpr int kOpenings = 100;
constexpr int kWarmUp = 500;
constexpr int kCycles = 10000;
constexpr std::chrono::milliseconds kFaded{280};

/// The same content as a plain popup has.
constexpr auto kBare = R"(
import QtQuick
Rectangle {
  anchors.fill: parent
  color: "#4d000000"
  MouseArea { anchors.fill: parent; hoverEnabled: true }
  Rectangle {
    anchors.centerIn: parent
    width: 480; height: 366; radius: 16
    Column {
      anchors.fill: parent; anchors.margins: 8; spacing: 8
      Text { width: parent.width; wrapMode: Text.Wrap; font.pixelSize: 20; text: "Your opinion counts" }
      Text { width: parent.width; wrapMode: Text.Wrap; font.pixelSize: 15
             text: "It takes less than a minute, and it helps us a lot." }
      Text { width: parent.width; wrapMode: Text.Wrap; font.pixelSize: 16
             text: "How likely are you to recommend us?" }
      Repeater {
        model: ["Show me the offers", "Remind me later", "No, thanks", "Send"]
        Rectangle {
          required property string modelData
          width: parent.width; height: 44; radius: 8; color: "#0A5CD8"
          Text { anchors.centerIn: parent; text: parent.modelData; color: "white" }
          MouseArea { anchors.fill: parent }
        }
      }
    }
  }
}
)";

/// What the two hosts of the load bench have in common, and what one of them has more.
constexpr auto kHost = R"(
import QtQuick
%1
Item { %2 }
)";

struct Nobody final : InAppReporter {
  void opened(std::shared_ptr<AppCommunicationItem>, std::shared_ptr<ViewController>,
              std::optional<std::string>) override {}
  void answered(std::shared_ptr<AppCommunicationItem>, InAppAnswer, std::shared_ptr<ViewController>,
                std::optional<std::string>) override {}
};

class SceneScreen final : public ViewController, public QuickScreenProvider {
 public:
  explicit SceneScreen(QQuickItem* item) : item_(item) {}
  [[nodiscard]] std::string className() const override { return "BenchScreen"; }
  [[nodiscard]] QQuickItem* item() const override { return item_; }

 private:
  QQuickItem* item_;
};

/// Microseconds from a call to a frame, and those of them that this thread worked.
struct Opening {
  double wall = 0;
  double cpu = 0;
};

class Begin {
 public:
  [[nodiscard]] Opening until(Clock::time_point end) const {
    return {std::chrono::duration<double, std::micro>(end - wall_).count(),
            WatchedApplication::ownTime() - cpu_};
  }

 private:
  const Clock::time_point wall_ = Clock::now();
  const double cpu_ = WatchedApplication::ownTime();
};

/// A host's scene and the presenter that shows popups in it.
class Scene {
 public:
  explicit Scene(bool still, QSize size = {1280, 800}) : bare_(view_.engine()) {
    PopUpOptions options;
    options.reducedMotion = still;
    Platform platform = nullPlatform();
    platform.popups = std::make_shared<QuickPopupPresenter>(options);
    Platform::install(std::move(platform));
    bare_.setData(kBare, {});
    view_.resize(size);
    view_.show();
    QObject::connect(&view_, &QQuickWindow::frameSwapped, &view_, [this] {
      if (!awaited_ || !(*awaited_)()) return;
      frame_ = Clock::now();
    });
    waitFor([] { return true; });
  }
  ~Scene() { Platform::install(nullPlatform()); }

  WatchedApplication& application() { return application_; }

  /// From the show operation to the first frame with the popup.
  Opening open(PopupType kind, const std::shared_ptr<AppCommunicationItem>& item) {
    const Begin begin;
    switch (kind) {
      case PopupType::popup:
        manager_.showNotificationPopUpWindow(screen_, "bench", item, {});
        break;
      case PopupType::survey:
        manager_.showNotificationSurveyPopUpRadioGroupWindow(screen_, "bench", item, {});
        break;
      case PopupType::emoji:
        manager_.showNotificationEmojiPopUpWindow(screen_, "bench", item, {});
        break;
      case PopupType::score:
        manager_.showNotificationScorePopUpWindow(screen_, "bench", item, {});
        break;
      case PopupType::openEnded:
        manager_.showNotificationOpenEndedPopUpWindow(screen_, "bench", item, {});
        break;
    }
    return begin.until(waitFor([this] { return popup() != nullptr; }));
  }
  void close() {
    popup()->dismissView();
    spinUntilGone(popup());
  }

  /// The same for the bare one.
  Opening openBare() {
    const Begin begin;
    QMetaObject::invokeMethod(
        &view_,
        [this] {
          bareItem_ = qobject_cast<QQuickItem*>(bare_.create());
          bareItem_->setParentItem(view_.contentItem());
        },
        Qt::QueuedConnection);
    return begin.until(waitFor([this] { return bareItem_ != nullptr; }));
  }
  void closeBare() {
    bareItem_->deleteLater();
    spinUntilGone(std::exchange(bareItem_, nullptr));
  }

 private:
  QuickPopup* popup() {
    return view_.contentItem()->findChild<QuickPopup*>({}, Qt::FindDirectChildrenOnly);
  }

  Clock::time_point waitFor(const std::function<bool()>& isThere) {
    awaited_ = &isThere;
    frame_.reset();
    view_.update();
    while (!frame_) QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    awaited_ = nullptr;
    return *frame_;
  }

  static void spinUntilGone(QObject* object) {
    QEventLoop loop;
    QObject::connect(object, &QObject::destroyed, &loop, &QEventLoop::quit);
    loop.exec();
  }

  WatchedApplication application_;
  QQuickView view_;
  QQmlComponent bare_;
  QQuickItem* bareItem_ = nullptr;
  std::shared_ptr<SceneScreen> screen_ = std::make_shared<SceneScreen>(view_.contentItem());
  PopupManager manager_{std::make_shared<Nobody>()};
  const std::function<bool()>* awaited_ = nullptr;
  std::optional<Clock::time_point> frame_;
};

struct Openings {
  Samples wall;
  Samples cpu;

  void add(const Opening& opening) {
    wall.add(opening.wall);
    cpu.add(opening.cpu);
  }
  [[nodiscard]] std::string figures() const {
    return "median " + microseconds(wall.median()) + ", 99 % " + microseconds(wall.quantile(0.99)) +
           ", own time " + microseconds(cpu.median());
  }
};

/// One of ours and one bare in turn, so that both have the same neighbours on the machine.
void compareOpenings(Scene& scene, PopupType kind) {
  Openings ours;
  Openings bare;
  for (int i = 0; i < kOpenings; ++i) {
    ours.add(scene.open(kind, PopupStand::campaign(kind)));
    scene.close();
    bare.add(scene.openBare());
    scene.closeBare();
  }
  const double own = ours.cpu.median() / bare.cpu.median();
  row(std::string(rawValue(kind)), ours.figures(),
      "bare Qt Quick: " + bare.figures() + "; " + ratio(own) + " of its own time; wanted 16000 µs",
      {{"own time beside bare Qt Quick", own}});
}

long allocated() {
  const auto info = mallinfo2();
  return static_cast<long>((info.uordblks + info.hblkhd) / 1024);
}

void cycle(Scene& scene, int number) {
  const PopupType kind =
      PopupStand::kinds[static_cast<std::size_t>(number) % std::size(PopupStand::kinds)];
  scene.open(kind, PopupStand::campaign(kind));
  scene.close();
}

}  // namespace

void quickFrameBench() {
  section("in a Qt Quick scene, from the show operation to the first frame, 1280 x 800");
  Scene scene(true);
  const Opening first = scene.open(PopupType::popup, PopupStand::campaign(PopupType::popup));
  scene.close();
  const Opening bare = scene.openBare();
  scene.closeBare();
  row("the first popup of the process, a POPUP",
      microseconds(first.wall) + ", own time " + microseconds(first.cpu),
      "bare Qt Quick: " + microseconds(bare.wall) + ", own time " + microseconds(bare.cpu) +
          "; wanted 50000 µs");
  for (const PopupType kind : PopupStand::kinds) compareOpenings(scene, kind);
}

void quickLoadBench() {
  section("loading a QML host of one item, in one process one after the other");
  const WatchedApplication application;
  QQmlEngine engine;
  const auto load = [&engine](const char* import, const char* content) {
    const Begin begin;
    QQmlComponent host(&engine);
    host.setData(QByteArray(kHost).replace("%1", import).replace("%2", content), {});
    const std::unique_ptr<QObject> item(host.create());
    return begin.until(Clock::now());
  };
  load("", "");
  const Opening layouts = load("import QtQuick.Layouts", "ColumnLayout {}");
  const Opening kifo = load("import Kifo", "KifoScreen { name: \"Menu\" }");
  const Opening again = load("import Kifo", "KifoScreen { name: \"Menu\" }");
  const auto figures = [](const Opening& opening) {
    return microseconds(opening.wall) + ", own time " + microseconds(opening.cpu);
  };
  row("import Kifo with one KifoScreen", figures(kifo),
      "import QtQuick.Layouts with one ColumnLayout: " + figures(layouts) + "; " +
          ratio(kifo.cpu / layouts.cpu) + " of its own time");
  row("the same again", figures(again), "");
}

void quickStretchBench() {
  section(
      "in a Qt Quick scene, the longest stretch on the UI thread while a popup fades in and out");
  Scene scene(false);
  const auto hardest = [&scene](const auto& opensAndCloses) {
    double most = 0;
    for (int run = 0; run < 6; ++run) {
      scene.application().forgetStretches();
      opensAndCloses();
      if (run > 0) most = std::max(most, scene.application().hardest().cpu);
    }
    return most;
  };
  const double bare = hardest([&scene] {
    scene.openBare();
    scene.closeBare();
  });
  for (const PopupType kind : PopupStand::kinds) {
    const double ours = hardest([&scene, kind] {
      scene.open(kind, PopupStand::campaign(kind));
      WatchedApplication::spin(kFaded);
      scene.close();
    });
    row(std::string(rawValue(kind)), "own time at most " + microseconds(ours),
        "bare Qt Quick: " + microseconds(bare) + "; " + ratio(ours / bare) +
            " of it; wanted 8000 µs after the first",
        {{"hardest stretch beside bare Qt Quick", ours / bare}});
  }
}

void quickCyclesBench() {
  section("in a Qt Quick scene, what " + std::to_string(kCycles) + " popups leave behind");
  Scene scene(true, {414, 800});
  for (int i = 0; i < kWarmUp; ++i) cycle(scene, i);
  long before = allocated();
  for (int i = 0; i < kCycles; ++i) cycle(scene, i);
  const long grown = allocated() - before;
  row("opened, painted, closed", std::to_string(grown) + " KiB", "wanted < 1024 KiB");
  const auto bare = [&scene] {
    scene.openBare();
    scene.closeBare();
  };
  for (int i = 0; i < kWarmUp; ++i) bare();
  before = allocated();
  for (int i = 0; i < kCycles; ++i) bare();
  row("the floor: bare Qt Quick", std::to_string(allocated() - before) + " KiB", "");
}

}  // namespace kifo::bench
