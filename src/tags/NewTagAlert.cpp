#include "tags/NewTagAlert.h"

#include "language/Localized.h"
#include "tags/MaxLengthTextField.h"
#include "tags/TagManager.h"

using namespace Qt::StringLiterals;

namespace {

constexpr QSize kFieldSize(200, 24);

AlertSheet::Texts alertTexts()
{
    const QString information = localized(u"alert.new_tag.info"_s,
                                          u"Enter a tag name (up to %d characters):"_s);
    return {.title = localized(u"alert.new_tag.title"_s, u"New Tag"_s),
            .information = filledIn(information, {TagManager::maxTagLength}),
            .confirm = localized(u"button.ok"_s, u"确定"_s),
            .cancel = localized(u"button.cancel"_s, u"取消"_s)};
}

} // namespace

NewTagAlert::NewTagAlert(const Look &look, QWidget *window)
    : AlertSheet(alertTexts(), Kind::Plain, look, window)
    , m_field(new MaxLengthTextField(colors(), this))
{
    m_field->setAccessibleName(accessibleName());
    m_field->setAccessibleDescription(accessibleDescription());
    m_field->setBoxSize(kFieldSize);
    setAccessoryView(m_field, MaxLengthTextField::kRingRoom);
}

void NewTagAlert::setLook(const Look &look)
{
    AlertSheet::setLook(look);
    m_field->setColors(colors());
}

QString NewTagAlert::name() const
{
    return m_field->text();
}
