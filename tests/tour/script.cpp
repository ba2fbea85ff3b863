#include "script.h"

#include <QAbstractButton>
#include <QFile>
#include <QLocale>
#include <QProgressBar>
#include <QSlider>

namespace {

using namespace Qt::StringLiterals;

QString contentOf(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        throw TourFailure(u"cannot read %1"_s.arg(path));
    }
    return QString::fromUtf8(file.readAll());
}

QString dataFolder() {
    return qEnvironmentVariable("XDG_DATA_HOME");
}

/// What stands before and behind the first separator.
std::pair<QString, QString> halves(const QString& text, const QString& separator) {
    const qsizetype at = text.indexOf(separator);
    return at < 0 ? std::pair(text, QString())
                  : std::pair(text.first(at), text.sliced(at + separator.size()));
}

QColor colorOf(QWidget* widget) {
    const QPoint place = widget->inherits("QLabel") ? QPoint(4, 4) : widget->rect().center();
    return widget->grab().toImage().pixelColor(place);
}

double numberOf(const QWidget* widget) {
    if (const auto* slider = qobject_cast<const QSlider*>(widget)) {
        return slider->value();
    }
    bool shown = false;
    const double number = QLocale(QLocale::German).toDouble(Tour::textOf(widget), &shown);
    return shown ? number : qQNaN();
}

/// A property by its name in a script.
bool is(QWidget* widget, const QString& word) {
    static const QMap<QString, QColor> colors = {{u"green"_s, {0, 255, 0}},
                                                 {u"yellow"_s, {255, 255, 0}},
                                                 {u"red"_s, {255, 0, 0}},
                                                 {u"grey"_s, {192, 192, 192}}};
    if (colors.contains(word)) {
        return colorOf(widget) == colors[word];
    }
    if (word == u"enabled"_s || word == u"disabled"_s) {
        return widget->isEnabled() == (word == u"enabled"_s);
    }
    if (word == u"on"_s || word == u"off"_s) {
        return qobject_cast<QAbstractButton*>(widget)->isChecked() == (word == u"on"_s);
    }
    if (word == u"full"_s) {
        const auto* bar = qobject_cast<QProgressBar*>(widget);
        return bar->value() == bar->maximum();
    }
    return word == u"filled"_s && !Tour::textOf(widget).isEmpty();
}

void expectInTerminal(const QString& operand) {
    const auto [line, next] = halves(operand, u" > "_s);
    const QStringList lines =
        Tour::inProgram([] { return Tour::textOf(Tour::find(u"RichTextBox1"_s)); }).split(u'\n');
    const qsizetype at = lines.indexOf(line);
    if (at < 0 || !lines.value(at + 1).startsWith(next)) {
        throw TourFailure(u"the terminal lacks it:\n"_s +
                          lines.first(std::min<qsizetype>(8, lines.size())).join(u'\n'));
    }
}

}  // namespace

void Script::run(const QString& file, const QMap<QString, QString>& values) {
    for (QString line : contentOf(QStringLiteral(TOUR_SCRIPTS) + file).split(u'\n')) {
        for (auto [key, value] : values.asKeyValueRange()) {
            line.replace(u'{' + key + u'}', value);
        }
        line.replace(u"{DATA}"_s, dataFolder());
        try {
            perform(line);
        } catch (const TourFailure& failure) {
            throw TourFailure(u"%1: %2\n    %3"_s.arg(file, line, QString::fromUtf8(failure.what())));
        }
    }
}

void Script::perform(const QString& line) {
    const auto [command, operand] = halves(line, u" "_s);
    const auto [main, file] = halves(operand, u" | "_s);
    if (command.isEmpty() || command == u"#"_s) {
        return;
    }
    Tour::print(command == u"-"_s    ? u"%1. %2"_s.arg(++steps_, 3).arg(operand)
                : command == u"=="_s ? u'\n' + line
                                     : u"       "_s + line);
    if (command == u"menu"_s) {
        tour_.menu(main.split(u" > "_s), file);
    } else if (command == u"press"_s) {
        const auto [frame, caption] = halves(operand, u": "_s);
        Tour::press(caption.isEmpty() ? QString() : frame, caption.isEmpty() ? frame : caption);
    } else if (command == u"click"_s) {
        Tour::click(operand);
    } else if (command == u"type"_s) {
        const auto [name, text] = halves(operand, u" = "_s);
        Tour::type(name, text);
    } else if (command == u"key"_s) {
        const auto [name, key] = halves(operand, u" "_s);
        Tour::key(name, key == u"Escape"_s ? Qt::Key_Escape : Qt::Key_Return);
    } else if (command == u"box"_s) {
        auto [title, text] = halves(main, u": "_s);
        tour_.answer(title, text.replace(u"\\n"_s, u"\n"_s), file);
    } else if (command == u"picture"_s) {
        const auto [name, picture] = halves(operand, u" "_s);
        tour_.picture(name, picture);
    } else if (command == u"expect"_s) {
        expect(operand, 10);
    } else if (command == u"within"_s) {
        const auto [seconds, states] = halves(operand, u": expect "_s);
        expect(states, seconds.toInt());
    } else if (command == u"remember"_s) {
        remembered_[operand] =
            Tour::inProgram([&, name = operand] { return Tour::textOf(Tour::find(name)); });
    } else if (command == u"file"_s) {
        if (!contentOf(dataFolder() + u"/vekXX731_Monitor.ini"_s).contains(operand + u"\r\n"_s)) {
            throw TourFailure(u"the settings file lacks it"_s);
        }
    } else if (command == u"terminal"_s) {
        expectInTerminal(operand);
    } else if (command == u"include"_s) {
        include(operand);
    } else if (command == u"complete"_s) {
        tour_.complete();
    } else if (command != u"-"_s && command != u"=="_s) {
        throw TourFailure(u"no such command"_s);
    }
}

void Script::include(const QString& operand) {
    const auto [file, settings] = halves(operand, u" "_s);
    QMap<QString, QString> values;
    for (const QString& setting : settings.split(u"; "_s, Qt::SkipEmptyParts)) {
        const auto [key, value] = halves(setting, u"="_s);
        values[key] = value;
    }
    run(file, values);
}

void Script::expect(const QString& states, int seconds) {
    const QStringList all = states.split(u" & "_s);
    const auto missing = [&] {
        const auto found = std::ranges::find_if(all, [this](const QString& state) { return !isSo(state); });
        return found == all.end() ? QString() : *found;
    };
    try {
        Tour::waitFor(
            states, [&] { return missing().isEmpty(); }, seconds);
    } catch (const TourFailure&) {
        const QString state = Tour::inProgram(missing);
        const QString shown = Tour::inProgram([&] {
            const QWidget* widget = Tour::find(state.section(u' ', 0, 0));
            return widget == nullptr ? u"not there"_s : Tour::textOf(widget);
        });
        throw TourFailure(u"not within %1 s: %2; it is \"%3\""_s.arg(seconds).arg(state, shown));
    }
}

bool Script::isSo(const QString& state) const {
    const QString name = state.section(u' ', 0, 0);
    const QString relation = state.section(u' ', 1, 1);
    const QString operand = state.section(u' ', 2);
    QWidget* widget = Tour::find(name);
    if (widget == nullptr || operand == u"gone"_s) {
        return widget == nullptr && operand == u"gone"_s;
    }
    if (relation == u"<"_s || relation == u">"_s) {
        return relation == u"<"_s ? numberOf(widget) < operand.toDouble()
                                  : numberOf(widget) > operand.toDouble();
    }
    if (relation == u"="_s) {
        return Tour::textOf(widget) == operand;
    }
    const bool changes = operand == u"changed"_s;
    return changes || operand == u"remembered"_s ? (Tour::textOf(widget) == remembered_[name]) != changes
                                                 : is(widget, operand);
}
