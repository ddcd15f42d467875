// What Qt's runtime for QML shows while it is recorded: pages, a list, a field, a menu and a dialog.
import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Layouts

ApplicationWindow {
    id: window
    width: 400
    height: 800
    visible: true
    title: "Shop"
    color: "#828282"
    palette { windowText: "red"; text: "red"; buttonText: "red"; highlightedText: "red"; placeholderText: "red"; highlight: "#505050" }

    Shortcut { sequence: "Ctrl+Q"; onActivated: { console.log("leaving with " + field.text); Qt.exit(3) } }

    header: Rectangle {
        height: 60
        color: "#303030"
        Label { anchors.centerIn: parent; text: "Shop" }
    }

    ColumnLayout {
        anchors.fill: parent
        anchors.margins: 20
        TextField { id: field; Layout.fillWidth: true; Layout.preferredHeight: 60; placeholderText: "Name" }
        Slider { Layout.fillWidth: true; Layout.preferredHeight: 60; onPressedChanged: console.log(pressed) }
        Button { Layout.preferredHeight: 60; text: "Menu"; onClicked: menu.open() }
        Button { Layout.preferredHeight: 60; text: "Buy"; onClicked: dialog.open() }
        ListView {
            Layout.fillWidth: true
            Layout.fillHeight: true
            clip: true
            model: 100
            delegate: ItemDelegate { width: ListView.view.width; height: 50; text: "Mug " + index; onClicked: console.log(text) }
        }
    }

    Menu {
        id: menu
        x: 150
        y: 300
        MenuItem { text: "Copy"; onTriggered: console.log("copied") }
        MenuItem { text: "Paste" }
    }

    Dialog {
        id: dialog
        anchors.centerIn: parent
        width: 300
        height: 240
        modal: true
        dim: false
        title: "Buy it?"
        standardButtons: Dialog.Ok | Dialog.Cancel
        onAccepted: console.log("bought")
    }
}
