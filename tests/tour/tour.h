#pragma once

#include <QApplication>
#include <QString>
#include <QStringList>
#include <QWidget>
#include <functional>
#include <stdexcept>
#include <utility>

class TourFailure : public std::runtime_error {
  public:
    explicit TourFailure(const QString& what) : std::runtime_error(what.toStdString()) {}
};

/// A user at the program's windows: presses, types and looks, from a thread of its own. What does not come
/// true in time is a TourFailure.
class Tour {
  public:
    /// `folder` takes the pictures.
    explicit Tour(QString folder) : folder_(std::move(folder)) {}

    static void print(const QString& line);

    /// Waits until the condition, asked in the program's own thread, is true. `what` says what is missing.
    static void waitFor(const QString& what, const std::function<bool()>& condition, int seconds = 10);

    /// Chooses an entry of the main window's menu, with a picture of the last menu if one is named. Like the
    /// following, it only starts the action: its window or box is to be waited for.
    void menu(const QStringList& path, const QString& picture = {}) const;

    /// Presses the button with this caption in the window in front, in the frame with this title if one is
    /// named.
    static void press(const QString& frame, const QString& caption);

    // Widgets are found by object name among all windows that are visible.
    static void click(const QString& name);
    static void type(const QString& name, const QString& typed);
    static void key(const QString& name, Qt::Key key);

    /// Waits for a message box with exactly this title and text, takes its picture if one is named, and says
    /// OK.
    void answer(const QString& title, const QString& boxText, const QString& picture = {}) const;

    /// Stores a picture of the window with this object name, whole main window for a window inside it. Fails
    /// when something in it is cut, or lies over something else.
    void picture(const QString& name, const QString& file) const;

    /// Runs in the program's thread and gives back the result.
    template <class Function>
    static auto inProgram(Function function) {
        std::invoke_result_t<Function> result{};
        QMetaObject::invokeMethod(
            qApp, [&] { result = function(); }, Qt::BlockingQueuedConnection);
        return result;
    }

    /// The visible widget of this name; nullptr when there is none. Only inside inProgram().
    static QWidget* find(const QString& name);

    /// What can be read on it, without the marks of mnemonics. Only inside inProgram().
    static QString textOf(const QWidget* widget);

    /// Marks the tour as complete; the program may then end.
    void complete() const;

  private:
    QString folder_;
};
