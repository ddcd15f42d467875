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
/// for them. Names may be anything; the masking rules look at them as text. A class that is named stands for
/// all that bear its name, whichever was registered first.
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

    /// The class called `name` right below `superclass`; registers it when there is none yet. For toolkits in
    /// which several classes may bear one name: each keeps its own superclasses, and all of them are of one
    /// kind and marked as text entry together.
    static const ViewClass& registerSubclass(std::string_view name, const ViewClass& superclass);

    /// The one registered first under the name. Null when no class bears it.
    static const ViewClass* find(std::string_view name);

    const std::string& name() const noexcept { return name_; }
    /// Null for a root.
    const ViewClass* superclass() const noexcept { return superclass_; }
    bool conformsToTextInput() const noexcept;

    /// True for the class itself, for every other of its name, and for every subclass of these.
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
    /// `first`: null for the first of its name.
    ViewClass(std::string_view name, const ViewClass* superclass, const ViewClass* first);
    friend class ViewClassRegistry;

    const std::string name_;
    const ViewClass* const superclass_;
    /// Of all that bear the name. May be the class itself.
    const ViewClass* const first_;
    /// Of the first of a name, for all of them; set when it is registered as such, be it later than first.
    /// Never cleared.
    mutable std::atomic<bool> conformsToTextInput_ = false;
};

}  // namespace mireth::platform
