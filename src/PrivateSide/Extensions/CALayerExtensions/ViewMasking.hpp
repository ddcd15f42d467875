// Decides which views must not be seen in a recorded frame.
#pragma once

#include <cstddef>
#include <optional>
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

/// Whether the controller whose root view this is hosts declarative content; nothing for a view that is no
/// controller's, which goes by the views above it. A view that once showed such content shows it still when
/// its controller is gone.
std::optional<bool> showsDeclarativeContent(const platform::View& view);

/// True when the view, or the nearest above it that is a controller's, shows declarative content.
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

        /// The masking decision. `isDeclarative` is asked only when the class does not decide already.
        template <class IsDeclarative>
        bool masks(IsDeclarative isDeclarative) const {
            return maskedAsBuiltIn || isDeclarative() || maskedByHost;
        }
    };

    /// `additionalViewTypesToMask`: classes masked beside the built-in ones; null entries are ignored.
    explicit ViewMasking(std::vector<const platform::ViewClass*> additionalViewTypesToMask = {});

    /// Looks for the owning controller only when the class does not decide already.
    bool shouldBeMasked(const platform::View& view);

    /// Remembered from then on for all views of the same class and type, unless the class becomes one of text
    /// entry.
    const Verdict& verdict(const platform::View& view);

  private:
    struct Key {
        const platform::ViewClass* viewClass;
        const std::type_info* type;
        /// A class may become one of text entry later.
        bool conformsToTextInput;
        bool operator==(const Key&) const = default;
    };
    struct KeyHash {
        std::size_t operator()(const Key& key) const noexcept;
    };

    Verdict classify(const platform::View& view, const platform::ViewClass& viewClass) const;

    const std::vector<const platform::ViewClass*> additionalViewTypesToMask_;
    std::unordered_map<Key, Verdict, KeyHash> verdicts_;
};

}  // namespace mireth
