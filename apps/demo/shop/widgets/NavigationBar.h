#pragma once

#include <QPushButton>
#include <QWidget>

namespace kifo::shop {

/// A word of the navigation bar: underlined while its page is shown, with a number beside it when
/// there is one to tell.
class NavigationButton : public QPushButton {
  Q_OBJECT

 public:
  explicit NavigationButton(const QString& text, QWidget* parent = nullptr);

  /// 0 shows none.
  void setBadge(int number);

  [[nodiscard]] QSize sizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  int badge_ = 0;
};

/// The top of the shop: its name, and the way to its pages.
class NavigationBar : public QWidget {
  Q_OBJECT

 public:
  explicit NavigationBar(QWidget* parent = nullptr);

  /// Adds a page's button; the first one stands for the front.
  NavigationButton* add(const QString& text);
  /// Adds a switch at the right end.
  NavigationButton* addSwitch(const QString& text);

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  int pages_ = 0;
};

}  // namespace kifo::shop
