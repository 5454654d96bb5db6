#include "settings/HotkeySettingsManager.h"

#include "foundation/Log.h"
#include "foundation/UserDefaults.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace {

const QString kHotkeySettingsKey = u"HotkeySettings"_s;

struct KeyRow
{
    quint32 code;
    QStringView name;
};

constexpr std::array kKeys{
    KeyRow{0, u"A"}, KeyRow{1, u"S"}, KeyRow{2, u"D"}, KeyRow{3, u"F"}, KeyRow{4, u"H"},
    KeyRow{5, u"G"}, KeyRow{6, u"Z"}, KeyRow{7, u"X"}, KeyRow{8, u"C"}, KeyRow{9, u"V"},
    KeyRow{11, u"B"}, KeyRow{12, u"Q"}, KeyRow{13, u"W"}, KeyRow{14, u"E"}, KeyRow{15, u"R"},
    KeyRow{16, u"Y"}, KeyRow{17, u"T"}, KeyRow{18, u"1"}, KeyRow{19, u"2"}, KeyRow{20, u"3"},
    KeyRow{21, u"4"}, KeyRow{22, u"6"}, KeyRow{23, u"5"}, KeyRow{24, u"="}, KeyRow{25, u"9"},
    KeyRow{26, u"7"}, KeyRow{27, u"-"}, KeyRow{28, u"8"}, KeyRow{29, u"0"}, KeyRow{30, u"]"},
    KeyRow{31, u"O"}, KeyRow{32, u"U"}, KeyRow{33, u"["}, KeyRow{34, u"I"}, KeyRow{35, u"P"},
    KeyRow{36, u"Enter"}, KeyRow{37, u"L"}, KeyRow{38, u"J"}, KeyRow{39, u"'"}, KeyRow{40, u"K"},
    KeyRow{41, u";"}, KeyRow{42, u"\\"}, KeyRow{43, u","}, KeyRow{44, u"/"}, KeyRow{45, u"N"},
    KeyRow{46, u"M"}, KeyRow{47, u"."}, KeyRow{48, u"Tab"}, KeyRow{49, u"Space"}, KeyRow{50, u"`"},
    KeyRow{51, u"Backspace"}, KeyRow{52, u"Esc"}, KeyRow{53, u"⌘"}, KeyRow{54, u"Shift"},
    KeyRow{55, u"CapsLock"}, KeyRow{56, u"Option"}, KeyRow{57, u"Control"},
    KeyRow{58, u"Right Shift"}, KeyRow{59, u"Right Option"}, KeyRow{60, u"Right Control"},
    KeyRow{61, u"Fn"},
};

/// Only the rows up to "Esc" can be stored under their name.
constexpr quint32 kLastStorableCode = 52;

struct ModifierRow
{
    quint32 bit;
    QStringView symbol;
};

constexpr std::array kModifiers{
    ModifierRow{HotkeySettings::kCommand, u"⌘"},
    ModifierRow{HotkeySettings::kOption, u"⌥"},
    ModifierRow{HotkeySettings::kControl, u"⌃"},
    ModifierRow{HotkeySettings::kShift, u"⇧"},
};

/// A member that is an unsigned 32-bit number; absent if it is missing or anything else.
std::optional<quint32> unsignedMember(const nlohmann::json &object, const char *name)
{
    const auto member = object.find(name);
    if (member == object.end() || !member->is_number_unsigned()
        || member->get<quint64>() > std::numeric_limits<quint32>::max())
        return std::nullopt;
    return member->get<quint32>();
}

std::optional<HotkeySettings> decode(const QByteArray &json)
{
    const auto object = nlohmann::json::parse(json.begin(), json.end(), nullptr, false);
    if (!object.is_object())
        return std::nullopt;
    const auto keyCode = unsignedMember(object, "keyCode");
    const auto modifiers = unsignedMember(object, "modifiers");
    if (!keyCode || !modifiers)
        return std::nullopt;
    return HotkeySettings{*keyCode, *modifiers};
}

QByteArray encode(const HotkeySettings &settings)
{
    nlohmann::ordered_json object;
    object["keyCode"] = settings.keyCode;
    object["modifiers"] = settings.modifiers;
    return QByteArray::fromStdString(object.dump());
}

QString described(const HotkeySettings &settings)
{
    return u"keyCode=%1, modifiers=%2"_s.arg(settings.keyCode).arg(settings.modifiers);
}

} // namespace

const QStringList &HotkeySettingsManager::availableKeys()
{
    static const QStringList keys = [] {
        QStringList names;
        for (char16_t letter = u'A'; letter <= u'Z'; ++letter)
            names.append(QString(QChar(letter)));
        for (char16_t digit = u'0'; digit <= u'9'; ++digit)
            names.append(QString(QChar(digit)));
        names += {u"-"_s, u"="_s, u"["_s, u"]"_s, u";"_s, u"'"_s, u","_s, u"."_s, u"/"_s, u"`"_s,
                  u"\\"_s, u"Enter"_s, u"Tab"_s, u"Space"_s};
        return names;
    }();
    return keys;
}

const QStringList &HotkeySettingsManager::keyNames()
{
    static const QStringList names = availableKeys() + QStringList{u"Backspace"_s, u"Esc"_s};
    return names;
}

HotkeySettings HotkeySettingsManager::loadSettings() const
{
    const auto json = m_defaults.data(kHotkeySettingsKey);
    const auto settings = json ? decode(*json) : std::nullopt;
    if (!settings) {
        printLine(u"No saved settings found, using defaults"_s);
        return {};
    }
    printLine(u"Loaded hotkey settings from UserDefaults: "_s + described(*settings));
    return *settings;
}

void HotkeySettingsManager::saveSettings(const HotkeySettings &settings)
{
    m_defaults.set(kHotkeySettingsKey, encode(settings));
    printLine(u"Saved hotkey settings to UserDefaults: "_s + described(settings));
}

QString HotkeySettingsManager::keyName(quint32 keyCode)
{
    const auto row = std::ranges::find(kKeys, keyCode, &KeyRow::code);
    return row == kKeys.end() ? u"Unknown"_s : row->name.toString();
}

std::optional<quint32> HotkeySettingsManager::keyCode(const QString &keyName)
{
    const auto row = std::ranges::find(kKeys, QStringView(keyName), &KeyRow::name);
    if (row == kKeys.end() || row->code > kLastStorableCode)
        return std::nullopt;
    return row->code;
}

QString HotkeySettingsManager::displayString(const HotkeySettings &settings)
{
    QString text;
    for (const ModifierRow &row : kModifiers) {
        if (settings.modifiers & row.bit)
            text += row.symbol;
    }
    return text + keyName(settings.keyCode);
}
