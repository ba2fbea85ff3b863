#pragma once

#include <QMap>
#include <QString>

#include "tour.h"

/// Walks through the windows as a script file tells, one line a command:
///
///     == TITLE, - WHAT                       a headline; the next step
///     menu ENTRY > ENTRY [| PICTURE]         press [FRAME: ]CAPTION           click NAME
///     type NAME = TEXT                       key NAME Return|Escape
///     box TITLE: TEXT [| PICTURE]            a message box comes, and is answered with OK
///     picture NAME FILE                      of a window; nothing in it is cut or covered
///     [within SECONDS:] expect NAME STATE [& NAME STATE ...]
///     remember NAME                          its text
///     file LINE                              stands in the settings file
///     terminal LINE [> BEGIN]                stands in the terminal, the next line begins so
///     include FILE [KEY=VALUE; ...]          {KEY} stands there for the value
///     complete                               the program may end from here on
///
/// States: "= TEXT", "> NUMBER", "< NUMBER", "is gone", "is enabled", "is disabled", "is on", "is off", "is
/// filled", "is full", "is changed" or "is remembered" (against what was remembered), "is green", "is
/// yellow", "is red", "is grey". {DATA} is the folder of the settings file, \n a line end in a box.
class Script {
  public:
    explicit Script(Tour& tour) : tour_(tour) {}

    void run(const QString& file, const QMap<QString, QString>& values = {});

  private:
    void perform(const QString& line);
    void expect(const QString& states, int seconds);
    bool isSo(const QString& state) const;
    void include(const QString& operand);

    Tour& tour_;
    QMap<QString, QString> remembered_;
    int steps_ = 0;
};
