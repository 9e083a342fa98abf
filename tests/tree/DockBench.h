// SPDX-License-Identifier: MIT
// A feature dock in a window, on an open camera of the recording library, with a log of all events.
#pragma once

#include "capture/StreamControl.h"
#include "tests/fakelibrary/FakeOrvalis.h"
#include "tests/support/QtTestMain.h"
#include "tree/XMLCtrl.h"

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTreeView>
#include <QVBoxLayout>

#include <memory>

Q_DECLARE_METATYPE(fakeorvalis::Node)

using Calls = std::vector<std::string>;

/// The library's calls in a form that Qt Test prints if a comparison fails.
inline QStringList callsMade()
{
    QStringList made;
    for (const std::string &call : fakeorvalis::calls())
        made.append(QString::fromStdString(call));
    return made;
}

/// Stands in for the main window.
class StreamWindow : public QWidget, public StreamControl {
public:
    bool isStreaming() const override { return streaming; }
    void slotStartCamera() override
    {
        streaming = true;
        events.append("start");
    }
    void slotStopCamera() override
    {
        streaming = false;
        events.append("stop");
    }
    void resetFrameCount() override { events.append("reset"); }
    void pausePreview() override { ++paused; }
    void resumePreview() override { --paused; }

    bool streaming = false;
    int paused = 0;     ///< pauses of the preview without a resume
    QStringList events; ///< in order: signals of the dock by short names, stop, start
};

/// Displays the dock with the tree of the library's nodes at construction.
class DockBench {
public:
    DockBench()
    {
        OrvalisInit();
        OrvalisOpenCamera("CAM-A", &handle);
        dock = new XMLCtrl(&window);
        dock->setStreamControl(&window);
        auto *layout = new QVBoxLayout(&window);
        layout->addWidget(dock);
        record();
        dock->CreateXMLTree(handle);
        window.show();
        fakeorvalis::clearCalls();
    }
    ~DockBench()
    {
        OrvalisCloseCamera(handle);
        OrvalisUninit();
    }
    DockBench(const DockBench &) = delete;
    DockBench &operator=(const DockBench &) = delete;

    template <class Widget> Widget *find(const char *name) const
    {
        return dock->findChild<Widget *>(QLatin1String(name));
    }
    QTreeView *tree() const { return find<QTreeView>("treeXML"); }
    QLineEdit *edit() const { return find<QLineEdit>("edXMLValue"); }
    QComboBox *combo() const { return find<QComboBox>("cmbXMLValue"); }
    QPushButton *button() const { return find<QPushButton>("btnXMLExcute"); }

    /// Index of the first node of this name, invalid if there is none.
    QModelIndex indexOf(const QString &name) const
    {
        const QAbstractItemModel *model = tree()->model();
        const auto hits = model->match(model->index(0, 0), Qt::DisplayRole, name, 1,
                                       Qt::MatchExactly | Qt::MatchRecursive);
        return hits.value(0);
    }
    /// Clicks the row with the mouse, then clears calls and events unless `keep`.
    void click(const QString &name, bool keep = false)
    {
        const QModelIndex index = indexOf(name);
        QVERIFY2(index.isValid(), qPrintable(name));
        tree()->expandAll();
        tree()->scrollTo(index);
        QTest::mouseClick(tree()->viewport(), Qt::LeftButton, Qt::NoModifier,
                          tree()->visualRect(index).center());
        if (!keep)
            forget();
    }
    /// Replaces the text of the value field by typing and presses a key there.
    void type(const QString &text, Qt::Key key = Qt::Key_Enter)
    {
        edit()->setFocus();
        edit()->setText(text);
        QTest::keyClick(edit(), key, Qt::KeypadModifier);
    }
    void forget()
    {
        window.events.clear();
        fakeorvalis::clearCalls();
    }

    OCameraHandle handle = nullptr;
    StreamWindow window;
    XMLCtrl *dock = nullptr; // child of window

private:
    void record()
    {
        QStringList *events = &window.events;
        QObject::connect(dock, &XMLCtrl::sigUpdateFeatureInfo, dock,
                         [events](bool init) { events->append(init ? "feature!" : "feature"); });
        QObject::connect(dock, &XMLCtrl::sigUpdateVideoInfo, dock,
                         [events] { events->append("video"); });
        QObject::connect(dock, &XMLCtrl::sigUpdateTriggerInfo, dock,
                         [events] { events->append("trigger"); });
        QObject::connect(dock, &XMLCtrl::sigUpdateStrobeInfo, dock,
                         [events] { events->append("strobe"); });
        QObject::connect(dock, &XMLCtrl::sigUpdateUSerSetInfo, dock,
                         [events] { events->append("userset"); });
    }
};

/// Records every call of `function` among the bench's events.
inline void noteCall(DockBench &bench, const char *function)
{
    fakeorvalis::onCall(function, [&bench, function] { bench.window.events.append(function); });
}

/// "value", "enumeration", "command" or "nothing"; labels must agree with their widgets.
inline QString panelOf(const DockBench &bench)
{
    const auto shown = [&bench](const char *label, const char *widget) {
        const bool visible = !bench.find<QWidget>(widget)->isHidden();
        if (visible == bench.find<QWidget>(label)->isHidden())
            return -100;
        return visible ? 1 : 0;
    };
    const int sum = shown("laXMLValue", "edXMLValue") + 2 * shown("laXMLEnum", "cmbXMLValue") +
                    4 * shown("laXMLExcute", "btnXMLExcute");
    const QMap<int, QString> names{
        {0, "nothing"}, {1, "value"}, {2, "enumeration"}, {4, "command"}};
    return names.value(sum, "mixture");
}

/// Replaces all nodes with the category "Top" and one node below it.
inline void setOnlyNode(const std::string &name, const fakeorvalis::Node &node)
{
    fakeorvalis::withState([&](fakeorvalis::State &state) {
        state.nodes.clear();
        state.nodes["Root"].type = state.nodes["Top"].type = ORVALIS_NODE_CATEGORY;
        state.nodes["Root"].children = {"Top"};
        state.nodes["Top"].children = {name};
        state.nodes[name] = node;
    });
}

inline fakeorvalis::Node integerNode(int value, int minimum, int maximum)
{
    fakeorvalis::Node node;
    node.type = ORVALIS_NODE_INTEGER;
    node.integer = {value, minimum, maximum, 1};
    return node;
}

inline fakeorvalis::Node floatNode(double value, double minimum, double maximum)
{
    fakeorvalis::Node node;
    node.type = ORVALIS_NODE_FLOAT;
    node.real = {value, minimum, maximum, 0};
    return node;
}

inline fakeorvalis::Node stringNode(const std::string &text)
{
    fakeorvalis::Node node;
    node.type = ORVALIS_NODE_STRING;
    node.text = text;
    return node;
}

inline fakeorvalis::Node booleanNode(bool value)
{
    fakeorvalis::Node node;
    node.type = ORVALIS_NODE_BOOLEAN;
    node.boolean = value;
    return node;
}

inline fakeorvalis::Node enumNode(const std::vector<std::string> &entries, const std::string &entry)
{
    fakeorvalis::Node node;
    node.type = ORVALIS_NODE_ENUMERATION;
    node.entries = entries;
    node.text = entry;
    return node;
}

inline fakeorvalis::Node commandNode()
{
    fakeorvalis::Node node;
    node.type = ORVALIS_NODE_COMMAND;
    return node;
}

inline fakeorvalis::Node withAccess(fakeorvalis::Node node, int access)
{
    node.access = access;
    return node;
}
