#pragma once

#include <QWidget>

namespace kifo::shop {

/// The picture at the top of the home page, with its headline and two buttons.
class Banner : public QWidget {
  Q_OBJECT

 public:
  explicit Banner(QWidget* parent = nullptr);

 Q_SIGNALS:
  void offerWanted();
  void roomWanted();

 protected:
  void paintEvent(QPaintEvent* event) override;
};

}  // namespace kifo::shop
