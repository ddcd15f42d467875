import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Layouts
import MirethVex

ApplicationWindow {
    id: window
    width: 360
    height: 720
    visible: true
    title: "Shop"
    color: "#f4f1ec"
    Component.onCompleted: MirethSR.start("my-brand", "my-project", window)

    Shortcut { sequence: "Ctrl+Q"; onActivated: Qt.quit() }

    Connections {
        target: MirethSR
        function onStarted(result) { console.log("recording:", result) }
    }

    header: Rectangle {
        height: 56
        color: "#2b4a3f"
        Label { anchors.centerIn: parent; text: "Shop"; color: "white" }
    }

    StackView {
        id: pages
        anchors.fill: parent
        initialItem: catalogue
    }

    Component {
        id: catalogue
        ListView {
            Mireth.screen: "Catalogue"
            model: ["Mug", "Bowl", "Vase", "Carafe"]
            spacing: 8
            topMargin: 8
            delegate: Rectangle {
                x: 12
                width: ListView.view.width - 24
                height: 88
                radius: 8
                color: "white"
                border { color: "#d8d2c8"; width: 2 }
                Label { anchors { left: parent.left; leftMargin: 16; verticalCenter: parent.verticalCenter } text: modelData }
                TapHandler { onTapped: pages.push(checkout, { product: modelData }) }
            }
        }
    }

    Component {
        id: checkout
        ColumnLayout {
            property string product
            Mireth.screen: "Checkout"
            Label { text: product; Layout.margins: 16 }
            TextField { placeholderText: "Card number"; Layout.margins: 16; Layout.fillWidth: true }
            Slider { from: 1; to: 9; Layout.margins: 16; Layout.fillWidth: true }
            Button { text: "Buy"; Layout.margins: 16; onClicked: pages.pop() }
            Item { Layout.fillHeight: true }
        }
    }
}
