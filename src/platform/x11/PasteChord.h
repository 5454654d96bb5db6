#pragma once

#include <QString>
#include <QStringList>

/// The keys that a program takes as its paste command.
enum class PasteChord
{
    ControlV,
    ControlShiftV, ///< Terminals: there Ctrl+V is typed into the program that runs.
    ShiftInsert,   ///< The older terminals; pastes the PRIMARY selection.
};

/// The chord of the program whose window is of the class with the parts \a instanceName and
/// \a className; \a categories are those of its desktop entry.
PasteChord pasteChordFor(const QString &instanceName, const QString &className,
                         const QStringList &categories);
