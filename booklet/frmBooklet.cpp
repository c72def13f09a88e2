#include "booklet/frmBooklet.h"
#include "booklet/Booklet.h"
#include "checks/WindowJob.h"
#include "controls/NamedWidgets.h"
#include "regions/WindowText.h"
#include "shell/services/AppError.h"
#include "shell/services/AppPaths.h"
#include "shell/services/Dialogs.h"
#include "shell/services/Translate.h"
#include "songdb/Connection.h"
#include "songdb/SongSession.h"
#include "songdb/SongStatements.h"
#include <QCloseEvent>
#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPrintDialog>
#include <QPrintPreviewWidget>
#include <QPrinter>
#include <QPushButton>
#include <QSpinBox>
#include <memory>

namespace td {

namespace {

frmBooklet::Preview& previewHook()
{
    static frmBooklet::Preview hook;
    return hook;
}

constexpr BookletGroup kGroups[] = {BookletGroup::Singer, BookletGroup::Length, BookletGroup::Language};

}  // namespace

frmBooklet::frmBooklet(WindowFrame& frame, QWidget* parent) : QWidget(parent), frame_(frame)
{
    build();
    load();
}

frmBooklet::~frmBooklet() = default;

void frmBooklet::SetPreview(Preview preview)
{
    previewHook() = std::move(preview);
}

void frmBooklet::build()
{
    setObjectName(QStringLiteral("frmBooklet"));
    setWindowTitle(QStringLiteral("Song booklet ..."));
    auto* grid = new QGridLayout(this);

    auto* fraBooklet = new QGroupBox(QStringLiteral("Booklet for the guests"), this);
    fraBooklet->setObjectName(QStringLiteral("fraBooklet"));
    auto* form = new QGridLayout(fraBooklet);
    cboGroup_ = new QComboBox(fraBooklet);
    cboGroup_->setObjectName(QStringLiteral("cboGroup"));
    spnColumns_ = new QSpinBox(fraBooklet);
    spnColumns_->setObjectName(QStringLiteral("spnColumns"));
    spnColumns_->setRange(2, 4);
    cboPaper_ = new QComboBox(fraBooklet);
    cboPaper_->setObjectName(QStringLiteral("cboPaper"));
    cboRegion_ = new QComboBox(fraBooklet);
    cboRegion_->setObjectName(QStringLiteral("cboRegion"));
    txtVenue_ = new QLineEdit(fraBooklet);
    txtVenue_->setObjectName(QStringLiteral("txtVenue"));
    txtVenue_->setMinimumWidth(200);
    const std::pair<QLabel*, QWidget*> rows[] = {
        {NamedWidget<QLabel>("lblGroup", "Group songs by", fraBooklet), cboGroup_},
        {NamedWidget<QLabel>("lblColumns", "Columns", fraBooklet), spnColumns_},
        {NamedWidget<QLabel>("lblPaper", "Paper", fraBooklet), cboPaper_},
        {NamedWidget<QLabel>("lblRegion", "Region", fraBooklet), cboRegion_},
        {NamedWidget<QLabel>("lblVenue", "Venue name", fraBooklet), txtVenue_},
    };
    int row = 0;
    for (const auto& [caption, field] : rows) {
        form->addWidget(caption, row, 0);
        form->addWidget(field, row++, 1);
    }
    form->setColumnStretch(1, 1);
    grid->addWidget(fraBooklet, 0, 0);

    lblRequired_ = NamedWidget<QLabel>(
        "lblBookletRequired",
        "Prints on any printer of the system or saves a PDF; the date is printed on every page", this);
    lblRequired_->setWordWrap(true);
    grid->addWidget(lblRequired_, 1, 0);
    grid->setRowStretch(2, 1);
    // The choices keep their width; the pages take the rest of the window.
    fraBooklet->setMaximumWidth(420);
    lblRequired_->setMaximumWidth(420);
    printer_ = std::make_unique<QPrinter>(QPrinter::HighResolution);
    printer_->setDocName(QStringLiteral("SongBooklet"));
    ApplyBookletPage(*printer_, shown_.paper);
    preview_ = new QPrintPreviewWidget(printer_.get(), this);
    preview_->setObjectName(QStringLiteral("preview"));
    preview_->setMinimumSize(360, 300);
    preview_->fitInView();
    connect(preview_, &QPrintPreviewWidget::paintRequested, this,
            [this](QPrinter* p) { PaintBooklet(*p, shown_, sections_); });
    grid->addWidget(preview_, 0, 1, 3, 1);
    grid->setColumnStretch(1, 1);

    auto* buttons = new QHBoxLayout;
    cmdPreview_ = NamedWidget<QPushButton>("cmdPreview", "Preview (&P)", this);
    cmdPrint_ = NamedWidget<QPushButton>("cmdPrint", "Print ... (&R)", this);
    cmdPdf_ = NamedWidget<QPushButton>("cmdPdf", "Save PDF ... (&F)", this);
    cmdSave_ = NamedWidget<QPushButton>("cmdSave", "Save as default (&S)", this);
    cmdClose_ = NamedWidget<QPushButton>("cmdClose", "Close (&C)", this);
    buttons->addStretch(1);
    for (QPushButton* b : {cmdPreview_, cmdPrint_, cmdPdf_, cmdSave_, cmdClose_})
        buttons->addWidget(b);
    grid->addLayout(buttons, 3, 0, 1, 2);

    connect(cmdPreview_, &QPushButton::clicked, this, [this] { PreviewBooklet(); });
    connect(cmdPrint_, &QPushButton::clicked, this, [this] { PrintBooklet(); });
    connect(cmdPdf_, &QPushButton::clicked, this, [this] { SavePdf(); });
    connect(cmdSave_, &QPushButton::clicked, this, [this] { SaveDefaults(); });
    connect(cmdClose_, &QPushButton::clicked, this, [this] { CloseWorkingWindow(this); });
    ExportWindowText(this);
    ApplyWindowText(this);
}

void frmBooklet::load()
{
    cboGroup_->addItem(TranslateText(QStringLiteral("Singer")));
    cboGroup_->addItem(TranslateText(QStringLiteral("Title length")));
    cboGroup_->addItem(TranslateText(QStringLiteral("Language")));
    cboPaper_->addItems({QStringLiteral("A4"), QStringLiteral("Letter")});
    cboRegion_->addItem(TranslateText(QStringLiteral("All available regions")), QString());
    std::unique_ptr<Recordset> rs;
    if (SongDatabaseOpen() && SongOpenRecordset(QStringLiteral("select name from region order by name"), rs))
        for (qsizetype r = 0; r < rs->RecordCount(); ++r)
            if (!rs->text(r, 0).isEmpty())
                cboRegion_->addItem(rs->text(r, 0), rs->text(r, 0));

    const BookletOptions o = LoadBookletOptions();
    cboGroup_->setCurrentIndex(
        int(std::find(std::begin(kGroups), std::end(kGroups), o.group) - std::begin(kGroups)));
    spnColumns_->setValue(o.columns);
    cboPaper_->setCurrentText(o.paper);
    int region = cboRegion_->findData(o.region);
    if (region < 0) {  // a region no longer available stays chosen
        cboRegion_->addItem(o.region, o.region);
        region = cboRegion_->count() - 1;
    }
    cboRegion_->setCurrentIndex(region);
    txtVenue_->setText(o.venue);
}

BookletOptions frmBooklet::Options() const
{
    BookletOptions o;
    o.group = kGroups[std::clamp(cboGroup_->currentIndex(), 0, 2)];
    o.columns = spnColumns_->value();
    o.paper = cboPaper_->currentText();
    o.region = cboRegion_->currentData().toString();
    o.venue = txtVenue_->text().trimmed();
    return o;
}

void frmBooklet::SaveDefaults()
{
    SaveBookletOptions(Options());
}

void frmBooklet::PreviewBooklet()
{
    if (!SongDatabaseOpen()) {
        MsgInfo(TranslateText(QStringLiteral("Please login first")));
        return;
    }
    const BookletOptions options = Options();
    const QString database = SongDatabaseFile();
    auto sections = std::make_shared<QList<BookletSection>>();
    auto read = std::make_shared<bool>(false);
    RunWindowJob(this, [options, database, sections, read](JobHost& host) {
        try {
            auto db = OpenConnection(database);
            *sections = ReadBookletSections(*db, options, host);
            *read = true;
        } catch (const std::exception& e) {
            host.Fail(QStringLiteral("Read songs failed! Err=") + ErrorText(e));
        }
    });
    if (!*read)
        return;
    shown_ = options;
    sections_ = std::move(*sections);
    read_ = true;
    if (previewHook()) {
        previewHook()(this, shown_, sections_);
        return;
    }
    ApplyBookletPage(*printer_, shown_.paper);
    preview_->updatePreview();
}

void frmBooklet::PrintBooklet()
{
    if (!read_)
        PreviewBooklet();
    if (!read_)
        return;
    QPrintDialog dialog(printer_.get(), this);
    dialog.setWindowTitle(TranslateText(QStringLiteral("Print")));
    if (dialog.exec() == QDialog::Accepted)
        PaintBooklet(*printer_, shown_, sections_);
}

void frmBooklet::SavePdf()
{
    if (!SongDatabaseOpen()) {
        MsgInfo(TranslateText(QStringLiteral("Please login first")));
        return;
    }
    OpenFileRequest save;
    save.title = TranslateText(QStringLiteral("Save booklet as"));
    save.initialDir = AppPath();
    save.filter = QStringLiteral("PDF document(*.pdf)|*.pdf");
    QString target = Dialogs().saveFile(save);
    if (target.isEmpty())
        return;
    if (!target.endsWith(QStringLiteral(".pdf"), Qt::CaseInsensitive))
        target += QStringLiteral(".pdf");
    const BookletOptions options = Options();
    const QString database = SongDatabaseFile();
    RunWindowJob(this, [options, database, target](JobHost& host) {
        try {
            auto db = OpenConnection(database);
            MakeBookletPdf(*db, options, target, host);
        } catch (const std::exception& e) {
            host.Fail(QStringLiteral("Read songs failed! Err=") + ErrorText(e));
        }
    });
}

void frmBooklet::closeEvent(QCloseEvent* event)
{
    QWidget::closeEvent(event);
    frame_.windowClosed();
}

}  // namespace td
