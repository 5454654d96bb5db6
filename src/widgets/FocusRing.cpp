#include "widgets/FocusRing.h"

#include "appearance/FocusOutline.h"
#include "widgets/DrawnControl.h"

#include <QEvent>
#include <QPainter>

using namespace Qt::StringLiterals;

namespace {

constexpr QMargins kRoom(kFocusOutlineRoom, kFocusOutlineRoom, kFocusOutlineRoom,
                         kFocusOutlineRoom);

} // namespace

FocusRing::FocusRing(const SystemColors &colors, QWidget *window)
    : QWidget(window)
    , m_colors(colors)
{
    setObjectName(u"focusRing"_s);
    setAttribute(Qt::WA_TransparentForMouseEvents);
    hide();
    const auto controls = window->findChildren<DrawnControl *>();
    for (DrawnControl *control : controls) {
        connect(control, &DrawnControl::focusVisibleChanged, this,
                [this, control](bool isVisible) {
                    if (isVisible)
                        follow(control);
                    else if (m_control == control)
                        follow(nullptr);
                });
    }
}

bool FocusRing::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Move || event->type() == QEvent::Resize)
        place();
    return QWidget::eventFilter(watched, event);
}

void FocusRing::paintEvent(QPaintEvent *)
{
    if (!m_control)
        return;
    QPainter painter(this);
    drawFocusOutline(painter, rect().marginsRemoved(kRoom), m_control->radius(),
                     m_colors.controlAccentColor);
}

void FocusRing::follow(DrawnControl *control)
{
    if (m_control)
        m_control->removeEventFilter(this);
    m_control = control;
    setVisible(control);
    if (!control)
        return;
    control->installEventFilter(this);
    place();
    raise();
}

void FocusRing::place()
{
    const QRect around(m_control->mapTo(parentWidget(), QPoint()), m_control->size());
    setGeometry(around.marginsAdded(kRoom));
    update();
}
