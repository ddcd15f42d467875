// Decides which views must not be seen in a recorded frame.
#pragma once

#include <cstddef>
#include <typeinfo>
#include <unordered_map>
#include <vector>

#include "MirethVex/Platform/View.hpp"
#include "MirethVex/Platform/ViewClass.hpp"
#include "MirethVex/Platform/ViewController.hpp"

namespace mireth {

/// The rules that look at the class's name.
bool isRectShadowView(const platform::ViewClass& viewClass);
bool isSystemInterfaceView(const platform::ViewClass& viewClass);
bool isSystemAlertActionView(const platform::ViewClass& viewClass);

/// True for a controller that hosts declarative content; false for null.
bool hostsDeclarativeContent(const platform::ViewController* controller);

/// True when the nearest controller that owns the view hosts declarative content.
bool isSwiftUIView(const platform::View& view);

/// The masking decision, with what follows from a view's class remembered: a screen has thousands of views of
/// a few dozen classes, and is looked at twice a second on the main thread. Main thread only.
class ViewMasking {
  public:
    /// What a view's class and type alone decide.
    struct Verdict {
        /// A text or image view that is not a shadow view, or one of the system's own.
        bool maskedAsBuiltIn = false;
        /// Of a class that the host has named, or of a subclass.
        bool maskedByHost = false;
        /// Can be cast to ImageView.
        bool isImageView = false;
    };

    /// `additionalViewTypesToMask`: classes masked beside the built-in ones; null entries are ignored.
    explicit ViewMasking(std::vector<const platform::ViewClass*> additionalViewTypesToMask = {});

    /// Looks for the owning controller only when the class does not decide already.
    bool shouldBeMasked(const platform::View& view);

    /// Remembered from then on for all views of the same class and type.
    const Verdict& verdict(const platform::View& view);

  private:
    struct Key {
        const platform::ViewClass* viewClass;
        const std::type_info* type;
        bool operator==(const Key&) const = default;
    };
    struct KeyHash {
        std::size_t operator()(const Key& key) const noexcept;
    };

    Verdict classify(const platform::View& view) const;

    const std::vector<const platform::ViewClass*> additionalViewTypesToMask_;
    std::unordered_map<Key, Verdict, KeyHash> verdicts_;
};

}  // namespace mireth
