// The class-name patterns of the masking rules, searched as they are written.
#include "PrivateSide/Extensions/CALayerExtensions/RegexValue.hpp"

#include <gtest/gtest.h>

#include <string>

namespace mireth {
namespace {

TEST(RegexValue, PatternsAreTheFixedOnes) {
    EXPECT_EQ(rawValue(RegexValue::shadowViewRegex), "^_.*ShadowView.*");
    EXPECT_EQ(rawValue(RegexValue::systemInterfaceRegex), "^_UIInterfaceAction*");
    EXPECT_EQ(rawValue(RegexValue::systemAlertActionRegex), "_UIAlertControllerActionView");
}

TEST(RegexValue, ShadowViewsBeginWithAnUnderscoreAndNameShadowView) {
    EXPECT_TRUE(matches("_UICutoutShadowView", RegexValue::shadowViewRegex));
    EXPECT_TRUE(matches("_ShadowView", RegexValue::shadowViewRegex));
    EXPECT_TRUE(matches("_UIShadowViewImpl", RegexValue::shadowViewRegex));
    EXPECT_FALSE(matches("UICutoutShadowView", RegexValue::shadowViewRegex));
    EXPECT_FALSE(matches("App_ShadowView", RegexValue::shadowViewRegex));
    EXPECT_FALSE(matches("_UIShadow", RegexValue::shadowViewRegex));
    EXPECT_FALSE(matches("_shadowview", RegexValue::shadowViewRegex));
}

TEST(RegexValue, TheStarOfTheInterfacePatternBelongsToItsLastLetterOnly) {
    EXPECT_TRUE(matches("_UIInterfaceActio", RegexValue::systemInterfaceRegex));
    EXPECT_TRUE(matches("_UIInterfaceActionGroupView", RegexValue::systemInterfaceRegex));
    EXPECT_TRUE(matches("_UIInterfaceActioX", RegexValue::systemInterfaceRegex));
    EXPECT_FALSE(matches("_UIInterfaceActi", RegexValue::systemInterfaceRegex));
    EXPECT_FALSE(matches("My_UIInterfaceAction", RegexValue::systemInterfaceRegex));
}

TEST(RegexValue, TheAlertPatternIsFoundAnywhere) {
    EXPECT_TRUE(matches("_UIAlertControllerActionView", RegexValue::systemAlertActionRegex));
    EXPECT_TRUE(matches("My_UIAlertControllerActionViewSubclass", RegexValue::systemAlertActionRegex));
    EXPECT_FALSE(matches("UIAlertControllerActionView", RegexValue::systemAlertActionRegex));
}

TEST(RegexValue, TheBeginningIsThatOfTheTextNotOfALine) {
    EXPECT_FALSE(matches("App\n_ShadowView", RegexValue::shadowViewRegex));
    EXPECT_FALSE(matches("_App\nShadowView", RegexValue::shadowViewRegex));
}

TEST(RegexValue, AnyTextIsATextToSearch) {
    EXPECT_FALSE(matches("", RegexValue::shadowViewRegex));
    EXPECT_FALSE(matches(std::string("_\0x", 3), RegexValue::shadowViewRegex));
    EXPECT_TRUE(matches(std::string("_\0ShadowView", 12), RegexValue::shadowViewRegex));
    EXPECT_FALSE(matches("\xFF\xFE_", RegexValue::shadowViewRegex));
}

TEST(RegexValue, AVeryLongNameNeedsNoStack) {
    const std::string name = "_" + std::string(1'000'000, 'x');
    EXPECT_FALSE(matches(name, RegexValue::shadowViewRegex));
    EXPECT_TRUE(matches(name + "ShadowView", RegexValue::shadowViewRegex));
}

}  // namespace
}  // namespace mireth
