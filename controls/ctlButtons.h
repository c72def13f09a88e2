#pragma once
#include "controls/ButtonFormat.h"
#include <QWidget>
#include <vector>

class QPushButton;

namespace td {

// A vertical stack of command buttons from the format file. A button carries a class word; the
// owner reads it with GetButton and executes it.
class ctlButtons : public QWidget {
    Q_OBJECT
public:
    explicit ctlButtons(QWidget* parent = nullptr);

    // A new bar's file is the text "0" until the owner names one.
    QString IniFile() const { return iniFile_; }
    void setIniFile(const QString& file) { iniFile_ = file; }
    long BackColor() const { return backColor_; }
    void setBackColor(long oleColor);

    bool LoadButtonFormat();
    // Keys are exact lower-case words; an index outside the table throws AppError.
    QString GetButton(int index, const QString& keyName) const;
    bool SetButton(int index, const QString& keyName, const QString& value);
    int GetButtonIndex(const QString& cls) const;
    int GetButtonCount() const { return int(items_.size()); }
    QPushButton* cmdButton(int index) const { return buttons_.at(std::size_t(index)); }

signals:
    void Click(int index);
    void KeyDown(int index, int keyCode, int shift);
    void KeyPress(int index, int keyAscii);
    void KeyUp(int index, int keyCode, int shift);
    void MouseDown(int index, int button, int shift, int x, int y);  // declared, never raised
    void MouseMove(int index, int button, int shift, int x, int y);
    void MouseUp(int index, int button, int shift, int x, int y);
    void Resize();

protected:
    void resizeEvent(QResizeEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QPushButton* makeButton(int index);
    void applyColor(QPushButton* button, long oleColor);
    void layoutButtons();
    const ButtonItem& item(int index) const;

    QString iniFile_ = QStringLiteral("0");
    long backColor_ = kSysButtonFace;
    std::vector<ButtonItem> items_;
    std::vector<QPushButton*> buttons_;  // element 0: the template that gives the height
};

}  // namespace td
