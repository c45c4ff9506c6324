// The two lines inside a control's edge that show that the keyboard is at it.
import QtQuick

Item {
    id: frame

    property color outer
    property color inner
    property real radius: 0

    Rectangle {
        anchors { fill: parent; margins: 3 }
        radius: Math.max(0, frame.radius - 3)
        color: "transparent"
        border { width: 2; color: frame.outer }
    }
    Rectangle {
        anchors { fill: parent; margins: 5 }
        radius: Math.max(0, frame.radius - 5)
        color: "transparent"
        border { width: 2; color: frame.inner }
    }
}
