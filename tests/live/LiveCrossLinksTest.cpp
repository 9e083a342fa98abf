// SPDX-License-Identifier: MIT
// A change in one dock appears in the others: feature tree, control panel and live stream.
#include "tests/live/LiveSession.h"
#include "tests/support/QtTestMain.h"

#include <QComboBox>
#include <QLineEdit>
#include <QListWidget>

#include <memory>

class LiveCrossLinksTest : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup() { m_session.reset(); }
    void valueWrittenInTheTreeShowsInThePanel_data();
    void valueWrittenInTheTreeShowsInThePanel();
    void pixelFormatChosenInTheTreeShowsInThePanel();
    void userSetLoadWhileStreamingRestartsTheStream();
    void lockedNodesFollowPlayAndStop();
    void singleShotThenPlayThenSingleShot();

private:
    int countOfLogLines(const QString &text) const;
    std::unique_ptr<LiveSession> m_session;
};

void LiveCrossLinksTest::init()
{
    m_session = std::make_unique<LiveSession>();
    QVERIFY(m_session->open(QStringLiteral("OV-SIM-2448C")));
}

int LiveCrossLinksTest::countOfLogLines(const QString &text) const
{
    int count = 0;
    for (const auto *list : m_session->window().findChildren<QListWidget *>())
        count += list->findItems(text, Qt::MatchContains).size();
    return count;
}

void LiveCrossLinksTest::valueWrittenInTheTreeShowsInThePanel_data()
{
    QTest::addColumn<QString>("node");
    QTest::addColumn<QString>("value");
    QTest::addColumn<QByteArray>("spinBox");
    QTest::addColumn<double>("shown");
    QTest::newRow("feature") << "Gain"
                             << "7" << QByteArray("spiGain") << 7.0;
    QTest::newRow("exposure") << "ExposureTime"
                              << "4200" << QByteArray("spiShutter") << 4200.0;
    QTest::newRow("video") << "Width"
                           << "640" << QByteArray("spiWidth") << 640.0;
    QTest::newRow("trigger") << "TriggerDelay"
                             << "250" << QByteArray("spTriDelay") << 250.0;
    QTest::newRow("strobe") << "TimerDuration"
                            << "1500" << QByteArray("spStroDuration") << 1500.0;
}

void LiveCrossLinksTest::valueWrittenInTheTreeShowsInThePanel()
{
    QFETCH(QString, node);
    QFETCH(QString, value);
    QFETCH(QByteArray, spinBox);
    QFETCH(double, shown);
    QVERIFY(m_session->commitNode(node, value));
    QCOMPARE(m_session->value(spinBox.constData()), shown);
}

void LiveCrossLinksTest::pixelFormatChosenInTheTreeShowsInThePanel()
{
    QVERIFY(m_session->chooseNode(QStringLiteral("PixelFormat"), QStringLiteral("Mono8")));
    QCOMPARE(m_session->widget<QComboBox>("cbPixelFormat")->currentText(), QStringLiteral("Mono8"));
    QVERIFY(!m_session->widget<QWidget>("spiRGain")->isEnabled());
}

void LiveCrossLinksTest::userSetLoadWhileStreamingRestartsTheStream()
{
    m_session->typeInto("spiGain", QStringLiteral("9"));
    m_session->choose("cmbUserSet", QStringLiteral("UserSet1"));
    QMetaObject::invokeMethod(m_session->widget<QObject>("CameraCtrl"),
                              "on_btnUserSetSave_clicked");
    m_session->typeInto("spiGain", QStringLiteral("2"));
    QVERIFY(m_session->play());
    const int stopsBefore = countOfLogLines(QStringLiteral("stop steam"));

    QVERIFY(m_session->executeNode(QStringLiteral("UserSetLoad")));
    QVERIFY(countOfLogLines(QStringLiteral("stop steam")) > stopsBefore);
    QCOMPARE(m_session->value("spiGain"), 9.0);
    QVERIFY(m_session->window().isStreaming());
    QVERIFY(m_session->waitForPictures(2));
}

void LiveCrossLinksTest::lockedNodesFollowPlayAndStop()
{
    auto *edit = m_session->widget<QLineEdit>("edXMLValue");
    QVERIFY(m_session->clickNode(QStringLiteral("Width")));
    QVERIFY(edit->isEnabled());
    QVERIFY(m_session->play());
    QVERIFY(!edit->isEnabled());
    m_session->stop();
    QVERIFY(edit->isEnabled());
}

void LiveCrossLinksTest::singleShotThenPlayThenSingleShot()
{
    QAction *shot = m_session->action("actionOneGrab");
    for (int round = 0; round < 2; ++round) {
        shot->trigger();
        QTRY_VERIFY(!m_session->window().isAcquiring());
        QCOMPARE(m_session->shown().size(), QSize(2448, 2048));
        QVERIFY(shot->isEnabled());
        QVERIFY(m_session->play());
        m_session->stop();
    }
}

#include "LiveCrossLinksTest.moc"
ORVALIS_QTEST_MAIN(LiveCrossLinksTest)
