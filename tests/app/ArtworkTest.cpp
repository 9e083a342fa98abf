// SPDX-License-Identifier: MIT
// Icons and logo are sharp at the size at which they are displayed.
#include "app/Artwork.h"
#include "tests/app/Shell.h"

#include <QIcon>

using shell::Shell;

class ArtworkTest : public QObject {
    Q_OBJECT

private slots:
    void cleanup() { QCOMPARE(viewertest::takeWarnings(), QStringList()); }

    void toolBarIconsAreDrawnForTheirSize_data();
    void toolBarIconsAreDrawnForTheirSize();
    void theLogoHasTheScreensResolution_data();
    void theLogoHasTheScreensResolution();
    void theLogoFitsASmallScreen();
};

void ArtworkTest::toolBarIconsAreDrawnForTheirSize_data()
{
    QTest::addColumn<QString>("action");
    QTest::addColumn<QString>("name");
    QTest::newRow("open") << "actionOpen"
                          << "camera-open";
    QTest::newRow("close") << "actionClose"
                           << "camera-close";
    QTest::newRow("register") << "actionRegisterAccess_2"
                              << "camera-register";
    QTest::newRow("exit") << "actionExit"
                          << "window-close";
}

void ArtworkTest::toolBarIconsAreDrawnForTheirSize()
{
    QFETCH(QString, action);
    QFETCH(QString, name);
    const Shell shell;
    const QIcon icon = shell.action(qPrintable(action))->icon();
    const auto sameAs = [&icon](int size, const QString &path) {
        const QImage drawn = QPixmap(path).toImage().convertToFormat(QImage::Format_ARGB32);
        return !drawn.isNull() &&
               icon.pixmap(size).toImage().convertToFormat(QImage::Format_ARGB32) == drawn;
    };
    QVERIFY(sameAs(20, QString(":/icons/20x20/%1.png").arg(name)));
    QVERIFY(sameAs(32, QString(":/icons/32x32/actions/%1.png").arg(name)));
}

void ArtworkTest::theLogoHasTheScreensResolution_data()
{
    QTest::addColumn<double>("ratio");
    QTest::addColumn<QString>("file");
    QTest::newRow("ordinary") << 1.0 << ":/icons/logo.png";
    QTest::newRow("one and a half") << 1.5 << ":/icons/logo@2x.png";
    QTest::newRow("double") << 2.0 << ":/icons/logo@2x.png";
}

void ArtworkTest::theLogoHasTheScreensResolution()
{
    QFETCH(double, ratio);
    QFETCH(QString, file);
    const QPixmap logo = logoFor(ratio);
    const QImage drawn(file);
    QVERIFY(!drawn.isNull());
    QCOMPARE(logo.size(), drawn.size());
    QCOMPARE(logo.size() / logo.devicePixelRatio(), QImage(":/icons/logo.png").size());
}

// The space between the docks, on a screen of 1280 x 800 with a title bar.
void ArtworkTest::theLogoFitsASmallScreen()
{
    const Shell shell;
    shell->resize(1280, 760);
    shell->show();
    QVERIFY(QTest::qWaitForWindowExposed(shell.window.get()));
    const QSize room = shell.view()->maximumViewportSize();
    const QSize logo = logoFor(1).size();
    QVERIFY2(logo.width() <= room.width() && logo.height() <= room.height(),
             qPrintable(QString("room for %1 x %2").arg(room.width()).arg(room.height())));
}

ORVALIS_QTEST_MAIN(ArtworkTest)
#include "ArtworkTest.moc"
