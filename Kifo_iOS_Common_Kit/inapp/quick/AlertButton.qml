// A button of an alert.
import QtQuick
import Kifo

Rectangle {
    id: button

    required property int index
    required property var modelData
    property AlertOverlay overlay
    property rect place
    activeFocusOnTab: true
    readonly property color shown: touch.pressed ? Qt.darker(modelData.background, 1.25)
                                   : touch.containsMouse ? Qt.darker(modelData.background, 1.08)
                                                         : modelData.background

    objectName: "alertButton"
    x: place.x
    y: place.y
    width: place.width
    height: place.height
    radius: overlay.looks.buttonRadius
    color: shown
    border.color: modelData.borderColor
    border.width: modelData.borderColor.a > 0 ? 1 : 0

    Accessible.role: Accessible.Button
    Accessible.name: modelData.name
    Accessible.description: modelData.countdown
    Accessible.focusable: true
    Accessible.onPressAction: modelData.press()

    Keys.onPressed: event => {
        const presses = [Qt.Key_Space, Qt.Key_Return, Qt.Key_Enter].includes(event.key)
        event.accepted = presses
        if (presses && !event.isAutoRepeat) button.modelData.press()
    }

    Text {
        anchors { fill: parent; leftMargin: 12; rightMargin: 12 }
        text: button.modelData.title
        textFormat: Text.PlainText
        font: button.overlay.looks.button
        color: button.modelData.textColor
        horizontalAlignment: Text.AlignHCenter
        verticalAlignment: Text.AlignVCenter
        wrapMode: Text.WordWrap
        Accessible.ignored: true
    }
    FocusFrame {
        anchors.fill: parent
        radius: button.radius
        visible: button.activeFocus && button.overlay.isKeyboardUsed
        outer: button.modelData.ringOuter
        inner: button.modelData.ringInner
    }
    MouseArea {
        id: touch
        anchors.fill: parent
        hoverEnabled: true
        cursorShape: Qt.PointingHandCursor
        onPressed: {
            button.overlay.isKeyboardUsed = false
            button.forceActiveFocus(Qt.MouseFocusReason)
        }
        onClicked: button.modelData.press()
        // Without this the scene drops the second tap of two in quick succession.
        onDoubleClicked: button.modelData.press()
    }
}
