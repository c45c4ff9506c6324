// The alert: its parts in the places and colours that its overlay tells.
import QtQuick
import Kifo

AlertOverlay {
    id: alert

    Accessible.role: Accessible.AlertMessage
    Accessible.name: alert.title
    Accessible.description: alert.text

    onRevealed: item => viewport.reveal(item)

    card: Item {
        id: card
        parent: alert
        x: alert.cardPosition.x
        y: alert.cardPosition.y
        width: alert.places.card.width
        height: alert.places.card.height
        opacity: alert.cardOpacity

        HoverHandler {
            onHoveredChanged: alert.pointerInside = hovered
        }
        AlertPainting {
            part: AlertPainting.Shadow
            overlay: alert
            anchors.fill: parent
            anchors.margins: -64
        }
        Rectangle {
            x: alert.places.panel.x
            y: alert.places.panel.y
            width: alert.places.panel.width
            height: alert.places.panel.height
            radius: alert.looks.cardRadius
            color: alert.colors.card
            border.color: alert.colors.border
            border.width: 1
        }
        Flickable {
            id: viewport
            x: alert.places.viewport.x
            y: alert.places.viewport.y
            width: alert.places.viewport.width
            height: alert.places.viewport.height
            contentWidth: alert.places.contents.width
            contentHeight: alert.places.contents.height
            interactive: alert.places.scrolls
            boundsBehavior: Flickable.StopAtBounds
            clip: alert.places.scrolls

            function reveal(item) {
                const place = item.mapToItem(contentItem, 0, 0, item.width, item.height)
                if (place.y < contentY) contentY = place.y
                else if (place.bottom > contentY + height) contentY = place.bottom - height
            }

            AlertText {
                text: alert.title
                font: alert.places.titleFont
                color: alert.colors.title
                x: alert.places.title.x
                y: alert.places.title.y
                width: alert.places.title.width
                height: alert.places.title.height
                Accessible.role: Accessible.StaticText
                Accessible.name: alert.title
            }
            AlertText {
                text: alert.text
                font: alert.looks.text
                color: alert.colors.text
                alignment: alert.looks.alignment
                x: alert.places.text.x
                y: alert.places.text.y
                width: alert.places.text.width
                height: alert.places.text.height
                Accessible.role: Accessible.StaticText
                Accessible.name: alert.text
            }
            AlertList {
                overlay: alert
                x: alert.places.list.x
                y: alert.places.list.y
            }
            Repeater {
                model: alert.fields
                AlertField {
                    overlay: alert  // qmllint disable unqualified
                    place: alert.places.fields[index] ?? Qt.rect(0, 0, 0, 0)  // qmllint disable unqualified
                }
            }
            Item {
                id: customHolder
                x: alert.places.custom.x
                y: alert.places.custom.y
                width: alert.places.custom.width
                height: alert.places.custom.height
            }
            Repeater {
                model: alert.buttons
                AlertButton {
                    overlay: alert  // qmllint disable unqualified
                    place: alert.places.buttons[index] ?? Qt.rect(0, 0, 0, 0)  // qmllint disable unqualified
                }
            }
        }
        Rectangle {
            visible: alert.places.scrolls
            x: viewport.x + alert.places.contents.width
            y: viewport.y + viewport.visibleArea.yPosition * viewport.height
            width: alert.places.panel.width - alert.places.contents.width
            height: viewport.visibleArea.heightRatio * viewport.height
            radius: width / 2
            color: alert.colors.fieldBorder
        }
        Rectangle {
            visible: width > 0
            x: alert.places.disc.x
            y: alert.places.disc.y
            width: alert.places.disc.width
            height: alert.places.disc.height
            radius: width / 2
            color: alert.colors.disc

            Item {
                width: parent.width
                height: alert.places.panel.y - parent.y
                clip: true
                Rectangle {
                    width: alert.places.disc.width
                    height: width
                    radius: width / 2
                    color: "transparent"
                    border.color: alert.colors.border
                    border.width: 1
                }
            }
            Rectangle {
                x: alert.places.circle.x
                y: alert.places.circle.y
                width: alert.places.circle.width
                height: alert.places.circle.height
                radius: width / 2
                color: alert.colors.circle

                AlertPainting {
                    part: AlertPainting.Icon
                    overlay: alert
                    x: alert.places.icon.x
                    y: alert.places.icon.y
                    width: alert.places.icon.width
                    height: alert.places.icon.height
                }
            }
        }
        Item {
            id: cross
            activeFocusOnTab: true
            visible: alert.places.cross.width > 0
            x: alert.places.cross.x
            y: alert.places.cross.y
            width: alert.places.cross.width
            height: alert.places.cross.height
            Accessible.role: Accessible.Button
            Accessible.name: qsTr("Close")
            Accessible.focusable: true
            Accessible.onPressAction: alert.closeByCross()
            Keys.onPressed: event => {
                const presses = [Qt.Key_Space, Qt.Key_Return, Qt.Key_Enter].includes(event.key)
                if (presses && !event.isAutoRepeat) alert.closeByCross()
                event.accepted = presses
            }
            Rectangle {
                anchors.centerIn: parent
                width: 32
                height: 32
                radius: 16
                color: alert.colors.ink
                opacity: crossTouch.pressed ? 0.16 : crossTouch.containsMouse ? 0.08 : 0
            }
            Repeater {
                model: alert.hasCloseIcon ? [] : [45, -45]
                Rectangle {
                    required property real modelData
                    anchors.centerIn: parent
                    width: 16
                    height: 2
                    radius: 1
                    rotation: modelData
                    antialiasing: true
                    color: alert.colors.ink  // qmllint disable unqualified
                }
            }
            AlertPainting {
                part: AlertPainting.Cross
                overlay: alert
                anchors.centerIn: parent
                width: 16
                height: 16
            }
            FocusFrame {
                anchors.centerIn: parent
                width: 32
                height: 32
                radius: 16
                visible: cross.activeFocus && alert.isKeyboardUsed
                outer: alert.colors.ink
                inner: alert.colors.card
            }
            MouseArea {
                id: crossTouch
                anchors.fill: parent
                hoverEnabled: true
                cursorShape: Qt.PointingHandCursor
                onClicked: alert.closeByCross()
            }
        }
    }
    customPlace: customHolder
}
