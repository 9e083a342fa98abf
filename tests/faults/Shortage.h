// SPDX-License-Identifier: MIT
// Resource shortages that last for the lifetime of an object.
#pragma once

#include <QString>

#include <cstddef>
#include <vector>

namespace faults {

/// Files cannot grow beyond a number of bytes: writes fail as on a full disk.
class FileSizeLimit {
public:
    explicit FileSizeLimit(std::size_t bytes);
    ~FileSizeLimit();
    FileSizeLimit(const FileSizeLimit &) = delete;
    FileSizeLimit &operator=(const FileSizeLimit &) = delete;

private:
    std::size_t m_before = 0;
};

/// Mounts a file system of a number of bytes at `folder`, which must exist.
class SmallDisk {
public:
    SmallDisk(QString folder, std::size_t bytes);
    ~SmallDisk();
    SmallDisk(const SmallDisk &) = delete;
    SmallDisk &operator=(const SmallDisk &) = delete;

    /// False if the machine does not permit mounts.
    bool isThere() const { return m_isThere; }

private:
    const QString m_folder;
    bool m_isThere = false;
};

/// No further file or socket can be opened.
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

/// No further thread can be started.
class NoThreads {
public:
    NoThreads();
    ~NoThreads();
    NoThreads(const NoThreads &) = delete;
    NoThreads &operator=(const NoThreads &) = delete;
};

/// Allocations of `smallest` bytes or more fail in every part of the program. Not for sanitizers,
/// which replace the allocator.
class NoMemory {
public:
    explicit NoMemory(std::size_t smallest);
    ~NoMemory();
    NoMemory(const NoMemory &) = delete;
    NoMemory &operator=(const NoMemory &) = delete;

    /// Number of refused allocations.
    static int refused();
};

} // namespace faults
