// One campaign, and one alert, looks the same and reads the same in both toolkits.
#include <QAccessible>
#include <QWidget>

#include "tests/alert/AlertFixture.h"
#include "tests/views/Campaigns.h"

namespace kifo::testing {
namespace {

struct Seen {
  QRect box;
  QString name;
  QString description;
  QAccessible::Role role;
  bool isChecked;
};
/// What assistive technology sees of the pieces, by a name and a number.
using Pieces = std::map<std::string, Seen>;
/// The name of a piece; empty for what is none.
using NameOf = std::string (*)(const QAccessibleInterface& control);

QRect boxOf(const QAccessibleInterface& control, const std::string& name) {
  // The style says where a radio button's mark would be.
  const auto* widget = qobject_cast<QWidget*>(control.object());
  const QRect box = widget ? QRect(widget->mapToGlobal(QPoint()), widget->size()) : control.rect();
  // The whole cell is the target in both.
  return name == "emojiButton" ? QRect(box.center() - QPoint(24, 24), QSize(50, 50)) : box;
}

void collect(QAccessibleInterface* control, QPoint origin, NameOf nameOf, Pieces& pieces) {
  if (!control || control->state().invisible) return;
  const std::string name = nameOf(*control);
  if (!name.empty() && !control->rect().isEmpty()) {
    int number = 0;
    while (pieces.contains(name + std::to_string(number))) ++number;
    const QString heard = control->text(QAccessible::Name);
    const QString description = control->text(QAccessible::Description);
    pieces[name + std::to_string(number)] = {
        boxOf(*control, name).translated(-origin), heard,
        // Of a field, Qt Widgets says the placeholder as name and as description.
        description == heard ? QString() : description, control->role(),
        control->state().checked == 1};
  }
  for (int i = 0; i < control->childCount(); ++i) {
    collect(control->child(i), origin, nameOf, pieces);
  }
}

struct View {
  View(QWindow& window, const QImage& seen, NameOf nameOf)
      : picture(seen.convertToFormat(QImage::Format_RGB32)) {
    collect(window.accessibleRoot(), window.mapToGlobal(QPoint()), nameOf, pieces);
  }
  Pieces pieces;
  QImage picture;
};

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

void expectEqual(const View& widgets, const View& scene, double most) {
  for (const auto& [name, seen] : widgets.pieces) {
    SCOPED_TRACE(name);
    const auto found = scene.pieces.find(name);
    if (found == scene.pieces.end()) {
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
  for (const auto& [name, seen] : scene.pieces) {
    EXPECT_TRUE(widgets.pieces.contains(name)) << "only Qt Quick has " << name;
  }
  EXPECT_LT(difference(widgets.picture, scene.picture), most);
}

// ---- Popups

std::string popupPiece(const QAccessibleInterface& control) {
  static const std::set<std::string> pieces = {
      "popupView",          "popupTitle",          "popupImageView",
      "popupImageViewList", "pageIndicator",       "popupDescription",
      "couponLabel",        "copyButton",          "popupQuestion",
      "buttonsTableview",   "emojiCollectionView", "scoreValueLabel",
      "sliderMinLabel",     "sliderMaksLabel",     "slider",
      "textFieldLabel",     "textField",           "textFieldCountLabel",
      "submitButton",       "closeButton",         "selectButton",
      "titleLbl",           "emojiButton"};
  const std::string name = control.object() ? control.object()->objectName().toStdString() : "";
  const bool isText = control.role() == QAccessible::StaticText;
  // A panel that cannot be pressed is nothing to a screen reader; a row's text is heard as the row.
  const bool isSilent = (name == "titleLbl" && isText) ||
                        (name == "popupView" && control.role() != QAccessible::Link);
  return pieces.contains(name) && !isSilent ? name : "";
}

struct Setting {
  QSize window;
  double fontScale;
};
class PopupComparisonTest : public SettledTest, public ::testing::WithParamInterface<Setting> {};

TEST_P(PopupComparisonTest, OneCampaignLooksAndReadsTheSameInBothToolkits) {
  fake.http->setHandler([](const HttpRequest&) {
    return HttpAnswer{{}, 200, pictureBytes({960, 480}, QColor("#60A5FA"))};
  });
  PopUpOptions options;
  options.reducedMotion = true;
  options.fontScale = GetParam().fontScale;
  for (const Campaign& campaign : campaigns(fake)) {
    SCOPED_TRACE(campaign.name);
    std::vector<View> views;
    for (const PopupToolkit::Kind& kind : PopupToolkit::all()) {
      const auto toolkit = kind.make();
      toolkit->resize(GetParam().window);
      toolkit->present(campaign.request, options);
      finishDecoding();
      views.emplace_back(toolkit->window(), toolkit->picture(), popupPiece);
      settle();
    }
    expectEqual(views.at(0), views.at(1), 0.05);
  }
}

INSTANTIATE_TEST_SUITE_P(Windows, PopupComparisonTest,
                         ::testing::Values(Setting{{414, 800}, 1.0}, Setting{{320, 480}, 2.0},
                                           Setting{{568, 320}, 1.5}, Setting{{1280, 800}, 1.0}));

// ---- Alerts

std::string alertPiece(const QAccessibleInterface& control) {
  const QAccessible::Role role = control.role();
  const std::string name = control.text(QAccessible::Name).toStdString();
  const bool isPiece = role == QAccessible::Button || role == QAccessible::EditableText ||
                       role == QAccessible::Dialog || role == QAccessible::AlertMessage ||
                       (role == QAccessible::StaticText && !name.empty());
  return isPiece && control.object()->objectName() != "hostField"
             ? std::to_string(role) + " " + name + " "
             : "";
}

/// What a host does with an alert, whichever it is.
struct Case {
  const char* name;
  KifoAppearance appearance;
  KifoPopupStyle style = KifoPopupStyle::info;
  QString text = "Text";
  QString closeTitle = "Close";
  QStringList buttons = {};
  std::vector<TypeData> rows = {};
  bool hasFields = false;
  ScreenType type = ScreenType::popup;
};

template <class Toolkit>
View look(const Case& each) {
  Toolkit toolkit;
  const auto alert = std::make_shared<typename Toolkit::Alert>(each.appearance);
  toolkit.setUp(*alert);
  alert->motion.reduced = true;
  alert->type = each.type;
  alert->datas = each.rows;
  if (!each.rows.empty()) alert->headerStr = "Order 1042";
  if (each.hasFields) {
    alert->addTextField("Name");
    alert->addTextView();
  }
  for (const QString& button : each.buttons) alert->addButton(button, [] {});
  alert->showTitle("A title", each.text, each.style, each.closeTitle);
  QCoreApplication::processEvents();
  return {toolkit.window(), toolkit.picture(), alertPiece};
}

class AlertComparisonTest : public SettledTest, public ::testing::WithParamInterface<Case> {};

TEST_P(AlertComparisonTest, BothToolkitsShowTheSame) {
  expectEqual(look<WidgetsAlerts>(GetParam()), look<QuickAlerts>(GetParam()), 0.003);
}

KifoAppearance dark() {
  KifoAppearance appearance = KifoAppearance::likePopups();
  appearance.contentViewColor = QColor(0x20, 0x22, 0x28);
  appearance.textViewAlignment = Qt::AlignLeft;
  return appearance;
}

INSTANTIATE_TEST_SUITE_P(
    Alerts, AlertComparisonTest,
    ::testing::Values(
        Case{.name = "Plain", .appearance = {}},
        Case{.name = "Success",
             .appearance = KifoAppearance::likePopups(),
             .style = KifoPopupStyle::success,
             .buttons = {"Pay", "Split the bill"}},
        Case{.name = "Row",
             .appearance = {.buttonsLayout = KifoAlertButtonLayout::horizontal},
             .buttons = {"Yes", "A longer answer"}},
        Case{.name = "List",
             .appearance = {},
             .rows = {{"Coffee", "2.40"}, {"Address", "12 Harbour Street, third floor, ring"}}},
        Case{.name = "Fields", .appearance = {}, .buttons = {"Save"}, .hasFields = true},
        Case{.name = "LongText",
             .appearance = dark(),
             .style = KifoPopupStyle::warning,
             .text = QString("The payment terminal does not answer. ").repeated(20)},
        Case{.name = "Cross", .appearance = {}, .closeTitle = ""},
        Case{.name = "Notification", .appearance = {}, .type = ScreenType::notification}),
    [](const auto& each) { return each.param.name; });

}  // namespace
}  // namespace kifo::testing
