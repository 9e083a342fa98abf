// SPDX-License-Identifier: MIT
// A machine that runs out of something while an object of one of these classes lives.
#pragma once

#include <QString>

#include <cstddef>
#include <vector>

namespace faults {

/// Files cannot grow beyond so many bytes: the write fails as it does on a full disk.
class FileSizeLimit {
public:
    explicit FileSizeLimit(std::size_t bytes);
    ~FileSizeLimit();
    FileSizeLimit(const FileSizeLimit &) = delete;
    FileSizeLimit &operator=(const FileSizeLimit &) = delete;

private:
    std::size_t m_before = 0;
};

/// A file system of so many bytes at `folder`, which has to exist.
class SmallDisk {
public:
    SmallDisk(QString folder, std::size_t bytes);
    ~SmallDisk();
    SmallDisk(const SmallDisk &) = delete;
    SmallDisk &operator=(const SmallDisk &) = delete;

    /// False where this machine does not permit to make one.
    bool isThere() const { return m_isThere; }

private:
    const QString m_folder;
    bool m_isThere = false;
};

/// Not one file or socket more can be opened.
class NoDescriptors {
public:
    NoDescriptors();
    ~NoDescriptors();
    NoDescriptors(const NoDescriptors &) = delete;
    NoDescriptors &operator=(const NoDescriptors &) = delete;

private:
    std::vector<int> m_taken;
    std::size_t m_before = 0;
};

/// No thread can be started.
class NoThreads {
public:
    NoThreads();
    ~NoThreads();
    NoThreads(const NoThreads &) = delete;
    NoThreads &operator=(const NoThreads &) = delete;
};

/// Memory of `smallest` bytes or more at a time is refused, to every part of the program. Not for
/// sanitizers, which have memory of their own.
class NoMemory {
public:
    explicit NoMemory(std::size_t smallest);
    ~NoMemory();
    NoMemory(const NoMemory &) = delete;
    NoMemory &operator=(const NoMemory &) = delete;

    /// Requests that were refused.
    static int refused();
};

} // namespace faults
