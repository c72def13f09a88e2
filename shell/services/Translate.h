#pragma once
#include <QString>
#include <functional>

namespace td {

// English text in, text of the interface language out.
QString TranslateText(const QString& text);
QString GetDefaultRegion();
bool SetInterfaceRegion(const QString& name);
QString GetRegionFile(const QString& name);
QString InterfaceRegion();

}  // namespace td

namespace td {
// The key a text is looked up by: the text without its accelerator " (&X)" and its dots " ...".
QString TranslationKey(const QString& text);

// Sees every key looked up, so the text file of a language can be checked for completeness.
void SetTranslateObserver(std::function<void(const QString& key)> observer);

// Forgets the loaded language, so the next lookup reads the default region again (tests, region change).
void ResetInterfaceRegion();
}  // namespace td
