import QtQuick
import Kifo

// The kiosk's one window: three screens, of which one is shown.
Window {
    id: window

    property var configuration
    property string current: "menu"

    width: 800
    height: 480
    visible: true
    title: "Juniper"
    color: Theme.ground

    Component.onCompleted: Kifo.initialize(window.configuration)

    Connections {
        target: Kifo
        function onButtonChosen(button) {
            if (button.link === "kiosk://add/croissant") Basket.add("croissant", 1)
        }
    }

    MenuScreen {
        id: menu
        anchors.fill: parent
        visible: window.current === "menu"
        onOrderAsked: window.current = "basket"
    }
    BasketScreen {
        anchors.fill: parent
        visible: window.current === "basket"
        onMenuAsked: window.current = "menu"
        onPaid: {
            thanks.number += 1
            window.current = "thanks"
            Kifo.sendEvent("order_paid", { cents: Basket.cents, items: Basket.count, takenAway: Basket.isTakenAway })
        }
    }
    ThanksScreen {
        id: thanks
        anchors.fill: parent
        visible: window.current === "thanks"
        onFinished: {
            Basket.clear()
            menu.category = Catalogue.categories[0]
            window.current = "menu"
        }
    }
}
