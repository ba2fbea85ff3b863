#pragma once

#include <QGenericPlugin>

/// Waits inside any program for its first painted window. Prints when that was, in seconds of the steady
/// clock, as a line "figure SECONDS 0" and ends the process.
class PaintWatchPlugin : public QGenericPlugin {
    Q_OBJECT
    Q_PLUGIN_METADATA(IID QGenericPluginFactoryInterface_iid FILE "paintwatch.json")

  public:
    QObject* create(const QString& name, const QString& parameters) override;
};
