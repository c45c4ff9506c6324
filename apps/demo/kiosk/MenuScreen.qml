import QtQuick
import Kifo

// The products of a category, and what is in the basket.
Item {
    id: screen

    property string category: Catalogue.categories[0]
    signal orderAsked

    function addProduct(product) {
        Basket.add(product.id, 1)
        reporter.sendEvent("item_added", { product: product.id, category: product.category, cents: product.cents })
        if (product.category === "Coffee" && Basket.lineOf("croissant") < 0) {
            reporter.sendEvent("coffee_without_pastry", { product: product.id })
        }
    }

    KifoScreen { id: reporter; name: "MenuScreen" }

    Rectangle {
        id: rail
        width: 148
        height: parent.height
        color: Theme.surface

        Text {
            id: brand
            x: 22
            y: 22
            text: "Juniper"
            color: Theme.leaf
            font { family: Theme.display; pixelSize: 27; weight: Font.DemiBold }
        }
        Column {
            anchors { left: parent.left; right: parent.right; top: brand.bottom; topMargin: 20; leftMargin: 12; rightMargin: 12 }
            spacing: 6
            Repeater {
                model: Catalogue.categories
                Rectangle {
                    id: entry
                    required property string modelData
                    readonly property bool isCurrent: modelData === screen.category
                    width: parent.width
                    height: 54
                    radius: Theme.radius
                    color: isCurrent ? Theme.leafTint : touch.pressed ? Theme.ground : Theme.surface
                    activeFocusOnTab: true
                    border.color: Theme.leaf
                    border.width: activeFocus ? 2 : 0
                    Accessible.role: Accessible.Button
                    Accessible.name: entry.modelData
                    Accessible.onPressAction: screen.category = entry.modelData
                    Keys.onSpacePressed: screen.category = entry.modelData
                    Keys.onReturnPressed: screen.category = entry.modelData
                    Text {
                        anchors { verticalCenter: parent.verticalCenter; left: parent.left; leftMargin: 12 }
                        text: entry.modelData
                        color: entry.isCurrent ? Theme.leaf : Theme.ink
                        font { family: Theme.text; pixelSize: 18; weight: entry.isCurrent ? Font.DemiBold : Font.Normal }
                        Accessible.ignored: true
                    }
                    MouseArea {
                        id: touch
                        anchors.fill: parent
                        onClicked: screen.category = entry.modelData
                    }
                }
            }
        }
        Rectangle { anchors.right: parent.right; width: 1; height: parent.height; color: Theme.line }
    }

    Text {
        id: heading
        anchors { left: rail.right; leftMargin: Theme.margin + 4; top: parent.top; topMargin: 19 }
        text: "What would you like?"
        color: Theme.ink
        font { family: Theme.display; pixelSize: 24; weight: Font.DemiBold }
    }

    GridView {
        id: grid
        readonly property int columns: Math.max(2, Math.floor(width / 200))
        anchors { left: rail.right; right: parent.right; top: heading.bottom; bottom: bar.top; leftMargin: Theme.margin; rightMargin: 4; topMargin: 12 }
        clip: true
        cellWidth: Math.floor(width / columns)
        cellHeight: 166
        model: Catalogue.of(screen.category)
        boundsBehavior: Flickable.StopAtBounds
        delegate: Item {
            id: cell
            required property var modelData
            width: grid.cellWidth
            height: grid.cellHeight
            ProductTile {
                anchors { fill: parent; rightMargin: 12; bottomMargin: 12; topMargin: 4; leftMargin: 4 }
                product: cell.modelData
                onChosen: screen.addProduct(product)
            }
        }
    }

    Rectangle {
        id: bar
        anchors { left: rail.right; right: parent.right; bottom: parent.bottom }
        height: 76
        color: Theme.surface
        Rectangle { width: parent.width; height: 1; color: Theme.line }
        Column {
            anchors { verticalCenter: parent.verticalCenter; left: parent.left; leftMargin: Theme.margin + 4 }
            Text {
                text: Basket.count === 0 ? "Your order is empty"
                                         : Basket.count === 1 ? "1 item" : Basket.count + " items"
                color: Theme.muted
                font { family: Theme.text; pixelSize: 15 }
            }
            Text {
                visible: Basket.count > 0
                text: Theme.price(Basket.cents)
                color: Theme.ink
                font { family: Theme.text; pixelSize: 22; weight: Font.Bold }
            }
        }
        TouchButton {
            anchors { verticalCenter: parent.verticalCenter; right: parent.right; rightMargin: Theme.margin }
            text: "See my order"
            enabled: Basket.count > 0
            onClicked: screen.orderAsked()
        }
    }
}
