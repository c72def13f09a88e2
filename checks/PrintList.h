#pragma once
#include <QList>
#include <QString>
#include <QStringList>
#include <functional>

namespace td {

// A field the song list can print: its caption in the interface language and its column of song.
struct PrintField {
    QString caption;
    QString field;
};

// The printable fields of the songbook's list format (ListSong.ini), in the order of its ColPosition
// section. As in the list itself, a column without a Caption shows its name and one without a Field
// reads the column of its name.
QList<PrintField> PrintableFields(const QString& listFormatFile);

// "=", "<>", ">", "<", ">=", "<=", "LIKE", "NULL", "NOT NULL", in the order the window lists them.
const QStringList& PrintCompares();

struct PrintCondition {
    QString field;    // empty: no condition
    QString compare;  // one of PrintCompares()
    QString value;    // as typed: not quoted, wildcards the user's
};

// What is to be printed: the selected fields in the list's order, up to three conditions and up to
// three sort fields (empty ones are left out).
struct PrintChoice {
    QStringList fields;
    QList<PrintCondition> conditions;
    QStringList orders;
};

// Whether a value of this ADO type code is written into a statement without quotes.
bool IsNumericAdoType(int adoType);

// The statement of a choice; typeOf gives the ADO type code of a field of song.
QString PrintStatement(const PrintChoice& choice, const std::function<int(const QString& field)>& typeOf);

// The fields whose values the window offers in a list; the others are typed.
bool OffersValueList(const QString& field);

// The window's choices kept in the application INI (section Default), as list indexes and texts.
struct PrintSettings {
    QStringList selected;  // field names with PrintSelect<field>=1
    int field[3] = {0, 0, 0};
    int compare[3] = {0, 0, 0};
    QString value[3];
    int order[3] = {0, 0, 0};
};
PrintSettings LoadPrintSettings(const QList<PrintField>& fields);
void SavePrintSettings(const QList<PrintField>& fields, const PrintSettings& settings);

}  // namespace td
