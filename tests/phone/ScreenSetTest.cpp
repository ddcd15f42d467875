// The views that a scenario becomes, and what steps do to them.
#include "phone/ScreenSet.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "MirethVex/Headless/HeadlessApplication.hpp"
#include "MirethVex/Platform/ImageView.hpp"

namespace mireth::phone {
namespace {

using platform::ViewClass;

class ScreenSetTest : public ::testing::Test {
  protected:
    void build(const std::string& views, const std::string& extra = "") {
        scenario =
            parseScenario("{" + extra + R"("screens":[{"name":"Home","background":"#ff0000","views":[)" +
                              views + R"(]},{"name":"Other"}],"steps":[]})",
                          "");
        screens = std::make_unique<ScreenSet>(scenario);
        present("Home");
    }
    void present(const std::string& name) { screens->present(name, application.appearance()); }
    const platform::View& root() const { return *screens->window()->subviews().front(); }
    const platform::View& view(std::size_t index) const { return *root().subviews().at(index); }

    Scenario scenario;
    std::unique_ptr<ScreenSet> screens;
    headless::HeadlessApplication application;
};

TEST_F(ScreenSetTest, TheFirstScreenFillsTheWindow) {
    build("");
    EXPECT_EQ(root().frame(), (Rect{0, 0, 390, 844}));
    EXPECT_EQ(root().layer().appearance.backgroundColor, (Color{1, 0, 0, 1}));
    EXPECT_EQ(root().viewController()->className(), "Home");
    EXPECT_EQ(screens->window()->screenScale(), 3);
}

TEST_F(ScreenSetTest, PresentingReplacesTheScreen) {
    build("");
    present("Other");
    EXPECT_EQ(screens->window()->subviews().size(), 1U);
    EXPECT_EQ(root().viewController()->className(), "Other");
}

TEST_F(ScreenSetTest, TheOldScreenDisappearsBeforeTheNewOneAppears) {
    std::vector<std::string> heard;
    const auto appear = application.interceptViewDidAppear(
        [&](const platform::ViewController& seen) { heard.push_back("+" + seen.className()); });
    const auto disappear = application.interceptViewDidDisappear(
        [&](const platform::ViewController& seen) { heard.push_back("-" + seen.className()); });
    build("");
    present("Other");
    EXPECT_THAT(heard, ::testing::ElementsAre("+Home", "-Home", "+Other"));
}

TEST_F(ScreenSetTest, AppearanceComesFromTheKeys) {
    build(R"({"frame":[1,2,30,40],"background":"#00ff00","border":{"width":2,"color":"#0000ff"},
              "cornerRadius":5,"opacity":0.5,"hidden":true,"clips":true})");
    const auto& appearance = view(0).layer().appearance;
    EXPECT_EQ(view(0).frame(), (Rect{1, 2, 30, 40}));
    EXPECT_EQ(appearance.backgroundColor, (Color{0, 1, 0, 1}));
    EXPECT_EQ(appearance.borderWidth, 2);
    EXPECT_EQ(appearance.borderColor, (Color{0, 0, 1, 1}));
    EXPECT_EQ(appearance.cornerRadius, 5);
    EXPECT_EQ(appearance.opacity, 0.5);
    EXPECT_TRUE(appearance.hidden);
    EXPECT_TRUE(appearance.masksToBounds);
}

TEST_F(ScreenSetTest, TextViewsCarryTheirTextAndItsPicture) {
    build(R"({"class":"Label","frame":[0,0,100,20],"text":"Hi","font":["Inter",12],"alignment":"right"},
             {"class":"TextField","frame":[0,0,100,20],"text":"Hi","firstResponder":true})");
    const auto& label = dynamic_cast<const platform::Label&>(view(0));
    EXPECT_EQ(label.content.text, "Hi");
    EXPECT_EQ(label.content.font, (platform::Font{"Inter", 12}));
    EXPECT_EQ(label.content.alignment, platform::TextAlignment::right);
    EXPECT_EQ(label.layer().content.contents.pixelWidth(), 300U);
    EXPECT_TRUE(dynamic_cast<const platform::TextField&>(view(1)).isFirstResponder);
}

TEST_F(ScreenSetTest, AButtonIsAViewWithALabelOfItsTextsSizeInside) {
    build(R"({"class":"Button","frame":[0,0,200,50],"text":"Buy","background":"#000000"})");
    EXPECT_EQ(view(0).viewClass().name(), "Button");
    ASSERT_EQ(view(0).subviews().size(), 1U);
    const auto& label = *view(0).subviews().front();
    EXPECT_TRUE(label.viewClass().isKindOf(ViewClass::label()));
    EXPECT_LT(label.frame().width, 60);
    EXPECT_NEAR(label.frame().x + label.frame().width / 2, 100, 1);
}

TEST_F(ScreenSetTest, HostClassesBehaveAsTheirBuiltInSuperclass) {
    build(
        R"({"class":"ScreenSetPrice","frame":[0,0,9,9],"text":"1"},{"class":"ScreenSetCard","frame":[0,0,9,9]})",
        R"("viewClasses":[{"name":"ScreenSetCard"},{"name":"ScreenSetPrice","superclass":"Label"}],)");
    EXPECT_NE(dynamic_cast<const platform::Label*>(&view(0)), nullptr);
    EXPECT_EQ(view(0).viewClass().name(), "ScreenSetPrice");
    EXPECT_EQ(view(1).viewClass().superclass(), &ViewClass::view());
}

TEST_F(ScreenSetTest, ADeclarativeChildControllerOwnsItsSubtree) {
    build(
        R"({"frame":[0,0,9,9],"controller":{"name":"Promo","declarative":true},"subviews":[{"frame":[0,0,1,1]}]},
             {"frame":[0,0,9,9],"controller":{"name":"Plain"}})");
    const auto owner = view(0).subviews().front()->parentViewController();
    ASSERT_NE(owner, nullptr);
    EXPECT_EQ(owner->className(), "Promo");
    EXPECT_NE(dynamic_cast<const platform::AnyUIHostingViewController*>(owner.get()), nullptr);
    EXPECT_EQ(dynamic_cast<const platform::AnyUIHostingViewController*>(view(1).viewController().get()),
              nullptr);
}

TEST_F(ScreenSetTest, AnAnimationShowsInThePresentationLayerOnly) {
    build(R"({"id":"a","frame":[0,0,10,10],"background":"#00ff00","animated":{"frame":[5,5,10,10]}})");
    EXPECT_EQ(view(0).frame(), (Rect{0, 0, 10, 10}));
    ASSERT_NE(view(0).presentationLayer(), nullptr);
    EXPECT_EQ(view(0).presentationLayer()->frame(), (Rect{5, 5, 10, 10}));
    EXPECT_EQ(view(0).presentationLayer()->appearance.backgroundColor, (Color{0, 1, 0, 1}));
    ViewSettings still;
    still.animated.emplace();
    screens->set("a", still, "$");
    EXPECT_EQ(view(0).presentationLayer(), nullptr);
}

TEST_F(ScreenSetTest, SetChangesWhatItNamesAndNothingElse) {
    build(R"({"id":"t","class":"Label","frame":[0,0,100,20],"text":"Hi","background":"#00ff00"})");
    ViewSettings settings;
    settings.text.emplace("Ho");
    screens->set("t", settings, "$");
    EXPECT_EQ(dynamic_cast<const platform::Label&>(view(0)).content.text, "Ho");
    EXPECT_EQ(view(0).layer().appearance.backgroundColor, (Color{0, 1, 0, 1}));
    settings = {};
    settings.background.emplace();
    screens->set("t", settings, "$");
    EXPECT_EQ(view(0).layer().appearance.backgroundColor, std::nullopt);
}

TEST_F(ScreenSetTest, ResizeTakesTheScreenAlong) {
    build("");
    screens->resize({844, 390});
    EXPECT_EQ(screens->window()->bounds().size(), (Size{844, 390}));
    EXPECT_EQ(root().frame(), (Rect{0, 0, 844, 390}));
    present("Other");
    EXPECT_EQ(root().frame(), (Rect{0, 0, 844, 390}));
}

TEST_F(ScreenSetTest, APlainImageHasOneColour) {
    build(R"({"class":"ImageView","frame":[0,0,9,9],"image":"#11223344"})");
    const auto& image = dynamic_cast<const platform::ImageView&>(view(0)).image();
    ASSERT_TRUE(image.hasBitmap());
    EXPECT_EQ(image.pixels().front() >> 24U, 0x44U);
}

}  // namespace
}  // namespace mireth::phone
