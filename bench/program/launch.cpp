#include "launch.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QProcessEnvironment>
#include <stdexcept>

namespace vek::bench {

using namespace Qt::StringLiterals;

namespace {

constexpr int longestRunMs = 120'000;

[[noreturn]] void fail(const QString& what) {
    throw std::runtime_error(what.toStdString());
}

QProcessEnvironment environmentFor(const QString& build, const QString& driver, const QString& folder) {
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(u"QT_QPA_PLATFORM"_s, u"offscreen"_s);
    environment.insert(u"QT_QPA_GENERIC_PLUGINS"_s, driver);
    environment.insert(u"QT_PLUGIN_PATH"_s, build + u"/bench/plugins"_s);
    environment.insert(u"XDG_DATA_HOME"_s, folder);
    environment.insert(u"XDG_RUNTIME_DIR"_s, folder);
    return environment;
}

}  // namespace

Finding runDriven(const QString& program, const QString& driver, const QString& folder,
                  const QStringList& arguments) {
    if (QFileInfo(u"/var/lib/vekXX731_Monitor"_s).isWritable()) {
        fail(u"/var/lib/vekXX731_Monitor holds the settings of the installed program; they would be used"_s);
    }
    const QString build = QDir(QCoreApplication::applicationDirPath() + u"/.."_s).canonicalPath();
    QProcess process;
    process.setProcessEnvironment(environmentFor(build, driver, folder));
    process.start(build + u'/' + program, arguments);
    const bool ended = process.waitForFinished(longestRunMs);
    const QStringList lines = QString::fromUtf8(process.readAllStandardOutput()).split(u'\n');
    const QStringList words = lines.filter(u"figure "_s).value(0).split(u' ');
    if (!ended || process.exitCode() != 0 || words.size() != 3) {
        fail(program + u" with "_s + driver + u": "_s + QString::fromUtf8(process.readAllStandardError()));
    }
    return {words[1].toDouble(), words[2].toDouble()};
}

void writeSettings(const QString& folder, const QByteArray& frame) {
    QFile file(folder + u"/vekXX731_Monitor.ini"_s);
    if (!file.open(QIODevice::WriteOnly)) {
        fail(u"cannot write "_s + file.fileName());
    }
    file.write("[RS485]\r\nCOM= 1\r\nBAUD= 9600\r\nFRAME=" + frame + "\r\n");
}

}  // namespace vek::bench
