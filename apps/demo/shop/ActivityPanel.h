#pragma once

#include <QWidget>
#include <deque>

namespace kifo::shop {

/// The events that the server has received, newest first.
class ActivityPanel : public QWidget {
  Q_OBJECT

 public:
  explicit ActivityPanel(QWidget* parent = nullptr);

 public Q_SLOTS:
  /// An event arrived; `detail` is what is worth telling of it, maybe nothing.
  void add(const QString& name, const QString& detail);

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  struct Line {
    QString name;
    QString detail;
    QString time;
  };

  void paintLine(QPainter& painter, const Line& line, double top) const;

  std::deque<Line> lines_;
};

}  // namespace kifo::shop
