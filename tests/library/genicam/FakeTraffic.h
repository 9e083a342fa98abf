// SPDX-License-Identifier: MIT
// Observes and modifies the communication between the engine and Aravis' in-process test camera.
#pragma once

#include <arv.h>

#include <cstdint>
#include <functional>
#include <map>

namespace genicamtest {

/// Counts the reads and writes of registers, each of which is a round trip on a real camera, during
/// its lifetime. One object at a time; the camera's GObject class must be in use before.
class FakeTraffic {
public:
    FakeTraffic();
    ~FakeTraffic();
    FakeTraffic(const FakeTraffic &) = delete;
    FakeTraffic &operator=(const FakeTraffic &) = delete;

    unsigned reads = 0;
    unsigned writes = 0;
    std::uint64_t bytesRead = 0;
    std::map<std::uint64_t, unsigned> readsAt; ///< by address
    /// Runs after a write of a word.
    std::function<void(std::uint64_t address, std::uint32_t value)> onWrite;
    /// Runs before a read.
    std::function<void(ArvDevice *device, std::uint64_t address)> onRead;

    /// Resets the counters.
    void reset();

    /// Writes a word without counting it.
    static void poke(ArvDevice *device, std::uint64_t address, std::uint32_t value);

private:
    static gboolean read(ArvDevice *, guint64, guint32, void *, GError **);
    static gboolean write(ArvDevice *, guint64, guint32, void *, GError **);
    static gboolean readWord(ArvDevice *, guint64, guint32 *, GError **);
    static gboolean writeWord(ArvDevice *, guint64, guint32, GError **);
    void noteRead(ArvDevice *device, std::uint64_t address, std::uint64_t size);
    void noteWrite(std::uint64_t address, std::uint32_t value);
};

} // namespace genicamtest
