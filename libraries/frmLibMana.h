#pragma once
#include "controls/DataWindow.h"
#include "shell/CommandTarget.h"
#include <QList>
#include <QVariantList>
#include <functional>

namespace td {

class ctlButtons;
class ctlDataFields;
class ctlDataView;
class Connection;
class JobHost;
class JobRunner;

// The library manager: the list of libraries, the editor of one, and the two exchanges between a
// library and the songbook. Only the first selected library takes part in a command.
class frmLibMana : public DataWindow, public CommandTarget {
    Q_OBJECT
public:
    // Shows the library import wizard for a root, modally; set by whoever builds the wizard.
    using ImportWizard = std::function<void(QWidget* owner, const QString& rootPath)>;
    static void SetImportWizard(ImportWizard wizard);

    explicit frmLibMana(WindowFrame& frame = NoFrame(), QWidget* parent = nullptr);
    ~frmLibMana() override;

    void ExecuteCommand(const QString& command) override;
    bool LoadFormat();
    bool LoadData();
    bool LoadFieldDatas(const QList<int>& selection);

    bool AddLibrary();
    // Moving a library's songs runs as a job; done(true) comes once the library row is saved too.
    void SaveLibrary(std::function<void(bool)> done = {});
    // Runs to its end unless it waits on an update of the library's song files, and then ends when
    // that update does: done(true) once the library is gone.
    void RemoveLibrary(std::function<void(bool)> done = {});
    bool UpdateSongbook(const QString& path);
    // Starts the update of a library's song files as a job; done(completed) comes when it ends, also
    // when it never started (false). Answers whether the job started.
    bool UpdateLibrary(const QString& path, std::function<void(bool)> done = {});
    bool UpdateRunning() const;

    ctlDataView* ctlView() const { return ctlView_; }
    ctlDataFields* ctlFields() const { return ctlFields_; }
    ctlButtons* ctlButtonBar() const { return ctlButtons_; }

signals:
    // An update of song files started from this window has ended.
    void UpdateFinished(bool completed);

protected:
    void WindowClosing() override;
    void ListReadFailed(const QString& sql, const QString& description) override;

private:
    void buildControls();
    void browseRootPath();
    QList<int> selection() const;
    QString fieldValue(const QString& field) const;
    void setFieldValue(const QString& field, const QString& value);
    QString selectedRoot(const QList<int>& selected);
    void selectOnly(int item);
    void libraryTableChanged();
    void refreshSongbook();
    bool deleteLibraryRow(const QList<int>& selected);
    // Runs work over the songbook on a connection of its own, on the job thread, so that a statement over
    // a whole library never holds the window; an error is reported as `failed` and the error. then(ok)
    // comes on the interface thread. False, with nothing started, while another job runs.
    bool runSongJob(const QString& failed, std::function<bool(Connection&, JobHost&)> work,
                    std::function<void(bool)> then);

    ctlButtons* ctlButtons_ = nullptr;
    ctlDataView* ctlView_ = nullptr;
    ctlDataFields* ctlFields_ = nullptr;
    QWidget* picButton_ = nullptr;
    QWidget* picRight_ = nullptr;
    JobRunner* runner_ = nullptr;
};

}  // namespace td
