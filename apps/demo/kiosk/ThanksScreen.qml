import QtQuick
import Kifo

// The order's number, once it is paid.
Rectangle {
    id: screen

    property int number: 41
    signal finished

    color: Theme.leaf

    KifoScreen { name: "ThanksScreen" }

    Column {
        anchors { left: parent.left; leftMargin: parent.width * 0.08; verticalCenter: parent.verticalCenter }
        spacing: 6
        Text {
            text: "Thank you!"
            color: Theme.surface
            font { family: Theme.display; pixelSize: 40; weight: Font.DemiBold }
        }
        Text {
            text: "We call your number in about five minutes."
            color: "#CFE0D8"
            font { family: Theme.text; pixelSize: 18 }
        }
        Item { width: 1; height: 22 }
        TouchButton {
            isPlain: true
            height: 60
            text: "New order"
            onClicked: screen.finished()
        }
    }
    Rectangle {
        anchors { right: parent.right; rightMargin: parent.width * 0.08; verticalCenter: parent.verticalCenter }
        width: 220
        height: 260
        radius: 26
        color: Theme.ground
        Text {
            anchors { horizontalCenter: parent.horizontalCenter; top: parent.top; topMargin: 30 }
            text: "Your number"
            color: Theme.muted
            font { family: Theme.text; pixelSize: 17 }
        }
        Text {
            anchors.centerIn: parent
            text: screen.number
            color: Theme.leaf
            font { family: Theme.display; pixelSize: 104; weight: Font.Bold }
        }
        Text {
            anchors { horizontalCenter: parent.horizontalCenter; bottom: parent.bottom; bottomMargin: 28 }
            text: Basket.isTakenAway ? "To take away" : "At your table"
            color: Theme.muted
            font { family: Theme.text; pixelSize: 16 }
        }
    }
}
