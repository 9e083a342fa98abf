// SPDX-License-Identifier: MIT
// The feature dock's form, and the life cycle of its tree.
#include "tests/tree/DockBench.h"

#include <QMetaMethod>

#include <QFocusEvent>
#include <QGridLayout>
#include <QHeaderView>

class XMLCtrlFormTest : public QObject {
    Q_OBJECT

private slots:
    void init() { fakeorvalis::reset(); }
    void cleanup() { QCOMPARE(viewertest::takeWarnings(), QStringList()); }

    void formIsAsDesigned();
    void textsAndPlaces_data();
    void textsAndPlaces();
    void signalsAreInOrder();
    void startsWithNothingShown();
    void createReadsTheTree();
    void createTwiceReplacesTheTree();
    void deleteDiscardsTreeAndHandle();
    void deleteTwiceOrBeforeCreateIsHarmless();
    void treesDoNotLeakMemory();
    void viewWithoutTreeIsQuiet();
    void hideShowArrangesThePanel_data();
    void hideShowArrangesThePanel();
    void longNamesCanBeScrolledTo();
    void shortNamesFillTheDock();
};

void XMLCtrlFormTest::formIsAsDesigned()
{
    const DockBench bench;
    QCOMPARE(bench.dock->objectName(), QString("XMLCtrl"));
    QCOMPARE(bench.dock->windowTitle(), QString("XML Control"));
    QCOMPARE(bench.dock->minimumSize(), QSize(300, 200));
    QCOMPARE(bench.dock->maximumSize(), QSize(300, 524287));
    const auto *outer = qobject_cast<QVBoxLayout *>(bench.dock->widget()->layout());
    QVERIFY(outer);
    QCOMPARE(outer->spacing(), 0);
    QCOMPARE(outer->contentsMargins(), QMargins());
    QCOMPARE(outer->itemAt(0)->widget(), bench.tree());
    const auto *grid = qobject_cast<QGridLayout *>(outer->itemAt(1)->layout());
    QVERIFY(grid);
    QCOMPARE(grid->horizontalSpacing(), 0);
    QCOMPARE(grid->verticalSpacing(), 0);
    QCOMPARE(grid->contentsMargins().left(), 6);
}

void XMLCtrlFormTest::textsAndPlaces_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("row");
    QTest::addColumn<int>("column");
    QTest::newRow("laXMLExcute") << "Excute :" << 4 << 0;
    QTest::newRow("edXMLValue") << "" << 0 << 1;
    QTest::newRow("btnXMLExcute") << "Excute" << 4 << 1;
    QTest::newRow("cmbXMLValue") << "" << 2 << 1;
    QTest::newRow("laXMLValue") << "Value :" << 0 << 0;
    QTest::newRow("laXMLEnum") << "Enumeration : " << 2 << 0;
}

void XMLCtrlFormTest::textsAndPlaces()
{
    const DockBench bench;
    auto *widget = bench.find<QWidget>(QTest::currentDataTag());
    QVERIFY(widget);
    QTEST(widget->property("text").toString(), "text");
    auto *grid = bench.dock->findChild<QGridLayout *>("gridLayout");
    int row = -1, column = -1, rowSpan = 0, columnSpan = 0;
    grid->getItemPosition(grid->indexOf(widget), &row, &column, &rowSpan, &columnSpan);
    QTEST(row, "row");
    QTEST(column, "column");
}

void XMLCtrlFormTest::signalsAreInOrder()
{
    const QMetaObject &dock = XMLCtrl::staticMetaObject;
    QStringList found;
    for (int i = dock.methodOffset(); i < dock.methodCount(); ++i) {
        const QMetaMethod method = dock.method(i);
        // Moc adds a second signal without the default argument.
        if (method.methodType() == QMetaMethod::Signal &&
            !(method.attributes() & QMetaMethod::Cloned))
            found.append(QString::fromLatin1(method.methodSignature()));
    }
    const QStringList expected{"sigUpdateFeatureInfo(bool)", "sigUpdateVideoInfo()",
                               "sigUpdateTriggerInfo()", "sigUpdateStrobeInfo()",
                               "sigUpdateUSerSetInfo()"};
    QCOMPARE(found, expected);
}

void XMLCtrlFormTest::startsWithNothingShown()
{
    QWidget parent;
    XMLCtrl dock(&parent);
    for (const char *name :
         {"edXMLValue", "cmbXMLValue", "btnXMLExcute", "laXMLValue", "laXMLEnum", "laXMLExcute"})
        QVERIFY2(dock.findChild<QWidget *>(name)->isHidden(), name);
    QVERIFY(dock.findChild<QLineEdit *>()->isEnabled());
    QVERIFY(!dock.findChild<QTreeView *>("treeXML")->model());
    QCOMPARE(callsMade(), QStringList());
}

void XMLCtrlFormTest::createReadsTheTree()
{
    setOnlyNode("Gain", integerNode(1, 0, 2));
    const DockBench bench;
    const auto *model = bench.tree()->model();
    QCOMPARE(model->headerData(0, Qt::Horizontal).toString(), QString("Root"));
    QCOMPARE(model->columnCount(), 1);
    QCOMPARE(model->rowCount(), 1);
    QVERIFY(bench.indexOf("Gain").isValid());
}

void XMLCtrlFormTest::createTwiceReplacesTheTree()
{
    setOnlyNode("Gain", integerNode(1, 0, 2));
    DockBench bench;
    const QPointer<QAbstractItemModel> first = bench.tree()->model();
    setOnlyNode("Hue", integerNode(1, 0, 2));
    bench.dock->CreateXMLTree(bench.handle);
    QVERIFY(!first);
    QVERIFY(bench.indexOf("Hue").isValid());
    const Calls expected{"OrvalisGetNodeList(h1, \"Root\")", "OrvalisGetNodeList(h1, \"Top\")"};
    QCOMPARE(fakeorvalis::calls(), expected);
}

void XMLCtrlFormTest::deleteDiscardsTreeAndHandle()
{
    setOnlyNode("Gain", integerNode(42, 0, 99));
    DockBench bench;
    bench.click("Gain");
    const QPointer<QAbstractItemModel> model = bench.tree()->model();
    bench.dock->DeleteXMLTree();
    QVERIFY(!model);
    QCOMPARE(panelOf(bench), QString("value"));
    QCOMPARE(bench.edit()->text(), QString("42"));
    QVERIFY(bench.edit()->isEnabled());
    QCOMPARE(callsMade(), QStringList());
}

void XMLCtrlFormTest::deleteTwiceOrBeforeCreateIsHarmless()
{
    StreamWindow window;
    XMLCtrl dock(&window);
    dock.DeleteXMLTree();
    dock.CreateXMLTree(nullptr);
    dock.DeleteXMLTree();
    dock.DeleteXMLTree();
    QCOMPARE(callsMade(), QStringList{"OrvalisGetNodeList(null, \"Root\")"});
}

void XMLCtrlFormTest::treesDoNotLeakMemory()
{
    const DockBench bench;
    const auto objects = [&] {
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        return bench.dock->findChildren<QObject *>().size();
    };
    const auto round = [&] {
        bench.dock->CreateXMLTree(bench.handle);
        bench.dock->CreateXMLTree(bench.handle);
        bench.dock->DeleteXMLTree();
        bench.dock->DeleteXMLTree(); // every close deletes, also without a camera
    };
    round();
    const int once = objects();
    for (int i = 0; i < 20; ++i)
        round();
    QCOMPARE(objects(), once);
}

void XMLCtrlFormTest::viewWithoutTreeIsQuiet()
{
    DockBench bench;
    bench.dock->CreateXMLTree(bench.handle);
    bench.dock->DeleteXMLTree();
    QTest::mouseClick(bench.tree()->viewport(), Qt::LeftButton);
    QTest::keyClick(bench.tree(), Qt::Key_Down);
    QFocusEvent focus(QEvent::FocusIn, Qt::TabFocusReason);
    QCoreApplication::sendEvent(bench.tree(), &focus);
    QCOMPARE(viewertest::takeWarnings(), QStringList());
}

void XMLCtrlFormTest::hideShowArrangesThePanel_data()
{
    QTest::addColumn<int>("mode");
    QTest::addColumn<QString>("panel");
    QTest::newRow("0") << 0 << "nothing";
    QTest::newRow("1") << 1 << "value";
    QTest::newRow("2") << 2 << "enumeration";
    QTest::newRow("3") << 3 << "command";
    QTest::newRow("4 changes nothing") << 4 << "command";
    QTest::newRow("-1 changes nothing") << -1 << "command";
}

void XMLCtrlFormTest::hideShowArrangesThePanel()
{
    QFETCH(int, mode);
    const DockBench bench;
    bench.dock->HideShowXMLCtrl(3, true);
    for (const bool enable : {false, true}) {
        bench.dock->HideShowXMLCtrl(mode, enable);
        QCOMPARE(bench.edit()->isEnabled(), enable);
        QCOMPARE(bench.combo()->isEnabled(), enable);
        QCOMPARE(bench.button()->isEnabled(), enable);
        QTEST(panelOf(bench), "panel");
    }
}

void XMLCtrlFormTest::longNamesCanBeScrolledTo()
{
    setOnlyNode(std::string(120, 'W'), integerNode(1, 0, 2));
    const DockBench bench;
    bench.tree()->expandAll();
    QCoreApplication::processEvents();
    QVERIFY(bench.tree()->header()->sectionSize(0) > bench.tree()->viewport()->width());
}

void XMLCtrlFormTest::shortNamesFillTheDock()
{
    setOnlyNode("Short", integerNode(1, 0, 2));
    const DockBench bench;
    const QHeaderView *header = bench.tree()->header();
    QTRY_COMPARE(header->sectionSize(0), bench.tree()->viewport()->width());
    const int withoutScrollBar = header->sectionSize(0);
    bench.tree()->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    QTRY_VERIFY(bench.tree()->viewport()->width() < withoutScrollBar);
    QTRY_COMPARE(header->sectionSize(0), bench.tree()->viewport()->width());
}

ORVALIS_QTEST_MAIN(XMLCtrlFormTest)
#include "XMLCtrlFormTest.moc"
