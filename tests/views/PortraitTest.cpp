// Every campaign at every size: nothing clipped, overlapping or outside. With KIFO_PORTRAITS set to
// a directory the pictures are saved there, to be looked at.
#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QDir>
#include <QLabel>
#include <QPainter>
#include <QRadioButton>
#include <QThreadPool>

#include "Kifo_iOS_Common_Kit/inapp/views/PopupButton.h"
#include "Kifo_iOS_Common_Kit/inapp/views/PopupCloseButton.h"
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

/// Something to look at for every URL: a face for the emojis, a landscape for the rest.
HttpAnswer picture(const HttpRequest& request) {
  const bool face = request.url.find("happy") != std::string::npos ||
                    request.url.find("sad") != std::string::npos ||
                    request.url.find("neutral") != std::string::npos;
  QImage image(face ? QSize(96, 96) : QSize(960, 480), QImage::Format_ARGB32);
  image.fill(Qt::transparent);
  QPainter painter(&image);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  if (face) {
    painter.setBrush(QColor("#FBBF24"));
    painter.drawEllipse(image.rect().adjusted(2, 2, -2, -2));
    painter.setBrush(QColor("#78350F"));
    painter.drawEllipse(28, 32, 10, 14);
    painter.drawEllipse(58, 32, 10, 14);
    painter.setPen(QPen(QColor("#78350F"), 6, Qt::SolidLine, Qt::RoundCap));
    const bool happy = request.url.find("happy") != std::string::npos;
    const bool sad = request.url.find("sad") != std::string::npos;
    if (happy)
      painter.drawArc(26, 36, 44, 36, 200 * 16, 140 * 16);
    else if (sad)
      painter.drawArc(28, 60, 40, 30, 30 * 16, 120 * 16);
    else
      painter.drawLine(32, 66, 64, 66);
  } else {
    QLinearGradient sky(0, 0, 0, 480);
    sky.setColorAt(0, QColor("#60A5FA"));
    sky.setColorAt(1, QColor("#FDE68A"));
    painter.fillRect(image.rect(), sky);
    painter.setBrush(QColor("#FFF7ED"));
    painter.drawEllipse(680, 70, 110, 110);
    painter.setBrush(QColor("#0F766E"));
    painter.drawEllipse(-200, 300, 900, 500);
    painter.setBrush(QColor("#115E59"));
    painter.drawEllipse(400, 340, 900, 500);
  }
  painter.end();
  QByteArray bytes;
  QBuffer buffer(&bytes);
  buffer.open(QIODevice::WriteOnly);
  image.save(&buffer, "PNG");
  return {{}, 200, bytes.toStdString()};
}

struct Portrait {
  QSize window;
  double fontScale;
};

class PortraitTest : public PopupTest, public ::testing::WithParamInterface<Portrait> {};

QString path(const Campaign& campaign, const Portrait& portrait) {
  const QString directory = qEnvironmentVariable("KIFO_PORTRAITS");
  if (directory.isEmpty()) return {};
  QDir().mkpath(directory);
  return QStringLiteral("%1/%2-%3x%4-%5.png")
      .arg(directory, QString::fromStdString(campaign.name))
      .arg(portrait.window.width())
      .arg(portrait.window.height())
      .arg(portrait.fontScale);
}

/// Pieces that share a row on purpose: the score stands between its bounds.
bool mayShare(const QWidget* a, const QWidget* b) {
  const auto bound = [](const QWidget* w) {
    return w->objectName().startsWith("slider") && w->objectName().endsWith("Label");
  };
  return (a->objectName() == "scoreValueLabel" && bound(b)) ||
         (b->objectName() == "scoreValueLabel" && bound(a));
}

void expectApart(const QWidget* parent) {
  const auto pieces = parent->findChildren<QWidget*>(Qt::FindDirectChildrenOnly);
  for (int i = 0; i < pieces.size(); ++i) {
    if (!pieces[i]->isVisible() || pieces[i]->size().isEmpty()) continue;
    EXPECT_TRUE(parent->rect().contains(pieces[i]->geometry()))
        << pieces[i]->objectName().toStdString();
    for (int j = 0; j < i; ++j) {
      if (!pieces[j]->isVisible() || mayShare(pieces[i], pieces[j])) continue;
      EXPECT_FALSE(pieces[i]->geometry().intersects(pieces[j]->geometry()))
          << pieces[i]->objectName().toStdString() << " and "
          << pieces[j]->objectName().toStdString();
    }
  }
}

bool isEmptyRow(const QImage& image, int y) {
  for (int x = 0; x < image.width(); ++x) {
    if (image.pixelColor(x, y).alpha() > 40) return false;
  }
  return true;
}

/// No letter reaches the upper or the lower edge of where it may be painted.
void expectWhole(PopupLabel* label) {
  QImage ink(label->size() * label->devicePixelRatioF(), QImage::Format_ARGB32);
  ink.setDevicePixelRatio(label->devicePixelRatioF());
  ink.fill(Qt::transparent);
  label->render(&ink, {}, {}, {});
  EXPECT_TRUE(isEmptyRow(ink, 0) && isEmptyRow(ink, ink.height() - 1))
      << label->objectName().toStdString() << ": " << label->text().toStdString();
}

void expectRoom(const PopUpWindow* popup) {
  for (auto* label : popup->findChildren<PopupLabel*>()) {
    if (!label->isVisible()) continue;
    EXPECT_GE(label->height(), label->heightFor(label->width())) << label->text().toStdString();
    const bool framed = label->objectName() == "couponLabel";
    if (!framed && !label->size().isEmpty()) expectWhole(label);
  }
  for (const auto* button : popup->findChildren<PopupButton*>()) {
    if (button->isVisible()) {
      EXPECT_GE(button->height(), button->heightFor(button->width()))
          << button->text().toStdString();
    }
  }
}

TEST_P(PortraitTest, NothingIsClippedOverlappingOrOutside) {
  options.fontScale = GetParam().fontScale;
  fake.http->setHandler([](const HttpRequest& asked) { return picture(asked); });
  host->setCentralWidget(new Shop);
  host->resize(GetParam().window);
  for (const Campaign& campaign : campaigns()) {
    SCOPED_TRACE(campaign.name);
    campaign.describe(*request);
    present();
    settle();
    QThreadPool::globalInstance()->waitForDone();
    settle();
    const QRect window = popup->rect();
    const QRect panel = elements().popupView->geometry();
    EXPECT_TRUE(window.contains(panel));
    EXPECT_TRUE(window.contains(elements().closeButton->geometry()));
    expectApart(elements().contentView);
    if (elements().fieldView && elements().fieldView->isVisible())
      expectApart(elements().fieldView);
    expectRoom(popup);
    if (const QString file = path(campaign, GetParam()); !file.isEmpty()) host->grab().save(file);
    popup->dismissView();
    settle();
  }
}

INSTANTIATE_TEST_SUITE_P(Windows, PortraitTest,
                         ::testing::Values(Portrait{{414, 800}, 1.0}, Portrait{{320, 480}, 1.0},
                                           Portrait{{320, 480}, 2.0}, Portrait{{568, 320}, 1.5},
                                           Portrait{{1280, 800}, 1.0},
                                           Portrait{{800, 1100}, 2.0}));
INSTANTIATE_TEST_SUITE_P(GreatWindows, PortraitTest,
                         ::testing::Values(Portrait{{3840, 2160}, 1.0},
                                           Portrait{{3840, 2160}, 2.0}));

}  // namespace
}  // namespace kifo::testing
