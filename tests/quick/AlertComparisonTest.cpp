// One alert in both toolkits: the same boxes, the same colours, the same words.
#include <QAccessible>
#include <map>

#include "tests/alert/AlertFixture.h"

namespace kifo::testing {
namespace {

struct Seen {
  std::map<QString, QRect> boxes;  ///< By role and name, in the window's coordinates.
  QString description;
  QImage picture;
};

void collect(QAccessibleInterface* part, QPoint origin, Seen& seen) {
  if (part == nullptr || part->state().invisible) return;
  const QAccessible::Role role = part->role();
  const QString name = part->text(QAccessible::Name);
  const bool isPart = role == QAccessible::Button || role == QAccessible::EditableText ||
                      (role == QAccessible::StaticText && !name.isEmpty());
  if (isPart) {
    seen.boxes[QString::number(role) + " " + name] = part->rect().translated(-origin);
  }
  for (int i = 0; i < part->childCount(); ++i) collect(part->child(i), origin, seen);
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

  template <class Alert>
  void show(Alert& alert) const {
    alert.appearance = appearance;
    alert.motion.reduced = true;
    alert.type = type;
    alert.datas = rows;
    if (!rows.empty()) alert.headerStr = "Order 1042";
    if (hasFields) {
      alert.addTextField("Name");
      alert.addTextView();
    }
    for (const QString& button : buttons) alert.addButton(button, [] {});
    alert.showTitle("A title", text, style, closeTitle);
  }
};

template <class Toolkit>
Seen look(const Case& each) {
  Toolkit toolkit;
  const User user(toolkit.window(), [&] { return toolkit.picture(); });
  const auto alert = std::make_shared<typename Toolkit::Alert>();
  toolkit.setUp(*alert);
  each.show(*alert);
  QCoreApplication::processEvents();
  Seen seen;
  QAccessibleInterface* overlay = user.overlay();
  seen.description =
      overlay->text(QAccessible::Name) + ": " + overlay->text(QAccessible::Description);
  collect(overlay, toolkit.window().mapToGlobal(QPoint()), seen);
  seen.picture = toolkit.picture();
  return seen;
}

void expectNear(const QRect& one, const QRect& other, const QString& what) {
  for (const auto& [a, b] : {std::pair(one.left(), other.left()),
                             {one.top(), other.top()},
                             {one.right(), other.right()},
                             {one.bottom(), other.bottom()}}) {
    EXPECT_NEAR(a, b, 1) << what.toStdString();
  }
}

void expectNear(const QColor& one, const QColor& other, const QString& what) {
  EXPECT_NEAR(one.red(), other.red(), 3) << what.toStdString();
  EXPECT_NEAR(one.green(), other.green(), 3) << what.toStdString();
  EXPECT_NEAR(one.blue(), other.blue(), 3) << what.toStdString();
}

class AlertComparisonTest : public SettledTest, public ::testing::WithParamInterface<Case> {};

TEST_P(AlertComparisonTest, BothToolkitsShowTheSame) {
  const Seen widgets = look<WidgetsAlerts>(GetParam());
  const Seen scene = look<QuickAlerts>(GetParam());
  EXPECT_EQ(widgets.description, scene.description);
  for (const auto& [part, box] : widgets.boxes) {
    const auto found = scene.boxes.find(part);
    ASSERT_NE(found, scene.boxes.end()) << part.toStdString() << " is not in the scene";
    expectNear(box, found->second, part);
    // Beside the text, where the part's own surface or the card is seen.
    const QPoint place = box.topLeft() + QPoint(box.width() / 2, 3);
    expectNear(widgets.picture.pixelColor(place), scene.picture.pixelColor(place), part);
  }
  EXPECT_EQ(widgets.boxes.size(), scene.boxes.size());
  for (const QPoint corner : {QPoint(3, 596), QPoint(496, 596)}) {
    expectNear(widgets.picture.pixelColor(corner), scene.picture.pixelColor(corner), "dimming");
  }
}

KifoAppearance inRow() {
  KifoAppearance appearance;
  appearance.buttonsLayout = KifoAlertButtonLayout::horizontal;
  return appearance;
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
        Case{.name = "Row", .appearance = inRow(), .buttons = {"Yes", "A longer answer"}},
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
    [](const auto& info) { return info.param.name; });

}  // namespace
}  // namespace kifo::testing
