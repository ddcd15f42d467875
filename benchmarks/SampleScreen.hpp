// The screens that the benchmarks capture: like an app's, in the number of views that is asked for.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

#include "MirethVex/Platform/ImageView.hpp"
#include "MirethVex/Platform/TextViews.hpp"
#include "MirethVex/Platform/Window.hpp"

namespace mireth::benchmarks {

inline constexpr Size screenSize{390, 844};

/// Where and how block `index` of `count` lies. One in five is a card, the others lie on cards.
struct Block {
    Rect rect;
    double cornerRadius = 0;
    Color color;
};

inline constexpr std::size_t viewsPerCard = 5;

/// The card's place on the screen; cards stand in rows of three, as many rows as are needed.
inline Block cardBlock(std::size_t card, std::size_t cards) {
    const std::size_t rows = (cards + 2) / 3;
    const double height = screenSize.height / static_cast<double>(rows);
    const auto column = static_cast<double>(card % 3);
    const auto row = static_cast<double>(card / 3);
    return {
        {column * 130 + 4, row * height, 122, height * 0.9}, 8, Color{0.95, 0.95 - 0.01 * column, 0.9, 1}};
}

/// What lies on a card, in the card's coordinates: a picture, a title, a price, and a plain button.
inline Block partBlock(std::size_t part, Size card) {
    const double unit = card.height / 10;
    switch (part) {
        case 0:
            return {{4, unit, 30, unit * 8}, 4, Color::gray(188.0 / 255.0)};
        case 1:
            return {{38, unit, 80, unit * 3}, 4, Color::gray(188.0 / 255.0)};
        case 2:
            return {{38, unit * 5, 40, unit * 2}, 4, Color::gray(188.0 / 255.0)};
        default:
            return {{82, unit * 5, 36, unit * 4}, 6, Color{0.1, 0.4, 0.9, 1}};
    }
}

/// A window with `views` views below it. With `shift` the cards are moved down, as by scrolling.
inline std::shared_ptr<platform::Window> makeScreen(std::size_t views, double shift = 0) {
    const auto window = std::make_shared<platform::Window>(screenSize);
    window->mutableLayer().appearance.backgroundColor = Color{1, 1, 1, 1};
    const auto picture = platform::Image::filled(32, 32, 0xFF884422U);
    const std::size_t cards = views / viewsPerCard;
    for (std::size_t number = 0; number < cards; ++number) {
        const Block block = cardBlock(number, cards);
        const auto card = std::make_shared<platform::View>();
        card->setFrame({block.rect.x, block.rect.y + shift, block.rect.width, block.rect.height});
        card->mutableLayer().appearance.backgroundColor = block.color;
        card->mutableLayer().appearance.cornerRadius = block.cornerRadius;
        window->addSubview(card);
        for (std::size_t part = 0; part + 1 < viewsPerCard; ++part) {
            std::shared_ptr<platform::View> view;
            if (part == 0) {
                const auto imageView = std::make_shared<platform::ImageView>();
                imageView->setImage(picture);
                view = imageView;
            } else if (part < 3) {
                const auto label = std::make_shared<platform::Label>();
                label->content.text = part == 1 ? "A title of average length" : "19.99";
                label->content.font = platform::Font{"Helvetica", 15};
                view = label;
            } else {
                view = std::make_shared<platform::View>();
            }
            const Block inside = partBlock(part, block.rect.size());
            view->setFrame(inside.rect);
            view->mutableLayer().appearance.backgroundColor = inside.color;
            view->mutableLayer().appearance.cornerRadius = inside.cornerRadius;
            card->addSubview(view);
        }
    }
    return window;
}

}  // namespace mireth::benchmarks
