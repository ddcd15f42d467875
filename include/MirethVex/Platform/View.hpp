// A node of the view tree that the library records.
#pragma once

#include <memory>
#include <vector>

#include "MirethVex/Base/Export.hpp"
#include "MirethVex/Base/Geometry.hpp"
#include "MirethVex/Platform/Layer.hpp"
#include "MirethVex/Platform/Touch.hpp"
#include "MirethVex/Platform/ViewClass.hpp"

namespace mireth::platform {

class ViewController;

/// A view with a layer. Main thread only. A toolkit binding uses it as it is, or subclasses it and answers
/// the virtual functions from its own widgets. The library calls those for each frame and four times for a
/// tap (layers and texts, at the tap and one to two seconds later), and `hitTest` whenever it is asked;
/// whatever they build lazily has to stay good until the next call on the same view. What they throw costs
/// the frame, which is blank then, or the judgement on the tap.
///
/// Always owned by std::shared_ptr (`std::make_shared<View>()`). A superview owns its subviews.
class MIRETH_EXPORT View : public std::enable_shared_from_this<View> {
  public:
    explicit View(const ViewClass& viewClass = ViewClass::view());
    virtual ~View();
    View(const View&) = delete;
    View& operator=(const View&) = delete;

    virtual const ViewClass& viewClass() const { return *viewClass_; }
    /// Back to front.
    virtual const std::vector<std::shared_ptr<View>>& subviews() const { return subviews_; }
    /// The model layer: the state the app has set. It need not hold its subviews' layers.
    virtual const Layer& layer() const { return layer_; }
    /// The state now on screen while it differs from the model, during an animation; else null.
    virtual std::shared_ptr<const Layer> presentationLayer() const { return presentationLayer_; }
    /// The view as the user sees it, with everything that its widget draws itself, texts and pictures among
    /// it; null when the view is that already. A frame for which masking is disabled shows the answer and its
    /// subviews in this view's place. It is asked for then only: a binding whose widgets have to be painted
    /// for it paints none of them while frames are masked.
    virtual std::shared_ptr<const View> unmasked() const { return nullptr; }
    /// The controller whose root view this is; null for most views.
    virtual std::shared_ptr<ViewController> viewController() const { return viewController_.lock(); }

    // The built-in state. Of no effect where an override of `layer` or `presentationLayer` hides it.

    Layer& mutableLayer() noexcept { return layer_; }
    /// Null: nothing is animated.
    void setPresentationLayer(std::shared_ptr<const Layer> layer) { presentationLayer_ = std::move(layer); }
    /// The controller is held weakly; an empty pointer takes it away. ViewController::setView calls it.
    void setViewController(std::weak_ptr<ViewController> controller);
    /// True when the last controller that was set hosts declarative content, also when it is gone by now:
    /// what it left on screen is no less private.
    bool wasDeclarative() const noexcept { return wasDeclarative_; }

    /// The view that this one was added to; null at the root, and for a view that only an override of
    /// `subviews` names.
    std::shared_ptr<View> superview() const { return superview_.lock(); }
    /// In front of the others. A view that has a superview is moved. Null is ignored. A view is never added
    /// below itself: such a call does nothing.
    void addSubview(const std::shared_ptr<View>& subview);
    void removeFromSuperview();

    /// Of `layer()`: in the superview's coordinates, in points.
    Rect frame() const { return layer().frame(); }
    /// Of the built-in layer.
    void setFrame(const Rect& frame) { layer_.setFrame(frame); }
    /// Of `layer()`: in the view's own coordinates.
    Rect bounds() const { return layer().geometry.bounds; }

    /// The deepest view that holds `point`, which is in this view's own coordinates; of siblings that lie
    /// over each other the front one. Null when there is none. Hidden views and those that are as good as
    /// transparent (opacity below 0.01) are passed over with all that is below them, and so is what a view
    /// clips away. What is drawn counts, but for animations: it is the model that is touched.
    std::shared_ptr<View> hitTest(Point point);

    /// What the window tells the view in which the touches began, after its recognisers; `touches` are those
    /// of `event` that are in the phase of the call's name. A touch that a recogniser takes away is cancelled
    /// once and not heard of again. The base does nothing. What an override throws is reported on standard
    /// error and goes no further.
    virtual void touchesBegan(const std::vector<Touch>& touches, const TouchEvent& event);
    virtual void touchesMoved(const std::vector<Touch>& touches, const TouchEvent& event);
    virtual void touchesEnded(const std::vector<Touch>& touches, const TouchEvent& event);
    virtual void touchesCancelled(const std::vector<Touch>& touches, const TouchEvent& event);

    /// The nearest controller that owns this view: its own, else the nearest superview's that has one.
    std::shared_ptr<ViewController> parentViewController() const;

  private:
    const ViewClass* viewClass_;
    Layer layer_;
    std::shared_ptr<const Layer> presentationLayer_;
    std::weak_ptr<ViewController> viewController_;
    bool wasDeclarative_ = false;
    std::weak_ptr<View> superview_;
    std::vector<std::shared_ptr<View>> subviews_;
};

}  // namespace mireth::platform
