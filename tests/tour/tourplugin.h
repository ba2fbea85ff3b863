#pragma once

#include <QGenericPlugin>

/// Starts the tour inside the program that loads it.
class TourPlugin : public QGenericPlugin {
    Q_OBJECT
    Q_PLUGIN_METADATA(IID QGenericPluginFactoryInterface_iid FILE "tourplugin.json")

  public:
    QObject* create(const QString& name, const QString& parameters) override;
};
