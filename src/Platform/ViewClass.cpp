// The process-wide registry of view classes.
#include "MirethVex/Platform/ViewClass.hpp"

#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <utility>

namespace mireth::platform {

class ViewClassRegistry {
  public:
    /// Never destroyed, so that views which die after main() still find their classes.
    static ViewClassRegistry& shared() {
        static auto& registry = *new ViewClassRegistry;
        return registry;
    }

    const ViewClass& add(std::string_view name, const ViewClass* superclass, bool conforms) {
        const std::lock_guard lock(mutex_);
        const ViewClass& first = firstOf(name, superclass);
        if (conforms) {
            first.conformsToTextInput_ = true;
        }
        return first;
    }

    const ViewClass& addBelow(const ViewClass& superclass, std::string_view name) {
        const std::lock_guard lock(mutex_);
        const ViewClass& first = firstOf(name, &superclass);
        if (first.superclass_ == &superclass) {
            return first;
        }
        auto& namesake = namesakes_[{&first, &superclass}];
        if (namesake == nullptr) {
            namesake.reset(new ViewClass(name, &superclass, &first));
        }
        return *namesake;
    }

    const ViewClass* find(std::string_view name) const {
        const std::lock_guard lock(mutex_);
        const auto found = classes_.find(name);
        return found == classes_.end() ? nullptr : found->second.get();
    }

  private:
    using Owned = std::unique_ptr<const ViewClass>;

    /// The mutex is held.
    const ViewClass& firstOf(std::string_view name, const ViewClass* superclass) {
        const auto found = classes_.find(name);
        if (found != classes_.end()) {
            return *found->second;
        }
        // The constructor is private, out of std::make_unique's reach.
        Owned created(new ViewClass(name, superclass, nullptr));
        return *classes_.emplace(std::string(name), std::move(created)).first->second;
    }

    mutable std::mutex mutex_;
    // Guarded by mutex_: the first of each name, and the others by the first and by their superclass.
    std::map<std::string, Owned, std::less<>> classes_;
    std::map<std::pair<const ViewClass*, const ViewClass*>, Owned> namesakes_;
};

namespace {

/// Registers the library's own classes in one go: a toolkit that asks for one of their names first must find
/// it, and not register another class under it.
struct BuiltInClasses {
    const ViewClass& view = add("View", nullptr);
    const ViewClass& window = add("Window", &view);
    const ViewClass& label = add("Label", &view);
    const ViewClass& textField = add("TextField", &view, true);
    const ViewClass& textView = add("TextView", &view, true);
    const ViewClass& imageView = add("ImageView", &view);
    const ViewClass& viewController = add("ViewController", nullptr);

    static const BuiltInClasses& shared() {
        static const BuiltInClasses classes;
        return classes;
    }

  private:
    static const ViewClass& add(std::string_view name, const ViewClass* superclass, bool conforms = false) {
        return ViewClassRegistry::shared().add(name, superclass, conforms);
    }
};

}  // namespace

ViewClass::ViewClass(std::string_view name, const ViewClass* superclass, const ViewClass* first)
    : name_(name), superclass_(superclass), first_(first != nullptr ? first : this) {}

bool ViewClass::conformsToTextInput() const noexcept {
    for (const ViewClass* candidate = this; candidate != nullptr; candidate = candidate->superclass_) {
        if (candidate->first_->conformsToTextInput_) {
            return true;
        }
    }
    return false;
}

const ViewClass& ViewClass::registerClass(std::string_view name, const ViewClass* superclass,
                                          TextInput textInput) {
    (void)BuiltInClasses::shared();
    return ViewClassRegistry::shared().add(name, superclass, textInput == TextInput::conforms);
}

const ViewClass& ViewClass::registerSubclass(std::string_view name, const ViewClass& superclass) {
    (void)BuiltInClasses::shared();
    return ViewClassRegistry::shared().addBelow(superclass, name);
}

const ViewClass* ViewClass::find(std::string_view name) {
    (void)BuiltInClasses::shared();
    return ViewClassRegistry::shared().find(name);
}

bool ViewClass::isKindOf(const ViewClass& other) const noexcept {
    for (const ViewClass* candidate = this; candidate != nullptr; candidate = candidate->superclass_) {
        if (candidate->first_ == other.first_) {
            return true;
        }
    }
    return false;
}

const ViewClass& ViewClass::view() {
    return BuiltInClasses::shared().view;
}

const ViewClass& ViewClass::window() {
    return BuiltInClasses::shared().window;
}

const ViewClass& ViewClass::label() {
    return BuiltInClasses::shared().label;
}

const ViewClass& ViewClass::textField() {
    return BuiltInClasses::shared().textField;
}

const ViewClass& ViewClass::textView() {
    return BuiltInClasses::shared().textView;
}

const ViewClass& ViewClass::imageView() {
    return BuiltInClasses::shared().imageView;
}

const ViewClass& ViewClass::viewController() {
    return BuiltInClasses::shared().viewController;
}

}  // namespace mireth::platform
