// SPDX-License-Identifier: MIT
// A machine that runs out of file descriptors, disk space or threads.
#include "tests/faults/Shortage.h"

#include <QFile>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <dlfcn.h>
#include <fcntl.h>
#include <pthread.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <unistd.h>

namespace faults {

namespace {

std::atomic<bool> noThreads{false};

rlim_t setLimit(__rlimit_resource resource, rlim_t value)
{
    rlimit limit{};
    (void)getrlimit(resource, &limit);
    const rlim_t before = std::exchange(limit.rlim_cur, value);
    (void)setrlimit(resource, &limit);
    return before;
}

} // namespace

FileSizeLimit::FileSizeLimit(std::size_t bytes)
{
    (void)std::signal(SIGXFSZ, SIG_IGN); // as the viewer's main() does
    m_before = setLimit(RLIMIT_FSIZE, bytes);
}

FileSizeLimit::~FileSizeLimit() { (void)setLimit(RLIMIT_FSIZE, m_before); }

SmallDisk::SmallDisk(QString folder, std::size_t bytes) : m_folder(std::move(folder))
{
    const QByteArray options = "size=" + QByteArray::number(qulonglong{bytes});
    const QByteArray place = QFile::encodeName(m_folder);
    m_isThere = mount("tmpfs", place.constData(), "tmpfs", 0, options.constData()) == 0;
}

SmallDisk::~SmallDisk()
{
    if (m_isThere)
        (void)umount2(QFile::encodeName(m_folder).constData(), MNT_DETACH);
}

NoDescriptors::NoDescriptors()
{
    constexpr rlim_t most = 256; // soon exhausted
    m_before = setLimit(RLIMIT_NOFILE, most);
    for (int one = open("/dev/null", O_RDONLY | O_CLOEXEC); one >= 0;
         one = open("/dev/null", O_RDONLY | O_CLOEXEC))
        m_taken.push_back(one);
}

NoDescriptors::~NoDescriptors()
{
    for (const int one : m_taken)
        (void)close(one);
    (void)setLimit(RLIMIT_NOFILE, m_before);
}

NoThreads::NoThreads() { noThreads = true; }

NoThreads::~NoThreads() { noThreads = false; }

} // namespace faults

/// Replaces the function of the C library, for Qt and the standard library too.
extern "C" __attribute__((visibility("default"))) int
pthread_create(pthread_t *thread, const pthread_attr_t *attributes, void *(*body)(void *),
               void *argument) noexcept
{
    if (faults::noThreads)
        return EAGAIN;
    using Create = int (*)(pthread_t *, const pthread_attr_t *, void *(*)(void *), void *);
    static const auto create = reinterpret_cast<Create>(dlsym(RTLD_NEXT, "pthread_create"));
    return create(thread, attributes, body, argument);
}
