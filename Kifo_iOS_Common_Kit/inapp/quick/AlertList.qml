// The list in an alert's card: a heading, and rows of a header and a value.
import QtQuick
import Kifo

Item {
    id: list

    required property AlertOverlay overlay

    width: list.overlay.places.list.width
    height: list.overlay.places.list.height

    AlertText {
        text: list.overlay.heading
        font: list.overlay.looks.row
        color: list.overlay.colors.text
        alignment: 1
        x: list.overlay.places.heading.x
        y: list.overlay.places.heading.y
        width: list.overlay.places.heading.width
        height: list.overlay.places.heading.height
        Accessible.role: Accessible.StaticText
        Accessible.name: list.overlay.heading
    }
    Repeater {
        model: list.overlay.places.rows
        Item {
            id: row
            required property var modelData
            width: list.width  // qmllint disable unqualified
            Rectangle {
                visible: row.modelData.line >= 0
                y: row.modelData.line
                width: list.width  // qmllint disable unqualified
                height: 1
                color: list.overlay.colors.line  // qmllint disable unqualified
            }
            AlertText {
                text: row.modelData.header
                font: list.overlay.looks.row  // qmllint disable unqualified
                color: list.overlay.colors.text  // qmllint disable unqualified
                alignment: 1
                x: row.modelData.headerPlace.x
                y: row.modelData.headerPlace.y
                width: row.modelData.headerPlace.width
                height: row.modelData.headerPlace.height
                Accessible.role: Accessible.StaticText
                Accessible.name: row.modelData.header
            }
            AlertText {
                text: row.modelData.value
                font: list.overlay.looks.text  // qmllint disable unqualified
                color: list.overlay.colors.text  // qmllint disable unqualified
                alignment: row.modelData.isBeside ? 2 : 1
                x: row.modelData.valuePlace.x
                y: row.modelData.valuePlace.y
                width: row.modelData.valuePlace.width
                height: row.modelData.valuePlace.height
                Accessible.role: Accessible.StaticText
                Accessible.name: row.modelData.value
            }
        }
    }
}
