#include "Kifo_iOS_Common_Kit/inapp/views/looks/DisposeLater.h"

#include <QCoreApplication>
#include <QList>
#include <QPointer>

namespace kifo {
namespace {

QList<QPointer<QObject>>& pending() {
  static auto& list = *new QList<QPointer<QObject>>;
  return list;
}

void disposeOfThePending() {
  const QList<QPointer<QObject>> rest = std::exchange(pending(), {});
  for (const QPointer<QObject>& object : rest) delete object.data();
}

}  // namespace

void disposeLater(QObject* object) {
  // Without an application there is nothing left that a widget could be deleted with.
  if (object == nullptr || QCoreApplication::instance() == nullptr) return;
  pending().removeIf([](const QPointer<QObject>& gone) { return gone.isNull(); });
  if (pending().isEmpty()) qAddPostRoutine(disposeOfThePending);
  pending().append(object);
  object->deleteLater();
}

}  // namespace kifo
