// Views of items and scenes.
#include <QAbstractItemView>
#include <QCalendarWidget>
#include <QColumnView>
#include <QGraphicsPixmapItem>
#include <QGraphicsProxyWidget>
#include <QGraphicsScene>
#include <QGraphicsTextItem>
#include <QGraphicsView>
#include <QHeaderView>
#include <QLabel>
#include <QListWidget>
#include <QStandardItemModel>
#include <QTableWidget>
#include <QTreeWidget>
#include <QUndoStack>
#include <QUndoView>

#include "qt/galleries/WidgetExhibit.hpp"

namespace mireth::qttest {

namespace {

/// An app's own.
class OwnItemView : public QAbstractItemView {
  public:
    QRect visualRect(const QModelIndex& /*index*/) const override { return {}; }
    void scrollTo(const QModelIndex& /*index*/, ScrollHint /*hint*/) override {}
    QModelIndex indexAt(const QPoint& /*point*/) const override { return {}; }

  protected:
    QModelIndex moveCursor(CursorAction /*action*/, Qt::KeyboardModifiers /*modifiers*/) override {
        return {};
    }
    int horizontalOffset() const override { return 0; }
    int verticalOffset() const override { return 0; }
    bool isIndexHidden(const QModelIndex& /*index*/) const override { return false; }
    void setSelection(const QRect& /*rect*/, QItemSelectionModel::SelectionFlags /*flags*/) override {}
    QRegion visualRegionForSelection(const QItemSelection& /*selection*/) const override { return {}; }
    void paintEvent(QPaintEvent* /*event*/) override {
        QPainter(viewport()).fillRect(viewport()->rect(), canary);
    }
};

QStandardItemModel* items(QObject* owner) {
    auto* const model = new QStandardItemModel(owner);
    for (int row = 0; row < 30; ++row) {
        auto* const item = new QStandardItem(canaryIcon(), "Secret");
        item->appendRow(new QStandardItem("Secret"));
        model->appendRow({item, new QStandardItem("Secret")});
    }
    model->setHorizontalHeaderLabels({"Secret", "Secret"});
    model->setVerticalHeaderLabels({"Secret", "Secret", "Secret"});
    return model;
}

template <class View>
QWidget* viewOf() {
    auto* const view = new View;
    view->setModel(items(view));
    return view;
}

template <Qt::Orientation orientation>
QWidget* header() {
    auto* const view = new QHeaderView(orientation);
    view->setModel(items(view));
    return view;
}

QWidget* graphics() {
    auto* const scene = new QGraphicsScene;
    scene->addText("Secret")->setDefaultTextColor(canary);
    scene->addPixmap(canaryPicture());
    scene->addSimpleText("Secret")->setBrush(canary);
    auto* const turned = scene->addWidget(new QLabel("Secret"));
    turned->setRotation(30);
    auto* const view = new QGraphicsView(scene);
    view->setBackgroundBrush(canaryPicture());
    scene->setParent(view);
    return view;
}

QWidget* undoView() {
    auto* const stack = new QUndoStack;
    stack->push(new QUndoCommand("Secret"));
    auto* const view = new QUndoView(stack);
    stack->setParent(view);
    return view;
}

}  // namespace

std::vector<WidgetExhibit> viewWidgets() {
    return {
        {"AbstractItemView", [] { return new OwnItemView; }},
        {"ListView", viewOf<QListView>},
        {"TableView", viewOf<QTableView>},
        {"TreeView", viewOf<QTreeView>},
        {"ExpandedTreeView",
         [] {
             auto* const view = static_cast<QTreeView*>(viewOf<QTreeView>());
             view->expandAll();
             view->selectAll();
             return view;
         }},
        {"ColumnView", viewOf<QColumnView>},
        {"HorizontalHeader", header<Qt::Horizontal>},
        {"VerticalHeader", header<Qt::Vertical>},
        {"ListWidget", of<QListWidget>([](QListWidget& it) {
             it.addItem("Secret");
             it.setCurrentRow(0);
         })},
        {"DisabledListWidget", of<QListWidget>([](QListWidget& it) {
             it.addItem("Secret");
             it.setEnabled(false);
         })},
        {"IconList", of<QListWidget>([](QListWidget& it) {
             it.setViewMode(QListView::IconMode);
             it.addItem(new QListWidgetItem(canaryIcon(), "Secret"));
         })},
        {"ListOfWidgets", of<QListWidget>([](QListWidget& it) {
             auto* const item = new QListWidgetItem(&it);
             it.setItemWidget(item, new QLabel("Secret"));
         })},
        {"TreeWidget", of<QTreeWidget>([](QTreeWidget& it) {
             it.setHeaderLabel("Secret");
             it.addTopLevelItem(new QTreeWidgetItem({"Secret"}));
         })},
        {"EditedTable", of<QTableWidget>(
                            [](QTableWidget& it) {
                                it.setHorizontalHeaderLabels({"Secret", "Secret"});
                                it.setItem(0, 0, new QTableWidgetItem(canaryIcon(), "Secret"));
                                it.setCurrentCell(0, 0);
                                it.editItem(it.item(0, 0));
                            },
                            3, 2)},
        {"UndoView", undoView},
        {"Calendar", [] { return new QCalendarWidget; }},
        {"GraphicsView", graphics},
    };
}

}  // namespace mireth::qttest
