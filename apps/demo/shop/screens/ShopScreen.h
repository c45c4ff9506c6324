#pragma once

#include <QLabel>
#include <QVBoxLayout>
#include <QWidget>
#include <string>

#include "Kifo_iOS_Common_Kit/core/EventParameters.h"
#include "apps/demo/shop/widgets/ScrollPage.h"
#include "platform/qt/QtScreen.h"

namespace kifo::shop {

/// A page of the shop. As a `QtScreen` it reports its showing and hiding by itself; its buttons
/// send events, which may bring a campaign up over it.
class ShopScreen : public QtScreen<QWidget> {
  Q_OBJECT

 public:
  explicit ShopScreen(QWidget* parent = nullptr);

 Q_SIGNALS:
  /// A campaign's button leads to this link, such as "shop://basket".
  void linkFollowed(const QString& link);

 protected:
  /// Sends a custom event for this page.
  void send(const std::string& eventName, EventParameters parameters = {});

  /// A text of the page; one that wraps takes as many lines as it needs.
  static QLabel* label(const QString& text, const QFont& font, const QColor& color,
                       bool wraps = true);
  static QLabel* headline(const QString& text);

  /// Where the page's content goes; it scrolls when the window is too low.
  [[nodiscard]] QVBoxLayout* column() const { return scroll_->column(); }

  void paintEvent(QPaintEvent* event) override;

 private:
  ScrollPage* const scroll_;
};

/// A white card with a soft shadow, into which a page lays its things.
class CardFrame : public QWidget {
  Q_OBJECT

 public:
  explicit CardFrame(QWidget* parent = nullptr);

  /// Where the content goes.
  [[nodiscard]] QVBoxLayout* column() const { return column_; }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  QVBoxLayout* const column_;
};

}  // namespace kifo::shop
