#include "platforms/qt/objects/CppClass.hpp"

#include <cxxabi.h>

#include <boost/core/demangle.hpp>
#include <span>

namespace mireth::qt {

namespace {

void addNames(const std::type_info& type, std::vector<std::string>& names) {
    if (const auto* const derived = dynamic_cast<const abi::__si_class_type_info*>(&type)) {
        addNames(*derived->__base_type, names);
    } else if (const auto* const derivedFromMany = dynamic_cast<const abi::__vmi_class_type_info*>(&type)) {
        for (const auto& base : std::span(derivedFromMany->__base_info, derivedFromMany->__base_count)) {
            addNames(*base.__base_type, names);
        }
    }
    names.push_back(boost::core::demangle(type.name()));
}

}  // namespace

const std::type_info* cppClassOf(const QObject& object) {
    // The compiler takes it that there always is one, unless it cannot tell what is compared.
    const std::type_info* volatile const type = &typeid(object);
    return type;
}

std::vector<std::string> namesOf(const std::type_info& type) {
    std::vector<std::string> names;
    addNames(type, names);
    return names;
}

}  // namespace mireth::qt
