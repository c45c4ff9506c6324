pragma Singleton
import QtQuick

// The kiosk's colours, sizes and type.
QtObject {
    readonly property color ground: "#F6F1E9"
    readonly property color surface: "#FFFFFF"
    readonly property color ink: "#27221B"
    readonly property color muted: "#71685B"
    readonly property color line: "#E6DCCD"
    readonly property color leaf: "#24594A"
    readonly property color leafPressed: "#1B4639"
    readonly property color leafTint: "#E3EDE6"

    readonly property string text: "Noto Sans"
    readonly property string display: "Noto Serif"

    readonly property int touch: 48
    readonly property int margin: 16
    readonly property int radius: 14

    function price(cents) {
        return (cents / 100).toFixed(2) + " €"
    }
}
