import QtQuick
import Kifo
Window {
    property string server: Qt.application.arguments[1]
    visible: true; width: 800; height: 480
    KifoScreen { name: "MenuScreen" }
    Component.onCompleted: Kifo.initialize({
        bundle: "com.example.kiosk", applicationName: "kiosk", authorization: "a token of the server's",
        apiUri: server + "/getInAppCommunication", listenerUri: server + "/sdkListenerEvent"
    })
    Connections {
        target: Kifo
        function onReady() { Kifo.sendEvent("basket_opened", { items: 3 }) }
        function onButtonChosen(button) { console.log("chosen:", button.text) }
    }
}
