#include "apps/demo/shop/screens/AlertsScreen.h"

#include <QLineEdit>
#include <QPlainTextEdit>

#include "Kifo_iOS_Common_Kit/inapp/views/alert/KifoButton.h"
#include "Kifo_iOS_Common_Kit/inapp/views/alertcore/KifoPopupStyleKit.h"
#include "apps/demo/shop/screens/AlertsScreenTile.h"
#include "apps/demo/shop/widgets/Picture.h"
#include "apps/demo/shop/widgets/Shelf.h"
#include "apps/demo/shop/widgets/Theme.h"

namespace kifo::shop {
namespace {

constexpr QSize kTile(200, 76);

KifoAppearance inARow() {
  KifoAppearance appearance = KifoAppearance::likePopups();
  appearance.buttonsLayout = KifoAlertButtonLayout::horizontal;
  return appearance;
}

}  // namespace

AlertsScreen::AlertsScreen(QWidget* parent)
    : ShopScreen(parent), answer_(label({}, theme::text(15), theme::kMuted)) {
  titles_.push_back(headline(tr("Alerts")));
  answer_->setContentsMargins(static_cast<int>(theme::kShadow), 0, 0, 0);
  column()->addWidget(titles_.front());
  column()->addWidget(answer_);
  addStyles();
  addContents();
  addWays();
  column()->addStretch();
  say(tr("nothing yet"));
}

void AlertsScreen::addStyles() {
  Shelf* shelf = addSection(tr("Eight styles"));
  addTile(shelf, KifoPopupStyle::success, tr("Success"), &AlertsScreen::showSuccess);
  addTile(shelf, KifoPopupStyle::error, tr("Error"), &AlertsScreen::showError);
  addTile(shelf, KifoPopupStyle::notice, tr("Notice"), &AlertsScreen::showNotice);
  addTile(shelf, KifoPopupStyle::warning, tr("Warning"), &AlertsScreen::showWarning);
  addTile(shelf, KifoPopupStyle::info, tr("Info"), &AlertsScreen::showInfo);
  addTile(shelf, KifoPopupStyle::edit, tr("Edit"), &AlertsScreen::showEdit);
  addTile(shelf, KifoPopupStyle::wait, tr("Wait"), &AlertsScreen::showWait);
  addTile(shelf, KifoPopupStyle::question, tr("Question"), &AlertsScreen::showQuestion);
}

void AlertsScreen::addContents() {
  Shelf* shelf = addSection(tr("What a card can hold"));
  addTile(shelf, KifoPopupStyle::edit, tr("Fields"), &AlertsScreen::showFields);
  addTile(shelf, KifoPopupStyle::warning, tr("A countdown"), &AlertsScreen::showCountdown);
  addTile(shelf, KifoPopupStyle::success, tr("A list"), &AlertsScreen::showList);
  addTile(shelf, KifoPopupStyle::info, tr("A view of one's own"), &AlertsScreen::showOwnView);
  addTile(shelf, KifoPopupStyle::question, tr("Own colours"), &AlertsScreen::showOwnColours);
  addTile(shelf, KifoPopupStyle::error, tr("A long text"), &AlertsScreen::showLongText);
  addTile(shelf, KifoPopupStyle::notice, tr("Buttons that stay"), &AlertsScreen::showStaying);
  addTile(shelf, KifoPopupStyle::wait, tr("One over another"), &AlertsScreen::showTwo);
}

void AlertsScreen::addWays() {
  Shelf* shelf = addSection(tr("How it comes"));
  addWay(shelf, tr("From above"), KifoAnimationStyle::topToBottom);
  addWay(shelf, tr("From below"), KifoAnimationStyle::bottomToTop);
  addWay(shelf, tr("From the left"), KifoAnimationStyle::leftToRight);
  addWay(shelf, tr("From the right"), KifoAnimationStyle::rightToLeft);
  addWay(shelf, tr("On a spring"), KifoAnimationStyle::topToBottom, /*springs=*/true);
  addWay(shelf, tr("At once"), KifoAnimationStyle::noAnimation);
  addTile(shelf, KifoPopupStyle::notice, tr("At the upper edge"), &AlertsScreen::showNotification);
  auto* dark = new AlertsScreenTile(KifoPopupStyle::question, tr("Over a dark page"));
  tiles_.push_back(dark);
  shelf->add(dark);
  connect(dark, &QPushButton::clicked, this, [this] { setDark(!dark_); });
}

Shelf* AlertsScreen::addSection(const QString& title) {
  auto* heading = label(title, theme::text(19, QFont::DemiBold), theme::kInk);
  heading->setContentsMargins(static_cast<int>(theme::kShadow), 14, 0, 0);
  titles_.push_back(heading);
  column()->addWidget(heading);
  auto* shelf = new Shelf(kTile);
  column()->addWidget(shelf);
  return shelf;
}

void AlertsScreen::addTile(Shelf* shelf, KifoPopupStyle style, const QString& text, Show shown) {
  auto* tile = new AlertsScreenTile(style, text);
  tiles_.push_back(tile);
  shelf->add(tile);
  connect(tile, &QPushButton::clicked, this, shown);
}

void AlertsScreen::addWay(Shelf* shelf, const QString& text, KifoAnimationStyle way, bool springs) {
  auto* tile = new AlertsScreenTile(KifoPopupStyle::info, text);
  tiles_.push_back(tile);
  shelf->add(tile);
  connect(tile, &QPushButton::clicked, this, [this, text, way, springs] {
    KifoAppearance appearance = KifoAppearance::likePopups();
    appearance.dynamicAnimatorActive = springs;
    appearance.hideWhenBackgroundViewIsTapped = true;
    const Alert alert = make(appearance);
    alert->showInfo(text, tr("A tap beside the card closes it, too."), tr("Close"), {},
                    defaultColorInt(KifoPopupStyle::info), 0xFFFFFF, {}, way);
  });
}

AlertsScreen::Alert AlertsScreen::make(const KifoAppearance& appearance) {
  auto alert = std::make_shared<KifoPopup>(appearance);
  alert->hostWindow = this;
  return alert;
}

KifoButton* AlertsScreen::addAnswer(const Alert& alert, const QString& title, const QColor& color) {
  return alert->addButton(title, color, {}, {}, [page = QPointer(this), title] {
    if (page) page->say(title);
  });
}

void AlertsScreen::say(const QString& answer) {
  answer_->setText(tr("Your last answer: %1").arg(answer));
}

void AlertsScreen::showSuccess() {
  const Alert alert = make();
  addAnswer(alert, tr("Track it"));
  alert->showSuccess(tr("Thank you!"), tr("Your lamp leaves us today. We will tell you when."),
                     tr("Close"));
}

void AlertsScreen::showError() {
  const Alert alert = make();
  addAnswer(alert, tr("Try again"));
  alert->showError(tr("Payment failed"), tr("The card was refused. Nothing has been charged."),
                   tr("Cancel"));
}

void AlertsScreen::showNotice() {
  make()->showNotice(tr("Closed tomorrow"), tr("We count our chairs. Orders are welcome."),
                     tr("I see"));
}

void AlertsScreen::showWarning() {
  make()->showWarning(tr("Only two left"), tr("The clock sells faster than it ticks."),
                      tr("Hurry"));
}

void AlertsScreen::showInfo() {
  make()->showInfo(tr("Did you know?"), tr("Every lamp comes with a spare shade."));
}

void AlertsScreen::showEdit() {
  const Alert alert = make();
  QLineEdit* name = alert->addTextField(tr("Your name"));
  alert->addButton(tr("Save"), [page = QPointer(this), name] {
    if (page) page->say(name->text());
  });
  alert->showEdit(tr("Who is it for?"), tr("We write it on the card."), tr("Nobody"));
}

void AlertsScreen::showWait() {
  const Alert alert = make();
  const KifoTimeoutConfiguration found{
      3,
      [weak = std::weak_ptr(alert)] {
        if (const Alert shown = weak.lock()) {
          shown->showSuccess(tr("Found it"), tr("One is left in Lisbon."), tr("Reserve it"));
        }
      },
      /*pausesWhileInside=*/false};
  alert->showWait(tr("One moment"), tr("Asking the other shops …"), {}, found);
}

void AlertsScreen::showQuestion() {
  const Alert alert = make(inARow());
  addAnswer(alert, tr("Empty it"), theme::kAccent);
  alert->showTitle(tr("Empty the basket?"), tr("The chairs will miss you."),
                   KifoPopupStyle::question, tr("Keep it"));
}

void AlertsScreen::showFields() {
  const Alert alert = make(inARow());
  alert->addTextField(tr("Street"));
  alert->addTextField(tr("Town"))->setText(tr("Porto"));
  alert->addTextView()->setAccessibleName(tr("A word for the driver"));
  addAnswer(alert, tr("Deliver"));
  alert->showEdit(tr("Where to?"), tr("The driver reads every word of it."), tr("Pick up"));
}

void AlertsScreen::showCountdown() {
  const Alert alert = make();
  alert->addButton(tr("Stay signed in"), {}, {}, ShowTimeoutConfiguration{"(", tr(" s)")},
                   [page = QPointer(this)] {
                     if (page) page->say(tr("Stay signed in"));
                   });
  const KifoTimeoutConfiguration leave{20,
                                       [page = QPointer(this)] {
                                         if (page) page->say(tr("nothing, in twenty seconds"));
                                       },
                                       /*pausesWhileInside=*/true};
  alert->showWarning(tr("Still there?"), tr("We sign you out to keep your basket yours."), {},
                     leave);
}

void AlertsScreen::showList() {
  const Alert alert = make();
  alert->headerStr = tr("Order 1042");
  alert->datas = {{tr("Lamp"), priceText(89)},
                  {tr("Mug"), tr("2 × %1").arg(priceText(16))},
                  {tr("Delivery"), tr("12 Harbour Street, third floor, ring twice")},
                  {tr("Total"), priceText(121)}};
  alert->showSuccess(tr("Paid"), {}, tr("Done"));
}

void AlertsScreen::showOwnView() {
  const Alert alert = make();
  auto* picture = new Picture(catalogue().front());
  picture->setFixedHeight(150);
  alert->customSubview = picture;
  addAnswer(alert, tr("Put it in my basket"));
  alert->showInfo(catalogue().front().name, catalogue().front().maker, tr("Not today"));
}

void AlertsScreen::showOwnColours() {
  KifoAppearance appearance = KifoAppearance::likePopups();
  appearance.contentViewColor = theme::kNight;
  appearance.circleBackgroundColor = theme::kNight;
  appearance.contentViewBorderColor = QColor(0x46, 0x52, 0x75);
  appearance.contentViewCornerRadius = 14;
  appearance.buttonCornerRadius = 17;
  const Alert alert = make(appearance);
  alert->showCustom(tr("Good night"), tr("The shop is open; the lamps are on."),
                    QColor(0xE3, 0x9A, 0x2B), tr("Sleep well"), {}, 0xFFFFFF,
                    KifoPopupStyleKit::image(KifoPopupStyle::notice, 20, theme::kInk, 3));
}

void AlertsScreen::showLongText() {
  const QString once =
      tr("The scales in the back room do not answer. Check that they are switched "
         "on and that nobody sits on them, then try again. ");
  const Alert alert = make();
  addAnswer(alert, tr("Try again"));
  alert->showError(tr("The scales are silent"), once.repeated(4).trimmed(), tr("Leave it"));
}

void AlertsScreen::showStaying() {
  KifoAppearance appearance = KifoAppearance::likePopups();
  appearance.shouldAutoDismiss = false;
  const Alert alert = make(appearance);
  const auto mugs = std::make_shared<int>(1);
  const std::weak_ptr weak = alert;
  alert->addButton(tr("One more"), [mugs, weak] {
    if (const Alert shown = weak.lock()) shown->setSubTitle(tr("Mugs: %1").arg(++*mugs));
  });
  alert->showNotice(tr("How many?"), tr("Mugs: %1").arg(*mugs), tr("That will do"));
}

void AlertsScreen::showTwo() {
  const Alert first = make();
  first->addButton(tr("Delete my account"), [page = QPointer(this)] {
    if (!page) return;
    const Alert second = page->make(inARow());
    page->addAnswer(second, tr("Delete it"), theme::kAccent);
    second->showTitle(tr("Really?"), tr("Nothing will be left."), KifoPopupStyle::warning,
                      tr("Stay"));
  });
  first->appearance.shouldAutoDismiss = false;
  first->showInfo(tr("Your account"), tr("You have been with us for three years and two lamps."),
                  tr("Close"));
}

void AlertsScreen::showNotification() {
  KifoAppearance appearance = KifoAppearance::likePopups();
  appearance.kDefaultShadowOpacity = 0.25;
  const Alert alert = make(appearance);
  alert->type = ScreenType::notification;
  alert->showNotice(tr("Your table is ready"), tr("It stands at the desk, legs up."));
}

void AlertsScreen::setDark(bool dark) {
  dark_ = dark;
  for (AlertsScreenTile* tile : tiles_) tile->setOnDark(dark);
  const auto color = [](QLabel* text, const QColor& ink) {
    QPalette palette = text->palette();
    palette.setColor(QPalette::WindowText, ink);
    text->setPalette(palette);
  };
  for (QLabel* title : titles_) color(title, dark ? QColor(Qt::white) : theme::kInk);
  color(answer_, dark ? theme::kSand : theme::kMuted);
  QWidget* page = column()->parentWidget();
  QPalette palette = page->palette();
  palette.setColor(QPalette::Window, dark ? theme::kNight : theme::kPaper);
  page->setPalette(palette);
}

}  // namespace kifo::shop
