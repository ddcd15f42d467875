// Goes through all that QML may ask of the library, one step after the other, and says what it is answered.
import QtQuick
import QtQuick.Window
import MirethVex

Window {
    id: window

    required property var finger

    width: 250
    height: 500
    visible: true
    color: "#f0f0f0"

    Rectangle {
        width: 250
        height: 60
        color: "blue"
    }
    CardNumber {
        x: 20
        y: 100
        width: 100
        height: 40
    }
    Rectangle {
        x: 20
        y: 200
        width: 100
        height: 40
        TapHandler { onTapped: MirethSR.logError("broken") }
    }

    SequentialAnimation {
        id: session
        PauseAnimation { duration: 600 }
        ScriptAction { script: window.finger.tap(window, 70, 220) }
        PauseAnimation { duration: 600 }
        ScriptAction { script: console.log(`pause: ${MirethSR.pause()}, again ${MirethSR.pause()}`) }
        PauseAnimation { duration: 600 }
        ScriptAction { script: console.log(`resume: ${MirethSR.resume()}, again ${MirethSR.resume()}`) }
        PauseAnimation { duration: 600 }
        ScriptAction { script: MirethSR.stop() }
    }

    Component.onCompleted: {
        console.log(`before: ${MirethSR.hasActiveSession()}, pause ${MirethSR.pause()}, resume ${MirethSR.resume()}`)
        MirethSR.stop()
    }

    Connections {
        target: MirethSR
        function onStarted(result, sessionId, reason) {
            console.log(`started: ${result}, '${sessionId}', '${reason}', ${MirethSR.hasActiveSession()}`)
            session.start()
        }
        function onStopped(result, reason) {
            console.log(`stopped: ${result}, '${reason}', ${MirethSR.hasActiveSession()}`)
            if (result === "success") {
                Qt.quit()
                return
            }
            MirethSR.typesToMask = ["CardNumber"]
            MirethSR.start("b1", "p1", window)
        }
    }
}
