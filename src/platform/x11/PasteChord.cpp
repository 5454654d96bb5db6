#include "platform/x11/PasteChord.h"

#include <QStringView>

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace {

/// In lower case, as all names here.
constexpr std::array kOldTerminals{
    QStringView(u"xterm"), QStringView(u"uxterm"), QStringView(u"urxvt"),  QStringView(u"rxvt"),
    QStringView(u"aterm"), QStringView(u"eterm"),  QStringView(u"mlterm"),
};

constexpr std::array kTerminals{
    QStringView(u"gnome-terminal-server"),
    QStringView(u"gnome-terminal"),
    QStringView(u"org.gnome.terminal"),
    QStringView(u"org.gnome.console"),
    QStringView(u"kgx"),
    QStringView(u"xfce4-terminal"),
    QStringView(u"mate-terminal"),
    QStringView(u"konsole"),
    QStringView(u"yakuake"),
    QStringView(u"terminator"),
    QStringView(u"tilix"),
    QStringView(u"guake"),
    QStringView(u"tilda"),
    QStringView(u"terminology"),
    QStringView(u"alacritty"),
    QStringView(u"kitty"),
    QStringView(u"org.wezfurlong.wezterm"),
    QStringView(u"com.mitchellh.ghostty"),
    QStringView(u"lxterminal"),
    QStringView(u"qterminal"),
    QStringView(u"sakura"),
    QStringView(u"roxterm"),
    QStringView(u"termite"),
    QStringView(u"cool-retro-term"),
    QStringView(u"st-256color"),
    QStringView(u"deepin-terminal"),
    QStringView(u"io.elementary.terminal"),
    QStringView(u"pantheon-terminal"),
};

template <typename Names>
bool isOneOf(const Names &names, const QString &instanceName, const QString &className)
{
    return std::ranges::any_of(names, [&](QStringView name) {
        return name.compare(instanceName, Qt::CaseInsensitive) == 0 ||
               name.compare(className, Qt::CaseInsensitive) == 0;
    });
}

} // namespace

PasteChord pasteChordFor(const QString &instanceName, const QString &className,
                         const QStringList &categories)
{
    if (isOneOf(kOldTerminals, instanceName, className))
        return PasteChord::ShiftInsert;
    if (isOneOf(kTerminals, instanceName, className) || categories.contains("TerminalEmulator"_L1))
        return PasteChord::ControlShiftV;
    return PasteChord::ControlV;
}
