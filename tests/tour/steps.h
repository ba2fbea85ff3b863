#pragma once

#include <QColor>
#include <QString>

class Tour;

/// The colours of the indicators.
extern const QColor green;
extern const QColor yellow;
extern const QColor red;
extern const QColor grey;

/// Waits until the indicator has this colour; tells what row 0 then shows.
void expectIndicator(Tour& tour, const QString& name, const QColor& color, const QString& meaning,
                     int seconds);

/// Presses "Stop", waits for the end of the poll, closes the monitor, and makes sure that nothing is sent
/// afterwards.
void stopMonitor(Tour& tour);
