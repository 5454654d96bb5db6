#pragma once

#include <QObject>

#include <memory>

class ClipboardTableView;
class ScheduledWork;
class Scheduler;
class SearchField;

/// For those who hear the window: where they are in it, and what has happened there.
///
/// The search field has the focus all the time, while its keys move through the list as well. What
/// is heard is the row that they have come to, as if the focus were there, until something is typed
/// again. What happens without them is heard as the description of the place where they are, which
/// screen readers speak when it changes.
class SpokenFocus : public QObject
{
    Q_OBJECT

public:
    /// All three must outlive the object.
    SpokenFocus(SearchField &field, ClipboardTableView &list, Scheduler &scheduler);
    ~SpokenFocus() override;

    /// At once.
    void announce(const QString &text);

    /// When the person has stopped typing, in the place of what was to be said then.
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
