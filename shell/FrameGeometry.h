#pragma once
#include <QRect>

class QWidget;

namespace td {

// Where the frame opens. A stored place keeps its size and position as far as the available screen
// area allows: never larger than the area, never smaller than a usable frame, moved inside it. With
// nothing usable stored the frame takes the whole area.
QRect FittedFrameGeometry(const QRect& stored, const QRect& available);

// Restores the frame's place from the application INI (section Default), fitted to the available
// area of the screen it was on, maximized as it was; the first start fills the screen.
void RestoreFrameGeometry(QWidget* frame);
// Keeps the frame's place for the next start: its normal place, and whether it was maximized.
void SaveFrameGeometry(const QWidget* frame);

}  // namespace td
