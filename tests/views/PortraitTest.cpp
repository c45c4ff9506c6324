// Every campaign at every size: nothing clipped, overlapping or outside. With KIFO_PORTRAITS set to
// a directory the pictures are saved there, to be looked at.
#include <QDir>

#include "tests/views/Campaigns.h"
#include "tests/views/PopupFixture.h"

namespace kifo::testing {
namespace {

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

/// The score's bounds share its row on purpose, and stand at the ends of it.
QRect placeOf(const QWidget* piece) {
  const int bound = piece->objectName() == "scoreValueLabel" ? piece->width() / 3 : 0;
  return piece->geometry().adjusted(bound, 0, -bound, 0);
}

void expectApart(const QWidget* parent) {
  const auto pieces = parent->findChildren<QWidget*>(Qt::FindDirectChildrenOnly);
  for (int i = 0; i < pieces.size(); ++i) {
    if (!pieces[i]->isVisible() || pieces[i]->size().isEmpty()) continue;
    EXPECT_TRUE(parent->rect().contains(pieces[i]->geometry()))
        << pieces[i]->objectName().toStdString();
    for (int j = 0; j < i; ++j) {
      if (!pieces[j]->isVisible()) continue;
      EXPECT_FALSE(placeOf(pieces[i]).intersects(placeOf(pieces[j])))
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
void expectWhole(TextLabel* label) {
  QImage ink(label->size() * label->devicePixelRatioF(), QImage::Format_ARGB32);
  ink.setDevicePixelRatio(label->devicePixelRatioF());
  ink.fill(Qt::transparent);
  label->render(&ink, {}, {}, {});
  EXPECT_TRUE(isEmptyRow(ink, 0) && isEmptyRow(ink, ink.height() - 1))
      << label->objectName().toStdString() << ": " << label->text().toStdString();
}

void expectRoom(const PopUpWindow* popup) {
  for (auto* label : popup->findChildren<TextLabel*>()) {
    if (!label->isVisible()) continue;
    EXPECT_GE(label->height(), label->heightForWidth(label->width()))
        << label->text().toStdString();
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
  fake.http->setHandler([](const HttpRequest&) {
    return HttpAnswer{{}, 200, pictureBytes({960, 480}, QColor("#60A5FA"))};
  });
  host->resize(GetParam().window);
  for (const Campaign& campaign : campaigns()) {
    SCOPED_TRACE(campaign.name);
    campaign.describe(*request);
    present();
    finishDecoding();
    const QRect window = popup->rect();
    const QRect panel = elements().popupView->geometry();
    EXPECT_TRUE(window.contains(panel));
    EXPECT_TRUE(window.contains(elements().closeButton->geometry()));
    expectApart(elements().contentView);
    if (elements().fieldView && elements().fieldView->isVisible())
      expectApart(elements().fieldView);
    expectRoom(popup);
    if (const QString file = path(campaign, GetParam()); !file.isEmpty()) host->grab().save(file);
    dismiss();
  }
}

INSTANTIATE_TEST_SUITE_P(Windows, PortraitTest,
                         ::testing::Values(Portrait{{414, 800}, 1.0}, Portrait{{320, 480}, 1.0},
                                           Portrait{{320, 480}, 2.0}, Portrait{{568, 320}, 1.5},
                                           Portrait{{1280, 800}, 1.0}, Portrait{{800, 1100}, 2.0}));
INSTANTIATE_TEST_SUITE_P(GreatWindows, PortraitTest,
                         ::testing::Values(Portrait{{3840, 2160}, 1.0},
                                           Portrait{{3840, 2160}, 2.0}));

}  // namespace
}  // namespace kifo::testing
