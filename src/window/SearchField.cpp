#include "window/SearchField.h"

#include "appearance/DevicePixels.h"
#include "appearance/InterfaceFont.h"
#include "platform/Scheduler.h"

#include <QCommonStyle>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QPainter>
#include <QStyleHints>
#include <QTextCharFormat>

#include <algorithm>

namespace {

constexpr int kTextSize = 22;
constexpr qreal kDisabledAlpha = 0.55;
constexpr qreal kCaretWidth = 1.5;
constexpr qreal kCaretHeight = 25; // This and the next grow with the text.
constexpr qreal kCaretDrop = 6.5; // Below the baseline.
/// Nobody looks for more, and a heap of marks takes long to lay out.
constexpr int kMaxUnits = 1000;

// What the line edit puts above its text on its own account.
constexpr int kInnerTopMargin = 1;
constexpr int kInnerSideMargin = 2;
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

/// How a composition is drawn; input methods that leave that to us say nothing of it.
QList<QInputMethodEvent::Attribute> withLineBelow(const QInputMethodEvent &event)
{
    using Attribute = QInputMethodEvent::Attribute;
    QList<Attribute> attributes = event.attributes();
    const bool isFormatted = std::ranges::any_of(attributes, [](const Attribute &attribute) {
        return attribute.type == QInputMethodEvent::TextFormat;
    });
    if (isFormatted || event.preeditString().isEmpty())
        return attributes;
    QTextCharFormat format;
    format.setUnderlineStyle(QTextCharFormat::SingleUnderline);
    const int length = int(event.preeditString().size());
    attributes.append({QInputMethodEvent::TextFormat, 0, length, format});
    return attributes;
}

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
    setTextMargins(-kInnerSideMargin, -kInnerTopMargin, -kInnerSideMargin, 0);
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
    // A menu takes the keys for a while, and the field has them again when it closes.
    m_isCaretShown = event->reason() == Qt::PopupFocusReason;
}

void SearchField::inputMethodEvent(QInputMethodEvent *event)
{
    m_isComposing = !event->preeditString().isEmpty();
    QInputMethodEvent underlined(event->preeditString(), withLineBelow(*event));
    underlined.setCommitString(event->commitString(), event->replacementStart(),
                               event->replacementLength());
    TextField::inputMethodEvent(&underlined);
    event->setAccepted(underlined.isAccepted());
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
        drawPlaceholder(painter);
    if (m_isCaretShown)
        painter.fillRect(snappedToDevice(painter, caretRect()), m_caretColor);
}

QRectF SearchField::caretRect() const
{
    const qreal x = std::min<qreal>(cursorRect().x() + kCursorRectLead, width() - kCaretWidth);
    const qreal scale = interfaceTextScale();
    const qreal bottom = baseline() + kCaretDrop * scale;
    return {x, bottom - kCaretHeight * scale, kCaretWidth, kCaretHeight * scale};
}

qreal SearchField::baseline() const
{
    return contentsRect().top() + fontMetrics().ascent();
}

/// Qt would put a text with Chinese lower, since the font that it falls back to is taller; what is
/// typed stays on one line whatever its script. The caret, where there is one, stands before it.
void SearchField::drawPlaceholder(QPainter &painter)
{
    const QFontMetrics metrics = fontMetrics();
    const qreal x = cursorRect().x() + kCursorRectLead + (hasFocus() ? kCaretWidth : 0);
    painter.setPen(isEnabled() ? m_placeholderColor
                               : withAlpha(m_placeholderColor, kDisabledAlpha));
    painter.drawText(QPointF(x, baseline()),
                     metrics.elidedText(placeholderText(), Qt::ElideRight, int(width() - x)));
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
        update(caretRect().toAlignedRect());
    });
}

void SearchField::stopBlinking()
{
    m_blinking.reset();
    m_isCaretShown = false;
    update();
}
