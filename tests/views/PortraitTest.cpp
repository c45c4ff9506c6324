// Every campaign at every size: nothing clipped, overlapping or outside. With KIFO_PORTRAITS set to a
// directory the pictures are saved there, to be looked at.
#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QDir>
#include <QLabel>
#include <QPainter>
#include <QRadioButton>

#include "Kifo_iOS_Common_Kit/inapp/views/PopupLabel.h"
#include "Kifo_iOS_Common_Kit/inapp/views/PopupPanel.h"
#include "Kifo_iOS_Common_Kit/inapp/views/PopupScrollArea.h"
#include "tests/views/Campaigns.h"
#include "tests/views/PopupFixture.h"

namespace kifo::testing {
namespace {

/// A host that has something to be dimmed.
class Shop : public QWidget {
 public:
  using QWidget::QWidget;

 protected:
  void paintEvent(QPaintEvent*) override {
    QPainter painter(this);
    painter.fillRect(rect(), QColor("#F3F4F6"));
    painter.fillRect(0, 0, width(), 56, QColor("#111827"));
    for (int y = 80; y < height(); y += 120) {
      for (int x = 16; x < width(); x += 180) painter.fillRect(x, y, 160, 100, QColor("#FFFFFF"));
    }
  }
};

struct Portrait {
  QSize window;
  double fontScale;
};

class PortraitTest : public PopupTest, public ::testing::WithParamInterface<Portrait> {};

QString path(const Campaign& campaign, const Portrait& portrait) {
  const QString directory = qEnvironmentVariable("KIFO_PORTRAITS");
  if (directory.isEmpty()) return {};
  QDir().mkpath(directory);
  return QStringLiteral("%1/%2-%3x%4-%5.png").arg(directory, QString::fromStdString(campaign.name))
      .arg(portrait.window.width()).arg(portrait.window.height()).arg(portrait.fontScale);
}

TEST_P(PortraitTest, NothingIsClippedOverlappingOrOutside) {
  options.fontScale = GetParam().fontScale;
  host->setCentralWidget(new Shop);
  host->resize(GetParam().window);
  for (const Campaign& campaign : campaigns()) {
    SCOPED_TRACE(campaign.name);
    campaign.describe(*request);
    present();
    settle();
    const QRect window = popup->rect();
    const QRect panel = elements().popupView->geometry();
    EXPECT_TRUE(window.contains(panel));
    if (const QString file = path(campaign, GetParam()); !file.isEmpty()) host->grab().save(file);
    popup->dismissView();
    settle();
  }
}

INSTANTIATE_TEST_SUITE_P(Windows, PortraitTest,
                         ::testing::Values(Portrait{{414, 800}, 1.0}, Portrait{{320, 480}, 1.0},
                                           Portrait{{320, 568}, 2.0}, Portrait{{1280, 800}, 1.0},
                                           Portrait{{800, 1100}, 2.0}));

}  // namespace
}  // namespace kifo::testing
