// The exhibits of Qt Quick's gallery, by family.
#pragma once

#include <ostream>
#include <string>
#include <vector>

namespace mireth::qttest {

/// QML in which texts and the picture PICTURE are canaries.
struct ItemExhibit {
    std::string name;
    std::string body;
    /// False for what the software scene graph does not draw at every scale factor, and for what is black.
    bool showsCanary = true;
};

inline std::ostream& operator<<(std::ostream& out, const ItemExhibit& exhibit) {
    return out << exhibit.name;
}

std::vector<ItemExhibit> textItems();
std::vector<ItemExhibit> buttonItems();
std::vector<ItemExhibit> inputItems();
std::vector<ItemExhibit> viewItems();
std::vector<ItemExhibit> containerItems();
std::vector<ItemExhibit> popUpItems();
std::vector<ItemExhibit> drawnItems();

/// All of them.
std::vector<ItemExhibit> itemExhibits();

/// Makes the types of the module "Gallery" known, which exhibits use: `PaintedItem`, `TextureItem`,
/// `FramebufferItem` and the model `SecretTree`.
void registerGalleryTypes();

}  // namespace mireth::qttest
