#include "controls/QtDialogs.h"
#include <QApplication>
#include <QFileDialog>
#include <QInputDialog>
#include <QMessageBox>
#include <QPointer>

namespace td {
namespace {

QMessageBox::StandardButtons standardButtons(MsgButtons b)
{
    switch (b) {
        case MsgButtons::OkCancel:
            return QMessageBox::Ok | QMessageBox::Cancel;
        case MsgButtons::YesNo:
            return QMessageBox::Yes | QMessageBox::No;
        case MsgButtons::YesNoCancel:
            return QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel;
        case MsgButtons::RetryCancel:
            return QMessageBox::Retry | QMessageBox::Cancel;
        case MsgButtons::Ok:
            break;
    }
    return QMessageBox::Ok;
}

QMessageBox::Icon boxIcon(MsgIcon i)
{
    switch (i) {
        case MsgIcon::Information:
            return QMessageBox::Information;
        case MsgIcon::Critical:
            return QMessageBox::Critical;
        case MsgIcon::Question:
            return QMessageBox::Question;
        case MsgIcon::Exclamation:
            return QMessageBox::Warning;
        case MsgIcon::None:
            break;
    }
    return QMessageBox::NoIcon;
}

MsgAnswer answerOf(int button)
{
    switch (button) {
        case QMessageBox::Yes:
            return MsgAnswer::Yes;
        case QMessageBox::No:
            return MsgAnswer::No;
        case QMessageBox::Retry:
            return MsgAnswer::Retry;
        case QMessageBox::Cancel:
            return MsgAnswer::Cancel;
        default:
            return MsgAnswer::Ok;
    }
}

QPointer<QWidget>& owner()
{
    static QPointer<QWidget> w;
    return w;
}

QString titleOr(const QString& title)
{
    return title.isEmpty() ? AppTitle() : title;
}

}  // namespace

MsgAnswer QtDialogs::message(const QString& text, MsgButtons buttons, MsgIcon icon, const QString& title)
{
    QMessageBox box(boxIcon(icon), titleOr(title), text, standardButtons(buttons), DialogOwner());
    const int answer = box.exec();
    // Closing a question with the window button counts as its way out.
    if (answer == QMessageBox::NoButton || answer == QMessageBox::Escape)
        return buttons == MsgButtons::YesNo ? MsgAnswer::No : MsgAnswer::Cancel;
    return answerOf(answer);
}

std::optional<QString> QtDialogs::inputBox(const QString& prompt, const QString& title, const QString& def)
{
    bool ok = false;
    const QString text =
        QInputDialog::getText(DialogOwner(), titleOr(title), prompt, QLineEdit::Normal, def, &ok);
    if (!ok)
        return std::nullopt;
    return text;
}

QString QtDialogs::qtFilter(const QString& filter)
{
    const QStringList parts = filter.split(u'|');
    QStringList out;
    for (int i = 0; i + 1 < parts.size(); i += 2) {
        QString label = parts[i].trimmed();
        const qsizetype paren = label.indexOf(u'(');
        if (paren > 0)
            label = label.left(paren).trimmed();
        QStringList patterns = parts[i + 1].split(u';', Qt::SkipEmptyParts);
        for (QString& p : patterns) {
            p = p.trimmed();
            if (p == QLatin1String("*.*"))
                p = QStringLiteral("*");
        }
        out << label + QStringLiteral(" (") + patterns.join(u' ') + u')';
    }
    return out.join(QStringLiteral(";;"));
}

QStringList QtDialogs::openFiles(const OpenFileRequest& request)
{
    const QString filter = qtFilter(request.filter);
    if (request.multiple)
        return QFileDialog::getOpenFileNames(DialogOwner(), request.title, request.initialDir, filter);
    const QString one =
        QFileDialog::getOpenFileName(DialogOwner(), request.title, request.initialDir, filter);
    return one.isEmpty() ? QStringList() : QStringList{one};
}

QString QtDialogs::saveFile(const OpenFileRequest& request)
{
    return QFileDialog::getSaveFileName(DialogOwner(), request.title, request.initialDir,
                                        qtFilter(request.filter));
}

QString QtDialogs::pickFolder(const QString& title, const QString& startDir)
{
    return QFileDialog::getExistingDirectory(DialogOwner(), title, startDir);
}

void SetDialogOwner(QWidget* w)
{
    owner() = w;
}
QWidget* DialogOwner()
{
    return owner().data();
}

QString BrowseForFolder(QWidget* w, const QString& title)
{
    QWidget* previous = DialogOwner();
    if (w)
        SetDialogOwner(w);
    const QString path = Dialogs().pickFolder(title, QString());
    SetDialogOwner(previous);
    return path;
}

}  // namespace td
