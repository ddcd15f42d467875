import QtQuick

Rectangle { color: "red" }
