// A field of an alert: one line, or a few.
import QtQuick
import Kifo

Rectangle {
    id: field

    required property int index
    required property var modelData
    property AlertOverlay overlay
    property rect place
    readonly property Item input: modelData.isLine ? line : lines

    x: place.x
    y: place.y
    width: place.width
    height: place.height
    radius: overlay.looks.fieldRadius
    color: overlay.colors.field
    border.color: input.activeFocus ? overlay.colors.accent : overlay.colors.fieldBorder
    border.width: input.activeFocus ? 2 : 1

    Text {
        anchors { fill: parent; leftMargin: 7; rightMargin: 7 }
        visible: field.modelData.text === "" && field.input.preeditText === ""
        text: field.modelData.placeholder
        textFormat: Text.PlainText
        elide: Text.ElideRight
        verticalAlignment: field.modelData.isLine ? Text.AlignVCenter : Text.AlignTop
        font: field.overlay.looks.text
        color: field.overlay.colors.text
        opacity: 0.5
        Accessible.ignored: true
    }
    TextInput {
        id: line
        activeFocusOnTab: field.modelData.isLine
        objectName: "alertField"
        anchors.fill: parent
        leftPadding: 7
        rightPadding: 7
        visible: field.modelData.isLine
        enabled: visible
        clip: true
        verticalAlignment: TextInput.AlignVCenter
        text: field.modelData.text
        font: field.overlay.looks.text
        color: field.overlay.colors.text
        selectionColor: field.overlay.colors.accent
        selectedTextColor: field.overlay.colors.selectedText
        selectByMouse: true
        onTextEdited: {
            field.modelData.text = text
            field.overlay.engage()
        }
        Accessible.role: Accessible.EditableText
        Accessible.name: field.modelData.placeholder
    }
    Flickable {
        anchors.fill: parent
        visible: !field.modelData.isLine
        clip: true
        contentHeight: lines.height
        boundsBehavior: Flickable.StopAtBounds
        TextEdit {
            id: lines
            activeFocusOnTab: !field.modelData.isLine
            objectName: "alertField"
            width: parent.width
            height: Math.max(field.height, implicitHeight)
            padding: 5
            enabled: parent.parent.visible
            text: field.modelData.text
            textFormat: TextEdit.PlainText
            wrapMode: TextEdit.Wrap
            font: field.overlay.looks.text
            color: field.overlay.colors.text
            selectionColor: field.overlay.colors.accent
            selectedTextColor: field.overlay.colors.selectedText
            selectByMouse: true
            onTextChanged: {
                if (text === field.modelData.text) return
                field.modelData.text = text
                field.overlay.engage()
            }
            Accessible.role: Accessible.EditableText
            Accessible.name: field.modelData.placeholder
            Accessible.multiLine: true
        }
    }
}
