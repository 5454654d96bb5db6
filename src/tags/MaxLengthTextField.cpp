#include "tags/MaxLengthTextField.h"

#include "appearance/InterfaceFont.h"
#include "appearance/RoundedBox.h"
#include "foundation/TextTools.h"

#include <QApplication>
#include <QInputMethodEvent>
#include <QPainter>

#include <algorithm>

namespace {

constexpr int kTextSize = 13;
constexpr int kTextInset = 8;
constexpr int kInnerMargin = 2; // What the line edit keeps free on its own account.
constexpr qreal kRadius = 6;
constexpr qreal kRingAlpha = 0.45;

} // namespace

MaxLengthTextField::MaxLengthTextField(const SystemColors &colors, QWidget *parent)
    : TextField(parent)
    , onTooLong(&QApplication::beep)
{
    setFrame(false);
    const int inset = kRingRoom + kTextInset - kInnerMargin;
    setTextMargins(inset, 0, inset, 0);
    setColors(colors);
    connect(this, &QLineEdit::textChanged, this, &MaxLengthTextField::textDidChange);
}

void MaxLengthTextField::setColors(const SystemColors &colors)
{
    m_colors = colors;
    setFont(interfaceFont(kTextSize));
    QPalette colored = palette();
    colored.setColor(QPalette::Base, Qt::transparent);
    colored.setColor(QPalette::Text, colors.labelColor);
    colored.setColor(QPalette::PlaceholderText, colors.placeholderTextColor);
    colored.setColor(QPalette::Highlight, colors.accentFillColor);
    colored.setColor(QPalette::HighlightedText, Qt::white);
    setPalette(colored);
}

void MaxLengthTextField::setBoxSize(const QSize &size)
{
    setFixedSize(size + QSize(2 * kRingRoom, 2 * kRingRoom));
}

void MaxLengthTextField::inputMethodEvent(QInputMethodEvent *event)
{
    m_isComposing = !event->preeditString().isEmpty();
    TextField::inputMethodEvent(event);
    textDidChange();
}

void MaxLengthTextField::paintEvent(QPaintEvent *event)
{
    QPainter painter(this);
    const QRectF box = QRectF(rect()).adjusted(kRingRoom, kRingRoom, -kRingRoom, -kRingRoom);
    if (hasFocus())
        fillRoundedBox(painter, rect(), kRadius + kRingRoom,
                       withAlpha(m_colors.controlAccentColor, kRingAlpha));
    fillRoundedBox(painter, box, kRadius, m_colors.controlColor);
    lineRoundedBox(painter, box, kRadius,
                   hasFocus() ? m_colors.controlAccentColor : m_colors.controlLineColor);
    painter.end();
    TextField::paintEvent(event);
}

void MaxLengthTextField::textDidChange()
{
    if (m_isComposing)
        return;
    const QString shortened = firstCharacters(text(), m_characterLimit);
    if (shortened.size() == text().size())
        return;
    const int cursor = cursorPosition();
    setText(shortened);
    setCursorPosition(std::min(cursor, int(shortened.size())));
    if (onTooLong)
        onTooLong();
}
