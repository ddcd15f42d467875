#include "PrivateSide/Configuration/ClientDetailsProvider.hpp"

#include <gtest/gtest.h>

#include <memory>

#include "MirethVex/Headless/MemoryStores.hpp"

namespace mireth {
namespace {

using headless::MemoryKeyValueStore;

TEST(ClientType, RawValuesAreTheCaseNames) {
    EXPECT_EQ(rawValue(ClientType::VEXMobileIOS), "VEXMobileIOS");
    EXPECT_EQ(rawValue(ClientType::VEXMobileIOSReactNative), "VEXMobileIOSReactNative");
    EXPECT_EQ(clientTypeFromRawValue("VEXMobileIOS"), ClientType::VEXMobileIOS);
    EXPECT_EQ(clientTypeFromRawValue("VEXMobileIOSReactNative"), ClientType::VEXMobileIOSReactNative);
    EXPECT_EQ(clientTypeFromRawValue("vexmobileios"), std::nullopt);
}

TEST(ClientDetailsProvider, WithNothingStoredTheHostUsesTheLibraryDirectly) {
    const ClientDetailsProvider provider(std::make_shared<MemoryKeyValueStore>());
    EXPECT_EQ(provider.getClientType(), ClientType::VEXMobileIOS);
    EXPECT_EQ(provider.getClientReactNativeVersion(), std::nullopt);
    EXPECT_EQ(provider.getClientVexReactNativeVersion(), std::nullopt);
}

TEST(ClientDetailsProvider, AnUnknownTextIsTheDirectUse) {
    const ClientDetailsProvider provider(
        std::make_shared<MemoryKeyValueStore>(headless::TextByKey{{"MirethClientType", "Other"}}));
    EXPECT_EQ(provider.getClientType(), ClientType::VEXMobileIOS);
}

TEST(ClientDetailsProvider, ReadsWhatAWrapperStored) {
    const ClientDetailsProvider provider(std::make_shared<MemoryKeyValueStore>(
        headless::TextByKey{{"MirethClientType", "VEXMobileIOSReactNative"},
                            {"MirethClientRNVersion", "0.74"},
                            {"MirethClientRNSdkVersion", "9.1"}}));
    EXPECT_EQ(provider.getClientType(), ClientType::VEXMobileIOSReactNative);
    EXPECT_EQ(provider.getClientReactNativeVersion(), "0.74");
    EXPECT_EQ(provider.getClientVexReactNativeVersion(), "9.1");
}

TEST(ClientDetailsProvider, EveryQuestionSynchronisesFirst) {
    const auto store = std::make_shared<MemoryKeyValueStore>();
    const ClientDetailsProvider provider(store);
    // What another process writes shows only after the store has synchronised.
    store->set("MirethClientType", "VEXMobileIOSReactNative");
    EXPECT_EQ(provider.getClientType(), ClientType::VEXMobileIOSReactNative);
    store->set("MirethClientRNVersion", "1");
    EXPECT_EQ(provider.getClientReactNativeVersion(), "1");
    store->set("MirethClientRNSdkVersion", "2");
    EXPECT_EQ(provider.getClientVexReactNativeVersion(), "2");
}

}  // namespace
}  // namespace mireth
