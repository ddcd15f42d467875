// Items and a model of the app's own for the gallery of items.
#include <QOpenGLContext>
#include <QOpenGLFunctions>
#include <QPainter>
#include <QQuickFramebufferObject>
#include <QQuickPaintedItem>
#include <QQuickWindow>
#include <QSGImageNode>
#include <QStandardItemModel>
#include <QtQml>

#include "qt/galleries/Canaries.hpp"
#include "qt/galleries/ItemExhibit.hpp"

namespace mireth::qttest {

namespace {

class PaintedItem : public QQuickPaintedItem {
    Q_OBJECT
  public:
    void paint(QPainter* painter) override { painter->fillRect(QRect(0, 0, 500, 500), canary); }
};

/// A picture that Qt knows as a texture only, as those of films and cameras are.
class TextureItem : public QQuickItem {
    Q_OBJECT
  public:
    TextureItem() { setFlag(ItemHasContents); }

  protected:
    QSGNode* updatePaintNode(QSGNode* old, UpdatePaintNodeData* /*data*/) override {
        auto* node = static_cast<QSGImageNode*>(old);
        if (node == nullptr) {
            node = window()->createImageNode();
            node->setOwnsTexture(true);
            node->setTexture(window()->createTextureFromImage(canaryImage()));
        }
        node->setRect(boundingRect());
        return node;
    }
};

/// Draws with OpenGL.
class FramebufferItem : public QQuickFramebufferObject {
    Q_OBJECT
  public:
    Renderer* createRenderer() const override { return new RedRenderer; }

  private:
    class RedRenderer : public Renderer {
      protected:
        void render() override {
            auto* const gl = QOpenGLContext::currentContext()->functions();
            gl->glClearColor(1, 0, 0, 1);
            gl->glClear(GL_COLOR_BUFFER_BIT);
        }
    };
};

class SecretTree : public QStandardItemModel {
    Q_OBJECT
  public:
    SecretTree() {
        for (int row = 0; row < 3; ++row) {
            auto* const item = new QStandardItem("Secret");
            item->appendRow({new QStandardItem("Secret"), new QStandardItem("Secret")});
            appendRow({item, new QStandardItem("Secret")});
        }
        setHorizontalHeaderLabels({"Secret", "Secret"});
        setVerticalHeaderLabels({"Secret", "Secret", "Secret"});
    }
};

}  // namespace

void registerGalleryTypes() {
    qmlRegisterType<PaintedItem>("Gallery", 1, 0, "PaintedItem");
    qmlRegisterType<TextureItem>("Gallery", 1, 0, "TextureItem");
    qmlRegisterType<FramebufferItem>("Gallery", 1, 0, "FramebufferItem");
    qmlRegisterType<SecretTree>("Gallery", 1, 0, "SecretTree");
}

std::vector<ItemExhibit> itemExhibits() {
    std::vector<ItemExhibit> all;
    for (const auto& family : {textItems(), buttonItems(), inputItems(), viewItems(), containerItems(),
                               popUpItems(), drawnItems()}) {
        all.insert(all.end(), family.begin(), family.end());
    }
    return all;
}

}  // namespace mireth::qttest

#include "GalleryTypes.moc"
