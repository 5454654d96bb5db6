#pragma once

#include "platform/SingleInstance.h"

#include <memory>

/// Finds the running program by its name on the session bus.
class DBusSingleInstance : public SingleInstance
{
public:
    DBusSingleInstance();
    ~DBusSingleInstance() override;

    Role claim() override;
    [[nodiscard]] bool activateFirst(const QString &activationToken) override;

private:
    class Object;
    std::unique_ptr<Object> m_object; ///< What a second start calls.
};
