// SPDX-License-Identifier: MIT
// Ten thousand random actions of user, camera and bus in the whole window, while the library
// answers every call with hostile data.
#include "tests/app/Shell.h"

#include <QAbstractButton>
#include <QAbstractSlider>
#include <QComboBox>
#include <QDoubleSpinBox>
#include <QLineEdit>
#include <QSpinBox>
#include <QTemporaryDir>
#include <QTreeView>

#include <deque>
#include <random>

using shell::dismissBoxes;
using shell::Frame;
using shell::Shell;

namespace {

constexpr int steps = 2500;

/// Closes message boxes and menus without reading them.

class Session {
public:
    Session(const Shell &shell, unsigned seed) : m_shell(shell), m_random(seed)
    {
        m_shell.child<QLineEdit>("edSavePath")->setText(m_files.path());
    }

    void step()
    {
        switch (below(40)) {
        case 0:
            return openOrClose();
        case 1:
            return streamOrGrab();
        case 2:
            return changeTheBus();
        case 3:
        case 4:
            return triggerAnAction();
        case 5:
        case 6:
        case 7:
        case 8:
            return clickANode();
        case 9:
        case 10:
            return typeAValue();
        case 11:
            return m_shell->slotStatusBar(below(3), 1e300, -1e300);
        default:
            return below(2) ? useAWidget() : deliver();
        }
    }

private:
    std::uint32_t random32() { return static_cast<std::uint32_t>(m_random()); }
    int below(int count) { return static_cast<int>(m_random() % static_cast<unsigned>(count)); }

    template <typename T> T *any()
    {
        const auto all = m_shell->findChildren<T *>();
        return all.isEmpty() ? nullptr : all.at(below(all.size()));
    }

    QString text()
    {
        static const QStringList texts{"",     "0",      "-1",   "2147483648",  "nan", "1e999",
                                       "Mono", "BayerX", "0x10", "FFFFFFFFFFF", "💥",   "%1 %s"};
        return texts.at(below(texts.size()));
    }

    void openOrClose()
    {
        if (below(3) == 0)
            m_shell->slotCloseCamera();
        else
            m_shell->slotOpenCamera(below(4) - 2);
    }

    void streamOrGrab()
    {
        switch (below(4)) {
        case 0:
            return m_shell->slotOneGrab();
        case 1:
            return m_shell->slotStopCamera();
        default:
            return m_shell->slotStartCamera();
        }
    }

    void changeTheBus()
    {
        if (below(8) == 0)
            m_shell->OnTimer(); // a hostile bus lists many cameras
        else
            fakeorvalis::hostile(random32());
        fakeorvalis::clearCalls();
    }

    void triggerAnAction()
    {
        auto *action = any<QAction>();
        if (action->objectName() != "actionExit")
            action->trigger();
    }

    void clickANode()
    {
        auto *tree = m_shell.child<QTreeView>("treeXML");
        QModelIndex index;
        for (int level = below(3); level >= 0 && tree->model() != nullptr; --level) {
            if (const int rows = tree->model()->rowCount(index); rows > 0)
                index = tree->model()->index(below(rows), 0, index);
        }
        emit tree->clicked(index);
    }

    void typeAValue()
    {
        auto *field = any<QLineEdit>();
        if (field->objectName() == "edSavePath")
            return;
        field->setFocus();
        field->setText(text());
        QTest::keyClick(field, below(4) ? Qt::Key_Enter : Qt::Key_Return,
                        below(2) ? Qt::KeypadModifier : Qt::NoModifier);
    }

    void useAWidget()
    {
        switch (below(5)) {
        case 0:
            return press(any<QAbstractButton>());
        case 1:
            return any<QAbstractSlider>()->triggerAction(
                static_cast<QAbstractSlider::SliderAction>(below(8)));
        case 2:
            return any<QSpinBox>()->setValue(static_cast<int>(random32()));
        case 3:
            return any<QDoubleSpinBox>()->setValue(1e9 / (1 + below(9)));
        default:
            return choose(any<QComboBox>());
        }
    }

    void press(QAbstractButton *button)
    {
        if (button->objectName() != "btnSaveBrowser") // opens a dialog that waits for the user
            button->click();
    }

    void choose(QComboBox *box)
    {
        const int row = below(box->count() + 1) - 1;
        box->setCurrentIndex(row);
        QMetaObject::invokeMethod(box, "activated", Q_ARG(int, row));
        QMetaObject::invokeMethod(box, "activated", Q_ARG(QString, box->currentText()));
    }

    void deliver()
    {
        if (below(2))
            return void(m_frame.deliver());
        // The viewer reads a record after its delivery: keep all of them.
        m_records.push_back(
            {random32(), random32(), random32(), random32(), nullptr, nullptr, nullptr});
        (void)fakeorvalis::deliver(m_records.back());
    }

    const Shell &m_shell;
    std::mt19937 m_random;
    QTemporaryDir m_files;
    Frame m_frame{16, 16, 50};
    std::deque<OImageFrame> m_records;
};

} // namespace

class HostileSessionTest : public QObject {
    Q_OBJECT

private slots:
    void cleanup()
    {
        fakeorvalis::hostile(0);
        QCOMPARE(viewertest::takeWarnings(), QStringList());
    }
    void theWindowSurvives_data();
    void theWindowSurvives();
};

void HostileSessionTest::theWindowSurvives_data()
{
    QTest::addColumn<uint>("seed");
    for (const uint seed : {11U, 22U, 33U, 44U})
        QTest::addRow("%u", seed) << seed;
}

void HostileSessionTest::theWindowSurvives()
{
    QFETCH(uint, seed);
    const Shell shell;
    shell->show();
    QTimer boxes;
    dismissBoxes(&boxes);
    Session session(shell, seed);
    fakeorvalis::hostile(seed);
    for (int i = 0; i < steps; ++i) {
        session.step();
        QCoreApplication::processEvents();
    }
    fakeorvalis::hostile(0);
    shell->slotCloseCamera();
    QVERIFY(!shell->isAcquiring());
    QVERIFY(shell.action("actionOpen")->isEnabled());
    shell.open();
    QVERIFY(shell.action("actionClose")->isEnabled());
}

ORVALIS_QTEST_MAIN(HostileSessionTest)
#include "HostileSessionTest.moc"
