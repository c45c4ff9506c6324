#pragma once

#include <vector>

#include <QObject>
#include <QPointer>

class QWidget;

namespace kifo {

/// Moves the focus among the options of a list with the arrow, Home and End keys. In a group that
/// is one question only one option is a stop of the Tab key: the one focused last, at first the
/// first.
///
/// **Threading:** UI thread only. **Ownership:** belongs to the list; holds the options weakly.
class RovingFocus : public QObject {
  Q_OBJECT

 public:
  enum class Stops { one, every };

  RovingFocus(Stops stops, QObject* parent);

  void add(QWidget* option);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  bool press(QWidget* from, int key);
  void stopAt(const QObject* option);

  Stops stops_;
  std::vector<QPointer<QWidget>> options_;
};

}  // namespace kifo
