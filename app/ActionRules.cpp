// SPDX-License-Identifier: MIT
// Which actions are enabled in which state of the camera.
#include "app/ActionRules.h"

#include "ui_MainWindow.h"

namespace {

enum class Change { Keep, On, Off };

struct ActionRule {
    QAction *Ui::MainWindow::*action;
    Change openedOrClosed; // stage 0
    Change justOpened;     // stage 1
    Change streaming;      // any other stage
};

using Form = Ui::MainWindow;

// Deliberate: right after an open, Stop, Save, the zoom actions and Draw Center stay as the last
// close left them, until streaming starts.
constexpr ActionRule actionRules[] = {
    {&Form::actionOpen, Change::Off, Change::Off, Change::Keep},
    {&Form::actionClose, Change::On, Change::On, Change::Keep},
    {&Form::actionRegisterAccess_2, Change::On, Change::On, Change::Keep},
    {&Form::actionControl, Change::On, Change::On, Change::Keep},
    {&Form::actionCameraReset, Change::On, Change::On, Change::Keep},
    {&Form::actionOneGrab, Change::On, Change::On, Change::Off},
    {&Form::actionPlay, Change::On, Change::On, Change::Off},
    {&Form::actionStop, Change::On, Change::Off, Change::On},
    {&Form::actionSave, Change::On, Change::Keep, Change::On},
    {&Form::actionZoom100, Change::On, Change::Keep, Change::On},
    {&Form::actionZoomFIT, Change::On, Change::Keep, Change::On},
    {&Form::actionZoomIN, Change::On, Change::Keep, Change::On},
    {&Form::actionZoomOUT, Change::On, Change::Keep, Change::On},
    {&Form::actionDrawCenter, Change::On, Change::Keep, Change::On},
};

Change changeAt(const ActionRule &rule, int stage)
{
    if (stage == 0)
        return rule.openedOrClosed;
    return stage == 1 ? rule.justOpened : rule.streaming;
}

} // namespace

void applyActionRules(const Ui::MainWindow &form, bool on, int stage)
{
    for (const ActionRule &rule : actionRules) {
        const Change change = changeAt(rule, stage);
        if (change != Change::Keep)
            (form.*rule.action)->setEnabled(on == (change == Change::On));
    }
}
