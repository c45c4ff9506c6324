#include "platform/qml/QmlKifo.h"

#include <QCoreApplication>
#include <QPointer>
#include <typeinfo>
#include <utility>

#include "Kifo_iOS_Common_Kit/core/Kifo.h"
#include "Kifo_iOS_Common_Kit/ports/NullPorts.h"
#include "platform/qml/JsValue.h"
#include "platform/qml/KifoScreen.h"
#include "platform/qml/QmlConfiguration.h"
#include "platform/qt/QuickPopupPresenter.h"

namespace kifo {
namespace {

/// The singleton of the engine in use; a host has one engine.
QPointer<QmlKifo>& instance() {
  static QPointer<QmlKifo> pointer;
  return pointer;
}

QVariantMap mapOf(const AppCommunicationItemButton& button) {
  QVariantMap map;
  const auto add = [&map](const char* name, const std::optional<std::string>& text) {
    if (text) map.insert(QLatin1String(name), QString::fromStdString(*text));
  };
  add("id", button.id);
  add("text", button.text);
  add("type", button.type);
  if (button.action) {
    add("link", button.action->link);
    add("linkType", button.action->type);
  }
  return map;
}

/// A host that has chosen how popups are shown keeps its choice.
void presentInScenes() {
  Platform platform = *Platform::current();
  const Platform null = nullPlatform();
  const PopupPresenter& chosen = *platform.popups;
  const PopupPresenter& none = *null.popups;
  if (typeid(chosen) == typeid(none)) Platform::install(withQuick(std::move(platform)));
}

}  // namespace

QmlKifo::QmlKifo(QObject* parent)
    : QObject(parent), link_(std::make_shared<UiLink<QmlKifo>>(this)) {
  instance() = this;
}

QmlKifo::~QmlKifo() {
  link_->close();
}

bool QmlKifo::isInitialized() {
  return Kifo::isInitialized();
}

void QmlKifo::initialize(const QJSValue& configuration) {
  presentInScenes();
  connect(QCoreApplication::instance(), &QCoreApplication::aboutToQuit, this,
          [] { Kifo::shutdown(); });
  Kifo::initialize(configurationOf(configuration), [link = link_] {
    link->post([](QmlKifo& kifo) {
      Q_EMIT kifo.initializedChanged();
      KifoScreen::reportEarly();
      Q_EMIT kifo.ready();
    });
  });
  Q_EMIT initializedChanged();
}

void QmlKifo::giveConsent() {
  Kifo::giveConsent();
}

void QmlKifo::revokeConsent() {
  Kifo::revokeConsent();
}

void QmlKifo::send(std::shared_ptr<ViewController> screen, const QString& name,
                   const QJSValue& parameters) {
  const auto tell = [name](const std::shared_ptr<AppCommunicationItemButton>& button) {
    if (button && instance()) Q_EMIT instance()->buttonChosen(mapOf(*button), name);
  };
  KifoEventManager::sendEvent(std::move(screen), name.toStdString(), std::nullopt,
                              parametersOf(parameters, "sendEvent"), tell);
}

void QmlKifo::sendLogin(std::shared_ptr<ViewController> screen, const QJSValue& parameters) {
  KifoEventManager::sendLoginEvent(std::move(screen), std::nullopt,
                                   parametersOf(parameters, "login"));
}

void QmlKifo::sendEvent(const QString& name, const QJSValue& parameters) {
  send(KifoScreen::current(), name, parameters);
}

void QmlKifo::login(const QJSValue& parameters) {
  sendLogin(KifoScreen::current(), parameters);
}

void QmlKifo::applicationError(const QString& type, const QString& message) {
  KifoEventManager::sendApplicationErrorEvent({type.toStdString(), 0, message.toStdString()});
}

void QmlKifo::updateActorId(const QString& actorId) {
  Kifo::updateActorId(actorId.toStdString());
}

void QmlKifo::setPushToken(const QString& token) {
  Kifo::setPushToken(token.toStdString());
}

void QmlKifo::setAuthorizationToken(const QString& token) {
  Kifo::setAuthorizationToken(token.toStdString());
}

void QmlKifo::receiveRemoteNotification(const QJSValue& userInfo) {
  Kifo::applicationDidReceiveRemoteNotification(
      parametersOf(userInfo, "receiveRemoteNotification"));
}

void QmlKifo::didFinishLaunching() {
  Kifo::didFinishLaunchingWithOptions();
}

void QmlKifo::didBecomeActive() {
  Kifo::applicationDidBecomeActive();
}

void QmlKifo::willResignActive() {
  Kifo::applicationWillResignActive();
}

}  // namespace kifo
