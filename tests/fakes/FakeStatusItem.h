#pragma once

#include "platform/StatusItem.h"

/// A tray in which a test clicks by calling the callbacks.
class FakeStatusItem : public StatusItem
{
public:
    bool create() override
    {
        isCreated = true;
        return hasTray;
    }

    void setIcon(IconPainter painter, const QString &description) override
    {
        iconPainter = std::move(painter);
        iconDescription = description;
        ++iconCount;
    }

    void setMenu(const QList<StatusMenuEntry> &entries) override { menu = entries; }

    bool hasTray = true; ///< What create() answers.
    bool isCreated = false;
    IconPainter iconPainter;
    QString iconDescription;
    int iconCount = 0;
    QList<StatusMenuEntry> menu;
};
