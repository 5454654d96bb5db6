#include "window/ListKeys.h"

#include "window/ClipboardTableView.h"

#include <QKeyEvent>

namespace {

bool isArrow(const QKeyEvent &event)
{
    return event.key() == Qt::Key_Down || event.key() == Qt::Key_Up;
}

/// Alone a dead key writes nothing, but the next one writes another letter behind it.
bool isDeadKey(const QKeyEvent &event)
{
    return event.key() == Qt::Key_Multi_key
        || (event.key() >= Qt::Key_Dead_Grave && event.key() <= Qt::Key_Dead_Longsolidusoverlay);
}

bool writesText(const QKeyEvent &event)
{
    const QList<uint> characters = event.text().toUcs4();
    const bool isPrinted = !characters.isEmpty() && QChar::isPrint(characters.first());
    const auto others = Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier;
    return (isPrinted || isDeadKey(event)) && !(event.modifiers() & others);
}

} // namespace

ListKeys::ListKeys(ClipboardTableView &view)
    : m_view(view)
{
}

bool ListKeys::press(QKeyEvent &event)
{
    // The base class of the view would put the words of the row on the clipboard, not the entry.
    if (event.matches(QKeySequence::Copy) || event.key() == Qt::Key_Escape) {
        event.ignore();
        return true;
    }
    if (!m_view.acceptsInput())
        return true;
    // The focus alone makes the first row current, and the base class would go on from there.
    if (isArrow(event) && selectFirstRow())
        return true;
    return pressOnRow(event);
}

bool ListKeys::pressOnRow(QKeyEvent &event)
{
    switch (event.key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter: emit m_view.enterPressed(); return true;
    case Qt::Key_Delete:
    case Qt::Key_Backspace: emit m_view.deletePressed(); return true;
    case Qt::Key_Menu: m_view.requestMenuAtSelectedRow(); return true;
    case Qt::Key_F10:
        if (event.modifiers() == Qt::ShiftModifier)
            m_view.requestMenuAtSelectedRow();
        return true;
    case Qt::Key_Space:
        // The base class would select what is current, which is not what is seen as selected.
        if (m_view.selectedRow() < 0 || !m_view.onSpace || !m_view.onSpace(m_view.selectedRow()))
            event.ignore();
        return true;
    default:
        if (!writesText(event))
            return false;
        emit m_view.textKeyPressed(&event);
        return true;
    }
}

/// False if a row is selected already, or if there is none.
bool ListKeys::selectFirstRow()
{
    if (m_view.selectedRow() >= 0 || m_view.items().isEmpty())
        return false;
    m_view.selectRow(0);
    return true;
}
