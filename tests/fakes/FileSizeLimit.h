#pragma once

#include <csignal>

#include <sys/resource.h>

/// While the object lives no file of this process can grow beyond a size: a full disk that needs no
/// disk. Writing fails with "File too large".
class FileSizeLimit
{
public:
    explicit FileSizeLimit(rlim_t byteCount)
    {
        // Otherwise the signal ends the process.
        m_handler = std::signal(SIGXFSZ, SIG_IGN);
        getrlimit(RLIMIT_FSIZE, &m_before);
        rlimit limit = m_before;
        limit.rlim_cur = byteCount;
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~FileSizeLimit()
    {
        setrlimit(RLIMIT_FSIZE, &m_before);
        std::signal(SIGXFSZ, m_handler);
    }
    FileSizeLimit(const FileSizeLimit &) = delete;
    FileSizeLimit &operator=(const FileSizeLimit &) = delete;

private:
    rlimit m_before = {};
    void (*m_handler)(int) = nullptr;
};
