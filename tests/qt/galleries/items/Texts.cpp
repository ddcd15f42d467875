// Texts, labels, pictures.
#include "qt/galleries/ItemExhibit.hpp"

namespace mireth::qttest {

std::vector<ItemExhibit> textItems() {
    return {
        {"Text", "Text { text: 'Secret'; color: 'red' }"},
        {"RichText", "Text { text: \"<b>Secret</b><img src=PICTURE>\"; color: 'red' }"},
        {"MarkdownText", "Text { text: '# Secret'; textFormat: Text.MarkdownText; color: 'red' }"},
        {"LinkedText", "Text { text: \"<a href='x'>Secret</a>\"; linkColor: 'red' }"},
        {"OutlinedText", "Text { text: 'Secret'; style: Text.Outline; styleColor: 'red' }"},
        {"OverflowingText", "Text { width: 5; text: 'Secret secret secret'; color: 'red' }"},
        {"ElidedText", "Text { width: 40; text: 'Secret secret'; elide: Text.ElideMiddle; color: 'red' }"},
        {"TurnedText", "Text { x: 90; y: 40; text: 'Secret'; color: 'red'; rotation: 30; scale: 2 }"},
        {"TextBehindItsParent",
         "Rectangle { width: 20; height: 90; color: 'grey'; Text { z: -1; text: 'Secret secret'; color: "
         "'red' } }"},
        {"TextInMouseArea", "MouseArea { width: 90; height: 90; Text { text: 'Secret'; color: 'red' } }"},
        {"TextUnderCover",
         "Text { text: 'Secret'; color: 'red' } Rectangle { width: 5; height: 5; color: 'grey' }"},
        {"TextInARectangle",
         "Rectangle { width: 90; height: 40; radius: 8; border { width: 2; color: 'grey' }"
         " gradient: Gradient { GradientStop { position: 0; color: 'white' } GradientStop { position: 1; "
         "color: 'grey' } }"
         " Text { text: 'Secret'; color: 'red' } }"},
        {"TextInput", "TextInput { text: 'Secret'; color: 'red' }"},
        {"SelectedTextInput",
         "TextInput { text: 'Secret'; selectedTextColor: 'red'; selectionColor: 'grey'; focus: true;"
         " Component.onCompleted: selectAll() }"},
        {"Cursor",
         "TextInput { text: 'Secret'; color: 'red'; focus: true; cursorVisible: true;"
         " cursorDelegate: Image { source: PICTURE; width: 4; height: 20 } }"},
        {"TextEdit", "TextEdit { text: 'Secret'; color: 'red' }"},
        {"RichTextEdit",
         "TextEdit { textFormat: TextEdit.RichText; color: 'red'; text: \"<h2>Secret</h2><img src=PICTURE>\" "
         "}"},
        {"Label", "Label { text: 'Secret' }"},
        {"LabelWithABackground", "Label { text: 'Secret'; background: Image { source: PICTURE } }"},
        {"Image", "Image { source: PICTURE; width: 50; height: 50 }"},
        {"TiledImage", "Image { source: PICTURE; width: 90; height: 90; fillMode: Image.Tile }"},
        {"MirroredImage", "Image { source: PICTURE; width: 50; height: 50; mirror: true; smooth: false }"},
        {"ImageAnimation", "Image { source: PICTURE; NumberAnimation on x { to: 100; duration: 500 } }"},
        {"BorderImage", "BorderImage { source: PICTURE; width: 50; height: 50; border { left: 2; top: 2 } }"},
        {"AnimatedImage", "AnimatedImage { source: PICTURE; width: 50; height: 50 }"},
        {"FadingText",
         "Text { text: 'Secret secret'; color: 'red'; font.pixelSize: 30;"
         " NumberAnimation on opacity { from: 1; to: 0.3; duration: 300; loops: Animation.Infinite } }"},
    };
}

}  // namespace mireth::qttest
