// Sees every touch of a window and takes none away.
#pragma once

#include <vector>

#include "MirethVex/Base/PassthroughSubject.hpp"
#include "MirethVex/Platform/GestureRecognizer.hpp"

namespace mireth {

/// Main thread.
class GestureRecognizerObserver final : public platform::GestureRecognizer,
                                        private platform::GestureRecognizerDelegate {
  public:
    /// The touches of one callback and the event they came with.
    struct Gesture {
        std::vector<platform::Touch> touches;
        platform::TouchEvent event;
    };

    GestureRecognizerObserver();

    AnyPublisher<Gesture> touchesBegan() const { return began_.eraseToAnyPublisher(); }
    AnyPublisher<Gesture> touchesMoved() const { return moved_.eraseToAnyPublisher(); }
    AnyPublisher<Gesture> touchesEnded() const { return ended_.eraseToAnyPublisher(); }
    AnyPublisher<Gesture> touchesCancelled() const { return cancelled_.eraseToAnyPublisher(); }

    void touchesBegan(const std::vector<platform::Touch>& touches,
                      const platform::TouchEvent& event) override;
    void touchesMoved(const std::vector<platform::Touch>& touches,
                      const platform::TouchEvent& event) override;
    void touchesEnded(const std::vector<platform::Touch>& touches,
                      const platform::TouchEvent& event) override;
    void touchesCancelled(const std::vector<platform::Touch>& touches,
                          const platform::TouchEvent& event) override;

  private:
    /// Always true: the app's own recognisers keep working.
    bool shouldRecognizeSimultaneouslyWith(platform::GestureRecognizer& recognizer,
                                           platform::GestureRecognizer& other) override;

    PassthroughSubject<Gesture> began_;
    PassthroughSubject<Gesture> moved_;
    PassthroughSubject<Gesture> ended_;
    PassthroughSubject<Gesture> cancelled_;
};

}  // namespace mireth
