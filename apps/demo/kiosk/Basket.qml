pragma Singleton
import QtQuick

// What the customer has chosen so far.
QtObject {
    id: basket

    readonly property ListModel lines: ListModel {}
    property int count: 0
    property int cents: 0
    property bool isTakenAway: false

    function lineOf(id) {
        for (let row = 0; row < lines.count; ++row) {
            if (lines.get(row).productId === id) return row
        }
        return -1
    }
    // Adds `amount`, which may be negative; a line of none is removed.
    function add(id, amount) {
        const row = lineOf(id)
        if (row < 0) {
            lines.append({ productId: id, amount: amount })
        } else if (lines.get(row).amount + amount > 0) {
            lines.setProperty(row, "amount", lines.get(row).amount + amount)
        } else {
            lines.remove(row)
        }
        sum()
    }
    function clear() {
        lines.clear()
        isTakenAway = false
        sum()
    }
    function sum() {
        count = 0
        cents = 0
        for (let row = 0; row < lines.count; ++row) {
            const line = lines.get(row)
            count += line.amount
            cents += line.amount * Catalogue.find(line.productId).cents
        }
    }
}
