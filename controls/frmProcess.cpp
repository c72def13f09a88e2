#include "controls/frmProcess.h"
#include "regions/WindowText.h"
#include <QLabel>
#include <QPointer>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>
#include <cmath>

namespace td {

namespace {
QPointer<frmProcess>& sharedWindow()
{
    static QPointer<frmProcess> window;
    return window;
}
constexpr int kBarSteps = 10000;
}  // namespace

QString CounterNumber(double value)
{
    if (std::floor(value) == value && std::fabs(value) < 1e15)
        return QString::number(qint64(value));
    return QString::number(value, 'g', 15);
}

frmProcess& frmProcess::Instance()
{
    if (!sharedWindow())
        sharedWindow() = new frmProcess;
    return *sharedWindow();
}

frmProcess::frmProcess(QWidget* parent) : QDialog(parent)
{
    setObjectName(QStringLiteral("frmProcess"));
    setWindowTitle(QStringLiteral("Processing ..."));
    setAttribute(Qt::WA_DeleteOnClose, false);
    lblHint_ = new QLabel(this);
    lblHint_->setObjectName(QStringLiteral("lblHint"));
    lblHint_->setWordWrap(true);
    pbrProcess_ = new QProgressBar(this);
    pbrProcess_->setObjectName(QStringLiteral("pbrProcess"));
    pbrProcess_->setRange(0, kBarSteps);
    pbrProcess_->setTextVisible(false);
    cmdCancel_ = new QPushButton(QStringLiteral("Cancel"), this);
    cmdCancel_->setObjectName(QStringLiteral("cmdCancel"));
    connect(cmdCancel_, &QPushButton::clicked, this, [this] { canceled_ = true; });
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(lblHint_);
    layout->addWidget(pbrProcess_);
    layout->addWidget(cmdCancel_, 0, Qt::AlignRight);
    resize(420, sizeHint().height());
    ExportWindowText(this);
    ApplyWindowText(this);
}

QString frmProcess::HintText() const
{
    return lblHint_->text();
}

void ProgressCount::step(qint64 to)
{
    if (to != 0) {
        if (max < double(to))
            max = double(to);
        value = double(to);
    } else {
        if (value >= max)
            max = value + 1;
        value += 1;
    }
}

void frmProcess::showBar()
{
    const double span = count_.max;
    pbrProcess_->setValue(span > 0 ? int(std::lround(count_.value / span * kBarSteps)) : 0);
}

void frmProcess::StartProcess(const QString& psCaption, const QString& psHint, qint64 plStart, qint64 plMax,
                              bool pbCanCancel)
{
    canceled_ = false;
    hint_ = psHint;
    if (!psCaption.isEmpty())
        setWindowTitle(psCaption);
    // A maximum of 100 is a percentage: no counter until the first step.
    lblHint_->setText(plMax == 100 ? psHint
                                   : psHint + QStringLiteral(" 0 of ") + CounterNumber(double(plMax)) +
                                         QStringLiteral(" done!"));
    count_ = ProgressCount{double(plStart), double(plMax)};
    showBar();
    cmdCancel_->setEnabled(pbCanCancel);
    show();
}

void frmProcess::Processing(qint64 plValue)
{
    ProgressCount count = count_;
    count.step(plValue);
    ShowCount(count);
}

void frmProcess::ShowCount(const ProgressCount& count)
{
    count_ = count;
    lblHint_->setText(hint_ + u' ' + CounterNumber(count_.value) + QStringLiteral(" of ") +
                      CounterNumber(count_.max) + QStringLiteral(" done!"));
    showBar();
}

bool frmProcess::IsProcessCanceled()
{
    return canceled_;
}

void frmProcess::EndProcess()
{
    hide();
    sharedWindow() = nullptr;
    deleteLater();
}

void frmProcess::EndShown()
{
    if (sharedWindow())
        sharedWindow()->EndProcess();
}

}  // namespace td
