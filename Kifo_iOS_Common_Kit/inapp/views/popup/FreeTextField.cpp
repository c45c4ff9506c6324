#include "Kifo_iOS_Common_Kit/inapp/views/popup/FreeTextField.h"

#include <algorithm>

#include <QPainter>
#include <QTextBoundaryFinder>
#include <QValidator>

#include "Kifo_iOS_Common_Kit/inapp/popup/FreeTextRule.h"
#include "Kifo_iOS_Common_Kit/inapp/views/looks/PanelLooks.h"
#include "Kifo_iOS_Common_Kit/inapp/views/looks/QtColors.h"
#include "Kifo_iOS_Common_Kit/inapp/views/shared/HostStyleSheet.h"

namespace kifo {
namespace {

/// What was put in between `before` and `after`, where the caret ends behind it.
QString insertion(const QString& before, const QString& after, int caret) {
  const auto limit = std::min(caret, static_cast<int>(before.size()));
  const auto tail = after.size() - caret;
  int start = 0;
  while (start < limit && start < before.size() - tail && before[start] == after[start]) ++start;
  if (start > 0 && start < after.size() && after[start].isLowSurrogate()) --start;
  return after.mid(start, caret - start);
}

/// The longest beginning of whole characters that takes at most `room` bytes.
QString prefix(const QString& text, qsizetype room) {
  QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text);
  qsizetype end = 0;
  qsizetype used = 0;
  for (auto next = finder.toNextBoundary(); next >= 0; next = finder.toNextBoundary()) {
    used += text.mid(end, next - end).toUtf8().size();
    if (used > room) break;
    end = next;
  }
  return text.left(end);
}

/// Puts the rule where every edit passes.
class Validator : public QValidator {
 public:
  explicit Validator(FreeTextField* field) : QValidator(field) {
    QObject::connect(field, &QLineEdit::textChanged, this,
                     [this](const QString& text) { before_ = text; });
  }

  State validate(QString& input, int& caret) const override {
    if (input == before_) return Acceptable;
    using Kind = FreeTextRule::Verdict::Kind;
    const QString added = insertion(before_, input, caret);
    const auto verdict = FreeTextRule::shouldChange(before_.toStdString(), added.toStdString());
    if (verdict.kind == Kind::accept) return Acceptable;
    if (verdict.kind == Kind::refuse) return Invalid;
    input = before_ + prefix(added, static_cast<qsizetype>(verdict.room));
    caret = static_cast<int>(input.size());
    return Acceptable;
  }

 private:
  QString before_;
};

QPalette colorsOf(const PopupTheme& theme, const QColor& fill) {
  QPalette palette;
  palette.setColor(QPalette::Base, Qt::transparent);
  palette.setColor(QPalette::Text, inkOn(fill));
  palette.setColor(QPalette::Highlight, theme.accent);
  palette.setColor(QPalette::HighlightedText, inkOn(theme.accent));
  return palette;
}

/// The same as a sheet, which a host's sheet would otherwise override.
QString sheetOf(const QPalette& colors) {
  return QStringLiteral(
             "background: transparent; border: none; padding: 0; color: %1;"
             " selection-background-color: %2; selection-color: %3;")
      .arg(colors.color(QPalette::Text).name(), colors.color(QPalette::Highlight).name(),
           colors.color(QPalette::HighlightedText).name());
}

}  // namespace

FreeTextField::FreeTextField(const PopupTheme& theme, QWidget* parent)
    : QLineEdit(parent), theme_(theme) {
  setFrame(false);
  setFont(theme.font(TextRole::field));
  const QPalette colors = colorsOf(theme, theme.shade(0.05));
  setPalette(colors);
  if (isUnderStyleSheet(parent)) setStyleSheet(sheetOf(colors));
  setTextMargins(10, 0, 10, 0);
  setMinimumSize(0, 0);
  setValidator(new Validator(this));
}

void FreeTextField::paintEvent(QPaintEvent* event) {
  {
    QPainter painter(this);
    paintField(painter, theme_, rect(), underMouse(), hasFocus());
  }
  QLineEdit::paintEvent(event);
}

}  // namespace kifo
