#include "widgets/AlertSheet.h"

#include "appearance/InterfaceFont.h"
#include "widgets/AccessibleFactory.h"
#include "widgets/AlertSheetAccessible.h"
#include "widgets/FocusRing.h"
#include "widgets/PushButton.h"

#include <QAccessible>
#include <QApplication>
#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QPainter>
#include <QTextLayout>
#include <QWheelEvent>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr int kWidth = 300;
constexpr int kWideWidth = 322; // Where the text takes more than one line.
constexpr int kPadding = 20;
constexpr qreal kRadius = 16;
constexpr qreal kPlainRadius = 8;
constexpr int kTitleSize = 14;
constexpr int kTitleHeight = 20;
constexpr qreal kInformationSize = 12.5;
constexpr int kInformationGap = 3;
constexpr int kLineHeight = 17;
constexpr int kAccessoryGap = 13;
constexpr int kButtonsGap = 18;
constexpr int kButtonSpacing = 8;
constexpr int kButtonPadding = 14;
constexpr qreal kVeil = 0.16;
constexpr qreal kDarkVeil = 0.36;
constexpr SoftShadow kShadow{.blur = 60, .drop = 20, .strength = 0.32};
// Where the middle of the card is in the height of the window.
constexpr qreal kMiddle = 0.442;

QFont titleFont()
{
    return interfaceFont(kTitleSize, QFont::DemiBold);
}

RaisedCard cardIn(const Look &look)
{
    return {look.isTranslucent ? kRadius : kPlainRadius, kShadow, look};
}

/// \a text in lines of at most \a width.
QStringList wrapped(const QString &text, qreal width)
{
    QTextLayout layout(text, interfaceFont(kInformationSize));
    QStringList lines;
    layout.beginLayout();
    for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
        line.setLineWidth(width);
        lines.append(text.mid(line.textStart(), line.textLength()).trimmed());
    }
    layout.endLayout();
    return lines;
}

} // namespace

AlertSheet::AlertSheet(const Texts &texts, Kind kind, const Look &look, QWidget *window)
    : QWidget(window)
    , m_texts(texts)
    , m_look(look)
    , m_colors(look.colors())
    , m_card(cardIn(look))
    , m_confirmButton(addButton(texts.confirm))
    , m_cancelButton(addButton(texts.cancel))
    , m_firstFocus(kind == Kind::Destructive ? m_cancelButton : m_confirmButton)
{
    installAccessible<AlertSheet, AlertSheetAccessible>();
    setAccessibleName(texts.title);
    setAccessibleDescription(texts.information);
    m_confirmButton->setObjectName(u"confirmButton"_s);
    m_cancelButton->setObjectName(u"cancelButton"_s);
    m_confirmButton->setEmphasis(kind == Kind::Destructive ? PushButton::Emphasis::Destructive
                                                           : PushButton::Emphasis::Primary);
    connect(m_confirmButton, &PushButton::clicked, this, &AlertSheet::confirm);
    connect(m_cancelButton, &PushButton::clicked, this, &AlertSheet::cancel);
    new FocusRing(m_colors, this);
    window->installEventFilter(this);
    hide();
}

AlertSheet::~AlertSheet()
{
    // What stands on the sheet gives the focus away while it ends.
    qApp->disconnect(this);
}

void AlertSheet::setAccessoryView(QWidget *view, int margin)
{
    view->setParent(this);
    m_accessoryView = view;
    m_accessoryMargin = margin;
    m_firstFocus = view;
}

void AlertSheet::setLook(const Look &look)
{
    m_look = look;
    m_colors = look.colors();
    m_card = cardIn(look);
    for (PushButton *button : {m_confirmButton, m_cancelButton})
        button->resize(button->sizeHint());
    layOut();
}

void AlertSheet::open()
{
    m_formerFocus = window()->focusWidget();
    setGeometry(parentWidget()->rect());
    layOut();
    show();
    m_firstFocus->setFocus(Qt::TabFocusReason);
    m_lastFocus = m_firstFocus;
    connect(qApp, &QApplication::focusChanged, this,
            [this](QWidget *, QWidget *now) { keepFocus(now); });
    QAccessibleEvent announcement(this, QAccessible::Alert);
    QAccessible::updateAccessibility(&announcement);
}

void AlertSheet::confirm()
{
    close(&AlertSheet::confirmed);
}

void AlertSheet::cancel()
{
    close(&AlertSheet::cancelled);
}

bool AlertSheet::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == parentWidget() && event->type() == QEvent::Resize)
        setGeometry(parentWidget()->rect());
    return QWidget::eventFilter(watched, event);
}

bool AlertSheet::focusNextPrevChild(bool next)
{
    const QWidgetList order = focusOrder();
    const qsizetype present = order.indexOf(window()->focusWidget());
    const qsizetype place = (present + (next ? 1 : order.size() - 1)) % order.size();
    order.at(place)->setFocus(next ? Qt::TabFocusReason : Qt::BacktabFocusReason);
    return true;
}

void AlertSheet::contextMenuEvent(QContextMenuEvent *event)
{
    event->accept();
}

/// No key reaches the window below.
void AlertSheet::keyPressEvent(QKeyEvent *event)
{
    switch (event->key()) {
    case Qt::Key_Escape: cancel(); break;
    case Qt::Key_Return:
    case Qt::Key_Enter: confirm(); break;
    default: break;
    }
}

void AlertSheet::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    const bool isDark = m_look.scheme == ColorScheme::Dark;
    painter.fillRect(rect(), withAlpha(Qt::black, isDark ? kDarkVeil : kVeil));
    if (m_look.isTranslucent)
        m_card.draw(painter, m_cardRect);
    else
        m_card.drawWithoutShadow(painter, m_cardRect);
    QRect line(m_cardRect.x() + kPadding, m_cardRect.y() + kPadding,
               m_cardRect.width() - 2 * kPadding, kTitleHeight);
    painter.setFont(titleFont());
    painter.setPen(m_colors.labelColor);
    drawTextLine(painter, line, m_texts.title);
    painter.setFont(interfaceFont(kInformationSize));
    painter.setPen(m_colors.secondaryLabelColor);
    line = QRect(line.x(), line.bottom() + 1 + kInformationGap, line.width(), kLineHeight);
    for (const QString &text : std::as_const(m_lines)) {
        drawTextLine(painter, line, text);
        line.translate(0, kLineHeight);
    }
}

void AlertSheet::resizeEvent(QResizeEvent *)
{
    layOut();
}

void AlertSheet::wheelEvent(QWheelEvent *event)
{
    event->accept();
}

PushButton *AlertSheet::addButton(const QString &title)
{
    auto *button = new PushButton(m_colors, this);
    button->setText(title);
    button->setPadding(kButtonPadding);
    button->resize(button->sizeHint());
    return button;
}

void AlertSheet::layOut()
{
    int width = kWidth;
    m_lines = wrapped(m_texts.information, width - 2 * kPadding);
    if (m_lines.size() > 1) {
        width = kWideWidth;
        m_lines = wrapped(m_texts.information, width - 2 * kPadding);
    }
    int y = kPadding + kTitleHeight + kInformationGap + int(m_lines.size()) * kLineHeight;
    const int accessoryTop = y + kAccessoryGap;
    if (m_accessoryView)
        y = accessoryTop + m_accessoryView->height() - 2 * m_accessoryMargin;
    const int buttonTop = y + kButtonsGap;
    const int height = buttonTop + m_confirmButton->height() + kPadding;
    const int top = std::max(0, qRound(this->height() * kMiddle - height / 2.0));
    m_cardRect = QRect((this->width() - width) / 2, top, width, height);

    if (m_accessoryView)
        m_accessoryView->move(m_cardRect.x() + kPadding - m_accessoryMargin,
                              top + accessoryTop - m_accessoryMargin);
    int right = m_cardRect.right() + 1 - kPadding;
    for (PushButton *button : {m_confirmButton, m_cancelButton}) {
        button->move(right - button->width(), top + buttonTop);
        right = button->x() - kButtonSpacing;
    }
    update();
}

/// What is below does not get the focus, whoever gives it.
void AlertSheet::keepFocus(QWidget *now)
{
    if (!now || now->window() != window() || m_isAnswered)
        return;
    if (isAncestorOf(now))
        m_lastFocus = now;
    else if (m_lastFocus)
        m_lastFocus->setFocus(Qt::ActiveWindowFocusReason);
}

QWidgetList AlertSheet::focusOrder() const
{
    QWidgetList order{m_cancelButton, m_confirmButton};
    if (m_accessoryView)
        order.prepend(m_accessoryView);
    return order;
}

void AlertSheet::close(void (AlertSheet::*answer)())
{
    if (std::exchange(m_isAnswered, true))
        return;
    const bool hadFocus = isAncestorOf(window()->focusWidget());
    hide();
    if (hadFocus && m_formerFocus)
        m_formerFocus->setFocus(Qt::ActiveWindowFocusReason);
    deleteLater();
    emit(this->*answer)();
}
