// SPDX-License-Identifier: MIT
// Drives the widgets of the main window; accesses the camera only through them.
#include "tests/live/LiveSession.h"

#include "app/CameraList.h"

#include <QAbstractSpinBox>
#include <QComboBox>
#include <QDataStream>
#include <QDir>
#include <QGraphicsPixmapItem>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QTreeView>

namespace {

/// The header of a BMP file contains the file's size; the file is shorter while it is being
/// written.
bool isWholeBitmap(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly) || file.read(2) != "BM")
        return false;
    quint32 size = 0;
    QDataStream header(&file);
    header.setByteOrder(QDataStream::LittleEndian);
    header >> size;
    return file.size() == size;
}

} // namespace

LiveSession::LiveSession()
{
    m_window.resize(1400, 900);
    m_window.show();
}

bool LiveSession::open(const QString &name)
{
    auto *list = m_window.findChild<CameraList *>()->findChild<QListWidget *>();
    QList<QListWidgetItem *> found;
    const bool listed = QTest::qWaitFor(
        [&] {
            found = list->findItems(name, Qt::MatchContains);
            return !found.isEmpty();
        },
        10000);
    if (!listed)
        return false;
    list->setCurrentItem(found.first()); // as the first click of a double-click does
    m_window.slotOpenCamera(list->row(found.first()));
    widget<QLineEdit>("edSavePath")->setText(m_folder.path());
    return m_window.windowTitle().contains(name);
}

bool LiveSession::play()
{
    action("actionPlay")->trigger();
    return waitForPictures(1);
}

void LiveSession::stop() { action("actionStop")->trigger(); }

QImage LiveSession::shown() const
{
    const auto *view = widget<QGraphicsView>("graphicsView");
    for (const QGraphicsItem *item : view->scene()->items()) {
        if (const auto *pixmap = qgraphicsitem_cast<const QGraphicsPixmapItem *>(item))
            return pixmap->pixmap().toImage();
    }
    return {};
}

bool LiveSession::waitForPictures(int count)
{
    int seen = 0;
    const auto connection =
        QObject::connect(&m_window, &MainWindow::sigDisplayFrame, &m_window, [&seen] { ++seen; });
    const bool came = QTest::qWaitFor([&] { return seen > count; }, 20000);
    QObject::disconnect(connection);
    return came;
}

double LiveSession::value(const char *spinBoxName) const
{
    return widget<QAbstractSpinBox>(spinBoxName)->text().toDouble();
}

void LiveSession::typeInto(const char *spinBoxName, const QString &text)
{
    auto *edit = widget<QAbstractSpinBox>(spinBoxName)->findChild<QLineEdit *>();
    edit->selectAll();
    QTest::keyClicks(edit, text);
    QTest::keyClick(edit, Qt::Key_Return);
}

void LiveSession::choose(const char *comboName, const QString &entry)
{
    auto *combo = widget<QComboBox>(comboName);
    combo->setCurrentText(entry);
    QMetaObject::invokeMethod(combo, "activated", Q_ARG(QString, entry));
}

bool LiveSession::clickNode(const QString &name)
{
    auto *tree = widget<QTreeView>("treeXML");
    const QModelIndexList found =
        tree->model()->match(tree->model()->index(0, 0), Qt::DisplayRole, name, 1,
                             Qt::MatchExactly | Qt::MatchRecursive | Qt::MatchCaseSensitive);
    if (found.isEmpty())
        return false;
    tree->scrollTo(found.first());
    tree->setCurrentIndex(found.first());
    QMetaObject::invokeMethod(tree, "clicked", Q_ARG(QModelIndex, found.first()));
    return true;
}

bool LiveSession::commitNode(const QString &name, const QString &value)
{
    if (!clickNode(name))
        return false;
    auto *edit = widget<QLineEdit>("edXMLValue");
    m_window.activateWindow();
    edit->setFocus();
    edit->setText(value);
    QTest::keyClick(edit, Qt::Key_Enter);
    return true;
}

bool LiveSession::chooseNode(const QString &name, const QString &entry)
{
    if (!clickNode(name))
        return false;
    choose("cmbXMLValue", entry);
    return true;
}

bool LiveSession::executeNode(const QString &name)
{
    if (!clickNode(name))
        return false;
    widget<QPushButton>("btnXMLExcute")->click();
    return true;
}

QImage LiveSession::savedPicture()
{
    QDir folder(m_folder.path());
    for (const QString &old : folder.entryList(QDir::Files))
        folder.remove(old);
    action("actionSave")->trigger();
    QImage picture;
    const bool complete = QTest::qWaitFor(
        [&] {
            const QStringList files = folder.entryList(QDir::Files);
            return files.size() == 1 && isWholeBitmap(folder.filePath(files.first())) &&
                   picture.load(folder.filePath(files.first()));
        },
        20000);
    return complete ? picture : QImage();
}
