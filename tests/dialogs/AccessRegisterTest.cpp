// SPDX-License-Identifier: MIT
// The register dialog: its fixed form, the conversion of text to numbers, its keys, and its library
// calls.
#include "dialogs/AccessRegister.h"
#include "capture/StreamControl.h"
#include "tests/fakelibrary/FakeOrvalis.h"
#include "tests/support/QtTestMain.h"

#include <QClipboard>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

#include <memory>
#include <random>

namespace {

/// Calls as text, with numbers in the notation of the recording library.
std::vector<std::string> reading(std::uint32_t address)
{
    return {"OrvalisReadRegister(h1, " + std::to_string(address) + ")"};
}

std::vector<std::string> writing(std::uint32_t address, std::uint32_t data)
{
    return {"OrvalisWriteRegiser(h1, " + std::to_string(address) + ", " + std::to_string(data) +
            ")"};
}

} // namespace

class AccessRegisterTest : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void formIsAsDesigned();
    void positionsAreFixed_data();
    void positionsAreFixed();
    void nothingIsCutOffWithAnyFont_data();
    void nothingIsCutOffWithAnyFont();
    void readShowsEightDigits_data();
    void readShowsEightDigits();
    void numbersAreParsedAsScanfDoes_data();
    void numbersAreParsedAsScanfDoes();
    void emptyAddressReadsRegisterZero();
    void failedReadShowsZero();
    void writePausesThePreview();
    void writeParsesBothFields();
    void unparsableDataWritesZero();
    void failedWriteChangesNothing();
    void onlyEightCharactersFit();
    void pastedTextIsTruncated();
    void theAddressFieldHasTheFocus();
    void keypadEnterInTheAddressReads();
    void keypadEnterInTheDataWrites();
    void keypadEnterElsewhereIsSwallowed();
    void returnAccessesNoRegister_data();
    void returnAccessesNoRegister();
    void escapeCloses();
    void spacePressesTheButtons();
    void tabFollowsTheOrder();
    void nullHandleIsHarmless();
    void survivesHostileAnswers();

private:
    void open(OCameraHandle handle)
    {
        m_dialog = std::make_unique<AccessRegister>(nullptr, handle);
        m_dialog->show();
    }
    template <class Widget> Widget *find(const char *name) const
    {
        return m_dialog->findChild<Widget *>(QLatin1String(name));
    }
    QLineEdit *address() const { return find<QLineEdit>("edAddr"); }
    QLineEdit *data() const { return find<QLineEdit>("edData"); }
    void press(const char *button) { QTest::mouseClick(find<QPushButton>(button), Qt::LeftButton); }

    OCameraHandle m_handle = nullptr;
    std::unique_ptr<AccessRegister> m_dialog;
};

void AccessRegisterTest::init()
{
    fakeorvalis::reset();
    OrvalisInit();
    QCOMPARE(OrvalisOpenCamera("CAM-A", &m_handle), 0);
    fakeorvalis::withState([](fakeorvalis::State &state) {
        state.registers = {{0, 7}, {0x1A2C, 0xFFFF}, {0xFFFFFFFC, 0xFFFFFFFF}};
    });
    open(m_handle);
    fakeorvalis::clearCalls();
}

void AccessRegisterTest::cleanup()
{
    m_dialog.reset();
    OrvalisCloseCamera(m_handle);
    OrvalisUninit();
    QApplication::setFont(QFont());
    QCOMPARE(viewertest::takeWarnings(), QStringList());
}

void AccessRegisterTest::formIsAsDesigned()
{
    QCOMPARE(m_dialog->objectName(), QString("AccessRegister"));
    QCOMPARE(m_dialog->windowTitle(), QString("Access Register"));
    QCOMPARE(m_dialog->minimumSize(), QSize(300, 65));
    QCOMPARE(m_dialog->maximumSize(), QSize(300, 65));
    QCOMPARE(m_dialog->size(), QSize(300, 65));
    QCOMPARE(m_dialog->sizePolicy(), QSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed));
    QCOMPARE(m_dialog->font().family(), QString("Ubuntu"));
    QVERIFY(address()->hasFrame());
    QVERIFY(!address()->validator() && address()->inputMask().isEmpty());
    QVERIFY(!data()->validator() && data()->inputMask().isEmpty());
    QCOMPARE(address()->maxLength(), 8);
    QCOMPARE(data()->maxLength(), 8);
}

void AccessRegisterTest::positionsAreFixed_data()
{
    QTest::addColumn<QRect>("geometry");
    QTest::addColumn<QString>("text");
    QTest::newRow("btnRead") << QRect(207, 7, 80, 22) << "READ";
    QTest::newRow("btnWrite") << QRect(207, 35, 80, 22) << "WRITE";
    QTest::newRow("label") << QRect(10, 10, 81, 16) << "Address : 0x";
    QTest::newRow("label_2") << QRect(10, 40, 81, 16) << "Data        : 0x";
    QTest::newRow("edAddr") << QRect(90, 7, 113, 22) << "";
    QTest::newRow("edData") << QRect(90, 35, 113, 22) << "";
}

void AccessRegisterTest::positionsAreFixed()
{
    auto *widget = find<QWidget>(QTest::currentDataTag());
    QTEST(widget->geometry(), "geometry");
    QTEST(widget->property("text").toString(), "text");
}

void AccessRegisterTest::nothingIsCutOffWithAnyFont_data()
{
    QTest::addColumn<QFont>("font");
    for (const char *family : {"DejaVu Sans", "Noto Sans", "Ubuntu", "DejaVu Sans Mono"}) {
        for (const int points : {7, 9, 11, 14, 24}) {
            QTest::addRow("%s %d", family, points) << QFont(family, points);
        }
    }
}

void AccessRegisterTest::nothingIsCutOffWithAnyFont()
{
    QFETCH(QFont, font);
    QApplication::setFont(font);
    open(m_handle);
    for (const char *name : {"label", "label_2"}) {
        const auto *label = find<QLabel>(name);
        QVERIFY2(label->sizeHint().width() <= 81, name);
        QVERIFY2(label->sizeHint().height() <= 16, name);
    }
    for (const char *name : {"btnRead", "btnWrite"}) {
        const auto *button = find<QPushButton>(name);
        QVERIFY2(button->fontMetrics().horizontalAdvance(button->text()) < 72, name);
        QVERIFY2(button->fontMetrics().height() < 20, name);
    }
    data()->setText("DDDDDDDD");
    QVERIFY(data()->fontMetrics().horizontalAdvance(data()->text()) < 105);
    QCOMPARE(m_dialog->size(), QSize(300, 65));
}

void AccessRegisterTest::readShowsEightDigits_data()
{
    QTest::addColumn<QString>("address");
    QTest::addColumn<QString>("shown");
    QTest::newRow("padded") << "0"
                            << "00000007";
    QTest::newRow("middle") << "1a2c"
                            << "0000FFFF";
    QTest::newRow("full") << "fffffffc"
                          << "FFFFFFFF";
}

void AccessRegisterTest::readShowsEightDigits()
{
    QFETCH(QString, address);
    this->address()->setText(address);
    press("btnRead");
    QTEST(data()->text(), "shown");
    QCOMPARE(fakeorvalis::calls(), reading(address.toUInt(nullptr, 16)));
}

void AccessRegisterTest::numbersAreParsedAsScanfDoes_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<quint32>("number");
    const auto row = [](const char *text, quint32 number) {
        QTest::newRow(text) << QString::fromUtf8(text) << number;
    };
    row("0x1A", 0x1A);
    row("0X1a", 0x1A);
    row("  1a", 0x1A);
    row("\t1a", 0x1A);
    row("1a  2b", 0x1A);
    row("1a2bg", 0x1A2B);
    row("zz", 0);
    row("g1", 0);
    row("-1", 0xFFFFFFFF);
    row("+2f", 0x2F);
    row("-0x10", 0xFFFFFFF0);
    row("0x", 0);
    row("0xg", 0);
    row("0x0x1", 0);
    row("x1", 0);
    row("- 1", 0);
    row("deadbeef", 0xDEADBEEF);
    row("DEADBEEF", 0xDEADBEEF);
    row("00000010", 0x10);
    row("10.5", 0x10);
    row("1e5", 0x1E5);
    row("ä1", 0);
    row("1ä", 1);
    row("€1", 0);
    row("１", 0); // not a hexadecimal digit: full-width
    row("%x", 0);
    row("123456789", 0x12345678); // the ninth character does not fit the field
    row("   ", 0);
}

void AccessRegisterTest::numbersAreParsedAsScanfDoes()
{
    QFETCH(QString, text);
    QFETCH(quint32, number);
    address()->setText(text);
    press("btnRead");
    QCOMPARE(fakeorvalis::calls(), reading(number));
    fakeorvalis::clearCalls();
    data()->setText(text);
    press("btnWrite");
    QCOMPARE(fakeorvalis::calls(), writing(number, number));
}

void AccessRegisterTest::emptyAddressReadsRegisterZero()
{
    press("btnRead");
    QCOMPARE(fakeorvalis::calls(), reading(0));
    QCOMPARE(data()->text(), QString("00000007"));
}

void AccessRegisterTest::failedReadShowsZero()
{
    fakeorvalis::fail("OrvalisReadRegister");
    data()->setText("1234");
    address()->setText("1a2b");
    press("btnRead");
    QCOMPARE(fakeorvalis::calls(), reading(0x1A2B));
    QCOMPARE(data()->text(), QString("00000000"));
}

/// The register may change the sensor's size.
void AccessRegisterTest::writePausesThePreview()
{
    class Window : public QWidget, public StreamControl {
    public:
        bool isStreaming() const override { return false; }
        void slotStartCamera() override {}
        void slotStopCamera() override {}
        void resetFrameCount() override {}
        void pausePreview() override { ++paused; }
        void resumePreview() override { --paused; }
        int paused = 0;
    };
    Window window;
    AccessRegister dialog(&window, m_handle);
    dialog.setStreamControl(&window);
    int pausedAtTheWrite = -1;
    fakeorvalis::onCall("OrvalisWriteRegiser", [&] { pausedAtTheWrite = window.paused; });
    dialog.on_btnWrite_clicked();
    QCOMPARE(pausedAtTheWrite, 1);
    QCOMPARE(window.paused, 0);
}

void AccessRegisterTest::writeParsesBothFields()
{
    address()->setText("10");
    data()->setText("cafe");
    press("btnWrite");
    QCOMPARE(fakeorvalis::calls(), writing(0x10, 0xCAFE));
    QCOMPARE(data()->text(), QString("cafe"));
}

void AccessRegisterTest::unparsableDataWritesZero()
{
    address()->setText("10");
    data()->setText("zz");
    press("btnWrite");
    QCOMPARE(fakeorvalis::calls(), writing(0x10, 0));
}

void AccessRegisterTest::failedWriteChangesNothing()
{
    fakeorvalis::fail("OrvalisWriteRegiser");
    address()->setText("10");
    data()->setText("1");
    press("btnWrite");
    QCOMPARE(fakeorvalis::calls(), writing(0x10, 1));
    QCOMPARE(address()->text(), QString("10"));
    QCOMPARE(data()->text(), QString("1"));
}

void AccessRegisterTest::onlyEightCharactersFit()
{
    QTest::keyClicks(address(), "1234567890");
    QTest::keyClicks(data(), "abcdefabcdef");
    QCOMPARE(address()->text(), QString("12345678"));
    QCOMPARE(data()->text(), QString("abcdefab"));
}

void AccessRegisterTest::pastedTextIsTruncated()
{
    QGuiApplication::clipboard()->setText("ffffffffffffffffff");
    address()->paste();
    QCOMPARE(address()->text(), QString("ffffffff"));
    press("btnRead");
    QCOMPARE(fakeorvalis::calls(), reading(0xFFFFFFFF));
}

void AccessRegisterTest::theAddressFieldHasTheFocus()
{
    QCOMPARE(AccessRegister(nullptr, nullptr).focusWidget()->objectName(), QString("edAddr"));
}

void AccessRegisterTest::keypadEnterInTheAddressReads()
{
    address()->setFocus();
    QTest::keyClicks(address(), "1a2c");
    QTest::keyClick(address(), Qt::Key_Enter, Qt::KeypadModifier);
    QCOMPARE(fakeorvalis::calls(), reading(0x1A2C));
    QCOMPARE(data()->text(), QString("0000FFFF"));
}

void AccessRegisterTest::keypadEnterInTheDataWrites()
{
    data()->setFocus();
    QTest::keyClicks(data(), "5");
    QTest::keyClick(data(), Qt::Key_Enter, Qt::KeypadModifier);
    QCOMPARE(fakeorvalis::calls(), writing(0, 5));
}

void AccessRegisterTest::keypadEnterElsewhereIsSwallowed()
{
    for (const char *name : {"btnRead", "btnWrite"}) {
        auto *button = find<QPushButton>(name);
        button->setFocus();
        QKeyEvent enter(QEvent::KeyPress, Qt::Key_Enter, Qt::KeypadModifier);
        QCoreApplication::sendEvent(button, &enter);
        QVERIFY(enter.isAccepted());
    }
    QCOMPARE(fakeorvalis::calls(), std::vector<std::string>());
    QVERIFY(m_dialog->isVisible());
}

void AccessRegisterTest::returnAccessesNoRegister_data()
{
    QTest::addColumn<QString>("name");
    for (const char *name : {"edAddr", "edData", "btnRead", "btnWrite"})
        QTest::newRow(name) << name;
}

void AccessRegisterTest::returnAccessesNoRegister()
{
    QFETCH(QString, name);
    auto *widget = find<QWidget>(qPrintable(name));
    m_dialog->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(m_dialog.get()));
    widget->setFocus();
    QTest::keyClick(widget, Qt::Key_Return);
    QCOMPARE(fakeorvalis::calls(), std::vector<std::string>());
    QVERIFY(m_dialog->isVisible());
}

void AccessRegisterTest::escapeCloses()
{
    QTest::keyClick(address(), Qt::Key_Escape);
    QVERIFY(!m_dialog->isVisible());
}

void AccessRegisterTest::spacePressesTheButtons()
{
    QTest::keyClick(find<QPushButton>("btnRead"), Qt::Key_Space);
    QCOMPARE(fakeorvalis::calls(), reading(0));
}

void AccessRegisterTest::tabFollowsTheOrder()
{
    QStringList order;
    QWidget *widget = address();
    for (int i = 0; i < 4; ++i) {
        order.append(widget->objectName());
        do
            widget = widget->nextInFocusChain();
        while (widget->focusPolicy() == Qt::NoFocus);
    }
    const QStringList expected{"edAddr", "btnRead", "edData", "btnWrite"};
    QCOMPARE(order, expected);
    QCOMPARE(find<QLabel>("label")->buddy(), address());
    QCOMPARE(find<QLabel>("label_2")->buddy(), data());
}

void AccessRegisterTest::nullHandleIsHarmless()
{
    open(nullptr);
    press("btnRead");
    press("btnWrite");
    const std::vector<std::string> expected{"OrvalisReadRegister(null, 0)",
                                            "OrvalisWriteRegiser(null, 0, 0)"};
    QCOMPARE(fakeorvalis::calls(), expected);
    QCOMPARE(data()->text(), QString("00000000"));
}

void AccessRegisterTest::survivesHostileAnswers()
{
    std::mt19937 random(4711);
    for (std::uint32_t seed = 1; seed <= 300; ++seed) {
        fakeorvalis::hostile(seed);
        QString text;
        for (auto i = random() % 12; i > 0; --i)
            text += QChar(static_cast<ushort>(random() % 3 ? 0x20 + random() % 0x60 : random()));
        (random() % 2 ? address() : data())->setText(text);
        press(random() % 2 ? "btnRead" : "btnWrite");
        QVERIFY(data()->text().size() <= 8);
    }
    fakeorvalis::hostile(0);
}

ORVALIS_QTEST_MAIN(AccessRegisterTest)
#include "AccessRegisterTest.moc"
