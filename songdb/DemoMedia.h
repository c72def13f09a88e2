#pragma once
#include <QByteArray>
#include <QString>
#include <QStringList>

namespace td {

// Fills root with count small media files (a few real clips made with ffmpeg when it is installed,
// linked under many names); answers their paths below root, each beginning with "/".
QStringList CreateDemoMedia(const QString& root, int count);

// A small generated JPEG photograph, different for each number.
QByteArray DemoPhoto(int number);

}  // namespace td
