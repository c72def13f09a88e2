#include "shell/AboutBox.h"
#include "shell/services/AppLog.h"
#include "shell/services/Dialogs.h"
#include "shell/services/Ini.h"
#include "shell/services/Translate.h"
#include <QDialogButtonBox>
#include <QLabel>
#include <QProcess>
#include <QPushButton>
#include <QVBoxLayout>

namespace td {

AboutBox::AboutBox(QWidget* parent) : QDialog(parent)
{
    setObjectName(QStringLiteral("frmAbout"));
    setWindowTitle(TranslateText(QStringLiteral("About")) + QStringLiteral(" - ") + AppTitle());
    auto* layout = new QVBoxLayout(this);
    auto* name = new QLabel(QStringLiteral("<h2>Tunedesk</h2>"), this);
    auto* version = new QLabel(TranslateText(QStringLiteral("Version")) + u' ' + AppVersion(), this);
    version->setObjectName(QStringLiteral("lblVersion"));
    auto* purpose =
        new QLabel(TranslateText(QStringLiteral("Management console of the karaoke songbook")), this);
    auto* links = new QLabel(
        TranslateText(QStringLiteral("Support")) +
            QStringLiteral(": <a href=\"mailto:support@tunedesk.example\">support@tunedesk.example</a>"),
        this);
    links->setOpenExternalLinks(true);
    for (QLabel* l : {name, version, purpose, links})
        layout->addWidget(l);

    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok, this);
    QPushButton* sysInfo =
        buttons->addButton(TranslateText(QStringLiteral("System Info ...")), QDialogButtonBox::ActionRole);
    sysInfo->setObjectName(QStringLiteral("cmdSysInfo"));
    connect(sysInfo, &QPushButton::clicked, this, [] {
        const QString tool = AppIniRead(QStringLiteral("SystemInfoCommand"), QStringLiteral("hardinfo"));
        QStringList args = QProcess::splitCommand(tool);
        const QString program = args.isEmpty() ? QString() : args.takeFirst();
        if (program.isEmpty() || !QProcess::startDetached(program, args))
            MsgInfo(TranslateText(QStringLiteral("The system information tool is not available.")) +
                    QStringLiteral(" <") + tool + u'>');
    });
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    layout->addWidget(buttons);
}

}  // namespace td
