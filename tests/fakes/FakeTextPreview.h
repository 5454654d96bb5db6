#pragma once

#include "preview/TextPreview.h"

#include <QList>
#include <QPointer>
#include <QStringList>
#include <QWheelEvent>
#include <QWidget>

/// A preview without a look; it fades for as long as a test wants.
class FakeTextPreview : public TextPreview
{
public:
    bool isVisible() const override { return isShown; }

    void togglePreview(const ClipboardItemPointer &item, QWidget &newParent,
                       QWidget *newResponder) override
    {
        shownItems.append(item);
        parent = &newParent;
        responder = newResponder;
        isShown = true;
        if (onVisibilityChanged)
            onVisibilityChanged(true);
    }

    void hidePreview(Focus focus) override
    {
        if (isShown)
            hideRequests.append(focus);
    }

    void fadeOut()
    {
        isShown = false;
        if (onVisibilityChanged)
            onVisibilityChanged(false);
    }

    void updateSearchQuery(const QString &query) override { queries.append(query); }
    void navigateMatch(int delta) override { steps.append(delta); }

    bool handleWheel(QWheelEvent &) override
    {
        ++wheelCount;
        return true;
    }

    bool isShown = false;
    QList<ClipboardItemPointer> shownItems;
    QPointer<QWidget> parent;
    QPointer<QWidget> responder;
    QList<Focus> hideRequests;
    QStringList queries;
    QList<int> steps;
    int wheelCount = 0;
};
