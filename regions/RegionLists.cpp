#include "regions/RegionLists.h"
#include "regions/RegionStore.h"
#include <QHBoxLayout>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

namespace td {

QListWidget* MakeRegionList(QWidget* parent, const char* name)
{
    auto* list = new QListWidget(parent);
    list->setObjectName(QString::fromLatin1(name));
    list->setSelectionMode(QAbstractItemView::ExtendedSelection);
    list->setMinimumSize(240, 220);
    return list;
}

void AddRegionEntry(QListWidget* list, const TextArray& names, int index)
{
    auto* item = new QListWidgetItem(RegionEntryText(names.value(index)), list);
    item->setData(Qt::UserRole, index);
}

int EntryItemData(const QListWidget* list, int row)
{
    return list->item(row)->data(Qt::UserRole).toInt();
}

QStringList EntryNames(const QListWidget* list, const TextArray& names)
{
    QStringList out;
    for (int row = 0; row < list->count(); ++row)
        out << names.value(EntryItemData(list, row));
    return out;
}

bool MoveSelectedEntries(QListWidget* from, QListWidget* to)
{
    bool moved = false;
    for (int row = from->count() - 1; row >= 0; --row) {
        if (!from->item(row)->isSelected())
            continue;
        QListWidgetItem* item = from->takeItem(row);
        item->setSelected(false);
        to->addItem(item);
        moved = true;
    }
    return moved;
}

namespace {

QLabel* caption(QWidget* parent, const char* list, const char* text)
{
    // The caption carries the list's name with "lbl" for "lst", so the two stay together.
    auto* label = new QLabel(QString::fromUtf8(text), parent);
    label->setObjectName(QStringLiteral("lbl") + QString::fromLatin1(list).mid(3));
    return label;
}

}  // namespace

RegionListPair MakeRegionListPair(QWidget* parent, QBoxLayout* into, const char* leftName,
                                  const char* leftCaption, const char* rightName, const char* rightCaption)
{
    RegionListPair p{};
    p.leftCaption = caption(parent, leftName, leftCaption);
    p.left = MakeRegionList(parent, leftName);
    p.rightCaption = caption(parent, rightName, rightCaption);
    p.right = MakeRegionList(parent, rightName);
    p.leftCaption->setBuddy(p.left);
    p.rightCaption->setBuddy(p.right);
    p.cmdAdd = new QPushButton(QStringLiteral("<- add"), parent);
    p.cmdAdd->setObjectName(QStringLiteral("cmdAdd"));
    p.cmdDel = new QPushButton(QStringLiteral("Del ->"), parent);
    p.cmdDel->setObjectName(QStringLiteral("cmdDel"));

    auto* row = new QHBoxLayout;
    auto* left = new QVBoxLayout;
    left->addWidget(p.leftCaption);
    left->addWidget(p.left, 1);
    auto* middle = new QVBoxLayout;
    middle->addStretch(1);
    middle->addWidget(p.cmdAdd);
    middle->addWidget(p.cmdDel);
    middle->addStretch(1);
    auto* right = new QVBoxLayout;
    right->addWidget(p.rightCaption);
    right->addWidget(p.right, 1);
    row->addLayout(left, 1);
    row->addLayout(middle);
    row->addLayout(right, 1);
    into->addLayout(row);
    return p;
}

}  // namespace td
