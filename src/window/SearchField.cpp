#include "window/SearchField.h"

#include "appearance/InterfaceFont.h"
#include "platform/Scheduler.h"

#include <QCommonStyle>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QPainter>
#include <QStyleHints>

#include <algorithm>

namespace {

constexpr int kTextSize = 22;
constexpr int kCaretWidth = 2;
constexpr qreal kDisabledAlpha = 0.55;
/// Nobody looks for more, and a heap of marks takes long to lay out.
constexpr int kMaxUnits = 1000;

// What the line edit puts above its text on its own account.
constexpr int kInnerTopMargin = 1;
// How far before the caret the line edit's cursor rectangle begins.
constexpr int kCursorRectLead = 5;

/// Draws no caret, since the line edit knows none but in the colour of the text.
class CaretlessStyle : public QCommonStyle
{
public:
    int pixelMetric(PixelMetric metric, const QStyleOption *option,
                    const QWidget *widget) const override
    {
        return metric == PM_TextCursorWidth ? 0 : QCommonStyle::pixelMetric(metric, option, widget);
    }
};

} // namespace

SearchField::SearchField(Scheduler &scheduler, QWidget *parent)
    : TextField(parent)
    , m_scheduler(scheduler)
    , m_style(std::make_unique<CaretlessStyle>())
{
    setStyle(m_style.get());
    setFrame(false);
    refreshFont();
    setMaxLength(kMaxUnits);
    setAlignment(Qt::AlignLeft | Qt::AlignTop);
    setTextMargins(0, -kInnerTopMargin, 0, 0);
    connect(this, &QLineEdit::cursorPositionChanged, this, [this] {
        if (hasFocus())
            startBlinking();
    });
}

SearchField::~SearchField()
{
    // The style goes before the base class, which would still ask it.
    setStyle(nullptr);
}

void SearchField::setColors(const SystemColors &colors)
{
    QPalette colored = palette();
    colored.setColor(QPalette::Base, Qt::transparent);
    colored.setColor(QPalette::Text, colors.labelColor);
    colored.setColor(QPalette::Disabled, QPalette::Text,
                     withAlpha(colors.labelColor, kDisabledAlpha));
    colored.setColor(QPalette::PlaceholderText, Qt::transparent);
    colored.setColor(QPalette::Highlight, colors.accentFillColor);
    colored.setColor(QPalette::HighlightedText, Qt::white);
    setPalette(colored);
    m_caretColor = colors.controlAccentColor;
    m_placeholderColor = colors.placeholderTextColor;
}

void SearchField::refreshFont()
{
    setFont(interfaceFont(kTextSize, QFont::Light));
}

void SearchField::focusInEvent(QFocusEvent *event)
{
    TextField::focusInEvent(event);
    startBlinking();
}

void SearchField::focusOutEvent(QFocusEvent *event)
{
    TextField::focusOutEvent(event);
    stopBlinking();
}

void SearchField::inputMethodEvent(QInputMethodEvent *event)
{
    m_isComposing = !event->preeditString().isEmpty();
    TextField::inputMethodEvent(event);
}

void SearchField::keyPressEvent(QKeyEvent *event)
{
    const bool isPlain = (event->modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier;
    const bool isMenuChord
        = event->key() == Qt::Key_F10 && event->modifiers() == Qt::ShiftModifier;
    if (isMenuChord)
        emit listKeyPressed(Qt::Key_Menu);
    else if (isPlain && announceKey(event->key()))
        event->accept();
    else
        TextField::keyPressEvent(event);
}

void SearchField::paintEvent(QPaintEvent *event)
{
    TextField::paintEvent(event);
    QPainter painter(this);
    if (text().isEmpty() && !m_isComposing)
        drawPlaceholder(painter, cursorRect().x() + kCursorRectLead);
    if (m_isCaretShown)
        painter.fillRect(caretRect(), m_caretColor);
}

QRect SearchField::caretRect() const
{
    const QRect cursor = cursorRect();
    const int x = std::max(0, cursor.x() + kCursorRectLead - kCaretWidth / 2);
    return {x, cursor.y(), kCaretWidth, cursor.height()};
}

/// Qt would put a text with Chinese lower, since the font that it falls back to is taller; what is
/// typed stays on one line whatever its script.
void SearchField::drawPlaceholder(QPainter &painter, int x)
{
    const QFontMetrics metrics = fontMetrics();
    painter.setPen(isEnabled() ? m_placeholderColor
                               : withAlpha(m_placeholderColor, kDisabledAlpha));
    painter.drawText(x, contentsRect().top() + metrics.ascent(),
                     metrics.elidedText(placeholderText(), Qt::ElideRight, width() - x));
}

bool SearchField::announceKey(int key)
{
    switch (key) {
    case Qt::Key_Escape: emit cancelPressed(); return true;
    case Qt::Key_Return:
    case Qt::Key_Enter: emit newlinePressed(); return true;
    case Qt::Key_Down: emit moveDownPressed(); return true;
    case Qt::Key_Up: emit moveUpPressed(); return true;
    case Qt::Key_PageDown:
    case Qt::Key_PageUp:
    case Qt::Key_Menu: emit listKeyPressed(key); return true;
    default: return false;
    }
}

void SearchField::startBlinking()
{
    m_isCaretShown = true;
    update();
    const std::chrono::milliseconds period(QGuiApplication::styleHints()->cursorFlashTime() / 2);
    if (period.count() <= 0)
        return;
    m_blinking = m_scheduler.every(period, [this] {
        m_isCaretShown = !m_isCaretShown;
        update(caretRect());
    });
}

void SearchField::stopBlinking()
{
    m_blinking.reset();
    m_isCaretShown = false;
    update();
}
