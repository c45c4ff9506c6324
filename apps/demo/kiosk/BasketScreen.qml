import QtQuick
import Kifo

// The order before it is paid: amounts, where it is eaten, and the sum.
Item {
    id: screen

    signal menuAsked
    signal paid

    // Stands for the card reader, which takes a moment.
    property int payingSeconds: 3

    function pay() {
        reporter.sendEvent("payment_started", { cents: Basket.cents, items: Basket.count })
        reader.show()
    }

    KifoScreen { id: reporter; name: "BasketScreen" }

    KifoAlert {
        id: reader
        style: KifoAlert.Wait
        title: "Hold your card to the reader"
        text: Theme.price(Basket.cents)
        closeButtonTitle: "Cancel"
        likePopups: true
        color: Theme.leaf
        timeout: screen.payingSeconds
        onTimedOut: screen.paid()
    }

    Item {
        id: header
        width: parent.width
        height: 76
        TouchButton {
            id: back
            anchors { left: parent.left; leftMargin: Theme.margin; verticalCenter: parent.verticalCenter }
            isPlain: true
            text: "‹  Menu"
            accessibleName: "Menu"
            onClicked: screen.menuAsked()
        }
        Text {
            anchors { left: back.right; leftMargin: 20; verticalCenter: parent.verticalCenter }
            text: "Your order"
            color: Theme.ink
            font { family: Theme.display; pixelSize: 24; weight: Font.DemiBold }
        }
    }

    ListView {
        id: list
        anchors { left: parent.left; right: summary.left; top: header.bottom; bottom: parent.bottom; leftMargin: Theme.margin; rightMargin: Theme.margin }
        clip: true
        spacing: 10
        bottomMargin: Theme.margin
        boundsBehavior: Flickable.StopAtBounds
        model: Basket.lines
        delegate: Rectangle {
            id: line
            required property string productId
            required property int amount
            readonly property var product: Catalogue.find(productId)
            width: list.width
            height: 78
            radius: Theme.radius
            color: Theme.surface
            border.color: Theme.line
            ProductPicture {
                id: drawing
                x: 8
                anchors.verticalCenter: parent.verticalCenter
                width: 62
                height: 62
                radius: Theme.radius - 4
                product: line.product
            }
            Column {
                anchors { left: drawing.right; right: stepper.left; leftMargin: 14; rightMargin: 8; verticalCenter: parent.verticalCenter }
                Text {
                    width: parent.width
                    text: line.product.name
                    elide: Text.ElideRight
                    color: Theme.ink
                    font { family: Theme.text; pixelSize: 17; weight: Font.DemiBold }
                }
                Text {
                    text: Theme.price(line.product.cents * line.amount)
                    color: Theme.muted
                    font { family: Theme.text; pixelSize: 15 }
                }
            }
            Row {
                id: stepper
                anchors { right: parent.right; rightMargin: 12; verticalCenter: parent.verticalCenter }
                TouchButton {
                    width: Theme.touch
                    height: Theme.touch
                    radius: width / 2
                    isPlain: true
                    text: "−"
                    fontSize: 24
                    accessibleName: "One " + line.product.name + " less"
                    onClicked: Basket.add(line.productId, -1)
                }
                Text {
                    width: 40
                    height: Theme.touch
                    horizontalAlignment: Text.AlignHCenter
                    verticalAlignment: Text.AlignVCenter
                    text: line.amount
                    color: Theme.ink
                    font { family: Theme.text; pixelSize: 19; weight: Font.DemiBold }
                }
                TouchButton {
                    width: Theme.touch
                    height: Theme.touch
                    radius: width / 2
                    isPlain: true
                    text: "+"
                    fontSize: 24
                    accessibleName: "One " + line.product.name + " more"
                    onClicked: Basket.add(line.productId, 1)
                }
            }
        }
    }

    Rectangle {
        id: summary
        anchors { right: parent.right; top: parent.top; bottom: parent.bottom }
        width: Math.max(280, parent.width * 0.34)
        color: Theme.surface
        Rectangle { width: 1; height: parent.height; color: Theme.line }

        Rectangle {
            id: choice
            anchors { left: parent.left; right: parent.right; top: parent.top; margins: 20 }
            height: 56
            radius: Theme.radius
            color: Theme.ground
            Row {
                anchors { fill: parent; margins: 4 }
                Repeater {
                    model: ["Eat here", "Take away"]
                    Rectangle {
                        id: option
                        required property string modelData
                        required property int index
                        readonly property bool isCurrent: Basket.isTakenAway === (index === 1)
                        width: parent.width / 2
                        height: parent.height
                        radius: Theme.radius - 4
                        color: isCurrent ? Theme.surface : "transparent"
                        border.color: Theme.line
                        border.width: isCurrent ? 1 : 0
                        activeFocusOnTab: true
                        Accessible.role: Accessible.RadioButton
                        Accessible.name: option.modelData
                        Accessible.checked: option.isCurrent
                        Accessible.onPressAction: Basket.isTakenAway = option.index === 1
                        Keys.onSpacePressed: Basket.isTakenAway = option.index === 1
                        Text {
                            anchors.centerIn: parent
                            text: option.modelData
                            color: option.isCurrent ? Theme.leaf : Theme.muted
                            font { family: Theme.text; pixelSize: 16; weight: Font.DemiBold }
                            Accessible.ignored: true
                        }
                        MouseArea {
                            anchors.fill: parent
                            onClicked: Basket.isTakenAway = option.index === 1
                        }
                    }
                }
            }
        }

        Column {
            anchors { left: parent.left; right: parent.right; bottom: payButton.top; margins: 20; bottomMargin: 18 }
            spacing: 8
            Repeater {
                model: [{ label: Basket.count === 1 ? "1 item" : Basket.count + " items", value: Theme.price(Basket.cents) },
                        { label: "VAT included", value: Theme.price(Math.round(Basket.cents * 7 / 107)) }]
                Item {
                    id: entry
                    required property var modelData
                    width: parent.width
                    height: 24
                    Text { text: entry.modelData.label; color: Theme.muted; font { family: Theme.text; pixelSize: 16 } }
                    Text { anchors.right: parent.right; text: entry.modelData.value; color: Theme.muted; font { family: Theme.text; pixelSize: 16 } }
                }
            }
            Rectangle { width: parent.width; height: 1; color: Theme.line }
            Item {
                width: parent.width
                height: 42
                Text {
                    anchors.verticalCenter: parent.verticalCenter
                    text: "Total"
                    color: Theme.ink
                    font { family: Theme.text; pixelSize: 20; weight: Font.DemiBold }
                }
                Text {
                    anchors { right: parent.right; verticalCenter: parent.verticalCenter }
                    text: Theme.price(Basket.cents)
                    color: Theme.ink
                    font { family: Theme.text; pixelSize: 28; weight: Font.Bold }
                }
            }
        }
        TouchButton {
            id: payButton
            anchors { left: parent.left; right: parent.right; bottom: parent.bottom; margins: 20 }
            height: 64
            fontSize: 20
            text: "Pay by card"
            enabled: Basket.count > 0
            onClicked: screen.pay()
        }
    }
}
