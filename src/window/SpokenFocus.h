#pragma once

#include <QObject>

#include <memory>

class ClipboardTableView;
class ScheduledWork;
class Scheduler;
class SearchField;

/// For those who hear the window: where they are in its list, and what has happened there.
///
/// While the search field has the focus some of its keys move through the list. From then on the row
/// that they have come to is heard, as if the focus were there, until something is typed or the focus
/// goes elsewhere. What has happened, and what a search has found, is heard as the description of that
/// row, or of the field; screen readers speak a description when it changes.
class SpokenFocus : public QObject
{
    Q_OBJECT

public:
    /// All three must outlive the object.
    SpokenFocus(SearchField &field, ClipboardTableView &list, Scheduler &scheduler);
    ~SpokenFocus() override;

    /// Has \a text heard at once.
    void announce(const QString &text);

    /// Has \a text heard when the person has stopped typing, in place of what was to be heard then.
    void announceAfterTyping(const QString &text);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void goToList();
    void goToField();
    void tellPlace();

    SearchField &m_field;
    ClipboardTableView &m_list;
    Scheduler &m_scheduler;
    std::unique_ptr<ScheduledWork> m_announcement;
};
