#pragma once

#include <QApplication>
#include <QColor>
#include <QMessageBox>
#include <QString>
#include <QWidget>
#include <functional>
#include <stdexcept>
#include <utility>

/// A user at the program's windows: presses, types and looks, from a thread of its own. What does not come
/// true in time is a TourFailure.
class Tour {
  public:
    /// `folder` takes the pictures.
    explicit Tour(QString folder) : folder_(std::move(folder)) {}

    /// Prints a headline.
    void chapter(const QString& title);

    /// Announces the next step; saw() tells what came of it.
    void step(const QString& what);
    void saw(const QString& what);

    /// Waits until the condition, asked in the program's own thread, is true. `what` says what is missing.
    void waitFor(const QString& what, const std::function<bool()>& condition, int seconds = 10);

    /// Waits until the widget's text is as expected.
    void expectText(const QString& name, const QString& expected);

    // Looking. Widgets are found by object name among all windows that are visible.
    QString text(const QString& name);
    bool isEnabled(const QString& name);
    QColor indicator(const QString& name);

    // Using. A press only starts the action: its window or box is to be waited for.
    void menu(const QStringList& path, const QString& picture = {});
    void press(const QString& name);
    void type(const QString& name, const QString& typed);
    void key(const QString& name, Qt::Key key);

    /// Waits for a message box with exactly this title and text, takes its picture if wanted, and answers it.
    void answer(const QString& title, const QString& boxText, QMessageBox::StandardButton button,
                const QString& picture = {});

    /// Stores a picture of the window with this object name, whole main window for a window inside it.
    void picture(const QString& name, const QString& file);

    /// Runs in the program's thread and gives back the result.
    template <class Function>
    static auto inProgram(Function function) {
        std::invoke_result_t<Function> result{};
        QMetaObject::invokeMethod(
            qApp, [&] { result = function(); }, Qt::BlockingQueuedConnection);
        return result;
    }

    /// Starts in the program's thread without waiting for the end: it may open a message box.
    void start(std::function<void()> action);

    /// The visible widget of this name; nullptr when there is none. Only inside inProgram() and start().
    static QWidget* find(const QString& name);

    /// Marks the tour as complete; the program may then end.
    void complete();

  private:
    void waitForWidget(const QString& name);

    QString folder_;
    int steps_ = 0;
};

class TourFailure : public std::runtime_error {
  public:
    explicit TourFailure(const QString& what) : std::runtime_error(what.toStdString()) {}
};
