// SPDX-License-Identifier: MIT
// 20,000 random slot calls on a library that fails and returns wrong data at random.
#include "tests/control/PanelFixture.h"
#include "tests/support/QtTestMain.h"

#include <QMetaMethod>
#include <QSlider>

#include <limits>
#include <random>

namespace {

constexpr int callsPerSeed = 5000;

class Fuzzer {
public:
    explicit Fuzzer(std::uint32_t seed) : m_generator(seed) {}

    void run();

private:
    int below(int end) { return static_cast<int>(m_generator() % static_cast<unsigned>(end)); }
    int number();
    double real();
    QString text();
    void callSlot();
    void changeTheLibrary();
    void changeTheCamera();
    void useASlider();

    std::mt19937 m_generator;
    Panel m_panel;
};

int Fuzzer::number()
{
    using Ints = std::numeric_limits<int>;
    constexpr int favourites[] = {Ints::min(), -1, 0, 1, 3, 4, 49, 50, 255, 4096, Ints::max()};
    const int pick = below(20);
    return pick < static_cast<int>(std::size(favourites)) ? favourites[pick]
                                                          : static_cast<int>(m_generator());
}

double Fuzzer::real()
{
    constexpr double favourites[] = {0,
                                     0.5,
                                     1,
                                     30,
                                     -1,
                                     1e300,
                                     std::numeric_limits<double>::infinity(),
                                     std::numeric_limits<double>::quiet_NaN()};
    return favourites[below(static_cast<int>(std::size(favourites)))];
}

QString Fuzzer::text()
{
    const QStringList favourites{"",
                                 "Mono8",
                                 "BayerGR12",
                                 "Once",
                                 "Mono12",
                                 "Continuous",
                                 "YUV422_8",
                                 QString(5000, 'x'),
                                 QString::fromUtf8("\xE2\x82\xAC")};
    return favourites.at(below(favourites.size()));
}

void Fuzzer::callSlot()
{
    const QMetaObject &meta = CameraCtrl::staticMetaObject;
    const int own = meta.methodCount() - meta.methodOffset();
    const QMetaMethod slot = meta.method(meta.methodOffset() + below(own));
    if (slot.name() == "on_btnSaveBrowser_clicked")
        return; // opens a modal dialog
    CameraCtrl *panel = &m_panel.panel;
    const QList<QByteArray> types = slot.parameterTypes();
    if (types.isEmpty())
        slot.invoke(panel);
    else if (types.first() == "int")
        slot.invoke(panel, Q_ARG(int, number()));
    else if (types.first() == "double")
        slot.invoke(panel, Q_ARG(double, real()));
    else if (types.first() == "bool")
        slot.invoke(panel, Q_ARG(bool, below(2) == 0));
    else if (types.first() == "qlonglong")
        slot.invoke(panel, Q_ARG(qlonglong, qlonglong{number()} * number()));
    else if (types.first() == "QString")
        slot.invoke(panel, Q_ARG(QString, text()));
    else
        slot.invoke(panel, Q_ARG(QPoint, QPoint(below(999) - 99, below(999) - 99)),
                    Q_ARG(QPoint, QPoint(below(999) - 99, below(999) - 99)));
}

void Fuzzer::changeTheLibrary()
{
    switch (below(4)) {
    case 0:
        fakeorvalis::hostile(static_cast<std::uint32_t>(below(1000)));
        break;
    case 1:
        fakeorvalis::failAll(below(2) == 0);
        break;
    case 2:
        fakeorvalis::hostile(0);
        fakeorvalis::failAll(false);
        break;
    default:
        m_panel.window.streaming = below(2) == 0;
    }
    fakeorvalis::clearCalls();
    m_panel.window.notes.clear();
}

void Fuzzer::changeTheCamera()
{
    switch (below(4)) {
    case 0:
        m_panel.panel.DeleteGrabThread();
        OrvalisCloseCamera(m_panel.handle);
        m_panel.panel.releaseCamera();
        m_panel.handle = nullptr;
        break;
    case 1:
        if (m_panel.handle == nullptr && OrvalisOpenCamera("CAM-A", &m_panel.handle) == 0) {
            m_panel.panel.loadConfigurationValue(m_panel.handle);
            m_panel.panel.CreateGrabThread();
        }
        break;
    case 2:
        m_panel.panel.CreateGrabThread();
        break;
    default:
        m_panel.panel.DeleteGrabThread();
    }
}

void Fuzzer::useASlider()
{
    const auto all = m_panel.panel.findChildren<QSlider *>();
    QSlider *slider = all.at(below(all.size()));
    slider->triggerAction(static_cast<QAbstractSlider::SliderAction>(below(8)));
}

void Fuzzer::run()
{
    for (int call = 0; call < callsPerSeed; ++call) {
        callSlot();
        if (below(20) == 0)
            changeTheLibrary();
        if (below(50) == 0)
            changeTheCamera();
        if (below(5) == 0)
            useASlider();
        if (below(10) == 0)
            QCoreApplication::processEvents();
    }
    fakeorvalis::hostile(0);
    fakeorvalis::failAll(false);
}

} // namespace

class CameraCtrlFuzzTest : public QObject {
    Q_OBJECT

private slots:
    void anySlotAtAnyTime_data();
    void anySlotAtAnyTime();
};

void CameraCtrlFuzzTest::anySlotAtAnyTime_data()
{
    QTest::addColumn<quint32>("seed");
    for (const quint32 seed : {1U, 20U, 300U, 4000U})
        QTest::newRow(qPrintable(QString("seed %1").arg(seed))) << seed;
}

void CameraCtrlFuzzTest::anySlotAtAnyTime()
{
    QFETCH(quint32, seed);
    Fuzzer(seed).run();
}

ORVALIS_QTEST_MAIN(CameraCtrlFuzzTest)
#include "CameraCtrlFuzzTest.moc"
