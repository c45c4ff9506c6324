#pragma once

#include <QLineEdit>
#include <QPainterPath>
#include <QPlainTextEdit>
#include <QPointer>
#include <QWidget>
#include <utility>
#include <vector>

#include "Kifo_iOS_Common_Kit/inapp/views/alert/AlertRows.h"
#include "Kifo_iOS_Common_Kit/inapp/views/alert/KifoAppearance.h"

namespace kifo {

class AlertDisc;
class AlertIconView;
class CloseButton;
class PopupScrollArea;

/// The card of an alert and everything on it. It knows how it looks and how it is laid out; where
/// it stands and what its buttons do is for others to say.
///
/// From top to bottom: circle, title, text, list, fields in the order in which they were added, the
/// host's custom view, buttons. A card that is too high for its room scrolls; in very little room
/// it goes without the circle.
///
/// **Threading:** UI thread only. **Ownership:** the parts are the card's children.
class AlertCard : public QWidget, public AlertParts {
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
  void showCircle(bool shown) { circleWanted_ = shown; }
  /// How large the icon is in relation to the appearance's; 1 by default.
  void scaleIcon(double scale) { iconScale_ = scale; }
  /// Lays the card out in a room of `room` and takes the size that it needs.
  void arrange(const QSize& room);
  /// Scrolls so that `part` is seen, if it is on the card and the card scrolls.
  void reveal(QWidget* part);

  /// The card without the circle's upper half, in its own coordinates.
  [[nodiscard]] QRect panel() const;
  [[nodiscard]] double cornerRadius() const { return appearance_.contentViewCornerRadius; }
  /// The circle, in the card's coordinates; empty without one.
  [[nodiscard]] QRect disc() const;
  /// The outline of the card with its circle.
  [[nodiscard]] const QPainterPath& outline() const { return outline_; }
  [[nodiscard]] bool scrolls() const;
  /// The uppermost field; null without one.
  [[nodiscard]] QWidget* firstField() const { return fields.empty() ? nullptr : fields.front(); }
  /// Whether `former` comes before `latter` for somebody who reads the card; the cross comes last.
  [[nodiscard]] bool readsBefore(const QWidget* former, const QWidget* latter) const;

  QWidget* contentView;
  AlertDisc* circleBG;
  AlertDisc* circleView;
  AlertIconView* circleIconView;
  CloseButton* closeImage;
  QPointer<KifoButton> closingButton;  ///< Only closes; stands back behind the others.
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
  void dressButton(KifoButton* button, const QColor& color, const QColor& text) const;
  void placeContents(int width, int height, int natural);
  void placeCircle(int width);
  void placeCross(int width);
  [[nodiscard]] AlertRows rows() const;
  [[nodiscard]] QPainterPath makeOutline() const;
  [[nodiscard]] int overhang() const;
  [[nodiscard]] int contentTop() const;
  [[nodiscard]] int titleInset() const;
  /// Where the part that holds `widget` lies: row first, then place in the row.
  [[nodiscard]] std::pair<int, int> placeInReading(const QWidget* widget) const;

  KifoAppearance appearance_;
  PopupScrollArea* scroll_;
  QPainterPath outline_;
  double iconScale_ = 1;
  bool circleWanted_ = true;
  bool circleShown_ = true;
};

}  // namespace kifo
