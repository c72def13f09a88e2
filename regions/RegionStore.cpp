#include "regions/RegionStore.h"
#include "libraries/FileFinder.h"
#include "shell/services/AppError.h"
#include "shell/services/AppPaths.h"
#include "shell/services/Dialogs.h"
#include "shell/services/Translate.h"
#include "songdb/Connection.h"
#include "songdb/RecordAccess.h"
#include "songdb/SongSession.h"
#include "songdb/SongStatements.h"
#include <functional>

namespace td {

namespace {

const QString kGlobeSection = QStringLiteral("GlobeRegion");

Connection& songConnection()
{
    Connection* c = SongConnection();
    if (!c)
        throw AppError(QStringLiteral("Operation is not allowed when the object is closed."));
    return *c;
}

// Empties a table's rows and writes new ones through a recordset of the same rows, one at a time.
// A failing delete is not reported on its own: the select after it decides.
void RewriteRows(const QString& deleteSql, const QString& selectSql,
                 const std::function<void(Recordset&)>& addRows)
{
    Connection& db = songConnection();
    try {
        db.execute(deleteSql);
    } catch (const std::exception&) {
    }
    std::unique_ptr<Recordset> rs = db.openRecordset(selectSql);
    addRows(*rs);
    rs->Close();
}

}  // namespace

bool GetInterfaceRegions(TextArray& names)
{
    TextArray folders;
    int attributes = ATTR_DIRECTORY;
    FindFileNames(AppPath() + QStringLiteral("/Region"), QStringLiteral("*.*"), 0, folders, attributes);
    names = NewTextArray();
    for (int i = 1; i <= UBound(folders); ++i)
        if (!GetRegionFile(folders[i]).isEmpty())
            AppendItem(names, folders[i]);
    return true;
}

QString RegionEntryText(const QString& name)
{
    if (name.isEmpty())
        return {};
    return name + QStringLiteral(" (") + TranslateText(name) + u')';
}

bool IsAvailableRegion(const QString& name)
{
    std::unique_ptr<Recordset> rs;
    if (!SongGetRecordset(QStringLiteral("Name"), QStringLiteral("region"),
                          QStringLiteral("name='") + name + u'\'', QString(), rs))
        return false;
    return rs->RecordCount() >= 1;
}

bool IsGlobeRegion(const QString& name)
{
    return SongReadValue(kGlobeSection, name, QString()) == u"1";
}

bool SaveAvailableRegions(const QStringList& names)
{
    try {
        RewriteRows(QStringLiteral("delete * from region"), QStringLiteral("select * from region"),
                    [&names](Recordset& rs) {
                        rs.AddNew();
                        rs.Fields(QStringLiteral("name")).setValue(QStringLiteral(""));
                        rs.Update();
                        for (const QString& name : names) {
                            rs.AddNew();
                            rs.Fields(QStringLiteral("name")).setValue(name);
                            rs.Update();
                        }
                    });
        return true;
    } catch (const std::exception& e) {
        MsgError(QStringLiteral("Changed system regions failed! ") + ErrSuffix(e));
        return false;
    }
}

bool SaveGlobeRegions(const QStringList& names)
{
    // The region's name goes into the key field, where SongReadValue looks for it; the section
    // compares without regard to case, so rows another program wrote as "globeregion" are the same.
    try {
        RewriteRows(QStringLiteral("delete * from Config where [Section]='GlobeRegion'"),
                    QStringLiteral("select * from Config where [Section]='GlobeRegion'"),
                    [&names](Recordset& rs) {
                        for (const QString& name : names) {
                            rs.AddNew();
                            rs.Fields(QStringLiteral("Section")).setValue(kGlobeSection);
                            rs.Fields(QStringLiteral("Key")).setValue(name);
                            rs.Fields(QStringLiteral("Value")).setValue(QStringLiteral("1"));
                            rs.Update();
                        }
                    });
        return true;
    } catch (const std::exception& e) {
        MsgError(QStringLiteral("Changed globe regions failed! ") + ErrSuffix(e));
        return false;
    }
}

}  // namespace td
