#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

namespace vek::bench {

/// What the driver in a program has found out.
struct Finding {
    double figure = 0;
    double rate = 0;  ///< lines that the terminal took in a second
};

inline const QString theProgram = QStringLiteral("bin/vekXX731_Monitor");

/// Runs a program of this build (its path below the build's folder) with this driver to its end, with its
/// data in `folder`, on a screen that exists only in memory. Throws std::runtime_error when that fails.
Finding runDriven(const QString& program, const QString& driver, const QString& folder,
                  const QStringList& arguments = {});

/// The settings with which the program starts in `folder`: COM1, 9600 baud and this frame.
void writeSettings(const QString& folder, const QByteArray& frame);

}  // namespace vek::bench
