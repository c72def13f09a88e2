#pragma once
#include "shell/services/TextArray.h"
#include <QString>
#include <QStringList>

namespace td {

// The regions installed beside the program: the folders of Region/ that hold a string.txt, in the
// order found, as a text array from 1.
bool GetInterfaceRegions(TextArray& names);

// How the region windows show a region: its name and its name in the interface language in
// brackets. The empty name, which stands for songs without a region, shows empty.
QString RegionEntryText(const QString& name);

// The songbook offers the region: table region holds a row of that name.
bool IsAvailableRegion(const QString& name);
// Every room sees the region's songs: config holds "1" under section GlobeRegion, key the name.
bool IsGlobeRegion(const QString& name);

// Rewrites table region: one row with an empty name first, for songs without a region, then one row
// per name. Rows written before a failure stay; the failure is shown and answers false.
bool SaveAvailableRegions(const QStringList& names);
// Rewrites the GlobeRegion section of config: one row per name with the value "1". Regions left out
// of table region keep their rows here.
bool SaveGlobeRegions(const QStringList& names);

}  // namespace td
