// The run-time class of a view: its name and its superclass.
#pragma once

#include <atomic>
#include <string>
#include <string_view>

#include "MirethVex/Base/Export.hpp"

namespace mireth::platform {

/// A node of the toolkit's class tree. Classes are registered by name for the whole process and live as
/// long as it; a reference to one stays good. Any thread.
///
/// Toolkits register their own widget classes below the built-in ones, so that masking by kind also holds
/// for them. Names may be anything; the masking rules look at them as text.
class MIRETH_EXPORT ViewClass {
  public:
    enum class TextInput { inherited, conforms };

    ViewClass(const ViewClass&) = delete;
    ViewClass& operator=(const ViewClass&) = delete;

    /// The class called `name`; registers it below `superclass` when there is none yet. Null makes it a root
    /// of its own, which is no kind of view. Registering a name again with another superclass is refused: the
    /// class registered first is returned. `conforms` marks a class of text-entry views, also one that was
    /// registered without it; its subclasses are marked too.
    static const ViewClass& registerClass(std::string_view name, const ViewClass* superclass,
                                          TextInput textInput = TextInput::inherited);

    /// Null when no class bears the name.
    static const ViewClass* find(std::string_view name);

    const std::string& name() const noexcept { return name_; }
    /// Null for a root.
    const ViewClass* superclass() const noexcept { return superclass_; }
    bool conformsToTextInput() const noexcept;

    /// True for the class itself and for every subclass of it.
    bool isKindOf(const ViewClass& other) const noexcept;

    // The classes the library itself knows.
    static const ViewClass& view();
    static const ViewClass& window();
    static const ViewClass& label();
    static const ViewClass& textField();
    static const ViewClass& textView();
    static const ViewClass& imageView();
    /// Not a view: the class of screens.
    static const ViewClass& viewController();

  private:
    ViewClass(std::string_view name, const ViewClass* superclass, bool conformsToTextInput);
    friend class ViewClassRegistry;

    const std::string name_;
    const ViewClass* const superclass_;
    /// Of the class itself; set when it is registered as such, be it later than first. Never cleared.
    mutable std::atomic<bool> conformsToTextInput_;
};

}  // namespace mireth::platform
