// SPDX-License-Identifier: MIT
// The save options, and their copy for other threads.
#include "tests/control/PanelFixture.h"
#include "tests/support/QtTestMain.h"

#include <QFileDialog>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QStandardPaths>
#include <QTimer>

#include <atomic>
#include <thread>

namespace {

struct Options {
    explicit Options(Panel &panel) { panel.panel.getSaveOpt(&path, &format, &count); }

    QString path = "unset";
    QString format = "unset";
    int count = 0;
};

QString documents() { return QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation); }

} // namespace

class CameraCtrlSaveTest : public QObject {
    Q_OBJECT

private slots:
    void startsWithOneFrame();
    void loadSetsTheDefaults();
    void reloadRestoresTheDefaults();
    void colourFormatsOfferRgb_data();
    void colourFormatsOfferRgb();
    void countFollowsTheButtons();
    void optionsFollowTheWidgets();
    void readersNeverSeeAPartialList();
    void browseTakesTheChosenDirectory();
    void cancelClearsThePath();
};

void CameraCtrlSaveTest::startsWithOneFrame()
{
    Panel panel;
    const Options options(panel);
    QCOMPARE(options.path, QString());
    QCOMPARE(options.format, QString());
    QCOMPARE(options.count, 1);
}

void CameraCtrlSaveTest::loadSetsTheDefaults()
{
    Panel panel;
    panel.openCamera();
    const Options options(panel);
    QCOMPARE(options.path, documents());
    QCOMPARE(options.format, QString("BMP"));
    QCOMPARE(options.count, 1);
    QVERIFY(panel.find<QRadioButton>("radioSaveOnce")->isChecked());
    QCOMPARE(panel.find<QLineEdit>("edSavePath")->text(), documents());
}

void CameraCtrlSaveTest::reloadRestoresTheDefaults()
{
    Panel panel;
    panel.openCamera();
    panel.find<QRadioButton>("radioSaveAll")->click();
    panel.find<QComboBox>("cmbSaveExt")->setCurrentText("RAW");
    panel.find<QLineEdit>("edSavePath")->setText("/elsewhere");
    panel.panel.loadSaveOpt();
    const Options options(panel);
    QCOMPARE(options.path, documents());
    QCOMPARE(options.format, QString("BMP"));
    QCOMPARE(options.count, 1);
    QVERIFY(panel.find<QRadioButton>("radioSaveOnce")->isChecked());
}

void CameraCtrlSaveTest::colourFormatsOfferRgb_data()
{
    const QStringList grey{"BMP", "JPG", "PNG", "RAW"};
    QTest::addColumn<QStringList>("extensions");
    QTest::newRow("Mono8") << grey;
    QTest::newRow("Mono12") << grey;
    QTest::newRow("BayerGR8") << grey + QStringList("RGB");
    QTest::newRow("RGB8") << grey + QStringList("RGB");
}

void CameraCtrlSaveTest::colourFormatsOfferRgb()
{
    Panel panel;
    panel.openCamera();
    panel.find<QComboBox>("cbPixelFormat")->setCurrentText(QTest::currentDataTag());
    panel.panel.loadSaveOpt();
    QTEST(panel.items("cmbSaveExt"), "extensions");
}

void CameraCtrlSaveTest::countFollowsTheButtons()
{
    Panel panel;
    panel.find<QRadioButton>("radioSaveAll")->click();
    QCOMPARE(Options(panel).count, -1);
    panel.find<QRadioButton>("radioSaveOnce")->click();
    QCOMPARE(Options(panel).count, 1);
    QCOMPARE(panel.log(), QStringList());
}

void CameraCtrlSaveTest::optionsFollowTheWidgets()
{
    Panel panel;
    panel.openCamera();
    panel.find<QComboBox>("cmbSaveExt")->setCurrentText("PNG");
    panel.find<QLineEdit>("edSavePath")->setText("/tmp/pictures");
    const Options options(panel);
    QCOMPARE(options.format, QString("PNG"));
    QCOMPARE(options.path, QString("/tmp/pictures"));
    panel.choose("cbPixelFormat", "Mono8");
    QCOMPARE(Options(panel).format, QString("BMP"));
}

void CameraCtrlSaveTest::readersNeverSeeAPartialList()
{
    Panel panel;
    panel.openCamera();
    std::atomic<bool> done{false};
    std::atomic<int> odd{0};
    std::thread reader([&] {
        while (!done) {
            const Options options(panel);
            if (options.format.size() != 3 || options.path.isEmpty())
                ++odd;
        }
    });
    for (int round = 0; round < 200; ++round) {
        panel.choose("cbPixelFormat", round % 2 != 0 ? "Mono8" : "BayerGR8");
        panel.panel.loadSaveOpt();
    }
    done = true;
    reader.join();
    QCOMPARE(odd.load(), 0);
}

void CameraCtrlSaveTest::browseTakesTheChosenDirectory()
{
    Panel panel;
    panel.find<QLineEdit>("edSavePath")->setText(QDir::tempPath());
    QString title;
    QTimer::singleShot(0, &panel.panel, [&] {
        auto *dialog = qobject_cast<QFileDialog *>(QApplication::activeModalWidget());
        QVERIFY(dialog != nullptr);
        title = dialog->windowTitle();
        QMetaObject::invokeMethod(dialog, "accept");
    });
    panel.find<QPushButton>("btnSaveBrowser")->click();
    QCOMPARE(title, QString("dd"));
    QCOMPARE(panel.find<QLineEdit>("edSavePath")->text(), QDir::tempPath());
}

void CameraCtrlSaveTest::cancelClearsThePath()
{
    Panel panel;
    panel.find<QLineEdit>("edSavePath")->setText(QDir::tempPath());
    QTimer::singleShot(0, &panel.panel, [] {
        qobject_cast<QFileDialog *>(QApplication::activeModalWidget())->reject();
    });
    panel.find<QPushButton>("btnSaveBrowser")->click();
    QCOMPARE(panel.find<QLineEdit>("edSavePath")->text(), QString());
    QCOMPARE(Options(panel).path, QString());
}

ORVALIS_QTEST_MAIN(CameraCtrlSaveTest)
#include "CameraCtrlSaveTest.moc"
