#include "libraries/FileBrowse.h"
#include "controls/QtDialogs.h"
#include "shell/services/Dialogs.h"
#include "shell/services/Translate.h"

namespace td {

bool BrowseFile(const QString& initDir, const QString& filter, TextArray& names)
{
    names = NewTextArray();
    OpenFileRequest request;
    request.title = QStringLiteral("Select Files");
    request.initialDir = initDir;
    request.filter = filter.isEmpty() ? QStringLiteral("All Files(*.*)|*.*") : filter;
    request.multiple = true;
    for (const QString& path : Dialogs().openFiles(request))
        AppendItem(names, path);
    return UBound(names) > 0;
}

QString BrowsePath(QWidget* owner)
{
    return BrowseForFolder(owner, TranslateText(QStringLiteral("Please choose directory")));
}

}  // namespace td
