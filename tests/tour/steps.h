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

/// What the interface dialog is to be set to; its other settings are those of 8E1.
struct InterfaceChoice {
    int port;
    int protocol;  ///< option of the baud rate: 3 = 9600 Baud, 4 = 19200 Baud, 8 = KDL
    bool storable = true;
};
void chooseInterface(Tour& tour, const InterfaceChoice& choice);

/// Searches the address and expects the device there.
void findDevice(Tour& tour, int address, const QString& name);

/// Presses "Parameter setzen" or "Parameter auslesen" and waits for the end.
void setParameters(Tour& tour);
void readParameters(Tour& tour);

/// Presses "Stop" and waits for the end of the poll.
void stopPoll(Tour& tour);

/// Presses "Stop", waits for the end of the poll, closes the monitor, and makes sure that nothing is sent
/// afterwards.
void stopMonitor(Tour& tour);
