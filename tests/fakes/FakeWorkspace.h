#pragma once

#include "platform/Workspace.h"

#include <QHash>
#include <QList>
#include <QStringList>

/// A desktop of programs that a test names.
class FakeWorkspace : public Workspace
{
public:
    std::optional<RunningApplication> frontmostApplication() const override { return frontmost; }

    bool isOwnApplication(const RunningApplication &application) const override
    {
        return application.bundleIdentifier == QStringLiteral("tessarine");
    }

    void activate(const RunningApplication &application) override { activated.append(application); }
    void activateOwnWindow(QWindow *) override { ++ownActivationCount; }
    void prepareOwnWindow(QWindow *) override {}
    bool isWithdrawn(QWindow *) override { return isWindowWithdrawn; }
    void noteUserAction(const QString &token) override { activationTokens.append(token); }

    QString newActivationToken() const override { return nextToken; }

    std::optional<QString> applicationName(const QString &bundleIdentifier) const override
    {
        ++nameLookupCount;
        const auto name = names.find(bundleIdentifier);
        return name == names.end() ? std::nullopt : std::optional(*name);
    }

    /// Gives the focus to the program \a identifier; without a name it is called like it.
    void setFrontmost(const QString &identifier, const QString &name = {})
    {
        frontmost = RunningApplication{identifier, name.isEmpty() ? identifier : name, 1, 1};
    }

    std::optional<RunningApplication> frontmost;
    QList<RunningApplication> activated;
    QHash<QString, QString> names;
    QStringList activationTokens; ///< Of all user actions.
    QString nextToken;
    std::optional<QRect> available; ///< Of every screen.
    bool isWindowWithdrawn = true;
    int ownActivationCount = 0;
    mutable int nameLookupCount = 0;

protected:
    QRect claimedGeometry(const QScreen &screen) const override
    {
        return available.value_or(Workspace::claimedGeometry(screen));
    }
};
