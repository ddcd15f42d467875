// What QML says of single items: `Mireth.masked: true`, `Mireth.screen: "Checkout"`.
#pragma once

#include <QObject>
#include <QPointer>
#include <QQmlEngine>
#include <QQuickItem>
#include <QString>

namespace mireth::qt {

/// Attached to an item, a window, a pop-up or a dialog. It leaves its values in properties where the mirror
/// finds them: the screen in one of the object, the masking in one of the item that shows it. What the app's
/// C++ code has put there is left alone as long as QML says nothing. What a Repeater makes lies beside it,
/// and is masked with it.
class MirethAttached final : public QObject {
    Q_OBJECT
    QML_NAMED_ELEMENT(Mireth)
    QML_UNCREATABLE("Mireth is attached to other objects")
    QML_ATTACHED(mireth::qt::MirethAttached)
    Q_PROPERTY(bool masked READ isMasked WRITE setMasked NOTIFY maskedChanged)
    Q_PROPERTY(QString screen READ screen WRITE setScreen NOTIFY screenChanged)

  public:
    explicit MirethAttached(QObject* attachee);

    static MirethAttached* qmlAttachedProperties(QObject* attachee) { return new MirethAttached(attachee); }

    bool isMasked() const { return isMasked_; }
    void setMasked(bool masked);
    QString screen() const { return screen_; }
    void setScreen(const QString& screen);

  Q_SIGNALS:
    void maskedChanged();
    void screenChanged();

  private Q_SLOTS:
    void leaveMark();
    /// Of a Repeater.
    void leaveMarkOn(int index, QQuickItem* made);

  private:
    /// Connects where the attachee is of that class of Qt's.
    void hear(const char* type, const char* signal, const char* slot);
    bool isMarked() const { return isMasked_ || isMadeByMasked_; }
    void leaveMarksOnMade();
    void takeMarkBack();

    bool isMasked_ = false;
    /// Made by a Repeater that is masked.
    bool isMadeByMasked_ = false;
    QString screen_;
    /// Where the mark was left; null when it was not, or that is gone.
    QPointer<QObject> marked_;
};

}  // namespace mireth::qt
