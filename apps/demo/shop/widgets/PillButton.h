#pragma once

#include <QPushButton>

namespace kifo::shop {

/// The shop's button: filled, outlined, or quiet. Shows hover, press, focus and being disabled.
class PillButton : public QPushButton {
  Q_OBJECT

 public:
  enum class Look { filled, outlined, quiet };

  explicit PillButton(const QString& text, Look look = Look::filled, QWidget* parent = nullptr);

  /// For a button that lies on a dark picture.
  void setOnDark(bool onDark);

  [[nodiscard]] QSize sizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  [[nodiscard]] QColor fill() const;
  [[nodiscard]] QColor ink() const;

  const Look look_;
  bool onDark_ = false;
};

}  // namespace kifo::shop
