#pragma once

#include <QJSValue>
#include <QObject>
#include <QQmlEngine>
#include <QString>
#include <QVariantMap>
#include <memory>

#include "Kifo_iOS_Common_Kit/core/ViewController.h"
#include "platform/qt/UiLink.h"

namespace kifo {

/// The SDK as a QML host uses it: the singleton `Kifo` of the module `Kifo`.
///
///     import Kifo
///
///     Component.onCompleted: Kifo.initialize({
///         bundle: "com.example.kiosk", apiUri: server + "/inapp", listenerUri: server + "/events",
///         authorization: token, applicationName: "kiosk"
///     })
///     Connections {
///         target: Kifo
///         function onButtonChosen(button) { if (button.link) open(button.link) }
///     }
///
/// **Threading:** UI thread only; signals arrive there.
/// **Errors:** nothing throws. A wrong name or type is a console line.
class QmlKifo : public QObject {
  Q_OBJECT
  QML_NAMED_ELEMENT(Kifo)
  QML_SINGLETON
  Q_PROPERTY(bool initialized READ isInitialized NOTIFY initializedChanged)

 public:
  explicit QmlKifo(QObject* parent = nullptr);
  ~QmlKifo() override;

  [[nodiscard]] static bool isInitialized();

  /// Initialises the SDK with the members of `KifoInitConfig` under their names; see
  /// `configurationOf`. Without a presenter installed by the host, popups are shown in the scene.
  /// The SDK is shut down when the application quits.
  Q_INVOKABLE void initialize(const QJSValue& configuration);

  /// The user agrees, or does not agree any more; see `KifoInitConfig::requiresConsent`.
  Q_INVOKABLE void giveConsent();
  Q_INVOKABLE void revokeConsent();

  /// Sends an event of the screen that was shown last: its campaigns are shown over that screen.
  Q_INVOKABLE void sendEvent(const QString& name, const QJSValue& parameters = {});
  Q_INVOKABLE void login(const QJSValue& parameters = {});
  Q_INVOKABLE void applicationError(const QString& type, const QString& message);
  Q_INVOKABLE void updateActorId(const QString& actorId);
  Q_INVOKABLE void setPushToken(const QString& token);
  Q_INVOKABLE void setAuthorizationToken(const QString& token);
  /// A push has reached the application; `userInfo` is what it carries.
  Q_INVOKABLE void receiveRemoteNotification(const QJSValue& userInfo);
  // The application's life cycle, for hosts that report it.
  Q_INVOKABLE void didFinishLaunching();
  Q_INVOKABLE void didBecomeActive();
  Q_INVOKABLE void willResignActive();

  /// Sends an event of `screen`, which may be null. For `KifoScreen`.
  static void send(std::shared_ptr<ViewController> screen, const QString& name,
                   const QJSValue& parameters);
  static void sendLogin(std::shared_ptr<ViewController> screen, const QJSValue& parameters);

 Q_SIGNALS:
  /// The server's first answer is there: from now on events are sent.
  void ready();
  void initializedChanged();
  /// The user chose a campaign's button: its "id", "text", "type", and the "link" and "linkType" of
  /// its action; what the campaign does not say is undefined. `eventName` is the event that brought
  /// the campaign.
  void buttonChosen(const QVariantMap& button, const QString& eventName);

 private:
  const std::shared_ptr<UiLink<QmlKifo>> link_;
};

}  // namespace kifo
