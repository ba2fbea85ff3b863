#include "ui/qt/qtdesktop.h"

#include <QAbstractEventDispatcher>
#include <QApplication>
#include <QFileDialog>
#include <QFileInfo>
#include <QLocale>
#include <QMessageBox>
#include <QPushButton>
#include <QStandardPaths>
#include <QTime>
#include <QTimer>
#include <algorithm>
#include <optional>

#include "program/dispatcher.h"
#include "ui/qt/inputnotifier.h"
#include "ui/qt/qttext.h"

namespace vek {

namespace {

/// However many events keep coming, a handler that yields gets on after this time.
constexpr int longestYieldMs = 50;

QMessageBox::Icon iconOf(MessageIcon icon) {
    constexpr QMessageBox::Icon icons[] = {QMessageBox::NoIcon, QMessageBox::Information,
                                           QMessageBox::Critical};
    return icons[static_cast<int>(icon)];
}

/// The window that a dialog is to stand on: the active one, else the main window.
QWidget* dialogParent() {
    if (QWidget* active = QApplication::activeWindow()) {
        return active;
    }
    for (QWidget* window : QApplication::topLevelWidgets()) {
        if (window->isVisible() && window->windowType() == Qt::Window) {
            return window;
        }
    }
    return nullptr;
}

void addButtons(QMessageBox& view, const MessageBox& box) {
    view.addButton(QMessageBox::Ok)->setText(QStringLiteral("OK"));
    view.setDefaultButton(QMessageBox::Ok);
    if (box.buttons == MessageButtons::OkCancel) {
        view.addButton(QMessageBox::Cancel)->setText(QStringLiteral("Abbrechen"));
        view.setEscapeButton(box.escape == MessageAnswer::Ok ? QMessageBox::Ok : QMessageBox::Cancel);
    }
}

}  // namespace

MessageAnswer QtDesktop::messageBox(const MessageBox& box) {
    // What the user did while a transaction blocked would be lost on the box: a press on "Stop" above all.
    processEvents();
    QMessageBox view(dialogParent());
    view.setTextFormat(Qt::PlainText);
    view.setWindowTitle(toQt(box.title));
    view.setText(toQt(box.text));
    view.setIcon(iconOf(box.icon));
    addButtons(view, box);
    const int answer = view.exec();
    dispatcher_.throwIfEnding();
    return answer == QMessageBox::Cancel ? MessageAnswer::Cancel : MessageAnswer::Ok;
}

std::optional<std::string> QtDesktop::chooseFile(const FileDialog& dialog) {
    dispatcher_.throwIfEnding();
    const bool save = dialog.purpose == FileDialog::Purpose::Save;
    QFileDialog view(dialogParent(), toQt(dialog.title));
    view.setOption(QFileDialog::DontUseNativeDialog);
    view.setAcceptMode(save ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
    view.setFileMode(save ? QFileDialog::AnyFile : QFileDialog::ExistingFile);
    view.setNameFilter(toQt(dialog.filterName) + QStringLiteral(" (") + toQt(dialog.filePattern) +
                       QStringLiteral(")"));
    view.setDefaultSuffix(QFileInfo(toQt(dialog.filePattern)).suffix());
    view.setDirectory(lastFolder_.isEmpty()
                          ? QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation)
                          : lastFolder_);
    view.selectFile(toQt(dialog.fileName));
    view.setLabelText(QFileDialog::LookIn,
                      save ? QStringLiteral("Speichern in:") : QStringLiteral("Suchen in:"));
    view.setLabelText(QFileDialog::FileName, QStringLiteral("Dateiname:"));
    view.setLabelText(QFileDialog::FileType, QStringLiteral("Dateityp:"));
    view.setLabelText(QFileDialog::Accept, save ? QStringLiteral("Speichern") : QStringLiteral("Öffnen"));
    view.setLabelText(QFileDialog::Reject, QStringLiteral("Abbrechen"));
    const bool chosen = view.exec() == QDialog::Accepted;
    dispatcher_.throwIfEnding();
    const QStringList files = view.selectedFiles();
    if (!chosen || files.isEmpty()) {
        return std::nullopt;
    }
    lastFolder_ = QFileInfo(files.first()).path();
    return fromQt(files.first());
}

QEventLoop::ProcessEventsFlags QtDesktop::handledEvents() const {
    return inputHeld_ ? QEventLoop::ExcludeUserInputEvents : QEventLoop::AllEvents;
}

/// The dispatcher looks at the input that it has left lying only when it is woken.
void QtDesktop::holdInput(bool held) {
    inputHeld_ = held;
    if (!held) {
        QAbstractEventDispatcher::instance()->wakeUp();
    }
}

void QtDesktop::processEvents() {
    dispatcher_.throwIfEnding();
    QCoreApplication::processEvents(handledEvents(), longestYieldMs);
    dispatcher_.throwIfEnding();
}

void QtDesktop::waitForEvents(TimePoint until) {
    dispatcher_.throwIfEnding();
    if (line_ != nullptr && line_->takeReceived()) {
        processEvents();
        return;
    }
    // Notifier and timer only wake the wait: events without a handler.
    std::optional<InputNotifier> input;
    if (line_ != nullptr && line_->systemInput() != nullptr) {
        input.emplace(*line_->systemInput());
    }
    QTimer limit;
    if (until != TimePoint::max()) {
        limit.setTimerType(Qt::PreciseTimer);
        limit.start(std::max(std::chrono::ceil<Milliseconds>(until - now()), Milliseconds{0}));
    }
    QCoreApplication::processEvents(handledEvents() | QEventLoop::WaitForMoreEvents);
    dispatcher_.throwIfEnding();
}

std::string QtDesktop::timeOfDay() const {
    return fromQt(QTime::currentTime().toString(QStringLiteral("HH:mm")));
}

NumberLocale systemNumberLocale() {
    // The variables themselves, in the system's order: a locale that is named but not installed counts too.
    QLocale locale = QLocale::system();
    for (const char* variable : {"LC_ALL", "LC_NUMERIC", "LANG"}) {
        if (const QByteArray name = qgetenv(variable); !name.isEmpty()) {
            locale = QLocale(QString::fromLocal8Bit(name));
            break;
        }
    }
    NumberLocale numbers;
    numbers.decimalPoint = fromQt(locale.decimalPoint());
    numbers.groupSeparator =
        locale.language() == QLocale::C ? std::string() : fromQt(locale.groupSeparator());
    return numbers;
}

}  // namespace vek
