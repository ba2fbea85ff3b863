#include "soak.h"

#include <QFile>
#include <QMessageBox>
#include <QThread>
#include <QWidget>

#include "script.h"

namespace {

using namespace Qt::StringLiterals;

QString pathOf(const QString& name) {
    return qEnvironmentVariable("TOUR_FOLDER") + u'/' + name;
}

void leave(const QString& name, const QString& text) {
    QFile file(pathOf(name));
    if (!file.open(QIODevice::WriteOnly) || file.write(text.toUtf8()) < 0) {
        throw TourFailure(u"cannot write %1"_s.arg(file.fileName()));
    }
}

/// Looks away as long as it can: what is measured is the program. Answers message boxes and counts them.
int pollUntilStopped() {
    const auto answerBox = [] {
        auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        if (box == nullptr) {
            return false;
        }
        box->accept();
        return true;
    };
    int boxes = 0;
    while (!QFile::exists(pathOf(u"stop"_s))) {
        QThread::msleep(500);
        boxes += Tour::inProgram(answerBox) ? 1 : 0;
    }
    return boxes;
}

/// Lines, bytes in them and lines without any. Frames of Modbus stand in the terminal as digits, two a byte.
QString contentOfTerminal(const QString& log, bool asDigits) {
    const QStringList lines = log.split(u'\n');
    qsizetype characters = 0;
    qsizetype empty = 0;
    for (const QString& line : lines.first(lines.size() - 1)) {
        characters += line.size();
        empty += line.isEmpty() ? 1 : 0;
    }
    return u"%1 %2 %3\n"_s.arg(lines.size() - 1).arg(asDigits ? characters / 2 : characters).arg(empty);
}

}  // namespace

void soak(Script& script) {
    script.run(u"soak.tour"_s);
    const auto textOf = [](const QString& name) {
        return Tour::inProgram([&] { return Tour::textOf(Tour::find(name)); });
    };
    const bool asDigits = textOf(u"frmMbMonitor"_s).startsWith(u"ModBus"_s);
    leave(u"polling"_s, {});
    const int boxes = pollUntilStopped();
    script.run(u"stop.tour"_s, {{u"STOP"_s, u"Stop"_s}});
    const QString content = contentOfTerminal(textOf(u"RichTextBox1"_s), asDigits);
    leave(u"terminal.txt"_s, content);
    std::printf("terminal: lines, bytes, empty lines: %sboxes: %d\n", content.toUtf8().constData(), boxes);
    if (boxes > 0) {
        throw TourFailure(u"%1 message boxes"_s.arg(boxes));
    }
    script.run(u"end.tour"_s);
}
