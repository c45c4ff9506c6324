// One campaign looks the same and reads the same in both toolkits.
#include <QAccessible>
#include <QWidget>

#include "tests/views/Campaigns.h"
#include "tests/views/PopupFixture.h"

namespace kifo::testing {
namespace {

struct Seen {
  QRect box;
  QString name;
  QString description;
  QAccessible::Role role;
  bool isChecked;
  bool isFocusable;
};

/// What assistive technology sees of the pieces, by object name and number.
using Pieces = std::map<std::string, Seen>;

const std::set<std::string> kPieces = {
    "popupView",          "popupTitle",          "popupImageView",
    "popupImageViewList", "pageIndicator",       "popupDescription",
    "couponLabel",        "copyButton",          "popupQuestion",
    "buttonsTableview",   "emojiCollectionView", "scoreValueLabel",
    "sliderMinLabel",     "sliderMaksLabel",     "slider",
    "textFieldLabel",     "textField",           "textFieldCountLabel",
    "submitButton",       "closeButton",         "selectButton",
    "titleLbl",           "emojiButton"};

void collect(QAccessibleInterface* control, QPoint origin, Pieces& pieces) {
  if (!control || control->state().invisible) return;
  const std::string name = control->object() ? control->object()->objectName().toStdString() : "";
  const bool isText = control->role() == QAccessible::StaticText;
  // A panel that cannot be pressed is nothing to a screen reader; a row's text is heard as the row.
  const bool isSilent = (name == "titleLbl" && isText) ||
                        (name == "popupView" && control->role() != QAccessible::Link);
  const bool isPiece = kPieces.contains(name) && !isSilent;
  if (isPiece && !control->rect().isEmpty()) {
    int number = 0;
    while (pieces.contains(name + std::to_string(number))) ++number;
    QRect box = control->rect();
    // The style says where a radio button's mark would be.
    if (auto* widget = qobject_cast<QWidget*>(control->object())) {
      box = {widget->mapToGlobal(QPoint()), widget->size()};
    }
    box.translate(-origin);
    // The whole cell is the target in both.
    if (name == "emojiButton") box = QRect(box.center() - QPoint(24, 24), QSize(50, 50));
    pieces[name + std::to_string(number)] = {box,
                                             control->text(QAccessible::Name),
                                             control->text(QAccessible::Description),
                                             control->role(),
                                             control->state().checked == 1,
                                             control->state().focusable == 1};
  }
  for (int i = 0; i < control->childCount(); ++i) collect(control->child(i), origin, pieces);
}

Pieces piecesOf(QWindow& window) {
  Pieces pieces;
  collect(window.accessibleRoot(), window.mapToGlobal(QPoint()), pieces);
  return pieces;
}

struct Setting {
  QSize window;
  double fontScale;
};

class PopupComparisonTest : public SettledTest, public ::testing::WithParamInterface<Setting> {};

void expectEqual(const Pieces& widgets, const Pieces& quick) {
  for (const auto& [name, seen] : widgets) {
    SCOPED_TRACE(name);
    const auto found = quick.find(name);
    if (found == quick.end()) {
      ADD_FAILURE() << "only Widgets has it";
      continue;
    }
    const Seen& other = found->second;
    EXPECT_EQ(other.name, seen.name);
    EXPECT_EQ(other.description, seen.description);
    EXPECT_EQ(other.role, seen.role);
    EXPECT_EQ(other.isChecked, seen.isChecked);
    const QString boxes = QDebug::toString(seen.box) + " and " + QDebug::toString(other.box);
    EXPECT_NEAR(other.box.x(), seen.box.x(), 1) << boxes.toStdString();
    EXPECT_NEAR(other.box.y(), seen.box.y(), 1) << boxes.toStdString();
    EXPECT_NEAR(other.box.width(), seen.box.width(), 1) << boxes.toStdString();
    EXPECT_NEAR(other.box.height(), seen.box.height(), 1) << boxes.toStdString();
  }
  for (const auto& [name, seen] : quick) {
    EXPECT_TRUE(widgets.contains(name)) << "only Qt Quick has " << name;
  }
}

/// The share of pixels that differ by more than the smoothing of an edge does.
double difference(const QImage& one, const QImage& other) {
  if (one.size() != other.size()) return 1;
  int different = 0;
  for (int y = 0; y < one.height(); ++y) {
    for (int x = 0; x < one.width(); ++x) {
      const QColor a = one.pixelColor(x, y);
      const QColor b = other.pixelColor(x, y);
      const int most = std::max({std::abs(a.red() - b.red()), std::abs(a.green() - b.green()),
                                 std::abs(a.blue() - b.blue())});
      different += most > 24;
    }
  }
  return 1.0 * different / (one.width() * one.height());
}

TEST_P(PopupComparisonTest, OneCampaignLooksAndReadsTheSameInBothToolkits) {
  fake.http->setHandler([](const HttpRequest&) {
    return HttpAnswer{{}, 200, pictureBytes({960, 480}, QColor("#60A5FA"))};
  });
  PopUpOptions options;
  options.reducedMotion = true;
  options.fontScale = GetParam().fontScale;
  for (const Campaign& campaign : campaigns(fake)) {
    SCOPED_TRACE(campaign.name);
    Pieces pieces[2];
    QImage pictures[2];
    for (const std::size_t i : {0, 1}) {
      const PopupToolkit::Kind kind = PopupToolkit::all().at(i);
      const auto toolkit = kind.make();
      toolkit->resize(GetParam().window);
      toolkit->present(campaign.request, options);
      finishDecoding();
      pieces[i] = piecesOf(toolkit->window());
      pictures[i] = toolkit->picture().convertToFormat(QImage::Format_RGB32);
      settle();
    }
    expectEqual(pieces[0], pieces[1]);
    EXPECT_LT(difference(pictures[0], pictures[1]), 0.05);
  }
}

INSTANTIATE_TEST_SUITE_P(Windows, PopupComparisonTest,
                         ::testing::Values(Setting{{414, 800}, 1.0}, Setting{{320, 480}, 2.0},
                                           Setting{{568, 320}, 1.5}, Setting{{1280, 800}, 1.0}));

}  // namespace
}  // namespace kifo::testing
