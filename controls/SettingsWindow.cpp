#include "controls/SettingsWindow.h"
#include "regions/WindowText.h"
#include <QCloseEvent>
#include <QHBoxLayout>
#include <QMdiSubWindow>
#include <QPushButton>
#include <QVBoxLayout>

namespace td {

namespace {

QPushButton* makeButton(QWidget* parent, const char* name, const char* caption)
{
    auto* b = new QPushButton(QString::fromUtf8(caption), parent);
    b->setObjectName(QString::fromLatin1(name));
    return b;
}

}  // namespace

SettingsWindow::SettingsWindow(WindowFrame& frame, const QString& name, const QString& caption,
                               QWidget* parent)
    : QWidget(parent), frame_(frame)
{
    setObjectName(name);
    setWindowTitle(caption);
    auto* layout = new QVBoxLayout(this);
    // The texts decide the size: a longer language makes the window wider, never clips it.
    layout->setSizeConstraint(QLayout::SetFixedSize);
    body_ = new QVBoxLayout;
    layout->addLayout(body_);
    buttons_ = new QHBoxLayout;
    buttons_->addStretch(1);
    cmdOk_ = makeButton(this, "cmdOk", "Ok (&O)");
    cmdCancel_ = makeButton(this, "cmdCancel", "Cancel (&C)");
    cmdApply_ = makeButton(this, "cmdApply", "Apply (&A)");
    for (QPushButton* b : {cmdOk_, cmdCancel_, cmdApply_})
        buttons_->addWidget(b);
    layout->addSpacing(6);
    layout->addLayout(buttons_);
    cmdApply_->setEnabled(false);
    connect(cmdOk_, &QPushButton::clicked, this, [this] { OkClicked(); });
    connect(cmdCancel_, &QPushButton::clicked, this, [this] { CloseWindow(); });
    connect(cmdApply_, &QPushButton::clicked, this, [this] { Apply(); });
}

void SettingsWindow::LoadWindowText()
{
    ExportWindowText(this);
    ApplyWindowText(this);
}

void SettingsWindow::Changed()
{
    cmdApply_->setEnabled(true);
}

void SettingsWindow::OkClicked()
{
    Apply();
    CloseWindow();
}

void SettingsWindow::CloseWindow()
{
    if (auto* sub = qobject_cast<QMdiSubWindow*>(parentWidget()))
        sub->close();
    else
        close();
}

void SettingsWindow::closeEvent(QCloseEvent* event)
{
    QWidget::closeEvent(event);
    frame_.windowClosed();
}

}  // namespace td
