// The registry of view classes.
#include "MirethVex/Platform/ViewClass.hpp"

#include <gtest/gtest.h>

#include <thread>
#include <vector>

namespace mireth::platform {
namespace {

TEST(ViewClass, BuiltInClassesStandBelowView) {
    EXPECT_EQ(ViewClass::view().superclass(), nullptr);
    EXPECT_EQ(ViewClass::view().name(), "View");
    for (const ViewClass* built : {&ViewClass::window(), &ViewClass::label(), &ViewClass::textField(),
                                   &ViewClass::textView(), &ViewClass::imageView()}) {
        EXPECT_EQ(built->superclass(), &ViewClass::view()) << built->name();
        EXPECT_EQ(ViewClass::find(built->name()), built);
    }
    EXPECT_FALSE(ViewClass::viewController().isKindOf(ViewClass::view()));
}

TEST(ViewClass, OnlyTextEntryConformsToTextInput) {
    EXPECT_TRUE(ViewClass::textField().conformsToTextInput());
    EXPECT_TRUE(ViewClass::textView().conformsToTextInput());
    EXPECT_FALSE(ViewClass::label().conformsToTextInput());
    EXPECT_FALSE(ViewClass::view().conformsToTextInput());
}

TEST(ViewClass, SubclassesInheritKindAndTextInput) {
    const auto& card = ViewClass::registerClass("CardField", &ViewClass::textField());
    const auto& special = ViewClass::registerClass("SpecialCardField", &card);
    EXPECT_TRUE(special.isKindOf(special));
    EXPECT_TRUE(special.isKindOf(card));
    EXPECT_TRUE(special.isKindOf(ViewClass::textField()));
    EXPECT_TRUE(special.isKindOf(ViewClass::view()));
    EXPECT_FALSE(special.isKindOf(ViewClass::label()));
    EXPECT_FALSE(card.isKindOf(special));
    EXPECT_TRUE(special.conformsToTextInput());
}

TEST(ViewClass, MarkedClassConformsWithItsSubclasses) {
    const auto& canvas =
        ViewClass::registerClass("TypingCanvas", &ViewClass::view(), ViewClass::TextInput::conforms);
    EXPECT_TRUE(canvas.conformsToTextInput());
    EXPECT_TRUE(ViewClass::registerClass("TypingCanvasChild", &canvas).conformsToTextInput());
}

TEST(ViewClass, RegisteringANameAgainReturnsTheFirst) {
    const auto& first = ViewClass::registerClass("Twice", &ViewClass::label());
    const auto& second = ViewClass::registerClass("Twice", &ViewClass::textField());
    EXPECT_EQ(&first, &second);
    EXPECT_EQ(second.superclass(), &ViewClass::label());
    EXPECT_FALSE(second.conformsToTextInput());
    EXPECT_EQ(&ViewClass::registerClass("Label", nullptr), &ViewClass::label());
}

TEST(ViewClass, AClassBecomesOneOfTextEntryWhenItIsRegisteredAsOneLater) {
    const auto& pin = ViewClass::registerClass("PinPad", &ViewClass::view());
    const auto& round = ViewClass::registerClass("RoundPinPad", &pin);
    EXPECT_FALSE(pin.conformsToTextInput());
    EXPECT_EQ(&ViewClass::registerClass("PinPad", &ViewClass::view(), ViewClass::TextInput::conforms), &pin);
    EXPECT_TRUE(pin.conformsToTextInput());
    EXPECT_TRUE(round.conformsToTextInput()) << "its subclasses too";
    (void)ViewClass::registerClass("PinPad", &ViewClass::view());
    EXPECT_TRUE(pin.conformsToTextInput()) << "once private, always private";
}

TEST(ViewClass, ClassesOfOneNameBelowSeveralSuperclassesKeepTheirOwn) {
    const auto& secret = ViewClass::registerSubclass("Secret", ViewClass::view());
    const auto& plainEntry = ViewClass::registerSubclass("Entry", ViewClass::view());
    const auto& secretEntry = ViewClass::registerSubclass("Entry", secret);
    EXPECT_NE(&plainEntry, &secretEntry);
    EXPECT_EQ(secretEntry.name(), "Entry");
    EXPECT_EQ(secretEntry.superclass(), &secret);
    EXPECT_TRUE(secretEntry.isKindOf(secret));
    EXPECT_FALSE(plainEntry.isKindOf(secret));
    EXPECT_EQ(&ViewClass::registerSubclass("Entry", secret), &secretEntry);
    EXPECT_EQ(&ViewClass::registerSubclass("Entry", ViewClass::view()), &plainEntry);
    EXPECT_EQ(ViewClass::find("Entry"), &plainEntry);
}

TEST(ViewClass, ANamedClassStandsForAllOfItsNameAndTheirSubclasses) {
    const auto& named = ViewClass::registerClass("NamedCard", &ViewClass::view());
    const auto& ofPanel =
        ViewClass::registerSubclass("NamedCard", ViewClass::registerSubclass("Panel", ViewClass::view()));
    const auto& gold = ViewClass::registerSubclass("GoldCard", ofPanel);
    EXPECT_NE(&ofPanel, &named);
    EXPECT_TRUE(ofPanel.isKindOf(named));
    EXPECT_TRUE(gold.isKindOf(named));
    EXPECT_TRUE(named.isKindOf(ofPanel));
    EXPECT_FALSE(named.isKindOf(gold));
}

TEST(ViewClass, ClassesOfOneNameBecomeOnesOfTextEntryTogether) {
    const auto& ofPad =
        ViewClass::registerSubclass("DigitEntry", ViewClass::registerSubclass("DigitPad", ViewClass::view()));
    (void)ViewClass::registerSubclass("DigitEntry", ViewClass::view());
    EXPECT_FALSE(ofPad.conformsToTextInput());
    (void)ViewClass::registerClass("DigitEntry", &ViewClass::view(), ViewClass::TextInput::conforms);
    EXPECT_TRUE(ofPad.conformsToTextInput());
    EXPECT_TRUE(ViewClass::registerSubclass("DigitEntry", ViewClass::view()).conformsToTextInput());
}

TEST(ViewClass, UnknownNameIsNotFound) {
    EXPECT_EQ(ViewClass::find("NobodyHasRegisteredThis"), nullptr);
}

TEST(ViewClass, NamesMayBeAnything) {
    const auto& odd = ViewClass::registerClass("", &ViewClass::view());
    EXPECT_EQ(ViewClass::find(""), &odd);
    const auto& generic = ViewClass::registerClass("List<Optional<\xC3\x84>>", &ViewClass::view());
    EXPECT_EQ(generic.name(), "List<Optional<\xC3\x84>>");
}

TEST(ViewClass, ThreadsThatRegisterOneNameGetOneClass) {
    std::vector<const ViewClass*> found(8);
    std::vector<std::thread> threads;
    threads.reserve(found.size());
    for (auto& slot : found) {
        threads.emplace_back([&slot] { slot = &ViewClass::registerClass("Raced", &ViewClass::view()); });
    }
    for (auto& thread : threads) {
        thread.join();
    }
    for (const ViewClass* each : found) {
        EXPECT_EQ(each, found.front());
    }
}

}  // namespace
}  // namespace mireth::platform
