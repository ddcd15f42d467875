// Which views are masked, in which order the rules are asked, and what is remembered.
#include "PrivateSide/Extensions/CALayerExtensions/ViewMasking.hpp"

#include <gtest/gtest.h>

#include "MirethVex/Platform/ImageView.hpp"
#include "MirethVex/Platform/TextViews.hpp"

namespace mireth {
namespace {

using platform::ImageView;
using platform::Label;
using platform::TextField;
using platform::TextView;
using platform::View;
using platform::ViewClass;
using platform::ViewController;

class HostingController final : public ViewController, public platform::AnyUIHostingViewController {};

/// Counts how often it is asked for its controller.
class AskedView final : public View {
  public:
    using View::View;
    std::shared_ptr<ViewController> viewController() const override {
        ++asked;
        return View::viewController();
    }
    mutable int asked = 0;
};

const ViewClass& registered(std::string_view name, const ViewClass& superclass) {
    return ViewClass::registerClass(name, &superclass);
}

bool isMasked(const View& view, std::vector<const ViewClass*> additional = {}) {
    return ViewMasking(std::move(additional)).shouldBeMasked(view);
}

TEST(ViewMasking, PlainViewIsShown) {
    EXPECT_FALSE(isMasked(View()));
}

TEST(ViewMasking, LabelsFieldsTextViewsAndImagesAreMasked) {
    EXPECT_TRUE(isMasked(Label()));
    EXPECT_TRUE(isMasked(TextField()));
    EXPECT_TRUE(isMasked(TextView()));
    EXPECT_TRUE(isMasked(ImageView()));
}

TEST(ViewMasking, SubclassesOfTextAndImageClassesAreMasked) {
    EXPECT_TRUE(isMasked(View(registered("MaskingFancyLabel", ViewClass::label()))));
    EXPECT_TRUE(isMasked(View(registered("MaskingPinField", ViewClass::textField()))));
    EXPECT_TRUE(isMasked(View(registered("MaskingAvatar", ViewClass::imageView()))));
}

TEST(ViewMasking, EveryClassOfTextInputIsMasked) {
    const ViewClass& canvas =
        ViewClass::registerClass("MaskingCanvas", &ViewClass::view(), ViewClass::TextInput::conforms);
    EXPECT_TRUE(isMasked(View(canvas)));
    EXPECT_TRUE(isMasked(View(registered("MaskingCanvasChild", canvas))));
}

TEST(ViewMasking, TextViewsUnderAnUnrelatedClassAreMaskedByTheirType) {
    const ViewClass& price = registered("MaskingPriceTag", ViewClass::view());
    EXPECT_FALSE(isMasked(View(price)));
    EXPECT_TRUE(isMasked(Label(price)));
    EXPECT_TRUE(isMasked(TextField(price)));
    EXPECT_TRUE(isMasked(TextView(price)));
    EXPECT_TRUE(isMasked(ImageView(price)));
}

TEST(ViewMasking, TypesOfOneClassAreToldApartAlsoWhenRemembered) {
    const ViewClass& shared = registered("MaskingShared", ViewClass::view());
    ViewMasking masking;
    EXPECT_FALSE(masking.shouldBeMasked(View(shared)));
    EXPECT_TRUE(masking.shouldBeMasked(Label(shared)));
    EXPECT_FALSE(masking.shouldBeMasked(View(shared)));
}

TEST(ViewMasking, ShadowViewIsShownThoughItIsAnImageView) {
    EXPECT_FALSE(isMasked(ImageView(registered("_MaskingShadowView", ViewClass::imageView()))));
    EXPECT_TRUE(isMasked(ImageView(registered("MaskingShadowView", ViewClass::imageView()))));
}

TEST(ViewMasking, ShadowViewIsShownThoughItIsATextView) {
    EXPECT_FALSE(isMasked(Label(registered("_MaskingTextShadowView", ViewClass::label()))));
    EXPECT_FALSE(isMasked(TextField(registered("_MaskingFieldShadowView", ViewClass::textField()))));
    EXPECT_FALSE(isMasked(TextView(registered("_MaskingEntryShadowView", ViewClass::textView()))));
    EXPECT_TRUE(isMasked(Label(registered("MaskingTextShadowView", ViewClass::label()))));
}

TEST(ViewMasking, ShadowViewIsMaskedWhenAnotherRuleHolds) {
    const ViewClass& shadow = registered("_MaskingOtherShadowView", ViewClass::imageView());
    EXPECT_TRUE(isMasked(ImageView(shadow), {&shadow}));
    EXPECT_TRUE(
        isMasked(ImageView(registered("_UIAlertControllerActionView_ShadowView", ViewClass::imageView()))));
    EXPECT_TRUE(isMasked(ImageView(registered("_UIInterfaceActionShadowView", ViewClass::imageView()))));

    const auto controller = std::make_shared<HostingController>();
    const auto view = std::make_shared<ImageView>(shadow);
    controller->setView(view);
    EXPECT_TRUE(isMasked(*view));
}

TEST(ViewMasking, SystemAlertAndInterfaceViewsAreMasked) {
    EXPECT_TRUE(isMasked(View(registered("_UIAlertControllerActionView", ViewClass::view()))));
    EXPECT_TRUE(isMasked(View(registered("_UIInterfaceActionRepresentationView", ViewClass::view()))));
}

TEST(ViewMasking, NamedClassesAndTheirSubclassesAreMasked) {
    const ViewClass& card = registered("MaskingCardView", ViewClass::view());
    const ViewClass& gold = registered("MaskingGoldCardView", card);
    EXPECT_FALSE(isMasked(View(gold)));
    EXPECT_TRUE(isMasked(View(card), {&card}));
    EXPECT_TRUE(isMasked(View(gold), {&card}));
    EXPECT_FALSE(isMasked(View(card), {&gold}));
    EXPECT_TRUE(isMasked(View(card), {nullptr, &gold, &card}));
}

TEST(ViewMasking, DeclarativeContentIsMaskedByItsNearestController) {
    const auto hosting = std::make_shared<HostingController>();
    const auto plain = std::make_shared<ViewController>("Plain");
    const auto root = std::make_shared<View>();
    const auto inHosting = std::make_shared<View>();
    const auto inPlain = std::make_shared<View>();
    const auto leaf = std::make_shared<View>();
    root->addSubview(inHosting);
    inHosting->addSubview(inPlain);
    inPlain->addSubview(leaf);
    hosting->setView(inHosting);

    EXPECT_FALSE(isMasked(*root));
    EXPECT_TRUE(isMasked(*inHosting));
    EXPECT_TRUE(isMasked(*leaf));

    plain->setView(inPlain);
    EXPECT_FALSE(isMasked(*inPlain));
    EXPECT_FALSE(isMasked(*leaf));
}

TEST(ViewMasking, ControllersAreNotLookedForWhenTheClassDecides) {
    const AskedView label(ViewClass::label());
    EXPECT_TRUE(isMasked(label));
    EXPECT_EQ(label.asked, 0);

    const ViewClass& named = registered("MaskingNamed", ViewClass::view());
    const AskedView host(named);
    EXPECT_TRUE(isMasked(host, {&named}));
    EXPECT_EQ(host.asked, 1) << "the host's classes come after declarative content";
}

TEST(ViewMasking, SecureEntryPlaysNoPart) {
    TextField field;
    field.content.text = "";
    field.isFirstResponder = true;
    EXPECT_TRUE(isMasked(field));
}

TEST(ViewMasking, NoControllerHostsNothing) {
    const auto view = std::make_shared<View>();
    EXPECT_EQ(showsDeclarativeContent(*view), std::nullopt);
    const auto plain = std::make_shared<ViewController>();
    plain->setView(view);
    EXPECT_EQ(showsDeclarativeContent(*view), false);
    auto hosting = std::make_shared<HostingController>();
    hosting->setView(view);
    EXPECT_EQ(showsDeclarativeContent(*view), true);
    hosting.reset();
    EXPECT_EQ(showsDeclarativeContent(*view), true) << "what it left on screen";
    EXPECT_TRUE(isSwiftUIView(*view));
    plain->setView(nullptr);
    plain->setView(view);
    EXPECT_EQ(showsDeclarativeContent(*view), false);
}

}  // namespace
}  // namespace mireth
