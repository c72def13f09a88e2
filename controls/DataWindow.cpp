#include "controls/DataWindow.h"
#include "controls/StatusStrip.h"
#include "controls/ctlButtons.h"
#include "controls/ctlDataFields.h"
#include "controls/ctlDataView.h"
#include "regions/WindowText.h"
#include "shell/services/AppPaths.h"
#include <QCloseEvent>
#include <QPushButton>

namespace td {

DataWindow::DataWindow(WindowFrame& frame, const QString& listName, QWidget* parent)
    : QWidget(parent), frame_(frame), listName_(listName)
{
}

void DataWindow::BindParts(const Parts& parts)
{
    parts_ = parts;
    if (parts_.buttons)
        connect(parts_.buttons, &ctlButtons::Click, this,
                [this](int index) { ExecuteCommand(parts_.buttons->GetButton(index, QStringLiteral("class"))); });
    if (parts_.view)
        connect(parts_.view, &ctlDataView::StateChanged, this, &DataWindow::viewStateChanged);
    if (!parts_.menu.isEmpty())
        frame_.setOwnMenu(parts_.menu);
}

void DataWindow::LoadWindowText()
{
    ExportWindowText(this);
    ApplyWindowText(this);
}

void DataWindow::LoadFormats()
{
    formatFile_ = AppPath() + QStringLiteral("/List") + listName_ + QStringLiteral(".ini");
    if (parts_.view) {
        parts_.view->setIniFile(formatFile_);
        parts_.view->LoadViewFormat();
    }
    if (parts_.buttons) {
        parts_.buttons->setIniFile(formatFile_);
        parts_.buttons->LoadButtonFormat();
    }
    if (parts_.fields) {
        parts_.fields->setIniFile(formatFile_);
        parts_.fields->LoadFieldFormat();
    }
}

// A count of -1 is no news: the pane keeps what it shows. The message always replaces the log.
void DataWindow::viewStateChanged(int total, int selected, const QString& message)
{
    if (total >= 0)
        SetPane(StatusPane::Total, QString::number(total) + parts_.countWord);
    if (selected >= 0)
        SetPane(StatusPane::Selected, QString::number(selected) + QStringLiteral(" selected"));
    SetPane(StatusPane::Log, message);
}

void DataWindow::StopListLoading()
{
    if (!parts_.view)
        return;
    QPushButton* cancel = parts_.view->statusStrip()->cancelButton();
    if (cancel->isVisibleTo(parts_.view->statusStrip()) && cancel->isEnabled())
        cancel->click();
}

void DataWindow::closeEvent(QCloseEvent* event)
{
    event->accept();
    if (closed_)
        return;
    closed_ = true;
    WindowClosing();
    StopListLoading();
    // The operator's column order and widths are kept for the next opening.
    if (parts_.view)
        parts_.view->SaveViewFormat();
    frame_.windowClosed();
}

void DataWindow::showEvent(QShowEvent* event)
{
    closed_ = false;
    QWidget::showEvent(event);
}

}  // namespace td
