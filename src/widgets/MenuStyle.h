#pragma once

#include "widgets/MenuLook.h"
#include "widgets/RaisedCard.h"

#include <QMargins>
#include <QProxyStyle>

class QStyleOptionMenuItem;

/// Draws one menu in the program's look: see applyMenuLook().
class MenuStyle : public QProxyStyle
{
    Q_OBJECT

public:
    static constexpr int kTitleSize = 13;
    static constexpr int kSubmenuGap = 4; ///< Between the cards of a menu and its submenu.

    MenuStyle();

    void setLook(const Look &look);
    const Look &look() const { return m_look; }

    /// What the shadow takes around the card.
    QMargins room() const;

    void drawPrimitive(PrimitiveElement element, const QStyleOption *option, QPainter *painter,
                       const QWidget *widget) const override;
    void drawControl(ControlElement element, const QStyleOption *option, QPainter *painter,
                     const QWidget *widget) const override;
    int pixelMetric(PixelMetric metric, const QStyleOption *option,
                    const QWidget *widget) const override;
    QSize sizeFromContents(ContentsType type, const QStyleOption *option, const QSize &size,
                           const QWidget *widget) const override;
    int styleHint(StyleHint hint, const QStyleOption *option, const QWidget *widget,
                  QStyleHintReturn *returnData) const override;

private:
    void drawPlainCard(QPainter &painter, const QRect &card) const;
    void drawItem(QPainter &painter, const QStyleOptionMenuItem &option) const;
    void drawTexts(QPainter &painter, const QStyleOptionMenuItem &option,
                   const SystemColors &colors) const;
    void drawScroller(QPainter &painter, const QStyleOption &option) const;

    Look m_look;
    SystemColors m_colors = m_look.colors();
    RaisedCard m_card; ///< Where the desktop blends windows.
};
