#include "window/SpokenFocus.h"

#include "foundation/TextTools.h"
#include "platform/Scheduler.h"
#include "window/ClipboardTableView.h"
#include "window/ClipboardTableViewAccessible.h"
#include "window/SearchField.h"

#include <QAccessible>
#include <QKeyEvent>

using namespace std::chrono_literals;

namespace {

/// Whoever types on does not want to hear of each letter's results.
constexpr auto kTypingPause = 500ms;

enum class KeyTarget { Field, List, Neither };

KeyTarget targetOf(const QKeyEvent &press)
{
    switch (press.key()) {
    case Qt::Key_Up:
    case Qt::Key_Down:
    case Qt::Key_PageUp:
    case Qt::Key_PageDown: return KeyTarget::List;
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Menu:
    case Qt::Key_F10:
    case Qt::Key_Shift:
    case Qt::Key_Control:
    case Qt::Key_Alt:
    case Qt::Key_AltGr:
    case Qt::Key_Meta:
    case Qt::Key_CapsLock: return KeyTarget::Neither;
    default: return KeyTarget::Field;
    }
}

} // namespace

SpokenFocus::SpokenFocus(SearchField &field, ClipboardTableView &list, Scheduler &scheduler)
    : m_field(field)
    , m_list(list)
    , m_scheduler(scheduler)
{
    field.installEventFilter(this);
}

SpokenFocus::~SpokenFocus() = default;

void SpokenFocus::announce(const QString &text)
{
    if (!QAccessible::isActive())
        return;
    m_announcement.reset();
    const QString spoken = speakable(text);
    if (m_list.isSpokenFocus() && m_list.selectedRow() >= 0)
        ClipboardTableViewAccessible::describeRow(m_list, m_list.selectedRow(), spoken);
    else
        m_field.setAccessibleDescription(spoken);
}

void SpokenFocus::announceAfterTyping(const QString &text)
{
    if (QAccessible::isActive())
        m_announcement = m_scheduler.after(kTypingPause, [this, text] { announce(text); });
}

bool SpokenFocus::eventFilter(QObject *, QEvent *event)
{
    if (!QAccessible::isActive())
        return false;
    switch (event->type()) {
    case QEvent::KeyPress: {
        const KeyTarget target = targetOf(*static_cast<QKeyEvent *>(event));
        if (target == KeyTarget::List)
            goToList();
        else if (target == KeyTarget::Field)
            goToField();
        return false;
    }
    case QEvent::InputMethod: goToField(); return false;
    case QEvent::FocusIn:
        // A menu was open; the toolkit says nothing of where the focus goes then.
        if (static_cast<QFocusEvent *>(event)->reason() == Qt::PopupFocusReason)
            tellPlace();
        else
            m_list.setSpokenFocus(false);
        return false;
    default: return false;
    }
}

void SpokenFocus::goToList()
{
    m_list.setSpokenFocus(true);
}

void SpokenFocus::goToField()
{
    if (!m_list.isSpokenFocus())
        return;
    m_list.setSpokenFocus(false);
    tellPlace();
}

void SpokenFocus::tellPlace()
{
    if (m_list.isSpokenFocus() && m_list.selectedRow() >= 0) {
        ClipboardTableViewAccessible::tellFocus(m_list, m_list.selectedRow());
        return;
    }
    QAccessibleEvent focus(&m_field, QAccessible::Focus);
    QAccessible::updateAccessibility(&focus);
}
