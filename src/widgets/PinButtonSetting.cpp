#include "widgets/PinButtonSetting.h"

#include "foundation/UserDefaults.h"

using namespace Qt::StringLiterals;

namespace {

const QString kShowsPinButtonKey = u"ClipboardSearchWindowShowsPinButton"_s;

} // namespace

bool isPinButtonWanted(const UserDefaults &defaults)
{
    return !defaults.contains(kShowsPinButtonKey) || defaults.boolean(kShowsPinButtonKey);
}

void setPinButtonWanted(UserDefaults &defaults, bool isWanted)
{
    defaults.set(kShowsPinButtonKey, isWanted);
}
