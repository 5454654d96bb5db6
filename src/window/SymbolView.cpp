#include "window/SymbolView.h"

#include "widgets/AccessibleFactory.h"

#include <QPainter>

SymbolView::SymbolView(const Symbol &symbol, QWidget *parent)
    : QWidget(parent)
    , m_symbol(symbol)
{
    installAccessible<SymbolView, RoleAccessible<QAccessible::Graphic>>();
    setAttribute(Qt::WA_TransparentForMouseEvents);
}

void SymbolView::setColor(const QColor &color)
{
    m_color = color;
    update();
}

void SymbolView::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    drawSymbol(painter, rect(), m_symbol, m_color);
}
