#pragma once

#include <QLineEdit>
#include <QPainterPath>
#include <QPlainTextEdit>
#include <QPointer>
#include <QWidget>
#include <utility>
#include <vector>

#include "Kifo_iOS_Common_Kit/inapp/views/alertcore/AlertColors.h"
#include "Kifo_iOS_Common_Kit/inapp/views/alertcore/AlertLayout.h"

namespace kifo {

class AlertDisc;
class AlertIconView;
class AlertList;
class CloseButton;
class KifoButton;
class PopupScrollArea;
class TextLabel;
struct AlertIcon;

/// The card of an alert and everything on it. It knows how it looks and how it is laid out; where
/// it stands and what its buttons do is for others to say.
///
/// `AlertLayout` says where each of them lies.
///
/// **Threading:** UI thread only. **Ownership:** the parts are the card's children.
class AlertCard : public QWidget {
  Q_OBJECT
 public:
  AlertCard();

  QLineEdit* addTextField(const QString& title);
  QPlainTextEdit* addTextView();
  KifoButton* addButton(const QString& title);
  void removeButton(KifoButton* button);
  /// Takes the host's view into the card. Null takes none.
  void setCustomSubview(QWidget* view);

  /// Gives every part its look. `color` is the alert's, `buttonText` that of the buttons' titles.
  void dress(const KifoAppearance& appearance, const QColor& color, const QColor& buttonText);
  void setIcon(const AlertIcon& icon);
  void setList(const QString& heading, const std::vector<TypeData>& rows);
  /// Lays the card out in a window that has `available` for it, and takes the size that it needs.
  void arrange(const QSize& available);
  /// Scrolls so that `part` is seen, if it is on the card and the card scrolls.
  void reveal(QWidget* part);

  [[nodiscard]] const AlertPlaces& places() const { return places_; }
  [[nodiscard]] double cornerRadius() const { return appearance_.contentViewCornerRadius; }
  /// The outline of the card with its circle.
  [[nodiscard]] const QPainterPath& outline() const { return outline_; }
  /// The uppermost field; null without one.
  [[nodiscard]] QWidget* firstField() const { return fields.empty() ? nullptr : fields.front(); }
  /// Whether `former` comes before `latter` for somebody who reads the card; the cross comes last.
  [[nodiscard]] bool readsBefore(const QWidget* former, const QWidget* latter) const;

  QWidget* contentView;
  AlertDisc* circleBG;
  AlertDisc* circleView;
  AlertIconView* circleIconView;
  CloseButton* closeImage;
  TextLabel* labelTitle;
  TextLabel* viewText;
  AlertList* list;
  std::vector<KifoButton*> buttons;
  std::vector<QWidget*> fields;  ///< In the order in which they were added.
  std::vector<QLineEdit*> inputs;
  std::vector<QPlainTextEdit*> input;

 Q_SIGNALS:
  /// Something on the card wants another size.
  void outgrown();
  /// The pointer came onto the card or left it.
  void pointerInside(bool inside);
  /// The user writes into a field.
  void edited();

 protected:
  void paintEvent(QPaintEvent* event) override;
  void enterEvent(QEnterEvent* event) override;
  void leaveEvent(QEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void addField(QWidget* field);
  /// A part was deleted or taken away by the host.
  void forget(const QObject* part);
  [[nodiscard]] AlertContents contents() const;
  [[nodiscard]] AlertContents::Custom customView() const;
  void placeCircle();
  void placeContents();
  [[nodiscard]] QPainterPath makeOutline() const;
  /// Where the part that holds `widget` lies: row first, then place in the row.
  [[nodiscard]] std::pair<int, int> placeInReading(const QWidget* widget) const;

  KifoAppearance appearance_;
  AlertColors colors_;
  AlertPlaces places_;
  PopupScrollArea* scroll_;
  QPointer<QWidget> customSubview_;
  QSize customSize_;  ///< What the host gave that view; for one that asks for no size itself.
  QString heading_;
  std::vector<TypeData> rows_;
  QPainterPath outline_;
  double iconScale_ = 1;
  bool hasCircle_ = true;
};

}  // namespace kifo
