// SPDX-License-Identifier: MIT
// Fuzzes the feature dock: node lists, node records and enumerations of any content, and any
// sequence of clicks and keys.
#include "tests/fuzz/Fuzz.h"
#include "tests/fuzz/Widgets.h"
#include "tests/support/ByteTape.h"
#include "tree/XMLCtrl.h"

#include <QComboBox>
#include <QKeyEvent>
#include <QLineEdit>
#include <QTreeView>

namespace {

using viewertest::ByteTape;

constexpr std::uint32_t mostSteps = 32;

struct Bench {
    Bench() { edit->setFocus(); }

    OCameraHandle camera = fuzz::openCamera();
    XMLCtrl dock{nullptr};
    QTreeView *tree = dock.findChild<QTreeView *>("treeXML");
    QLineEdit *edit = dock.findChild<QLineEdit *>("edXMLValue");
    QComboBox *combo = dock.findChild<QComboBox *>("cmbXMLValue");
};

int depthOf(QModelIndex index)
{
    int depth = 0;
    for (; index.isValid(); index = index.parent())
        ++depth;
    return depth;
}

/// Each level has at most as many rows as a record, and each row returns its parent.
void checkLevel(const QAbstractItemModel &model, const QModelIndex &parent)
{
    const int rows = model.rowCount(parent);
    FUZZ_CHECK(rows <= ORVALIS_NODE_LIST_SIZE);
    FUZZ_CHECK(depthOf(parent) <= 3);
    for (int row = 0; row < rows; ++row) {
        const QModelIndex index = model.index(row, 0, parent);
        FUZZ_CHECK(index.isValid() && index.parent() == parent);
        FUZZ_CHECK(index.data().toString().size() <= ORVALIS_TEXT_SIZE);
        checkLevel(model, index);
    }
}

/// A node of the tree by a path of rows, invalid in an empty tree.
QModelIndex pick(const QAbstractItemModel &model, ByteTape &steps)
{
    QModelIndex index;
    for (std::uint32_t level = 1 + steps.below(3); level > 0; --level) {
        if (const int rows = model.rowCount(index); rows > 0)
            index = model.index(static_cast<int>(steps.below(static_cast<std::uint32_t>(rows))), 0,
                                index);
    }
    return index;
}

void pressEnter(Bench &bench, const QString &text)
{
    bench.dock.HideShowXMLCtrl(1, true);
    bench.edit->setFocus();
    bench.edit->setText(text);
    QKeyEvent enter(QEvent::KeyPress, Qt::Key_Enter, Qt::KeypadModifier);
    bench.dock.keyPressEvent(&enter);
}

void step(Bench &bench, ByteTape &steps)
{
    switch (steps.below(8)) {
    case 0:
        return bench.dock.UpdateAcqState(steps.below(2) != 0);
    case 1:
        return bench.dock.on_btnXMLExcute_clicked();
    case 2:
        return bench.dock.on_cmbXMLValue_activated(QString::fromStdString(steps.text(20)));
    case 3:
        return pressEnter(bench, QString::fromStdString(steps.text(20)));
    default:
        return bench.dock.on_treeXML_clicked(pick(*bench.tree->model(), steps));
    }
}

void checkPanel(const Bench &bench)
{
    FUZZ_CHECK(bench.combo->count() <= ORVALIS_ENUM_SIZE);
    FUZZ_CHECK(bench.combo->currentIndex() < bench.combo->count());
    for (int i = 0; i < bench.combo->count(); ++i)
        FUZZ_CHECK(bench.combo->itemText(i).size() <= ORVALIS_TEXT_SIZE);
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static auto &bench = *new Bench;
    ByteTape tape(data, size);
    ByteTape steps(tape.bytes(tape.below(128)));
    fakeorvalis::clearCalls();
    fakeorvalis::hostileAnswers(tape.rest());
    bench.dock.CreateXMLTree(bench.camera);
    checkLevel(*bench.tree->model(), QModelIndex());
    for (std::uint32_t i = 0; i < mostSteps && !steps.atEnd(); ++i) {
        step(bench, steps);
        checkPanel(bench);
    }
    bench.dock.DeleteXMLTree();
    return 0;
}
