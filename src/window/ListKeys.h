#pragma once

class ClipboardTableView;
class QKeyEvent;

/// What the keys do while the list has the focus, but for those that go from row to row.
class ListKeys
{
public:
    /// \a view must outlive the object.
    explicit ListKeys(ClipboardTableView &view);

    /// False if \a event goes from row to row, or does nothing.
    bool press(QKeyEvent &event);

private:
    bool pressOnRow(QKeyEvent &event);
    bool selectFirstRow();

    ClipboardTableView &m_view;
};
