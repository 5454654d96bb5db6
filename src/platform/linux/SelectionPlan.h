#pragma once

#include <QStringList>

/// What to ask the owner of a selection for, chosen from the targets that it offers.
///
/// Only what capture needs: each format costs the owner work, and some owners do more than answer
/// when they are asked.
struct SelectionPlan
{
    QStringList types; ///< The identifiers offered, each once, in the order of the offer.
    bool isMarkedByPasswordManager = false; ///< The mark has to be read before anything else.
    QStringList textTargets; ///< Best first; one of them is enough. The same for the others.
    QStringList htmlTargets;
    QStringList rtfTargets;
    QStringList fileTargets;
    QStringList pictureTargets; ///< Needed only if no text comes; files alone may prove useless.

    static SelectionPlan fromTargets(const QStringList &targets);
};
