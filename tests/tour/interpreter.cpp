#include "interpreter.h"

#include <QElapsedTimer>
#include <QFile>
#include <QLocale>
#include <QPixmap>
#include <QPointer>
#include <QPushButton>
#include <QRegularExpression>
#include <QTest>
#include <QThread>
#include <algorithm>
#include <cstdio>
#include <stdexcept>
#include <utility>

#include "screen.h"

using namespace Qt::StringLiterals;
using screen::inProgram;

namespace {

constexpr int usualSeconds = 10;

/// How many times longer than usual everything may take, as under a tool that slows the program down.
int patience() {
    return std::max(1, qEnvironmentVariableIntValue("TOUR_PATIENCE"));
}

[[noreturn]] void fail(const QString& what) {
    throw std::runtime_error(what.toStdString());
}

QStringList argumentsOf(const QString& text) {
    QStringList arguments = text.split(u" | "_s);
    for (QString& argument : arguments) {
        argument.replace(u"\\n"_s, u"\n"_s);
    }
    return arguments;
}

QString dataFile(const QString& name) {
    return qEnvironmentVariable("XDG_DATA_HOME") + u'/' + name;
}

/// "name = value" (* = something), "name ~ part", "name > number", "name < number".
bool holds(const QString& condition) {
    static const QRegularExpression form(u"^(\\S+) ([=~<>]) ?(.*)$"_s,
                                         QRegularExpression::DotMatchesEverythingOption);
    const QRegularExpressionMatch parts = form.match(condition);
    if (!parts.hasMatch()) {
        qFatal("not a condition: %s", qPrintable(condition));
    }
    const QString seen = screen::state(parts.captured(1));
    const QChar relation = parts.capturedView(2).front();
    const QString value = parts.captured(3);
    if (relation == u'=') {
        return value == u"*" ? !seen.isEmpty() : !seen.isNull() && seen == value;
    }
    if (relation == u'~') {
        return seen.contains(value);
    }
    bool isNumber = false;
    const double number = QLocale(QLocale::German).toDouble(seen, &isNumber);
    return isNumber && (relation == u'<' ? number < value.toDouble() : number > value.toDouble());
}

QString seenInPlaceOf(const QStringList& conditions) {
    QStringList seen;
    for (const QString& condition : conditions) {
        const QString name = condition.section(u' ', 0, 0);
        seen << u"%1 = \"%2\""_s.arg(name, screen::state(name).right(200));
    }
    return seen.join(u" | "_s);
}

}  // namespace

Interpreter::Interpreter(QString steps, QString folder)
    : steps_(std::move(steps)), folder_(std::move(folder)) {
    using Arguments = const QStringList&;
    verbs_ = {
        {u"see"_s, [this](Arguments all) { see(all); }},
        {u"has"_s,
         [this](Arguments all) {
             for (const QString& name : all[0].split(u' ')) {
                 see({name + u".visible = on"_s});
             }
         }},
        {u"gone"_s,
         [this](Arguments all) {
             waitFor(u"it is gone"_s, [&] { return screen::find(all[0]) == nullptr; });
         }},
        {u"menu"_s, [this](Arguments all) { menu(all); }},
        {u"press"_s, [this](Arguments all) { press(all[0]); }},
        {u"tool"_s,
         [this](Arguments all) {
             waitFor(u"the button"_s, [&] { return screen::toolButton(all[0]) != nullptr; });
             screen::start([caption = all[0]] { screen::click(*screen::toolButton(caption)); });
         }},
        {u"type"_s, [this](Arguments all) { type(all[0], all[1]); }},
        {u"key"_s,
         [](Arguments all) {
             const QKeyCombination keys = QKeySequence(all[1])[0];
             screen::start([name = all[0], keys] {
                 QWidget* popup = QApplication::activePopupWidget();
                 QWidget* target = popup != nullptr ? popup : screen::find(name);
                 QApplication::setActiveWindow(target->window());
                 QTest::keyClick(target, keys.key(), keys.keyboardModifiers());
             });
         }},
        {u"box"_s, [this](Arguments all) { answerBox(all); }},
        {u"picture"_s, [this](Arguments all) { picture(all[0], all[1]); }},
        {u"saved"_s, [this](Arguments all) { checkFile(all[0]); }},
        {u"remember"_s, [this](Arguments all) { remember(all[0]); }},
        {u"same"_s, [this](Arguments all) { compare(all[0], true); }},
        {u"differs"_s, [this](Arguments all) { compare(all[0], false); }},
        {u"use"_s, [this](Arguments all) { run(all[0], all.mid(1)); }},
        {u"poll"_s, [this](Arguments) { pollUntilStopped(); }},
        {u"count"_s, [this](Arguments) { countTerminal(); }},
        {u"end"_s, [this](Arguments) { leave(u"complete"_s, {}); }},
    };
}

void Interpreter::run(const QString& name, const QStringList& values) {
    QFile file(steps_ + u'/' + name + u".steps"_s);
    if (!file.open(QIODevice::ReadOnly)) {
        fail(u"cannot read "_s + file.fileName());
    }
    int number = 0;
    for (QString line : QString::fromUtf8(file.readAll()).split(u'\n')) {
        ++number;
        for (const QString& value : values) {
            line.replace(u'$' + value.section(u'=', 0, 0), value.section(u'=', 1));
        }
        try {
            doStep(line);
        } catch (const std::exception& failure) {
            fail(u"%1.steps:%2: %3\n  %4"_s.arg(name).arg(number).arg(line,
                                                                      QString::fromUtf8(failure.what())));
        }
    }
}

void Interpreter::doStep(QString line) {
    if (line.isEmpty() || line.startsWith(u'#')) {
        print(line);
        return;
    }
    seconds_ = usualSeconds;
    if (line.startsWith(u"within ")) {
        seconds_ = line.section(u' ', 1, 1).toInt();
        line = line.section(u' ', 2);
    }
    const auto verb = verbs_.find(line.section(u' ', 0, 0));
    if (verb == verbs_.end()) {
        fail(u"no such step"_s);
    }
    verb.value()(argumentsOf(line.section(u' ', 1)));
    print(u"    "_s + line);
}

void Interpreter::print(const QString& line) const {
    std::printf("%s\n", line.toUtf8().constData());
    std::fflush(stdout);
}

void Interpreter::waitFor(const QString& what, const std::function<bool()>& condition) {
    QElapsedTimer timer;
    timer.start();
    while (!inProgram(condition)) {
        if (timer.elapsed() > qint64{seconds_} * 1000 * patience()) {
            fail(u"not seen within %1 s: %2"_s.arg(seconds_).arg(what));
        }
        QThread::msleep(10);
    }
}

void Interpreter::see(const QStringList& conditions) {
    QString seen;
    try {
        waitFor({}, [&] {
            seen = seenInPlaceOf(conditions);
            return std::all_of(conditions.begin(), conditions.end(), holds);
        });
    } catch (const std::exception& failure) {
        fail(QString::fromUtf8(failure.what()) + seen);
    }
}

void Interpreter::menu(const QStringList& arguments) {
    const QStringList path = arguments[0].split(u" > "_s);
    for (const QString& entry : path) {
        const bool inBar = &entry == &path.first();
        if (&entry == &path.last() && arguments.size() > 1) {
            waitFor(u"the menu"_s, [] { return QApplication::activePopupWidget() != nullptr; });
            inProgram([&] {
                return QApplication::activePopupWidget()->grab().save(folder_ + u'/' + arguments[1]);
            });
        }
        waitFor(entry, [&] { return screen::clickMenu(entry, inBar); });
    }
}

void Interpreter::press(const QString& caption) {
    waitFor(u"one button of this caption that can be pressed"_s,
            [&] { return screen::buttons(caption).size() == 1; });
    screen::start([caption] {
        for (QWidget* button : screen::buttons(caption)) {
            screen::click(*button);
        }
    });
}

void Interpreter::type(const QString& name, const QString& text) {
    waitFor(name, [&] { return screen::find(name) != nullptr; });
    inProgram([&] {
        QWidget* field = screen::find(name);
        field->setFocus();
        QTest::keyClick(field, Qt::Key_A, Qt::ControlModifier);
        QTest::keyClick(field, Qt::Key_Delete);
        QTest::keyClicks(field, QString(text).replace(u"DATA"_s, dataFile({})));
        return true;
    });
}

/// Title, text, and the file for its picture if wanted.
void Interpreter::answerBox(const QStringList& arguments) {
    waitFor(u"a message box"_s, [] { return screen::openBox() != nullptr; });
    const QString expected = QString(arguments[1]).replace(u"DATA"_s, dataFile({}));
    QPointer<QMessageBox> box;
    const QString seen = inProgram([&] {
        box = screen::openBox();
        return box->windowTitle() + u" | "_s + box->text();
    });
    if (seen != arguments[0] + u" | "_s + expected) {
        fail(u"the box says "_s + seen);
    }
    inProgram([&] { return arguments.size() < 3 || box->grab().save(folder_ + u'/' + arguments[2]); });
    screen::start([box] { screen::click(*box->button(QMessageBox::Ok)); });
    waitFor(u"the box closes"_s, [&] { return box.isNull() || !box->isVisible(); });
}

/// Of the window, whole main window for a window inside it. Whatever has its picture taken must be whole.
void Interpreter::picture(const QString& name, const QString& file) {
    waitFor(name, [&] { return screen::find(name) != nullptr; });
    const QString fault = inProgram([&] { return screen::faultOfLayout(name); });
    if (!fault.isEmpty()) {
        fail(fault);
    }
    if (!inProgram([&] { return screen::find(name)->window()->grab().save(folder_ + u'/' + file); })) {
        fail(u"cannot write "_s + file);
    }
}

void Interpreter::checkFile(const QString& line) {
    QFile file(dataFile(u"vekXX731_Monitor.ini"_s));
    const QString content = file.open(QIODevice::ReadOnly) ? QString::fromLatin1(file.readAll()) : QString();
    if (!content.contains(line + u"\r\n"_s)) {
        fail(u"the settings file is:\n"_s + content);
    }
}

void Interpreter::remember(const QString& name) {
    remembered_[name] = inProgram([&] { return screen::state(name); });
}

void Interpreter::compare(const QString& name, bool same) {
    waitFor(same ? u"the same"_s : u"another"_s,
            [&] { return (screen::state(name) == remembered_[name]) == same; });
}

void Interpreter::leave(const QString& file, const QString& content) {
    QFile out(folder_ + u'/' + file);
    if (!out.open(QIODevice::WriteOnly) || out.write(content.toUtf8()) < 0) {
        fail(u"cannot write "_s + out.fileName());
    }
}

/// Looks away as long as it can: what is measured is the program. Afterwards no message box may have come.
void Interpreter::pollUntilStopped() {
    leave(u"polling"_s, {});
    int boxes = 0;
    while (!QFile::exists(folder_ + u"/stop"_s)) {
        QThread::msleep(500);
        boxes += inProgram([] {
            QMessageBox* box = screen::openBox();
            if (box != nullptr) {
                box->accept();
            }
            return box == nullptr ? 0 : 1;
        });
    }
    if (boxes > 0) {
        fail(u"%1 message boxes"_s.arg(boxes));
    }
}

/// Lines, bytes in them and lines without any. Frames of Modbus stand in the terminal as digits, two a byte.
void Interpreter::countTerminal() {
    const bool asDigits = !inProgram([] { return screen::state(u"sbStatusBar_1"_s); }).startsWith(u"KDL"_s);
    QStringList lines = inProgram([] { return screen::state(u"RichTextBox1"_s); }).split(u'\n');
    lines.removeLast();  // what follows the last line's end
    const auto characters = lines.join(u""_s).size();
    const QString counts =
        u"%1 %2 %3\n"_s.arg(lines.size()).arg(asDigits ? characters / 2 : characters).arg(lines.count(u""_s));
    leave(u"terminal.txt"_s, counts);
    print(u"terminal: lines, bytes, empty lines: "_s + counts);
}
