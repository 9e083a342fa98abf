// SPDX-License-Identifier: MIT
// The about dialog: where its versions come from.
#include "dialogs/AboutDialog.h"

#include <QFileInfo>
#include <QFontMetrics>
#include <QSettings>
#include <QSysInfo>

#include <utility>

#include "dialogs/ui_AboutDialog.h"

namespace {

/// Far above any header of the library; what is larger is not one, and not worth the reading.
constexpr qint64 largestHeader = 1 << 20;
/// A version longer than this would only blow up the dialog.
constexpr int longestVersion = 64;

QString version(const QSettings &settings, const QString &key)
{
    return settings.value(key).toString().left(longestVersion);
}

} // namespace

AboutDialog::AboutDialog(QWidget *parent) : AboutDialog(parent, sdkHeaderPath()) {}

AboutDialog::AboutDialog(QWidget *parent, const QString &headerPath)
    : QDialog(parent), ui(std::make_unique<Ui_AboutDialog>())
{
    ui->setupUi(this);
    blackenPanel();
    fitTitle();
    ui->laOS->setText(QStringLiteral("%1, %2 (%3)")
                          .arg(QSysInfo::prettyProductName(), QSysInfo::kernelVersion(),
                               QSysInfo::currentCpuArchitecture()));
    const SdkVersions versions = readSdkVersions(headerPath);
    ui->laPackage->setText(versions.package);
    ui->laLibrary->setText(versions.library);
    nameValues();
}

AboutDialog::~AboutDialog() = default;

QString AboutDialog::sdkHeaderPath()
{
    return QStringLiteral("/usr/local/include/orvalis/OrvalisAPI.h");
}

AboutDialog::SdkVersions AboutDialog::readSdkVersions(const QString &headerPath)
{
    // isFile() keeps pipes, which would block, and directories away from QSettings.
    const QFileInfo header(headerPath);
    if (!header.isFile() || !header.isReadable() || header.size() > largestHeader)
        return {};
    QSettings settings(headerPath, QSettings::IniFormat);
    settings.setIniCodec("UTF-8");
    settings.beginGroup(QStringLiteral("VERSION_INFO"));
    return {version(settings, QStringLiteral("PACKAGE_VERSION")),
            version(settings, QStringLiteral("LIBRARY_VERSION"))};
}

/// A value that is not known has no text to be read aloud.
void AboutDialog::nameValues()
{
    const std::pair<QLabel *, QLabel *> rows[] = {
        {ui->label_3, ui->laPackage}, {ui->label_4, ui->laLibrary}, {ui->label_5, ui->laOS}};
    for (const auto &[caption, value] : rows) {
        const QString text = value->text().isEmpty() ? tr("not known") : value->text();
        value->setAccessibleName(caption->text().simplified() + QLatin1Char(' ') + text);
    }
}

/// The panel is white whatever the desktop's colours, so its texts must not be white too.
void AboutDialog::blackenPanel()
{
    QPalette onWhite = ui->widget->palette();
    onWhite.setColor(QPalette::WindowText, Qt::black);
    for (QLabel *label : {ui->label_3, ui->label_4, ui->label_5, ui->label_6})
        label->setPalette(onWhite);
}

/// The title's box and size in points are fixed; fonts wider than the intended one are condensed.
void AboutDialog::fitTitle()
{
    constexpr int mostCondensed = 50;
    QFont title = ui->label->font();
    for (int stretch = 100; stretch >= mostCondensed; stretch -= 5) {
        title.setStretch(stretch);
        if (QFontMetrics(title).horizontalAdvance(ui->label->text()) <= ui->label->maximumWidth())
            break;
    }
    ui->label->setFont(title);
}
