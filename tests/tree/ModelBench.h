// SPDX-License-Identifier: MIT
// Shared by the tests of the feature tree's model: an open camera of the recording library with a
// small tree.
#pragma once

#include "tests/fakelibrary/FakeOrvalis.h"
#include "tests/support/QtTestMain.h"
#include "tree/TreeItem.h"
#include "tree/TreeModel.h"

#include <QAbstractItemModelTester>

#include <cstring>
#include <limits>

using Names = std::vector<std::string>;

inline const QStringList oneHeader{QStringLiteral("Root")};

/// The tree in one line: "A(B C(D))".
inline QString outline(const TreeModel &model, const QModelIndex &parent = {})
{
    QStringList all;
    for (int row = 0; row < model.rowCount(parent); ++row) {
        const QModelIndex index = model.index(row, 0, parent);
        const QString below = outline(model, index);
        all += index.data().toString() + (below.isEmpty() ? below : "(" + below + ")");
    }
    return all.join(' ');
}

inline void setTree(const std::map<std::string, Names> &lists)
{
    fakeorvalis::withState([&lists](fakeorvalis::State &state) {
        state.nodes.clear();
        for (const auto &[name, children] : lists) {
            state.nodes[name].type = ORVALIS_NODE_CATEGORY;
            state.nodes[name].children = children;
        }
    });
}

inline const std::map<std::string, Names> smallTree = {
    {"Root", {"Analog", "Focus"}}, {"Analog", {"Gain", "Gamma"}}, {"Focus", {"AutoIris", "Zoom"}},
    {"AutoIris", {"Speed"}},       {"Zoom", {"Never"}},
};

/// Opens a camera before each test function and closes it afterwards.
class ModelBench : public QObject {
    Q_OBJECT

private slots:
    void init()
    {
        fakeorvalis::reset();
        OrvalisInit();
        QCOMPARE(OrvalisOpenCamera("CAM-A", &m_handle), 0);
        setTree(smallTree);
        fakeorvalis::clearCalls();
    }

    void cleanup()
    {
        OrvalisCloseCamera(m_handle);
        OrvalisUninit();
        QCOMPARE(viewertest::takeWarnings(), QStringList());
    }

protected:
    OCameraHandle m_handle = nullptr;
};
