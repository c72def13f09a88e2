#include "checks/frmPrint.h"
#include "checks/SongListPages.h"
#include "checks/SongListPrint.h"
#include "checks/WindowJob.h"
#include "controls/NamedWidgets.h"
#include "regions/WindowText.h"
#include "shell/services/AppError.h"
#include "shell/services/AppPaths.h"
#include "shell/services/Dialogs.h"
#include "shell/services/FilePaths.h"
#include "shell/services/Translate.h"
#include "songdb/Connection.h"
#include "songdb/SongSession.h"
#include "songdb/SongStatements.h"
#include <QCloseEvent>
#include <QComboBox>
#include <QFile>
#include <QFileInfo>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QListWidget>
#include <QPrintPreviewDialog>
#include <QPrinter>
#include <QPushButton>

namespace td {

namespace {

frmPrint::Preview& previewHook()
{
    static frmPrint::Preview hook;
    return hook;
}

void showPrintPreview(QWidget* owner, const SongList& list, const QStringList& fields)
{
    QPrinter printer(QPrinter::HighResolution);
    ApplyPageLayout(printer, list.layout);
    printer.setDocName(QStringLiteral("SongList"));
    QPrintPreviewDialog dialog(&printer, owner);
    dialog.setWindowTitle(TranslateText(QStringLiteral("Print preview")));
    QObject::connect(&dialog, &QPrintPreviewDialog::paintRequested, &dialog, [&](QPrinter* p) {
        PaintSongList(*p, list.layout, list.captions, list.rows, fields);
    });
    dialog.resize(900, 700);
    dialog.exec();
}

QGroupBox* frameWithGrid(const char* name, const char* caption, QWidget* parent)
{
    auto* box = NamedWidget<QGroupBox>(name, caption, parent);
    new QGridLayout(box);
    return box;
}

}  // namespace

frmPrint::frmPrint(WindowFrame& frame, QWidget* parent) : QWidget(parent), frame_(frame)
{
    build();
    load();
}

frmPrint::~frmPrint() = default;

void frmPrint::SetPreview(Preview preview)
{
    previewHook() = std::move(preview);
}

void frmPrint::build()
{
    setObjectName(QStringLiteral("frmPrint"));
    setWindowTitle(QStringLiteral("Songbook printing wizard ..."));
    auto* grid = new QGridLayout(this);

    QGroupBox* fraSelect = frameWithGrid("fraSelect", "Selected fields to be printed", this);
    lstSelect_ = new QListWidget(fraSelect);
    lstSelect_->setObjectName(QStringLiteral("lstSelect"));
    lstSelect_->setSelectionMode(QAbstractItemView::MultiSelection);
    lstSelect_->setMinimumWidth(170);
    static_cast<QGridLayout*>(fraSelect->layout())->addWidget(lstSelect_, 0, 0);
    grid->addWidget(fraSelect, 0, 0, 3, 1);

    QGroupBox* fraWhere = frameWithGrid("fraWhere", "Select songs to be printed", this);
    auto* where = static_cast<QGridLayout*>(fraWhere->layout());
    where->addWidget(NamedWidget<QLabel>("lblField", "Data Field", fraWhere), 0, 0);
    where->addWidget(NamedWidget<QLabel>("lblCompare", "Compare", fraWhere), 0, 1);
    where->addWidget(NamedWidget<QLabel>("lblValue", "Value", fraWhere), 0, 2);
    for (int i = 0; i < 3; ++i) {
        cboField_[i] = new QComboBox(fraWhere);
        cboField_[i]->setObjectName(QStringLiteral("cboField%1").arg(i));
        cboCompare_[i] = new QComboBox(fraWhere);
        cboCompare_[i]->setObjectName(QStringLiteral("cboCompare%1").arg(i));
        cboValue_[i] = new QComboBox(fraWhere);
        cboValue_[i]->setObjectName(QStringLiteral("cboValue%1").arg(i));
        cboValue_[i]->setEditable(true);
        cboValue_[i]->setMinimumWidth(160);
        cboValue_[i]->setInsertPolicy(QComboBox::NoInsert);
        where->addWidget(cboField_[i], i + 1, 0);
        where->addWidget(cboCompare_[i], i + 1, 1);
        where->addWidget(cboValue_[i], i + 1, 2);
        connect(cboField_[i], &QComboBox::activated, this, [this, i] { FieldClick(i); });
    }
    where->setColumnStretch(2, 1);
    grid->addWidget(fraWhere, 0, 1);

    QGroupBox* fraOrder = frameWithGrid("fraOrder", "Select fields to be ordered by", this);
    auto* order = static_cast<QGridLayout*>(fraOrder->layout());
    const char* orderNames[3] = {"1st order", "2nd order", "3rd order"};
    for (int i = 0; i < 3; ++i) {
        const QByteArray name = QStringLiteral("lblOrder%1").arg(i).toLatin1();
        order->addWidget(NamedWidget<QLabel>(name.constData(), orderNames[i], fraOrder), 0, i);
        cboOrder_[i] = new QComboBox(fraOrder);
        cboOrder_[i]->setObjectName(QStringLiteral("cboOrder%1").arg(i));
        order->addWidget(cboOrder_[i], 1, i);
    }
    grid->addWidget(fraOrder, 1, 1);

    lblRequired_ = NamedWidget<QLabel>(
        "lblRequired",
        "Needs a printer of the system or prints to PDF; the list is also saved as an .xlsx workbook", this);
    lblRequired_->setWordWrap(true);
    // The list takes the height the window gives; the conditions and orders keep theirs.
    grid->setRowStretch(2, 1);
    grid->addWidget(lblRequired_, 3, 0, 1, 2);

    auto* buttons = new QHBoxLayout;
    cmdPreview_ = new QPushButton(QStringLiteral("Preview (&P)"), this);
    cmdPreview_->setObjectName(QStringLiteral("cmdPreview"));
    cmdSave_ = new QPushButton(QStringLiteral("Save as default (&S)"), this);
    cmdSave_->setObjectName(QStringLiteral("cmdSave"));
    cmdClose_ = new QPushButton(QStringLiteral("Close (&C)"), this);
    cmdClose_->setObjectName(QStringLiteral("cmdClose"));
    buttons->addStretch(1);
    buttons->addWidget(cmdPreview_);
    buttons->addWidget(cmdSave_);
    buttons->addWidget(cmdClose_);
    grid->addLayout(buttons, 4, 0, 1, 2);
    grid->setColumnStretch(1, 1);

    connect(cmdPreview_, &QPushButton::clicked, this, [this] { PreviewSonglist(); });
    connect(cmdSave_, &QPushButton::clicked, this, [this] { SaveDefaults(); });
    connect(cmdClose_, &QPushButton::clicked, this, [this] { CloseWorkingWindow(this); });
    ExportWindowText(this);
    ApplyWindowText(this);
}

void frmPrint::load()
{
    fields_ = PrintableFields(AppPath() + QStringLiteral("/ListSong.ini"));
    for (int i = 0; i < 3; ++i) {
        cboField_[i]->addItem(QString());
        cboOrder_[i]->addItem(QString());
        cboCompare_[i]->addItems(PrintCompares());
    }
    for (const PrintField& f : fields_) {
        lstSelect_->addItem(f.caption);
        for (int i = 0; i < 3; ++i) {
            cboField_[i]->addItem(f.caption);
            cboOrder_[i]->addItem(f.caption);
        }
    }
    if (!SongOpenRecordset(QStringLiteral("select * from song where index=1"), types_))
        MsgInfo(QStringLiteral("Open song table failed, you might not be able to print songbook now!"));
    const PrintSettings s = LoadPrintSettings(fields_);
    for (qsizetype f = 0; f < fields_.size(); ++f)
        lstSelect_->item(int(f))->setSelected(s.selected.contains(fields_[f].field));
    for (int i = 0; i < 3; ++i) {
        if (s.field[i] > 0 && s.field[i] < cboField_[i]->count()) {
            cboField_[i]->setCurrentIndex(s.field[i]);
            FieldClick(i);
        }
        if (s.compare[i] > 0 && s.compare[i] < cboCompare_[i]->count())
            cboCompare_[i]->setCurrentIndex(s.compare[i]);
        cboValue_[i]->setCurrentText(s.value[i]);
        if (s.order[i] > 0 && s.order[i] < cboOrder_[i]->count())
            cboOrder_[i]->setCurrentIndex(s.order[i]);
    }
}

QString frmPrint::fieldOf(const QComboBox* box) const
{
    const int i = box->currentIndex();
    return i >= 1 && i <= fields_.size() ? fields_[i - 1].field : QString();
}

void frmPrint::FieldClick(int i)
{
    cboValue_[i]->clear();
    const QString field = fieldOf(cboField_[i]);
    if (!OffersValueList(field))
        return;
    std::unique_ptr<Recordset> rs;
    if (!SongOpenRecordset(QStringLiteral("select distinct ") + field + QStringLiteral(" from song order by ") + field,
                           rs)) {
        MsgError(QStringLiteral("Get values to combo failed! ") + ErrSuffix(SongLastError()));
        return;
    }
    QStringList values;
    for (qsizetype r = 0; r < rs->RecordCount(); ++r)
        if (!rs->isNull(r, 0))
            values << rs->text(r, 0);
    cboValue_[i]->addItems(values);
    cboValue_[i]->setCurrentIndex(-1);
}

PrintChoice frmPrint::choice() const
{
    PrintChoice c;
    for (int f = 0; f < lstSelect_->count() && f < fields_.size(); ++f)
        if (lstSelect_->item(f)->isSelected())
            c.fields << fields_[f].field;
    for (int i = 0; i < 3; ++i) {
        c.conditions.append({fieldOf(cboField_[i]), cboCompare_[i]->currentText(), cboValue_[i]->currentText()});
        c.orders << fieldOf(cboOrder_[i]);
    }
    return c;
}

QString frmPrint::Statement() const
{
    Recordset* rs = types_.get();
    return PrintStatement(choice(), [rs](const QString& field) {
        const int c = rs ? rs->FieldIndex(field) : -1;
        return c < 0 ? 0 : rs->Column(c).type;
    });
}

void frmPrint::SaveDefaults()
{
    PrintSettings s;
    s.selected = choice().fields;
    for (int i = 0; i < 3; ++i) {
        s.field[i] = cboField_[i]->currentIndex();
        s.compare[i] = cboCompare_[i]->currentIndex();
        s.value[i] = cboValue_[i]->currentText();
        s.order[i] = cboOrder_[i]->currentIndex();
    }
    SavePrintSettings(fields_, s);
}

void frmPrint::PreviewSonglist()
{
    if (!SongDatabaseOpen()) {
        MsgInfo(TranslateText(QStringLiteral("Please login first")));
        return;
    }
    SongListRequest request;
    request.choice = choice();
    for (const QString& f : request.choice.fields)
        for (const PrintField& p : fields_)
            if (p.field == f) {
                request.captions << p.caption;
                break;
            }
    request.templateFile = AppPath() + QStringLiteral("/PrintTemplate.ini");
    request.workbook = AppPath() + QStringLiteral("/SongList.xlsx");
    const QString database = SongDatabaseFile();
    auto list = std::make_shared<SongList>();
    RunWindowJob(this, [request, database, list](JobHost& host) {
        try {
            auto db = OpenConnection(database);
            *list = MakeSongList(*db, request, host);
        } catch (const std::exception& e) {
            host.Fail(QStringLiteral("PriviewSonglist failed! Err=") + ErrorText(e));
        }
    });
    if (!list->written)
        return;
    if (previewHook())
        previewHook()(this, *list, request.choice.fields);
    else
        showPrintPreview(this, *list, request.choice.fields);
    OpenFileRequest save;
    save.title = TranslateText(QStringLiteral("Save song list as"));
    save.initialDir = AppPath();
    save.filter = QStringLiteral("Excel workbook(*.xlsx)|*.xlsx");
    const QString target = Dialogs().saveFile(save);
    if (target.isEmpty() || QFileInfo(target).absoluteFilePath() == QFileInfo(request.workbook).absoluteFilePath())
        return;
    QFile::remove(target);
    if (!QFile::copy(request.workbook, target))
        MsgError(QStringLiteral("Can't save file - <") + target + u'>');
}

void frmPrint::closeEvent(QCloseEvent* event)
{
    if (types_)
        types_->Close();
    QWidget::closeEvent(event);
    frame_.windowClosed();
}

}  // namespace td
