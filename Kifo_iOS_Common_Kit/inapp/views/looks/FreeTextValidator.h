#pragma once

#include <QValidator>

#include "Kifo_iOS_Common_Kit/ports/Export.h"

namespace kifo {

/// Puts `FreeTextRule` where every edit of a field passes, be it keys, paste, drop, undo or an
/// input method.
///
/// **Threading:** UI thread only.
class KIFO_SHARED FreeTextValidator : public QValidator {
  Q_OBJECT

 public:
  using QValidator::QValidator;

  State validate(QString& input, int& caret) const override;
  /// What the field holds now; the next edit is compared with it.
  Q_INVOKABLE void setBefore(const QString& text) { before_ = text; }

 private:
  QString before_;
};

}  // namespace kifo
