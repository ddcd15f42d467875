// A program in QML alone. It ends with status 5 while it is recorded, and else with 6.
import QtQuick
import QtQuick.Window
import MirethVex

Window {
    width: 250
    height: 500
    visible: true
    color: "#c8c8c8"
    Rectangle {
        anchors.fill: parent
        color: "#404040"
        Mireth.screen: "Checkout"
        Text { text: "Secret"; Mireth.masked: true }
    }
    Timer {
        interval: 1700
        running: true
        onTriggered: Qt.exit(MirethSR.hasActiveSession() ? 5 : 6)
    }
}
