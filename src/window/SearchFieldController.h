#pragma once

#include <QObject>
#include <QString>

class ClipboardTableView;
class ClipboardTableViewController;
class SearchField;
class TextPreview;

/// What the search field does: it searches the list, or, while the preview is visible, in what that
/// shows. The text that the list is searched for is kept aside meanwhile.
class SearchFieldController : public QObject
{
    Q_OBJECT

public:
    /// All of these must outlive the controller; \a preview is null where there is none.
    SearchFieldController(SearchField &field, ClipboardTableView &tableView,
                          ClipboardTableViewController &list, TextPreview *preview);

    /// Empties the field and lists everything.
    void clearListSearch();

    /// Gives the field to the preview, which is shown by now, or, after it is gone, back to the
    /// list, which stays as it is.
    void setPreviewOpen(bool isOpen);

    /// Nothing is searched while the text of the preview is edited.
    void setPreviewTextEditing(bool isEditing);

    void refreshLanguage();

signals:
    /// Esc in the empty field, when there is no preview that it would close.
    void cancelled();

private:
    void connectField();
    bool isPreviewVisible() const;
    void search(const QString &text);
    void paste();
    void move(int step);
    void pressInList(int key);
    void cancel();
    void refreshState();

    SearchField &m_field;
    ClipboardTableView &m_tableView;
    ClipboardTableViewController &m_list;
    TextPreview *m_preview;
    QString m_listSearchText;
    bool m_isPreviewOpen = false; ///< The field is the preview's.
    bool m_isPreviewTextEditing = false;
};
