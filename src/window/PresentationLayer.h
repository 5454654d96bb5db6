#pragma once

#include <QtGlobal>

#include <memory>

class QWidget;

/// How much of a view is to be seen, and how large.
struct Presentation
{
    qreal opacity = 1; ///< From 0, nothing.
    qreal scale = 1; ///< About the centre.

    friend bool operator==(const Presentation &, const Presentation &) = default;
};

/// Draws a view and all that it holds fainter and smaller than they are.
///
/// What is true stays untouched: geometry, keys and clicks are those of the view itself. A view that
/// is shown as it is costs nothing.
class PresentationLayer
{
public:
    /// \a view must outlive the layer.
    explicit PresentationLayer(QWidget &view);
    ~PresentationLayer();

    const Presentation &presentation() const { return m_presentation; }
    void setPresentation(const Presentation &presentation);

private:
    class Effect;

    QWidget &m_view;
    Presentation m_presentation;
    Effect *m_effect = nullptr; ///< The view's, and only while it does something.
};
