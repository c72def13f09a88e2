#include "controls/DataWindow.h"
#include "controls/StatusStrip.h"
#include "controls/ctlButtons.h"
#include "controls/ctlDataFields.h"
#include "controls/ctlDataView.h"
#include "regions/WindowText.h"
#include "shell/services/AppError.h"
#include "shell/services/AppPaths.h"
#include "shell/services/Dialogs.h"
#include "songdb/BackgroundRead.h"
#include "songdb/SongSession.h"
#include "songdb/SongStatements.h"
#include <QCloseEvent>
#include <QPushButton>
#include <utility>

namespace td {

DataWindow::DataWindow(WindowFrame& frame, const QString& listName, QWidget* parent)
    : QWidget(parent), frame_(frame), listName_(listName), listRead_(new BackgroundRead(this))
{
    connect(listRead_, &BackgroundRead::Finished, this, &DataWindow::listReadFinished);
}

bool DataWindow::LoadList(const QString& sql)
{
    StopListLoading();
    if (!SongConnection()) {
        ListReadFailed(sql, QStringLiteral("Operation is not allowed when the object is closed."));
        return false;
    }
    startRead(sql);
    return true;
}

bool DataWindow::RefreshList()
{
    if (!rsMain_ || !rsMain_->IsOpen() || ListLoading() || !parts_.view)
        return false;
    if (!SongConnection())
        return parts_.view->RefreshViewData();  // fails there with its own message
    refreshing_ = true;
    startRead(rsMain_->Source());
    return true;
}

void DataWindow::startRead(const QString& sql)
{
    if (!listCursor_)
        listCursor_.emplace();
    listRead_->start(*SongConnection(), sql);
}

void DataWindow::listReadFinished(bool ok)
{
    listCursor_.reset();
    const bool refreshing = std::exchange(refreshing_, false);
    if (!ok) {
        if (refreshing)
            MsgError(QStringLiteral("Load data failed! ") + ErrSuffix(listRead_->error()));
        else
            ListReadFailed(listRead_->statement(), listRead_->error());
        return;
    }
    if (!refreshing) {
        parts_.view->ClearViewData();
        if (parts_.fields)
            parts_.fields->LoadFieldDatas({});
    }
    if (rsMain_)
        rsMain_->Close();
    rsMain_ = listRead_->take();
    parts_.view->setMrsMain(rsMain_);
    if (parts_.fields)
        parts_.fields->setMrsMain(rsMain_);
    if (refreshing)
        parts_.view->BeginRefreshViewData();
    else
        parts_.view->BeginLoadViewData();
}

void DataWindow::ListReadFailed(const QString& sql, const QString& description)
{
    ReportStatementFailure("SongOpenRecordset", sql, description);
}

bool DataWindow::ListLoading() const
{
    return listRead_->running() || (parts_.view && parts_.view->Loading());
}

void DataWindow::StopListLoading()
{
    listRead_->cancel();
    refreshing_ = false;
    listCursor_.reset();
    if (parts_.view)
        parts_.view->StopLoading();
}

void DataWindow::BindParts(const Parts& parts)
{
    parts_ = parts;
    if (parts_.buttons)
        connect(parts_.buttons, &ctlButtons::Click, this, [this](int index) {
            ExecuteCommand(parts_.buttons->GetButton(index, QStringLiteral("class")));
        });
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
