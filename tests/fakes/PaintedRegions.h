#pragma once

#include <QEvent>
#include <QPaintEvent>
#include <QWidget>

/// Notes what is painted of a widget.
class PaintedRegions : public QObject
{
public:
    explicit PaintedRegions(QWidget &widget) { widget.installEventFilter(this); }

    /// One for each time.
    const QList<QRegion> &regions() const { return m_regions; }

    QRegion whole() const
    {
        QRegion whole;
        for (const QRegion &region : m_regions)
            whole += region;
        return whole;
    }

    void clear() { m_regions.clear(); }

protected:
    bool eventFilter(QObject *, QEvent *event) override
    {
        if (event->type() == QEvent::Paint)
            m_regions.append(static_cast<QPaintEvent *>(event)->region());
        return false;
    }

private:
    QList<QRegion> m_regions;
};
