#pragma once

#include <QLineEdit>
#include <QPainterPath>
#include <QPlainTextEdit>
#include <QPointer>
#include <QScrollArea>
#include <QWidget>
#include <utility>
#include <vector>

#include "Kifo_iOS_Common_Kit/inapp/views/KifoAppearance.h"

namespace kifo {

class KifoButton;
class KifoPopupCloseButton;
class KifoPopupDisc;
class KifoPopupIconView;
class KifoPopupLabel;
class KifoPopupList;

/// The card of an alert and everything on it. It knows how it looks and how it is laid out; where
/// it stands and what its buttons do is for others to say.
///
/// From top to bottom: circle, title, text, list, fields in the order in which they were added, the
/// host's custom view, buttons. A card that is too high for its room scrolls; in very little room
/// it goes without the circle.
///
/// **Threading:** UI thread only. **Ownership:** the parts are the card's children.
class KifoPopupCard : public QWidget {
  Q_OBJECT
 public:
  KifoPopupCard();

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
  /// The card's whole outline, for its shadow.
  [[nodiscard]] QPainterPath outline() const;
  [[nodiscard]] bool scrolls() const;
  /// The uppermost field; null without one.
  [[nodiscard]] QWidget* firstField() const { return fields_.empty() ? nullptr : fields_.front(); }
  /// Whether `former` comes before `latter` for somebody who reads the card; the cross comes last.
  [[nodiscard]] bool readsBefore(const QWidget* former, const QWidget* latter) const;

  KifoPopupLabel* labelTitle;
  KifoPopupLabel* viewText;
  QWidget* contentView;
  KifoPopupDisc* circleBG;
  KifoPopupDisc* circleView;
  KifoPopupIconView* circleIconView;
  KifoPopupList* list;
  KifoPopupCloseButton* closeImage;
  std::vector<QLineEdit*> inputs;
  std::vector<QPlainTextEdit*> input;
  std::vector<KifoButton*> buttons;

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
  struct Row {
    QWidget* part;
    int height;
    int gap;  ///< Below it.
  };

  void addField(QWidget* field);
  /// A part was deleted or taken away by the host.
  void forget(const QObject* part);
  void dressButton(KifoButton* button, const QColor& color, const QColor& text) const;
  void placeCircle(int width);
  [[nodiscard]] int overhang() const;
  [[nodiscard]] int contentTop() const;
  [[nodiscard]] int titleInset() const;
  [[nodiscard]] int chooseWidth(int widest) const;
  [[nodiscard]] int widthOfButtonRow() const;
  [[nodiscard]] std::vector<Row> rows(int width) const;
  /// Lays the contents out, with `slack` pixels to spare, and returns their height. Moves them only
  /// if `move` says so.
  int arrangeContents(int width, int slack, bool move);
  int arrangeButtons(int top, int width, bool move);
  [[nodiscard]] int heightOfCustomSubview(int width) const;
  /// Where the part that holds `widget` lies: row first, then place in the row.
  [[nodiscard]] std::pair<int, int> placeInReading(const QWidget* widget) const;

  KifoAppearance appearance_;
  QScrollArea* scroll_;
  QPointer<QWidget> custom_;
  QSize customSize_;  ///< What the host gave it; the fallback for a view that asks for no size.
  std::vector<QWidget*> fields_;
  double iconScale_ = 1;
  bool circleWanted_ = true;
  bool circleShown_ = true;
};

}  // namespace kifo
