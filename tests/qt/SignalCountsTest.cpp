// How the changes of models are counted.
#include <gtest/gtest.h>

#include <QMetaMethod>
#include <QStringListModel>
#include <array>
#include <memory>

#include "platforms/qt/state/SignalCounts.hpp"

namespace mireth::qttest {

namespace {

class ListedModel : public QStringListModel {
    Q_OBJECT
  public:
    bool hasListeners() const { return isSignalConnected(QMetaMethod::fromSignal(&ListedModel::modelReset)); }
};

const std::array<int, 1> resets{QMetaMethod::fromSignal(&QAbstractItemModel::modelReset).methodIndex()};

TEST(QtSignalCounts, CountWhatIsSentSinceTheFirstQuestion) {
    ListedModel model;
    qt::SignalCounts counts;
    EXPECT_EQ(counts.of(model, resets), 0U);
    model.setStringList({"a"});
    model.setStringList({"b"});
    EXPECT_EQ(counts.of(model, resets), 2U);
}

TEST(QtSignalCounts, NothingIsLeftOnTheSender) {
    ListedModel model;
    {
        qt::SignalCounts counts;
        counts.of(model, resets);
        EXPECT_TRUE(model.hasListeners());
    }
    EXPECT_FALSE(model.hasListeners());
}

TEST(QtSignalCounts, WhatIsNotAskedForInAPassIsLetGo) {
    ListedModel model;
    qt::SignalCounts counts;
    counts.of(model, resets);
    counts.endPass();
    EXPECT_TRUE(model.hasListeners());
    counts.endPass();
    EXPECT_FALSE(model.hasListeners());
}

TEST(QtSignalCounts, TheSenderMayGoFirst) {
    auto model = std::make_unique<ListedModel>();
    qt::SignalCounts counts;
    counts.of(*model, resets);
    model.reset();
    counts.endPass();
    counts.endPass();
    ListedModel other;
    EXPECT_EQ(counts.of(other, resets), 0U);
}

}  // namespace

}  // namespace mireth::qttest

#include "SignalCountsTest.moc"
