// What draws itself: canvases, shapes, shaders, pictures that come from elsewhere.
#include "qt/galleries/ItemExhibit.hpp"

namespace mireth::qttest {

std::vector<ItemExhibit> drawnItems() {
    return {
        {"Canvas",
         "Canvas { width: 50; height: 50; onPaint: { var c = getContext('2d'); c.fillStyle = 'red';"
         " c.fillRect(0, 0, 50, 50) } }"},
        {"Shape",
         "Shape { width: 60; height: 60; ShapePath { fillColor: 'red'; strokeColor: 'red'; startX: 5; "
         "startY: 5;"
         " PathLine { x: 50; y: 5 } PathLine { x: 50; y: 50 } } }"},
        {"ShapeWithAGradient",
         "Shape { width: 60; height: 60; ShapePath { fillGradient: LinearGradient { GradientStop { position: "
         "0; color: 'red' } }"
         " PathLine { x: 50; y: 5 } PathLine { x: 50; y: 50 } } }"},
        {"ShapeThatHoldsText",
         "Shape { width: 60; height: 60; ShapePath { PathLine { x: 9; y: 9 } } Text { text: 'Secret'; color: "
         "'red' } }"},
        {"PaintedItem", "PaintedItem { width: 50; height: 50 }"},
        {"TextureItem", "TextureItem { width: 50; height: 50 }"},
        {"FramebufferItem", "FramebufferItem { width: 50; height: 50 }", false},
        {"EffectSource",
         "Text { id: secret; text: 'Secret'; color: 'red' } ShaderEffectSource { sourceItem: secret; y: 40;"
         " width: 50; height: 20 }"},
        {"ShaderEffect",
         "ShaderEffect { width: 50; height: 50; property variant source: ShaderEffectSource {"
         " sourceItem: Text { text: 'Secret'; color: 'red' } } }",
         false},
        {"LayeredText",
         "Item { width: 80; height: 40; layer.enabled: true; Text { text: 'Secret'; color: 'red' } }", false},
        {"LayerWithAnEffect",
         "Rectangle { width: 80; height: 40; layer.enabled: true; layer.effect: ShaderEffect { }"
         " Text { text: 'Secret'; color: 'red' } }",
         false},
        {"AnimatedSprite",
         "AnimatedSprite { width: 16; height: 16; source: PICTURE; frameCount: 1; frameWidth: 16; "
         "frameHeight: 16 }",
         false},
        {"SpriteSequence",
         "SpriteSequence { width: 16; height: 16; Sprite { name: 'only'; source: PICTURE; frameCount: 1; "
         "frameWidth: 16;"
         " frameHeight: 16 } }",
         false},
    };
}

}  // namespace mireth::qttest
