// The items of one campaign's popup, in the order in which they are read and tabbed.
import QtQuick
import Kifo

Item {
    id: view

    required property QuickPopup popup

    width: popup.width
    height: popup.height
    y: -popup.lift

    Accessible.role: Accessible.Dialog
    Accessible.name: popup.name
    Accessible.description: popup.details

    component Label: PopupPiece {
        Accessible.role: Accessible.StaticText
        Accessible.name: label
    }

    component Button: PopupControl {
        Accessible.role: Accessible.Button
        Accessible.name: label
        Accessible.description: hint
        Accessible.focusable: true
        Accessible.onPressAction: press()
    }

    component Option: PopupControl {
        Accessible.role: isOption ? Accessible.RadioButton : Accessible.Button
        Accessible.name: label
        Accessible.checkable: isOption
        Accessible.checked: isChosen
        Accessible.focusable: true
        Accessible.onPressAction: press()
        Accessible.onToggleAction: press()
    }

    // What fades as one. The layer holds no more of the window than the popup takes up.
    Item {
        id: layered

        x: view.popup.extent.x
        y: view.popup.extent.y
        width: view.popup.extent.width
        height: view.popup.extent.height
        opacity: view.popup.fade
        layer.enabled: view.popup.fade > 0 && view.popup.fade < 1

        Item {
            x: -layered.x
            y: -layered.y
            width: view.width
            height: view.height

            PopupPiece {
                part: PopupPiece.Shadow
            }

            PopupPiece {
                id: panel

                part: PopupPiece.Panel

                PopupControl {
                    objectName: "popupView"
                    part: PopupPiece.Body
                    Accessible.ignored: !view.popup.isPressable
                    Accessible.role: Accessible.Link
                    Accessible.name: label
                    Accessible.focusable: true
                    Accessible.onPressAction: press()
                }

                PopupScroll {
                    objectName: "panelScroll"
                    part: PopupPiece.PanelScroll

                    Item {
                        id: content

                        objectName: "contentView"
                        width: parent.width
                        height: (parent as PopupScroll).contentHeight
                        y: -(parent as PopupScroll).contentY

                        Label {
                            objectName: "popupTitle"
                            part: PopupPiece.Title
                        }
                        PopupPiece {
                            objectName: "popupImageView"
                            part: PopupPiece.Picture
                            Accessible.role: Accessible.Graphic
                            Accessible.name: label
                        }
                        PopupCarousel {
                            objectName: "popupImageViewList"
                            part: PopupPiece.Carousel
                            clip: true
                            Accessible.role: Accessible.Graphic
                            Accessible.name: label
                            Accessible.focusable: true
                        }
                        PopupPiece {
                            objectName: "pageIndicator"
                            part: PopupPiece.Pages
                            Accessible.role: Accessible.Indicator
                            Accessible.name: label
                        }
                        Label {
                            objectName: "popupDescription"
                            part: PopupPiece.Description
                        }
                        Label {
                            objectName: "couponLabel"
                            part: PopupPiece.Coupon
                        }
                        Button {
                            objectName: "copyButton"
                            part: PopupPiece.Copy
                        }
                        Label {
                            objectName: "popupQuestion"
                            part: PopupPiece.Question
                        }
                        PopupScroll {
                            objectName: "buttonsTableview"
                            part: PopupPiece.List
                            Accessible.role: Accessible.Grouping
                            Accessible.name: label

                            Item {
                                width: parent.width
                                height: (parent as PopupScroll).contentHeight
                                y: -(parent as PopupScroll).contentY

                                Repeater {
                                    model: view.popup.hasList ? view.popup.rows : 0

                                    Option {
                                        required property int index

                                        objectName: isOption ? "selectButton" : "titleLbl"
                                        part: PopupPiece.ListRow
                                        row: index
                                    }
                                }
                            }
                        }
                        PopupPiece {
                            part: PopupPiece.ListEdges
                        }
                        PopupPiece {
                            objectName: "emojiCollectionView"
                            part: PopupPiece.Emojis
                            Accessible.role: Accessible.Grouping
                            Accessible.name: label

                            Repeater {
                                model: view.popup.hasList ? 0 : view.popup.rows

                                Option {
                                    required property int index

                                    objectName: "emojiButton"
                                    part: PopupPiece.Emoji
                                    row: index
                                }
                            }
                        }
                        Label {
                            objectName: "scoreValueLabel"
                            part: PopupPiece.Score
                        }
                        Label {
                            objectName: "sliderMinLabel"
                            part: PopupPiece.Minimum
                        }
                        Label {
                            objectName: "sliderMaksLabel"
                            part: PopupPiece.Maximum
                        }
                        PopupSlider {
                            objectName: "slider"
                            part: PopupPiece.Slider
                            Accessible.role: Accessible.Slider
                            Accessible.name: label
                            Accessible.focusable: true
                        }
                        PopupPiece {
                            objectName: "fieldView"
                            part: PopupPiece.FieldView
                            clip: true

                            Label {
                                objectName: "textFieldLabel"
                                part: PopupPiece.FieldLabel
                            }
                            PopupPiece {
                                id: frame

                                part: PopupPiece.Field

                                TextInput {
                                    id: field

                                    activeFocusOnTab: true

                                    objectName: "textField"
                                    anchors.fill: parent
                                    leftPadding: 10
                                    rightPadding: 10
                                    clip: true
                                    verticalAlignment: TextInput.AlignVCenter
                                    font: view.popup.fieldFont
                                    color: view.popup.fieldColor
                                    selectionColor: view.popup.selectionColor
                                    selectedTextColor: view.popup.selectedColor
                                    selectByMouse: true
                                    validator: view.popup.validator
                                    text: view.popup.freeText
                                    onTextChanged: view.popup.freeText = text
                                    onActiveFocusChanged: frame.update()
                                    Keys.onReturnPressed: view.popup.fieldDone()
                                    Keys.onEnterPressed: view.popup.fieldDone()
                                    Accessible.role: Accessible.EditableText
                                    Accessible.name: view.popup.fieldName
                                    Accessible.editable: true
                                    Accessible.focusable: true
                                }
                            }
                            Label {
                                objectName: "textFieldCountLabel"
                                part: PopupPiece.Counter
                            }
                        }
                        Label {
                            objectName: "emojiText"
                            part: PopupPiece.EmojiText
                            z: 1
                        }
                    }
                }

                PopupPiece {
                    part: PopupPiece.PanelEdges
                }
                Button {
                    objectName: "submitButton"
                    parent: view.popup.isSubmitFixed ? panel : content
                    part: PopupPiece.Submit
                }
            }

            Button {
                objectName: "closeButton"
                part: PopupPiece.Close
            }
        }
    }
}
