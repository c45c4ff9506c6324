// Where things stand, in logical pixels. With KIFO_PORTRAITS set to a directory the pictures of
// every campaign are saved there, to be looked at.
#include <QDir>

#include "tests/views/Campaigns.h"
#include "tests/views/Pixels.h"
#include "tests/views/PopupFixture.h"

namespace kifo::testing {
namespace {

const std::set<std::string> kPieces = {
    "popupTitle",          "popupImageView", "popupImageViewList", "pageIndicator",
    "popupDescription",    "couponLabel",    "copyButton",         "popupQuestion",
    "buttonsTableview",    "sliderMinLabel", "scoreValueLabel",    "sliderMaksLabel",
    "emojiCollectionView", "slider",         "fieldView",          "submitButton"};

class LayoutTest : public PopupTest {
 protected:
  /// The panel's pieces as they are read: from top to bottom, and along each row.
  std::vector<std::string> reading() {
    auto parts = toolkit->parts();
    std::erase_if(
        parts, [](const auto& each) { return !kPieces.contains(each.name) || each.box.isEmpty(); });
    std::ranges::sort(parts, {}, [](const auto& each) {
      const bool centred = each.name == "scoreValueLabel";
      return std::pair(each.box.y(), centred ? each.box.center().x() : each.box.x());
    });
    std::vector<std::string> names;
    for (const auto& each : parts) names.push_back(each.name);
    return names;
  }
  QRect windowBox() { return {QPoint(), toolkit->window().size()}; }
};

TEST_P(LayoutTest, ThePanelIsInsetByTheScreensMarginsAndNeverWiderThan480) {
  const std::pair<int, int> widths[] = {{320, 258}, {399, 337}, {400, 330}, {3840, 480}};
  for (const auto& [window, expected] : widths) {
    toolkit->resize({window, 900});
    present("POPUP");
    const QRect panel = box("popupView");
    EXPECT_EQ(panel.width(), expected);
    EXPECT_NEAR(panel.center().x(), windowBox().center().x(), 1);
    EXPECT_NEAR(panel.center().y(), windowBox().center().y(), 1);
    const QRect close = box("closeButton");
    EXPECT_EQ(close.size(), QSize(40, 40));
    EXPECT_EQ(close.right(), panel.right());
    EXPECT_EQ(close.bottom() + 1 + 8, panel.top());
    dismiss();
  }
}

TEST_P(LayoutTest, PiecesFollowEachOtherInTheOrderOfReading) {
  toolkit->resize({414, 1100});  // no panel scrolls, so that submit stands with the other pieces
  campaign("SCORE");
  request->preferences.questionText = "How likely?";
  pictures(2);
  item->maxScore = 10;
  item->coupon = Coupon{{"HALF-OF-ALL-SUMMER", "000000", "FFFFFF", "40"}, {}, {"000000", "4"}};
  item->defaultFreeText = DefaultFreeText{std::nullopt, "Why?"};
  submitButton();
  present();
  EXPECT_THAT(reading(), ElementsAre("popupTitle", "popupImageViewList", "pageIndicator",
                                     "popupDescription", "couponLabel", "copyButton",
                                     "popupQuestion", "sliderMinLabel", "scoreValueLabel",
                                     "sliderMaksLabel", "slider", "fieldView", "submitButton"));
  EXPECT_LT(box("couponLabel").height(), 60) << "the code is made to fit";
  dismiss();

  request->preferences.images.resize(1);
  item->coupon.reset();
  campaign("SURVEY");
  choices(4);
  present();
  EXPECT_THAT(reading(),
              ElementsAre("popupTitle", "popupImageView", "popupDescription", "popupQuestion",
                          "buttonsTableview", "fieldView", "submitButton"));
  EXPECT_EQ(box("popupImageView").size(), QSize(344, 172));
  EXPECT_EQ(box("buttonsTableview").height(), 200) << "four rows";
  dismiss();

  present("EMOJI");
  EXPECT_EQ(reading().at(4), "emojiCollectionView");
  dismiss();
  choices(6);
  present();
  EXPECT_GT(box("emojiButton", 9).top(), box("emojiButton", 0).bottom()) << "in rows";
}

TEST_P(LayoutTest, APanelWithoutFreeTextIsClosedUpUnlessTheHostKeepsItsRoom) {
  campaign("POPUP");
  request->preferences.buttons = {option("b1", "One", "#0A5CD8"), option("b2", "Two", "#0A5CD8")};
  submitButton();
  for (const bool keeps : {false, true}) {
    options.keepsFreeTextRoom = keeps;
    present();
    EXPECT_EQ(box("popupView").height(), keeps ? 395 : 316);
    EXPECT_EQ(box("submitButton").bottom() + 8, box("popupView").bottom());
    dismiss();
  }
}

TEST_P(LayoutTest, WhereThePanelScrollsItsSubmitButtonStaysInSightIfThereIsRoom) {
  campaign("OPEN_ENDED");
  request->preferences.detailText = std::string(3000, 'x');
  submitButton();
  for (const auto& [height, stays] : {std::pair(700, true), std::pair(260, false)}) {
    toolkit->resize({414, height});
    present();
    EXPECT_EQ(!part("submitButton").seen.isEmpty(), stays);
    const int before = box("submitButton").y();
    for (int i = 0; i < 99; ++i) key(Qt::Key_PageDown);
    EXPECT_EQ(box("submitButton").y() == before, stays);
    click("Send");
    EXPECT_EQ(reports().size(), 1u);
    reports().clear();
  }
}

/// The widths of the lines of dark text in a picture.
std::vector<int> lineWidths(const QImage& picture) {
  std::vector<int> widths;
  bool inLine = false;
  for (int y = 0; y < picture.height(); ++y) {
    int first = -1;
    int last = -1;
    for (int x = 0; x < picture.width(); ++x) {
      if (picture.pixelColor(x, y).lightness() > 128) continue;
      if (first < 0) first = x;
      last = x;
    }
    if (first >= 0 && !inLine) widths.push_back(0);
    inLine = first >= 0;
    if (inLine) widths.back() = std::max(widths.back(), last - first);
  }
  return widths;
}

TEST_P(LayoutTest, TheLinesOfATitleAreOfAboutTheSameLength) {
  std::size_t most = 0;
  for (int words = 6; words < 30; words += 2) {
    campaign("POPUP");
    request->preferences.title = QString("sun ").repeated(words).trimmed().toStdString();
    present();
    settle();
    const auto widths = lineWidths(cut(toolkit->picture(), box("popupTitle")));
    ASSERT_FALSE(widths.empty());
    EXPECT_GT(std::ranges::min(widths), std::ranges::max(widths) * 0.6) << words;
    most = std::max(most, widths.size());
    dismiss();
  }
  EXPECT_GE(most, 3u);
}

TEST_P(LayoutTest, RightToLeftTextMirrorsThePanel) {
  campaign("SCORE");
  item->maxScore = 10;
  item->defaultFreeText = DefaultFreeText{};
  request->preferences.title = "قيم زيارتك";
  present();
  EXPECT_EQ(box("closeButton").left(), box("popupView").left());
  EXPECT_EQ(box("sliderMinLabel").right(), box("slider").right());
  EXPECT_EQ(box("textFieldCountLabel").x(), box("textField").x());
  clickAt({box("slider").left() + 10, box("slider").center().y()});
  EXPECT_EQ(toolkit->state()->sliderValue, 10.f);
  key(Qt::Key_Right);
  EXPECT_EQ(toolkit->state()->sliderValue, 9.f);
  for (int i = 0; i < 2; ++i) key(Qt::Key_Left);
  EXPECT_EQ(toolkit->state()->sliderValue, 10.f);
  dismiss();

  campaign("EMOJI");
  request->preferences.title = "قيم زيارتك";
  choices(2);
  present();
  key(Qt::Key_Tab);
  key(Qt::Key_Left);
  EXPECT_TRUE(user.named("Choice 2")->state().focused);
}

TEST_P(LayoutTest, TheKeyboardLiftsTheViewByHalfItsHeightOnce) {
  present("OPEN_ENDED");
  const QRect close = box("closeButton");
  toolkit->keyboard({0, 0, 0, 0.5});
  EXPECT_FALSE(toolkit->state()->isKeyboardSizeAdded);
  toolkit->keyboard({0, 500, 414, 300});
  toolkit->keyboard({0, 400, 414, 400});
  EXPECT_TRUE(toolkit->state()->isKeyboardSizeAdded);
  EXPECT_EQ(box("closeButton"), close.translated(0, -150));
  toolkit->keyboard({});
  EXPECT_EQ(box("closeButton"), close);
  EXPECT_FALSE(toolkit->state()->isKeyboardSizeAdded);
}

TEST_P(LayoutTest, ATallPanelKeepsItsFieldInSightAboveAKeyboard) {
  toolkit->resize({320, 480});
  campaign("OPEN_ENDED");
  request->preferences.detailText = std::string(600, 'x');
  submitButton();
  present();
  key(Qt::Key_Tab);
  toolkit->keyboard({0, 280, 320, 200});
  settle();
  const QRect seen(0, 0, 320, 280);
  EXPECT_TRUE(seen.contains(box("closeButton")));
  EXPECT_TRUE(seen.contains(box("textField")));
  EXPECT_EQ(part("textField").seen, box("textField"));
}

TEST_P(LayoutTest, TheWindowsSizeIsFollowedAndAnswerAndFocusAreKept) {
  campaign("SCORE");
  item->maxScore = 10;
  item->defaultFreeText = DefaultFreeText{};
  request->preferences.image = "https://pictures.example/1.png";
  present();
  click(piece("textField"));
  user.type("kept");
  EXPECT_EQ(toolkit->state()->imageViewHeight, 172);
  toolkit->resize({1000, 600});
  settle();
  EXPECT_EQ(box("popupView").width(), 480);
  EXPECT_NEAR(box("popupView").center().x(), 500, 1);
  EXPECT_EQ(toolkit->state()->imageViewHeight, 240);
  toolkit->resize({320, 480});
  settle();
  EXPECT_EQ(box("popupView").width(), 258);
  EXPECT_EQ(focused(), "textField");
  EXPECT_FALSE(part("textField").seen.isEmpty());
  EXPECT_EQ(toolkit->state()->freeText, "kept");
}

KIFO_ON_EACH_TOOLKIT(LayoutTest);

struct Portrait {
  QSize window;
  double fontScale;
};

class PortraitTest
    : public PopupFixture,
      public ::testing::WithParamInterface<std::tuple<PopupToolkit::Kind, Portrait>> {
 protected:
  PortraitTest() : PopupFixture(std::get<0>(GetParam()).make()) {}

  void save(const Campaign& campaign, const Portrait& portrait) {
    const QString directory = qEnvironmentVariable("KIFO_PORTRAITS");
    if (directory.isEmpty()) return;
    QDir().mkpath(directory);
    toolkit->picture().save(QStringLiteral("%1/%2-%3x%4-%5-%6.png")
                                .arg(directory, QString::fromStdString(campaign.name))
                                .arg(portrait.window.width())
                                .arg(portrait.window.height())
                                .arg(portrait.fontScale)
                                .arg(QString::fromStdString(std::get<0>(GetParam()).name)));
  }
};

bool isEmptyRow(const QImage& image, int y) {
  for (int x = 0; x < image.width(); ++x) {
    if (image.pixelColor(x, y).alpha() > 40) return false;
  }
  return true;
}

/// No letter reaches the upper or the lower edge of where it may be painted.
void expectWhole(const PopupToolkit::Part& label) {
  const double scale = qGuiApp->devicePixelRatio();
  QImage ink(label.box.size() * scale, QImage::Format_ARGB32);
  ink.setDevicePixelRatio(scale);
  ink.fill(Qt::transparent);
  QPainter painter(&ink);
  label.paint(painter);
  painter.end();
  EXPECT_TRUE(isEmptyRow(ink, 0) && isEmptyRow(ink, ink.height() - 1)) << label.name;
}

/// The score's bounds share its row on purpose, and stand at the ends of it.
QRect placeOf(const PopupToolkit::Part& part) {
  const int bound = part.name == "scoreValueLabel" ? part.box.width() / 3 : 0;
  return part.box.adjusted(bound, 0, -bound, 0);
}

void expectApart(std::vector<PopupToolkit::Part> parts, const QRect& content) {
  std::erase_if(parts, [](const auto& each) {
    return each.box.isEmpty() || each.name == "fieldView" ||
           !(kPieces.contains(each.name) || each.name.starts_with("textField"));
  });
  for (std::size_t i = 0; i < parts.size(); ++i) {
    EXPECT_TRUE(content.contains(parts[i].box)) << parts[i].name;
    for (std::size_t j = 0; j < i; ++j) {
      EXPECT_FALSE(placeOf(parts[i]).intersects(placeOf(parts[j])))
          << parts[i].name << " and " << parts[j].name;
    }
  }
}

TEST_P(PortraitTest, NothingIsClippedOverlappingOrOutside) {
  const Portrait& portrait = std::get<1>(GetParam());
  options.fontScale = portrait.fontScale;
  fake.http->setHandler([](const HttpRequest&) {
    return HttpAnswer{{}, 200, pictureBytes({960, 480}, QColor("#60A5FA"))};
  });
  toolkit->resize(portrait.window);
  for (const Campaign& campaign : campaigns(fake)) {
    SCOPED_TRACE(campaign.name);
    toolkit->present(campaign.request, options);
    finishDecoding();
    const QRect window(QPoint(), portrait.window);
    EXPECT_TRUE(window.contains(box("closeButton")));
    EXPECT_TRUE(window.contains(box("popupView")));
    toolkit->expectNothingCut();
    auto parts = toolkit->parts();
    for (const auto& each : parts) {
      if (each.isText && !each.box.isEmpty() && each.name != "couponLabel") expectWhole(each);
    }
    // A submit button that stays lies over what is scrolled away below it.
    const bool scrolls = box("contentView").height() > box("panelScroll").height();
    std::erase_if(parts, [&](const auto& each) { return scrolls && each.name == "submitButton"; });
    expectApart(std::move(parts), box("contentView"));
    save(campaign, portrait);
    dismiss();
  }
}

const std::vector<Portrait> kPortraits = {
    {{414, 800}, 1.0},  {{320, 480}, 1.0},  {{320, 480}, 2.0},   {{568, 320}, 1.5},
    {{1280, 800}, 1.0}, {{800, 1100}, 2.0}, {{3840, 2160}, 1.0}, {{3840, 2160}, 2.0}};
std::string nameOf(const ::testing::TestParamInfo<PortraitTest::ParamType>& info) {
  const auto& [toolkit, portrait] = info.param;
  return toolkit.name + "_" + std::to_string(portrait.window.width()) + "_" +
         std::to_string(static_cast<int>(portrait.fontScale * 10));
}
INSTANTIATE_TEST_SUITE_P(Windows, PortraitTest,
                         ::testing::Combine(::testing::ValuesIn(PopupToolkit::all()),
                                            ::testing::ValuesIn(kPortraits)),
                         nameOf);

}  // namespace
}  // namespace kifo::testing
