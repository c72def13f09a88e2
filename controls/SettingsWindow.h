#pragma once
#include "controls/WindowFrame.h"
#include <QWidget>

class QBoxLayout;
class QHBoxLayout;
class QPushButton;

namespace td {

// A small window that edits a few settings and writes them on Apply: the regions, the options. Its
// controls stand above a row of "Ok (&O)", "Cancel (&C)" and "Apply (&A)"; Ok applies and closes in
// every case, Cancel closes and drops what was changed. Apply is disabled until something changes.
// The window keeps the size its texts need, also after a change of language.
class SettingsWindow : public QWidget {
    Q_OBJECT
public:
    QPushButton* cmdOk() const { return cmdOk_; }
    QPushButton* cmdCancel() const { return cmdCancel_; }
    QPushButton* cmdApply() const { return cmdApply_; }

protected:
    SettingsWindow(WindowFrame& frame, const QString& name, const QString& caption, QWidget* parent);

    // The window's own controls go here, above the buttons.
    QBoxLayout* body() const { return body_; }
    // The button row, for a button of the window's own at its left.
    QHBoxLayout* buttonRow() const { return buttons_; }
    WindowFrame& frame() const { return frame_; }

    // Called by the constructor of the window once its controls stand: the designed texts are kept and
    // shown in the interface language.
    void LoadWindowText();
    // Something has changed: Apply becomes possible.
    void Changed();
    // Closes the window, also when it lives inside the frame.
    void CloseWindow();

    virtual void Apply() = 0;
    virtual void OkClicked();

    void closeEvent(QCloseEvent* event) override;

private:
    WindowFrame& frame_;
    QBoxLayout* body_ = nullptr;
    QHBoxLayout* buttons_ = nullptr;
    QPushButton* cmdOk_ = nullptr;
    QPushButton* cmdCancel_ = nullptr;
    QPushButton* cmdApply_ = nullptr;
};

}  // namespace td
