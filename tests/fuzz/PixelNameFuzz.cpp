// SPDX-License-Identifier: MIT
// Fuzzes the viewer's interpretation of the name and the code of a pixel format.
#include "capture/FramePixels.h"
#include "control/CameraCtrl.h"
#include "control/FeatureMath.h"
#include "tests/fuzz/Fuzz.h"
#include "tests/fuzz/Widgets.h"
#include "tests/support/ByteTape.h"

#include <QComboBox>

namespace {

struct Bench {
    OCameraHandle camera = fuzz::openCamera();
    CameraCtrl panel;
    QComboBox *formats = panel.findChild<QComboBox *>("cbPixelFormat");
    QComboBox *extensions = panel.findChild<QComboBox *>("cmbSaveExt");
    QComboBox *whiteBalance = panel.findChild<QComboBox *>("cmbWB");
};

/// A name as the library returns it: at most 63 bytes, up to the first NUL.
QString received(const std::string &name)
{
    return QString::fromLatin1(name.substr(0, ORVALIS_NAME_SIZE - 1).c_str());
}

void checkCode(std::uint32_t code)
{
    FUZZ_CHECK(displayPlane(true, code) == FramePlane::Rgb);
    const FramePlane plane = displayPlane(false, code);
    FUZZ_CHECK(plane == FramePlane::Raw || plane == FramePlane::Mono8);
    FUZZ_CHECK((plane == FramePlane::Mono8) == (code == 0x01100005 || code == 0x01100010));
}

void checkPanel(const Bench &bench, const QString &name)
{
    FUZZ_CHECK(bench.formats->count() == 1);
    FUZZ_CHECK(bench.formats->currentText() == name);
    const bool listsRgb = bench.extensions->findText("RGB") >= 0;
    FUZZ_CHECK(listsRgb == !name.contains("Mono"));
    FUZZ_CHECK(bench.whiteBalance->isEnabled() == !name.toLower().contains("mono"));
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static auto &bench = *new Bench;
    viewertest::ByteTape tape(data, size);
    checkCode(tape.number<std::uint32_t>());
    const std::vector<std::uint8_t> rest = tape.rest();
    const std::string name(rest.begin(), rest.end());
    fakeorvalis::clearCalls();
    fakeorvalis::withState([&](fakeorvalis::State &state) {
        state.lists["PixelFormat"] = {{name}, name};
    });
    bench.panel.loadConfigurationValue(bench.camera);
    bench.panel.loadVideoInfo();
    checkPanel(bench, received(name));
    return 0;
}
