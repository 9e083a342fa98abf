// SPDX-License-Identifier: MIT
// All actions of a user or the bus that make the window call the library.
#include "tests/faults/Actions.h"

#include "app/CameraList.h"
#include "control/QLongLongSpinBox.h"
#include "dialogs/AccessRegister.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDoubleSpinBox>
#include <QLineEdit>
#include <QSlider>
#include <QSpinBox>
#include <QTabWidget>
#include <QThreadPool>
#include <QTreeView>

#include <algorithm>

namespace faults {

namespace {

/// Time-out for a displayed image; a faulty library may never send one.
constexpr int pictureMs = 700;
/// Longest time that a call may take.
constexpr int callMs = 30000;

void window(Bench &bench) { bench.start(); }

void opened(Bench &bench)
{
    window(bench);
    bench.open();
    QCoreApplication::processEvents();
}

void playing(Bench &bench)
{
    opened(bench);
    (void)bench.play(callMs);
}

void trigger(Bench &bench, const char *action)
{
    bench.shell().action(action)->trigger();
    QCoreApplication::processEvents();
}

void refresh(Bench &bench) { trigger(bench, "actionDiscovery"); }

/// The open camera leaves the bus, another one stays.
void cameraGone(Bench &bench)
{
    shell::setCameras({{"CAM-B", "Camera B"}});
    bench.window().OnTimer();
    const auto *pool = QThreadPool::globalInstance();
    (void)waitFor([&] { return !bench.isOpen(); }, pictureMs);
    (void)waitFor([&] { return pool->activeThreadCount() <= 0; }, pictureMs);
    fakeorvalis::withState(
        [](fakeorvalis::State &state) { state.cameras = fakeorvalis::defaultState().cameras; });
}

void openFirst(Bench &bench)
{
    bench.open(0);
    QCoreApplication::processEvents();
}

void openOther(Bench &bench)
{
    bench.open(1);
    QCoreApplication::processEvents();
}

void closeIt(Bench &bench) { trigger(bench, "actionClose"); }
void resetIt(Bench &bench) { trigger(bench, "actionCameraReset"); }

void playIt(Bench &bench)
{
    trigger(bench, "actionPlay");
    (void)bench.waitForPictures(2, pictureMs);
}

void stopIt(Bench &bench) { trigger(bench, "actionStop"); }

void singleShot(Bench &bench)
{
    trigger(bench, "actionOneGrab");
    (void)waitFor([&] { return !bench.window().isAcquiring(); }, callMs);
}

/// Waits for a grab of the preview thread, which runs since the camera was opened.
void preview(Bench &bench, const char *function)
{
    bench.open();
    (void)waitFor([function] { return !fakeorvalis::callsOf({function}).empty(); }, callMs);
}

void previewColour(Bench &bench) { preview(bench, "OrvalisGrabRGBData"); }

void previewGrey(Bench &bench)
{
    shell::setPixelFormat("Mono12", 0x01100005);
    preview(bench, "OrvalisGrabRAWData");
    shell::setPixelFormat("BayerGR8", 0x01080008);
}

void useButton(QAbstractButton *button)
{
    if (button->objectName() != QLatin1String("btnSaveBrowser")) // opens a modal dialog
        button->click();
}

void useCombo(QComboBox *box)
{
    const int row = box->count() - 1;
    box->setCurrentIndex(row);
    QMetaObject::invokeMethod(box, "activated", Q_ARG(int, row));
    QMetaObject::invokeMethod(box, "activated", Q_ARG(QString, box->currentText()));
}

void useSpinBox(QAbstractSpinBox *box)
{
    box->stepUp();
    QTest::keyClick(box, Qt::Key_Return);
}

void useSlider(QSlider *slider)
{
    slider->triggerAction(QAbstractSlider::SliderPageStepAdd);
    emit slider->sliderReleased();
}

/// Changes every setting of one page of the control panel, whether it is enabled or not.
void useTab(Bench &bench, int index)
{
    auto *tabs = bench.shell().dock("CameraCtrl")->findChild<QTabWidget *>();
    const QWidget *page = tabs->widget(index);
    for (auto *button : page->findChildren<QAbstractButton *>())
        useButton(button);
    for (auto *box : page->findChildren<QComboBox *>())
        useCombo(box);
    for (auto *box : page->findChildren<QAbstractSpinBox *>())
        useSpinBox(box);
    for (auto *slider : page->findChildren<QSlider *>())
        useSlider(slider);
    QCoreApplication::processEvents();
}

void featureTab(Bench &bench) { useTab(bench, 0); }
void videoTab(Bench &bench) { useTab(bench, 1); }
void triggerTab(Bench &bench) { useTab(bench, 2); }
void otherTab(Bench &bench) { useTab(bench, 3); }

void visitNodes(Bench &bench, const QModelIndex &parent,
                const std::function<void(const QModelIndex &)> &visit)
{
    auto *tree = bench.shell().child<QTreeView>("treeXML");
    const int rows = tree->model() == nullptr ? 0 : tree->model()->rowCount(parent);
    for (int row = 0; row < std::min(rows, 40); ++row) {
        const QModelIndex index = tree->model()->index(row, 0, parent);
        visit(index);
        visitNodes(bench, index, visit);
    }
}

void clickNodes(Bench &bench)
{
    auto *tree = bench.shell().child<QTreeView>("treeXML");
    visitNodes(bench, {}, [tree](const QModelIndex &index) { emit tree->clicked(index); });
    QCoreApplication::processEvents();
}

void editNodes(Bench &bench)
{
    auto *tree = bench.shell().child<QTreeView>("treeXML");
    auto *field = bench.shell().child<QLineEdit>("edXMLValue");
    bench.window().activateWindow();
    visitNodes(bench, {}, [&](const QModelIndex &index) {
        emit tree->clicked(index);
        field->setFocus();
        field->setText(QStringLiteral("1"));
        QTest::keyClick(field, Qt::Key_Enter, Qt::KeypadModifier);
        useCombo(bench.shell().child<QComboBox>("cmbXMLValue"));
        useButton(bench.shell().child<QPushButton>("btnXMLExcute"));
    });
    QCoreApplication::processEvents();
}

void registers(Bench &bench)
{
    auto *dialog = bench.window().findChild<AccessRegister *>();
    if (dialog == nullptr)
        return;
    dialog->findChild<QLineEdit *>("edAddr")->setText(QStringLiteral("100"));
    dialog->findChild<QPushButton *>("btnRead")->click();
    dialog->findChild<QPushButton *>("btnWrite")->click();
}

void armed(Bench &bench)
{
    playing(bench);
    bench.armSaving(QStringLiteral("RAW"));
    // Not for images: those of frames before the arming may still be queued.
    (void)waitFor([&] { return !bench.files().isEmpty(); }, callMs);
}

void stopAndCloseArmed(Bench &bench)
{
    stopIt(bench);
    closeIt(bench);
}

void playArmed(Bench &bench)
{
    playIt(bench);
    (void)bench.waitForPictures(3, pictureMs);
    stopIt(bench);
}

void openedArmed(Bench &bench)
{
    opened(bench);
    bench.armSaving(QStringLiteral("RAW"));
}

void leave(Bench &bench) { bench.exit(); }

constexpr Action all[] = {
    {"start", nullptr, window, {}},
    {"refresh", window, refresh, {}},
    {"camera leaves", opened, cameraGone, {}},
    {"open", window, openFirst, {}},
    {"open another", playing, openOther, {}},
    {"close", playing, closeIt, {}},
    {"reset", playing, resetIt, {}},
    {"play", opened, playIt, {}},
    {"stop", playing, stopIt, {}},
    {"single shot", opened, singleShot, {}},
    {"preview, colour", window, previewColour, "OrvalisGrabRGBData"},
    {"preview, grey", window, previewGrey, "OrvalisGrabRAWData"},
    {"panel: features", opened, featureTab, {}},
    {"panel: video modes", playing, videoTab, {}},
    {"panel: trigger, strobe", opened, triggerTab, {}},
    {"panel: user sets", playing, otherTab, {}},
    {"tree: click", opened, clickNodes, {}},
    {"tree: edit", playing, editNodes, {}},
    {"registers", opened, registers, {}},
    {"save: play, stop", openedArmed, playArmed, {}},
    {"save: stop, close", armed, stopAndCloseArmed, {}},
    {"exit", playing, leave, {}},
};

} // namespace

std::span<const Action> actions() { return all; }

const Action *findAction(std::string_view name)
{
    const auto found = std::find_if(std::begin(all), std::end(all),
                                    [=](const Action &one) { return one.name == name; });
    return found == std::end(all) ? nullptr : found;
}

} // namespace faults
