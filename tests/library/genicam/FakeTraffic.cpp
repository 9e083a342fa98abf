// SPDX-License-Identifier: MIT
// Observes and modifies the communication between the engine and Aravis' in-process test camera.
#include "tests/library/genicam/FakeTraffic.h"

#include <bit>
#include <cstring>

namespace genicamtest {
namespace {

FakeTraffic *present = nullptr;
ArvDeviceClass original;

ArvDeviceClass *fakeClass()
{
    return static_cast<ArvDeviceClass *>(g_type_class_ref(ARV_TYPE_FAKE_DEVICE));
}

} // namespace

FakeTraffic::FakeTraffic()
{
    ArvDeviceClass *const table = fakeClass();
    original = *table;
    table->read_memory = read;
    table->write_memory = write;
    table->read_register = readWord;
    table->write_register = writeWord;
    present = this;
}

FakeTraffic::~FakeTraffic()
{
    ArvDeviceClass *const table = fakeClass();
    table->read_memory = original.read_memory;
    table->write_memory = original.write_memory;
    table->read_register = original.read_register;
    table->write_register = original.write_register;
    present = nullptr;
}

void FakeTraffic::reset()
{
    reads = 0;
    writes = 0;
    bytesRead = 0;
    readsAt.clear();
}

void FakeTraffic::poke(ArvDevice *device, std::uint64_t address, std::uint32_t value)
{
    original.write_register(device, address, value, nullptr);
}

void FakeTraffic::noteRead(ArvDevice *device, std::uint64_t address, std::uint64_t size)
{
    ++reads;
    ++readsAt[address];
    bytesRead += size;
    if (onRead) {
        onRead(device, address);
    }
}

void FakeTraffic::noteWrite(std::uint64_t address, std::uint32_t value)
{
    ++writes;
    if (onWrite) {
        onWrite(address, value);
    }
}

/// The test camera would crash on a read beyond its memory: return 0 there.
gboolean FakeTraffic::read(ArvDevice *device, guint64 address, guint32 size, void *buffer,
                           GError **error)
{
    present->noteRead(device, address, size);
    if (address + size <= ARV_FAKE_CAMERA_MEMORY_SIZE) {
        return original.read_memory(device, address, size, buffer, error);
    }
    std::memset(buffer, 0, size);
    return TRUE;
}

gboolean FakeTraffic::write(ArvDevice *device, guint64 address, guint32 size, void *buffer,
                            GError **error)
{
    const gboolean done = original.write_memory(device, address, size, buffer, error);
    std::uint32_t word = 0;
    std::memcpy(&word, buffer, size < sizeof word ? size : sizeof word);
    present->noteWrite(address, GUINT32_FROM_BE(word));
    return done;
}

gboolean FakeTraffic::readWord(ArvDevice *device, guint64 address, guint32 *value, GError **error)
{
    present->noteRead(device, address, sizeof *value);
    return original.read_register(device, address, value, error);
}

gboolean FakeTraffic::writeWord(ArvDevice *device, guint64 address, guint32 value, GError **error)
{
    const gboolean done = original.write_register(device, address, value, error);
    present->noteWrite(address, value);
    return done;
}

} // namespace genicamtest
