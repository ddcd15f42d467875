// The text form of text views.
#include "PrivateSide/Extensions/CALayerExtensions/TextSerializable.hpp"

#include <gtest/gtest.h>

#include "MirethVex/Platform/ImageView.hpp"

namespace mireth {
namespace {

using platform::Label;
using platform::TextAlignment;
using platform::TextField;
using platform::TextView;

TEST(TextSerializable, LabelHasThreeLines) {
    Label label;
    label.content.text = "Total";
    label.content.attributedText = "Total €";
    label.content.font = platform::Font{"Helvetica", 17};
    label.content.alignment = TextAlignment::center;
    EXPECT_EQ(serialize(label),
              "    Text: Total, Total €|\n    Font: Helvetica, 17.0|\n    TextAlignment: 1");
}

TEST(TextSerializable, WhatIsMissingIsNil) {
    EXPECT_EQ(serialize(Label()), "    Text: nil, nil|\n    Font: nil, nil|\n    TextAlignment: 4");
}

TEST(TextSerializable, FieldsAndTextViewsAlsoTellWhoHasTheKeyboard) {
    TextField field;
    field.content.text = "a";
    field.isFirstResponder = true;
    EXPECT_EQ(serialize(field),
              "    Text: a, nil|\n    Font: nil, nil|\n    TextAlignment: 4|\n    IsFirstResponder: true");
    EXPECT_EQ(serialize(TextView()),
              "    Text: nil, nil|\n    Font: nil, nil|\n    TextAlignment: 4|\n    IsFirstResponder: false");
}

TEST(TextSerializable, PointSizesKeepTheirFraction) {
    Label label;
    label.content.font = platform::Font{"F", 11.5};
    EXPECT_NE(serialize(label).find("Font: F, 11.5|"), std::string::npos);
    label.content.font = platform::Font{"F", -3};
    EXPECT_NE(serialize(label).find("Font: F, -3.0|"), std::string::npos);
}

TEST(TextSerializable, TheTextFormOfAnyViewIsAppendedIfItHasOne) {
    std::string text = "before";
    EXPECT_FALSE(appendSerialized(text, platform::View()));
    EXPECT_FALSE(appendSerialized(text, platform::ImageView()));
    EXPECT_EQ(text, "before");
    const Label label;
    const TextField field;
    EXPECT_TRUE(appendSerialized(text, label));
    EXPECT_TRUE(appendSerialized(text, field));
    EXPECT_EQ(text, "before" + serialize(label) + serialize(field));
}

}  // namespace
}  // namespace mireth
