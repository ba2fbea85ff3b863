#pragma once

#include <QHash>
#include <QString>
#include <QStringList>
#include <functional>

/// Does the steps of the tour's files, one a line, as a user at the program's windows: from a thread of its
/// own. What does not come true in time ends the tour with an exception. steps/README.md lists the steps.
class Interpreter {
  public:
    /// `steps` holds the files of steps, `folder` takes the pictures.
    Interpreter(QString steps, QString folder);

    /// Does what stands in NAME.steps; "$word" in it stands for the value of "word=value".
    void run(const QString& name, const QStringList& values = {});

  private:
    void doStep(QString line);
    void waitFor(const QString& what, const std::function<bool()>& condition);
    void print(const QString& line) const;

    void see(const QStringList& conditions);
    void menu(const QStringList& arguments);
    void press(const QString& caption);
    void type(const QString& name, const QString& text);
    void answerBox(const QStringList& arguments);
    void picture(const QString& name, const QString& file);
    void checkFile(const QString& line);
    void remember(const QString& name);
    void compare(const QString& name, bool same);
    void pollUntilStopped();
    void countTerminal();
    void leave(const QString& file, const QString& content);

    QString steps_;
    QString folder_;
    QHash<QString, std::function<void(QStringList)>> verbs_;
    QHash<QString, QString> remembered_;
    int seconds_ = 10;
};
