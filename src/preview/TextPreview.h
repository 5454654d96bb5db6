#pragma once

#include "core/ClipboardItem.h"

#include <functional>
#include <optional>

class QWheelEvent;
class QWidget;

/// Shows one entry in large over the list of the window that it belongs to. That window's search
/// field searches in it meanwhile. Main thread only.
class TextPreview
{
public:
    enum class Focus { Restore, Leave };

    virtual ~TextPreview();

    /// Also while it fades out.
    virtual bool isVisible() const = 0;

    /// Shows \a item over \a parent, or hides the preview if it shows that one already. \a responder
    /// is to have the focus again afterwards.
    virtual void togglePreview(const ClipboardItemPointer &item, QWidget &parent,
                               QWidget *responder)
        = 0;

    /// The preview fades out; the focus goes back at once, if it is wanted there. Nothing if it is
    /// not shown.
    virtual void hidePreview(Focus focus) = 0;

    /// Looks for \a query in what is shown; empty, for nothing.
    virtual void updateSearchQuery(const QString &query) = 0;

    /// Goes on by \a delta matches, back if it is negative, and round at the ends.
    virtual void navigateMatch(int delta) = 0;

    /// Returns false if it has no use for the turn of the wheel.
    virtual bool handleWheel(QWheelEvent &event) = 0;

    /// Called with true when the preview has been shown, and again when it has gone on to another
    /// entry; with false when it has faded out.
    std::function<void(bool isOpen)> onVisibilityChanged;

    /// Called when the person begins or ends to edit the text.
    std::function<void(bool isEditing)> onTextEditingStateChanged;

    /// Wants the text of an entry replaced. The completion is called with the entry as it is then,
    /// or with nothing if it is not there any more.
    using SaveCompletion = std::function<void(std::optional<ClipboardItem>)>;
    std::function<void(const QUuid &id, const QString &text, SaveCompletion completion)>
        onTextSaveRequested;
};
