#pragma once
#include <QString>

namespace td {

// English text in, text of the interface language out.
QString TranslateText(const QString& text);
QString GetDefaultRegion();
bool SetInterfaceRegion(const QString& name);
QString GetRegionFile(const QString& name);
QString InterfaceRegion();

}  // namespace td

namespace td {
// Forgets the loaded language, so the next lookup reads the default region again (tests, region change).
void ResetInterfaceRegion();
}  // namespace td
