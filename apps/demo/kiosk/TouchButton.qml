import QtQuick

// A button for fingers: at least 48 pixels high, with a ring where the keyboard is.
Item {
    id: button

    property string text
    property string accessibleName: text
    property bool isPlain: false
    property int fontSize: 18
    property int radius: Theme.radius
    signal clicked

    implicitWidth: Math.max(Theme.touch, label.implicitWidth + 48)
    implicitHeight: Theme.touch + 4
    activeFocusOnTab: true
    opacity: enabled ? 1 : 0.4

    Accessible.role: Accessible.Button
    Accessible.name: button.accessibleName
    Accessible.onPressAction: button.clicked()
    Keys.onSpacePressed: button.clicked()
    Keys.onReturnPressed: button.clicked()

    Rectangle {
        anchors.fill: parent
        radius: button.radius
        color: button.isPlain ? (area.pressed ? Theme.line : Theme.surface)
                              : (area.pressed ? Theme.leafPressed : Theme.leaf)
        border.color: Theme.line
        border.width: button.isPlain ? 1 : 0
    }
    Rectangle {
        visible: button.activeFocus
        anchors.fill: parent
        anchors.margins: -4
        radius: button.radius + 4
        color: "transparent"
        border.color: Theme.leaf
        border.width: 2
    }
    Text {
        id: label
        anchors.centerIn: parent
        text: button.text
        color: button.isPlain ? Theme.ink : Theme.surface
        font { family: Theme.text; pixelSize: button.fontSize; weight: Font.DemiBold }
        Accessible.ignored: true
    }
    MouseArea {
        id: area
        anchors.fill: parent
        onClicked: button.clicked()
    }
}
