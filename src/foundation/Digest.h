#pragma once

#include <QByteArray>
#include <QByteArrayView>

#include <memory>

/// An SHA-256 that is fed piece by piece.
class Sha256
{
public:
    Sha256();
    ~Sha256();
    Sha256(const Sha256 &) = delete;
    Sha256 &operator=(const Sha256 &) = delete;

    void add(QByteArrayView bytes);

    /// 64 lower-case hexadecimal digits. Ends the computation: call it once, last.
    QByteArray hexDigest();

private:
    struct Context;
    std::unique_ptr<Context> m_context;
};

/// The SHA-256 of \a bytes as 64 lower-case hexadecimal digits.
QByteArray sha256Hex(QByteArrayView bytes);
