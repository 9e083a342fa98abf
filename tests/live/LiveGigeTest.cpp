// SPDX-License-Identifier: MIT
// The viewer with a GigE Vision camera in another process: nodes, registers, single shot, cross,
// and another program that takes control of the camera. Runs inside run_gige.sh, which starts the
// camera.
#include "dialogs/AccessRegister.h"
#include "tests/live/LiveSession.h"
#include "tests/support/QtTestMain.h"

#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMessageBox>
#include <QProcess>
#include <QPushButton>
#include <QStatusBar>
#include <QTimer>

#include <memory>

class LiveGigeTest : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup() { m_session.reset(); }
    void singleShotShowsOneFrame();
    void singleShotThenPlayThenSingleShot();
    void nodeIsWrittenAndReadBack();
    void registerIsReadAndWritten();
    void crossIsPaintedOnThePicture();
    void aCameraThatAnotherProgramTakesIsClosed();

private:
    QString received() const;
    std::unique_ptr<LiveSession> m_session;
};

void LiveGigeTest::init()
{
    m_session = std::make_unique<LiveSession>();
    QVERIFY(m_session->open(QStringLiteral("GV01")));
}

QString LiveGigeTest::received() const
{
    for (const auto *label : m_session->window().statusBar()->findChildren<QLabel *>()) {
        if (label->text().startsWith(QLatin1String("Recv")))
            return label->text().section(QLatin1Char(' '), -1);
    }
    return {};
}

void LiveGigeTest::singleShotShowsOneFrame()
{
    m_session->action("actionOneGrab")->trigger();
    QTRY_VERIFY(!m_session->window().isAcquiring());
    QCOMPARE(m_session->shown().size(), QSize(512, 512));
    QVERIFY(received().toInt() >=
            1); // the test camera sends until it is stopped, and each frame is counted
}

void LiveGigeTest::singleShotThenPlayThenSingleShot()
{
    for (int round = 0; round < 2; ++round) {
        m_session->action("actionOneGrab")->trigger();
        QTRY_VERIFY(!m_session->window().isAcquiring());
        QCOMPARE(m_session->shown().size(), QSize(512, 512));
        QVERIFY(m_session->play());
        QVERIFY(m_session->waitForPictures(3));
        m_session->stop();
    }
}

void LiveGigeTest::nodeIsWrittenAndReadBack()
{
    QVERIFY(m_session->commitNode(QStringLiteral("Width"), QStringLiteral("256")));
    QCOMPARE(m_session->widget<QLineEdit>("edXMLValue")->text(), QStringLiteral("256"));
    QCOMPARE(m_session->value("spiWidth"), 256.0);
    QVERIFY(m_session->commitNode(QStringLiteral("Width"), QStringLiteral("512")));
    QCOMPARE(m_session->value("spiWidth"), 512.0);
}

void LiveGigeTest::registerIsReadAndWritten()
{
    auto *dialog = m_session->window().findChild<AccessRegister *>();
    QVERIFY(dialog);
    auto *address = dialog->findChild<QLineEdit *>(QStringLiteral("edAddr"));
    auto *data = dialog->findChild<QLineEdit *>(QStringLiteral("edData"));
    auto *read = dialog->findChild<QPushButton *>(QStringLiteral("btnRead"));
    auto *write = dialog->findChild<QPushButton *>(QStringLiteral("btnWrite"));
    // The register of this camera's width.
    address->setText(QStringLiteral("100"));
    read->click();
    QCOMPARE(data->text(), QStringLiteral("00000200"));
    data->setText(QStringLiteral("180"));
    write->click();
    read->click();
    QCOMPARE(data->text(), QStringLiteral("00000180"));
    QVERIFY(m_session->clickNode(QStringLiteral("Width")));
    QCOMPARE(m_session->widget<QLineEdit>("edXMLValue")->text(), QStringLiteral("384"));
    data->setText(QStringLiteral("200"));
    write->click();
}

void LiveGigeTest::crossIsPaintedOnThePicture()
{
    m_session->action("actionDrawCenter")->setChecked(true);
    QVERIFY(m_session->play());
    QTRY_COMPARE(m_session->shown().pixelColor(256, 10), QColor(Qt::red));
    QCOMPARE(m_session->shown().pixelColor(10, 256), QColor(Qt::red));
    QVERIFY(m_session->shown().pixelColor(100, 100) != QColor(Qt::red));
}

void LiveGigeTest::aCameraThatAnotherProgramTakesIsClosed()
{
    constexpr int patience = 60000; // another program needs seconds to take control
    QVERIFY(m_session->play());
    QSignalSpy opened(&m_session->window(), SIGNAL(sigCameraOpened(bool)));
    QProcess other; // suspends this process until it has lost the camera
    other.start(QStringLiteral(ORVALIS_OTHER_PROGRAM),
                {QStringLiteral("127.0.0.1"), QString::number(QCoreApplication::applicationPid())});
    QTRY_VERIFY_WITH_TIMEOUT(!m_session->window().isAcquiring(), patience);
    QTRY_COMPARE(opened.count(), 1);
    QCOMPARE(opened.first().first().toBool(), false);

    QString said;
    QTimer answer;
    connect(&answer, &QTimer::timeout, this, [&said] {
        if (auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget())) {
            said = box->text();
            box->close();
        }
    });
    answer.start(5);
    m_session->open(QStringLiteral("GV01"));
    QCOMPARE(said, QStringLiteral("Aravis-Fake-GV01 open error"));
    other.closeWriteChannel();
    QVERIFY(other.waitForFinished(patience));
}

#include "LiveGigeTest.moc"
ORVALIS_QTEST_MAIN(LiveGigeTest)
