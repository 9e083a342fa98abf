// SPDX-License-Identifier: MIT
// The about dialog: reads the versions and adapts fonts and colours.
#include "dialogs/AboutDialog.h"

#include <QFileInfo>
#include <QFontMetrics>
#include <QSettings>
#include <QSysInfo>

#include <utility>

#include "dialogs/ui_AboutDialog.h"

namespace {

/// Bytes; far above the size of the library's header.
constexpr qint64 maxHeaderSize = 1 << 20;
/// Characters; a longer version would make the dialog too wide.
constexpr int maxVersionLength = 64;

QString version(const QSettings &settings, const QString &key)
{
    return settings.value(key).toString().left(maxVersionLength);
}

} // namespace

AboutDialog::AboutDialog(QWidget *parent) : AboutDialog(parent, sdkHeaderPath()) {}

AboutDialog::AboutDialog(QWidget *parent, const QString &headerPath)
    : QDialog(parent), ui(std::make_unique<Ui_AboutDialog>())
{
    ui->setupUi(this);
    setPanelTextBlack();
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
    // Refuse directories, and pipes, which would block QSettings.
    const QFileInfo header(headerPath);
    if (!header.isFile() || !header.isReadable() || header.size() > maxHeaderSize)
        return {};
    QSettings settings(headerPath, QSettings::IniFormat);
    settings.setIniCodec("UTF-8");
    settings.beginGroup(QStringLiteral("VERSION_INFO"));
    return {version(settings, QStringLiteral("PACKAGE_VERSION")),
            version(settings, QStringLiteral("LIBRARY_VERSION"))};
}

/// Gives screen readers a name for each value; an unknown value has no text of its own.
void AboutDialog::nameValues()
{
    const std::pair<QLabel *, QLabel *> rows[] = {
        {ui->label_3, ui->laPackage}, {ui->label_4, ui->laLibrary}, {ui->label_5, ui->laOS}};
    for (const auto &[caption, value] : rows) {
        const QString text = value->text().isEmpty() ? tr("not known") : value->text();
        value->setAccessibleName(caption->text().simplified() + QLatin1Char(' ') + text);
    }
}

/// The panel is always white, so its texts must be black even with a dark desktop theme.
void AboutDialog::setPanelTextBlack()
{
    QPalette onWhite = ui->widget->palette();
    onWhite.setColor(QPalette::WindowText, Qt::black);
    for (QLabel *label : {ui->label_3, ui->label_4, ui->label_5, ui->label_6})
        label->setPalette(onWhite);
}

/// Condenses the title's font until it fits: its label and its size in points are fixed.
void AboutDialog::fitTitle()
{
    constexpr int minStretch = 50;
    QFont title = ui->label->font();
    for (int stretch = 100; stretch >= minStretch; stretch -= 5) {
        title.setStretch(stretch);
        if (QFontMetrics(title).horizontalAdvance(ui->label->text()) <= ui->label->maximumWidth())
            break;
    }
    ui->label->setFont(title);
}
