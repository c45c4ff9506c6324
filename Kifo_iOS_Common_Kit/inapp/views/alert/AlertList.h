#pragma once

#include <QColor>
#include <QString>
#include <QWidget>
#include <vector>

#include "Kifo_iOS_Common_Kit/inapp/views/alertcore/AlertColors.h"
#include "Kifo_iOS_Common_Kit/inapp/views/alertcore/AlertLayout.h"

namespace kifo {

class TextLabel;

/// The list in an alert's card: a heading, and rows of a header and a value in two columns.
///
/// **Threading:** UI thread only.
class AlertList : public QWidget {
  Q_OBJECT
 public:
  explicit AlertList(QWidget* parent = nullptr);

  /// Replaces everything. `heading`: empty for none.
  void setContents(const QString& heading, const std::vector<TypeData>& rows,
                   const KifoAppearance& appearance, const AlertColors& colors);
  /// Moves the list and what is in it.
  void place(const AlertPlaces& places);

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  struct Row {
    TextLabel* header;
    TextLabel* value;
    int line = -1;  ///< Where the line above it runs.
  };

  TextLabel* addLabel(const QString& text, const QFont& font, const QColor& color);

  QColor line_;
  QFont font_;
  TextLabel* heading_ = nullptr;
  std::vector<Row> rows_;
};

}  // namespace kifo
