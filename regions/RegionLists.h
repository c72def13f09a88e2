#pragma once
#include "shell/services/TextArray.h"
#include <QString>
#include <QStringList>

class QBoxLayout;
class QLabel;
class QListWidget;
class QPushButton;
class QWidget;

namespace td {

// The two lists of a region window. An entry's ItemData is its name's index in the window's names
// array, so the shown text can be anything.
QListWidget* MakeRegionList(QWidget* parent, const char* name);
void AddRegionEntry(QListWidget* list, const TextArray& names, int index);
int EntryItemData(const QListWidget* list, int row);
// The names of a list's entries, top to bottom.
QStringList EntryNames(const QListWidget* list, const TextArray& names);
// Moves the selected entries, from the last to the first, to the end of the other list with their
// ItemData; false when none was selected.
bool MoveSelectedEntries(QListWidget* from, QListWidget* to);

// A list under its caption, beside the other list with the two move buttons between them.
struct RegionListPair {
    QLabel* leftCaption;
    QListWidget* left;
    QPushButton* cmdAdd;  // "<- add": right to left
    QPushButton* cmdDel;  // "Del ->": left to right
    QLabel* rightCaption;
    QListWidget* right;
};
RegionListPair MakeRegionListPair(QWidget* parent, QBoxLayout* into, const char* leftName,
                                  const char* leftCaption, const char* rightName, const char* rightCaption);

}  // namespace td
