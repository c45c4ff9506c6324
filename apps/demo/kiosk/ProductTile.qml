import QtQuick

// A product of the menu. A touch anywhere on it adds one.
Rectangle {
    id: tile

    required property var product
    readonly property int amount: {
        Basket.count  // Asked anew when the basket changes.
        const row = Basket.lineOf(product.id)
        return row < 0 ? 0 : Basket.lines.get(row).amount
    }
    signal chosen

    radius: Theme.radius
    color: Theme.surface
    border.color: tile.amount > 0 ? Theme.leaf : Theme.line
    border.width: tile.amount > 0 ? 2 : 1
    scale: area.pressed ? 0.97 : 1
    activeFocusOnTab: true

    Behavior on scale { NumberAnimation { duration: 90 } }

    Accessible.role: Accessible.Button
    Accessible.name: "Add " + tile.product.name
    Accessible.onPressAction: tile.chosen()
    Keys.onSpacePressed: tile.chosen()
    Keys.onReturnPressed: tile.chosen()

    ProductPicture {
        id: drawing
        anchors { left: parent.left; right: parent.right; top: parent.top; margins: 6 }
        height: parent.height - 70
        radius: Theme.radius - 5
        product: tile.product
    }
    Column {
        anchors { left: parent.left; right: badge.left; bottom: parent.bottom; leftMargin: 14; bottomMargin: 11 }
        spacing: 1
        Text {
            width: parent.width
            text: tile.product.name
            elide: Text.ElideRight
            color: Theme.ink
            font { family: Theme.text; pixelSize: 16; weight: Font.DemiBold }
            Accessible.ignored: true
        }
        Text {
            text: Theme.price(tile.product.cents)
            color: Theme.muted
            font { family: Theme.text; pixelSize: 15 }
            Accessible.ignored: true
        }
    }
    Rectangle {
        id: badge
        anchors { right: parent.right; bottom: parent.bottom; margins: 11 }
        width: 44
        height: 44
        radius: 22
        color: tile.amount > 0 ? Theme.leaf : Theme.leafTint
        Text {
            anchors.centerIn: parent
            text: tile.amount > 0 ? tile.amount : "+"
            color: tile.amount > 0 ? Theme.surface : Theme.leaf
            font { family: Theme.text; pixelSize: tile.amount > 0 ? 18 : 26; weight: Font.DemiBold }
            Accessible.ignored: true
        }
    }
    Rectangle {
        visible: tile.activeFocus
        anchors.fill: parent
        anchors.margins: -4
        radius: Theme.radius + 4
        color: "transparent"
        border.color: Theme.leaf
        border.width: 2
    }
    MouseArea {
        id: area
        anchors.fill: parent
        onClicked: tile.chosen()
    }
}
