#include "Kifo_iOS_Common_Kit/inapp/views/looks/FreeTextValidator.h"

#include <algorithm>

#include <QTextBoundaryFinder>

#include "Kifo_iOS_Common_Kit/inapp/popup/FreeTextRule.h"

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

/// The longest beginning of whole characters that takes at most `most` bytes.
QString prefix(const QString& text, qsizetype most) {
  QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text);
  qsizetype end = 0;
  qsizetype used = 0;
  for (auto next = finder.toNextBoundary(); next >= 0; next = finder.toNextBoundary()) {
    used += text.mid(end, next - end).toUtf8().size();
    if (used > most) break;
    end = next;
  }
  return text.left(end);
}

}  // namespace

QValidator::State FreeTextValidator::validate(QString& input, int& caret) const {
  if (input == before_) return Acceptable;
  using Kind = FreeTextRule::Verdict::Kind;
  const QString added = insertion(before_, input, caret);
  const auto verdict = FreeTextRule::shouldChange(before_.toStdString(), added.toStdString());
  if (verdict.kind == Kind::accept) return Acceptable;
  if (verdict.kind == Kind::refuse) return Invalid;
  input = before_ + prefix(added, static_cast<qsizetype>(verdict.free));
  caret = static_cast<int>(input.size());
  return Acceptable;
}

}  // namespace kifo
