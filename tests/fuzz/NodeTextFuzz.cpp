// SPDX-License-Identifier: MIT
// Fuzzes the entry points that take texts and addresses, on a simulated camera: any node name, any
// value as text, any register.
#include "sdk/OrvalisAPI.h"
#include "tests/fuzz/Fuzz.h"
#include "tests/support/ByteTape.h"

#include <cstdlib>
#include <cstring>
#include <string>

namespace {

using viewertest::ByteTape;

OCameraHandle openFirstCamera()
{
    setenv("ORVALIS_BACKENDS", "simulated", 1); // NOLINT(concurrency-mt-unsafe)
    OrvalisInit();
    std::uint32_t count = 0;
    char id[ORVALIS_NAME_SIZE] = {};
    OCameraHandle camera = nullptr;
    OrvalisNumberOfCameras(&count);
    OrvalisGetCameraID(0, id);
    FUZZ_CHECK(OrvalisOpenCamera(id, &camera) == ORVALIS_OK);
    return camera;
}

bool isResult(std::int32_t result)
{
    return result <= ORVALIS_OK && result >= ORVALIS_ERROR_ABORTED;
}

/// An accepted text can be read back: unchanged for strings, as any text for other nodes.
void writeText(OCameraHandle camera, const std::string &name, const std::string &text)
{
    const std::int32_t written = OrvalisSetNodeString(camera, name.c_str(), text.c_str());
    FUZZ_CHECK(isResult(written));
    ONodeInfo info{};
    if (OrvalisGetNodeInfo(camera, name.c_str(), &info) != ORVALIS_OK) {
        FUZZ_CHECK(written != ORVALIS_OK);
        return;
    }
    char value[ORVALIS_TEXT_SIZE];
    std::memset(value, 'x', sizeof value);
    const std::int32_t read = OrvalisGetNodeString(camera, name.c_str(), value);
    FUZZ_CHECK(isResult(read));
    FUZZ_CHECK(read != ORVALIS_OK || std::memchr(value, '\0', sizeof value) != nullptr);
    if (written == ORVALIS_OK && read == ORVALIS_OK && info.type == ORVALIS_NODE_STRING)
        FUZZ_CHECK(text.compare(0, std::strlen(value), value) == 0);
}

/// An integer reads back equal as a 32-bit number, signed or as a bit pattern, and as text.
void writeInteger(OCameraHandle camera, const std::string &name, std::int32_t value)
{
    const std::int32_t written = OrvalisSetNodeInt(camera, name.c_str(), value);
    FUZZ_CHECK(isResult(written));
    OIntNode node{};
    char text[ORVALIS_TEXT_SIZE] = {};
    if (written != ORVALIS_OK || OrvalisGetNodeInt(camera, name.c_str(), &node) != ORVALIS_OK)
        return;
    FUZZ_CHECK(node.minimum <= node.value && node.value <= node.maximum);
    FUZZ_CHECK(OrvalisGetNodeString(camera, name.c_str(), text) == ORVALIS_OK);
    FUZZ_CHECK(static_cast<std::uint32_t>(std::strtoll(text, nullptr, 10)) ==
               static_cast<std::uint32_t>(node.value));
}

void useNode(OCameraHandle camera, const std::string &name, const std::string &text, ByteTape &tape)
{
    static ONodeList list;
    static OEnumNode entries;
    list.count = tape.number<std::uint32_t>();
    entries.count = tape.number<std::uint32_t>();
    FUZZ_CHECK(isResult(OrvalisGetNodeList(camera, name.c_str(), &list)));
    FUZZ_CHECK(list.count <= ORVALIS_NODE_LIST_SIZE);
    if (OrvalisGetNodeEnum(camera, name.c_str(), &entries) == ORVALIS_OK)
        FUZZ_CHECK(entries.count <= ORVALIS_ENUM_SIZE);
    FUZZ_CHECK(isResult(OrvalisSetNodeEnum(camera, name.c_str(), text.c_str())));
    writeInteger(camera, name, tape.number<std::int32_t>());
    FUZZ_CHECK(isResult(OrvalisSetNodeFloat(camera, name.c_str(), tape.number<double>())));
}

/// A register reads back the value written, except where the camera's firmware computes it.
void useRegister(OCameraHandle camera, ByteTape &tape)
{
    const auto address = tape.number<std::uint32_t>();
    std::uint32_t value = 0;
    FUZZ_CHECK(isResult(OrvalisWriteRegiser(camera, address, tape.number<std::uint32_t>())));
    FUZZ_CHECK(isResult(OrvalisReadRegister(camera, address, &value)));
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static OCameraHandle camera = openFirstCamera();
    ByteTape tape(data, size);
    const std::string name = tape.text(64);
    const std::string text = tape.text(255);
    writeText(camera, name, text);
    useNode(camera, name, text, tape);
    useRegister(camera, tape);
    OSizeInfo region{};
    if (OrvalisGetSizeInfo(camera, &region) == ORVALIS_ERROR_CONNECTION_LOST) {
        OrvalisCloseCamera(
            camera); // the input may have written the register that restarts the camera
        OrvalisUninit();
        camera = openFirstCamera();
    }
    return 0;
}
