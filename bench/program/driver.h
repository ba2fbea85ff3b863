#pragma once

#include <QGenericPlugin>

/// The user inside the program. Prints what it finds out as a line "figure FIGURE RATE" and ends the process.
class BenchDriver : public QGenericPlugin {
    Q_OBJECT
    Q_PLUGIN_METADATA(IID QGenericPluginFactoryInterface_iid FILE "driver.json")

  public:
    /// `name` is what to find out: the seconds of processor that a second takes, and the lines that the
    /// terminal takes meanwhile; with the poll of the device at address 3 ("vekmonitor") or without
    /// ("vekidle").
    QObject* create(const QString& name, const QString& parameters) override;
};
