#pragma once

#include <QColor>
#include <QFont>
#include <QString>
#include <QWidget>
#include <vector>

#include "Kifo_iOS_Common_Kit/inapp/views/alert/TypeData.h"
#include "Kifo_iOS_Common_Kit/inapp/views/looks/WrappedText.h"

namespace kifo {

class TextLabel;

/// The list in an alert's card: a heading, and rows of a header and a value in two columns. A row
/// whose texts do not fit side by side puts the value below its header.
///
/// **Threading:** UI thread only.
class AlertList : public QWidget {
  Q_OBJECT
 public:
  struct Look {
    QFont font;
    QColor text;
    QColor line;  ///< Between the rows.
  };

  explicit AlertList(QWidget* parent = nullptr);

  /// Replaces everything. `heading`: empty for none.
  void setContents(const QString& heading, const std::vector<TypeData>& rows, const Look& look);
  [[nodiscard]] bool isEmpty() const { return heading_ == nullptr && rows_.empty(); }

  [[nodiscard]] bool hasHeightForWidth() const override { return true; }
  [[nodiscard]] int heightForWidth(int width) const override;

 protected:
  void resizeEvent(QResizeEvent* event) override;
  void changeEvent(QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  struct Row {
    TextLabel* header;
    TextLabel* value;
  };
  struct Places {
    QRect header;
    QRect value;
  };

  TextLabel* addLabel(const QString& text, const QFont& font, WrappedText::Alignment alignment);
  [[nodiscard]] int headingHeight(int width) const;
  [[nodiscard]] Places places(const Row& row, int top, int width) const;
  void arrange();

  Look look_;
  TextLabel* heading_ = nullptr;
  std::vector<Row> rows_;
};

}  // namespace kifo
