#pragma once

#include "platform/FileAccess.h"
#include "platform/linux/BoundedCalls.h"

/// Access by an open descriptor, which keeps the file in being and its volume mounted.
class DescriptorFileAccess : public FileAccess
{
public:
    explicit DescriptorFileAccess(BoundedCalls calls = BoundedCalls()) : m_calls(std::move(calls)) {}

    std::unique_ptr<Scope> start(const QUrl &url) const override;
    std::optional<bool> exist(const QList<QUrl> &urls) const override;
    std::optional<LazyBytes> open(const QString &path) const override;

private:
    BoundedCalls m_calls;
};
