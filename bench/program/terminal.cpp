#include <malloc.h>

#include <QApplication>
#include <QList>
#include <QPlainTextEdit>
#include <QScrollBar>
#include <QTextCursor>
#include <QTextEdit>
#include <QTimer>
#include <algorithm>
#include <array>
#include <ctime>
#include <exception>
#include <functional>
#include <memory>
#include <random>
#include <stdexcept>
#include <string>
#include <vector>

#include "app/frmModBus.h"
#include "platform/hextext.h"
#include "report.h"
#include "samples.h"
#include "support/fakeclock.h"
#include "support/fakefiles.h"
#include "support/fakeserial.h"
#include "ui/qt/frontend.h"
#include "ui/qt/logview.h"

/// The terminal after ten million frames, in the program's own windows, beside the toolkit's text editors.
/// Times are processor time of the thread that draws: nothing here waits, and a busy machine then spoils
/// less.
namespace vek::bench {

namespace {

constexpr int million = 1'000'000;
constexpr int longLog = 10 * million;
constexpr int peerLog = 200'000;
constexpr int linesPerYield = 1'000;
constexpr int places = 200;
constexpr int logRounds = 15;
constexpr int rounds = 5;
constexpr int parts = 10;
constexpr int longestLag = 5'000;  // milliseconds
constexpr double repaintLimit = 5e-3;
constexpr QSize editorSize(330, 700);  // about what the terminal has beside the main window

/// A frame of the line as both links log it.
struct Frame {
    LogColor color;
    std::string bytes;
};

/// What the poll of one channel logs: three requests, a reply of two registers and two of one.
std::array<Frame, 6> pollFrames() {
    using namespace std::string_literals;
    const std::string request = "\x03\x03\x03\xE8\x00\x02\x44\x59"s;
    const std::string two = "\x03\x03\x04\x44\x7A\x00\x00\xF1\x0C"s;
    const std::string one = "\x03\x03\x02\x00\x41\x80\x74"s;
    return {{{LogColor::Black, request},
             {LogColor::Red, two},
             {LogColor::Black, request},
             {LogColor::Red, one},
             {LogColor::Black, request},
             {LogColor::Red, one}}};
}

using Append = std::function<void(const Frame& frame)>;

/// Appends frames, with the windows' events in between; returns the bytes of the frames.
std::size_t feed(int lines, const Append& append) {
    static const auto frames = pollFrames();
    std::size_t bytes = 0;
    for (int line = 0; line < lines; ++line) {
        const Frame& frame = frames[static_cast<std::size_t>(line) % frames.size()];
        append(frame);
        bytes += frame.bytes.size();
        if (line % linesPerYield == linesPerYield - 1) {
            QCoreApplication::processEvents();
        }
    }
    return bytes;
}

double threadSeconds() {
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + 1e-9 * static_cast<double>(time.tv_nsec);
}

double processorSecondsOf(const std::function<void()>& work) {
    const double start = threadSeconds();
    work();
    return threadSeconds() - start;
}

double heapBytes() {
    const auto heap = mallinfo2();
    return static_cast<double>(heap.uordblks + heap.hblkhd);
}

QList<LogView*> shownViews() {
    QList<LogView*> shown;
    for (QWidget* widget : QApplication::allWidgets()) {
        auto* const view = qobject_cast<LogView*>(widget);
        if (view != nullptr && view->isVisible()) {
            shown.append(view);
        }
    }
    return shown;
}

/// The whole program, with the terminal beside its main window.
class Terminal {
  public:
    /// `frontEnd` is to run before open().
    explicit Terminal(FrontEnd& frontEnd)
        : program_{{frontEnd.desktop(), frontEnd, serial_, profileFiles_, folders_, {}}} {}

    /// Shows the windows.
    void open() {
        const QList<LogView*> others = shownViews();
        program_.windows.open(std::make_unique<frmModBus>(program_));
        QCoreApplication::processEvents();
        QList<LogView*> views = shownViews();
        views.removeIf([&others](LogView* view) { return others.contains(view); });
        if (views.size() != 1) {
            throw std::runtime_error("the terminal is not shown");
        }
        view_ = views.first();
    }

    LogView& view() { return *view_; }

    /// Appends frames and lets the view show them all; returns the bytes of the frames.
    std::size_t take(int lines) {
        const std::size_t bytes = feed(lines, [this](const Frame& frame) {
            program_.terminalLog.append(frame.color, LogForm::Hex, frame.bytes);
        });
        waitForView();
        return bytes;
    }

  private:
    /// The view takes in new lines at its own pace, far more at once here than any line can bring.
    void waitForView() {
        const QScrollBar& bar = *view_->verticalScrollBar();
        QTimer limit;
        limit.setSingleShot(true);
        limit.start(longestLag);
        const auto isAtEnd = [this, &bar] {
            const int linesKnown = bar.maximum() + bar.pageStep();
            return linesKnown == static_cast<int>(program_.terminalLog.lineCount()) &&
                   bar.value() == bar.maximum();
        };
        while (!isAtEnd()) {
            if (!limit.isActive()) {
                throw std::runtime_error("the terminal does not follow its log");
            }
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        }
        QCoreApplication::processEvents();  // draws them
    }

    FakeClock clock_;
    FakeSerial serial_{clock_};
    FakeProfileFiles profileFiles_;
    FakeFolders folders_;
    Program program_;
    LogView* view_ = nullptr;
};

/// Does the work as a handler of the program, which then ends. What the work throws comes out here: a
/// handler would end the process.
void inProgram(FrontEnd& frontEnd, const std::function<void()>& work) {
    std::exception_ptr problem;
    frontEnd.exec([&] {
        try {
            work();
        } catch (...) {
            problem = std::current_exception();
        }
        throw ProgramEnd();
    });
    if (problem) {
        std::rethrow_exception(problem);
    }
}

struct LogFigures {
    double first = 0;    ///< seconds a line of the first million
    double last = 0;     ///< the same of the last
    double memory = 0;   ///< bytes
    double payload = 0;  ///< bytes of the frames
    double repaint = 0;  ///< seconds, the longest of all places
};

double longestRepaint(LogView& view) {
    std::mt19937 random(1);
    std::uniform_int_distribution<int> place(0, view.verticalScrollBar()->maximum());
    double longest = 0;
    for (int count = 0; count < places; ++count) {
        longest = std::max(longest, processorSecondsOf([&] {
                               view.verticalScrollBar()->setValue(place(random));
                               view.viewport()->repaint();
                           }));
    }
    return longest;
}

/// A log's last million beside the first million of a log in a second program, part by part in turns: what
/// else the machine does, and pages of memory that are fresh or used before, meet both alike.
LogFigures measureLog() {
    LogFigures figures;
    FrontEnd frontEnd;
    Terminal old(frontEnd);
    Terminal young(frontEnd);
    const auto grow = [&figures, &old](int lines) {
        const double before = heapBytes();
        const double seconds =
            processorSecondsOf([&] { figures.payload += static_cast<double>(old.take(lines)); });
        figures.memory += heapBytes() - before;
        return seconds;
    };
    inProgram(frontEnd, [&] {
        old.open();
        grow(longLog - million);
        young.open();
        const auto takeFirst = [&] {
            figures.first += processorSecondsOf([&] { young.take(million / parts); }) / million;
        };
        const auto takeLast = [&] { figures.last += grow(million / parts) / million; };
        for (int pair = 0; pair < parts / 2; ++pair) {
            takeFirst();
            takeLast();
            takeLast();
            takeFirst();
        }
        figures.repaint = longestRepaint(old.view());
    });
    return figures;
}

struct Cost {
    double seconds = 0;
    double bytes = 0;
};

Cost costOfLines(const std::function<void()>& takeLines) {
    Cost cost;
    const double before = heapBytes();
    cost.seconds = processorSecondsOf(takeLines) / peerLog;
    cost.bytes = (heapBytes() - before) / peerLog;
    return cost;
}

Cost costOfOurs() {
    Cost cost;
    FrontEnd frontEnd;
    Terminal terminal(frontEnd);
    inProgram(frontEnd, [&] {
        terminal.open();
        cost = costOfLines([&terminal] { terminal.take(peerLog); });
    });
    return cost;
}

/// An editor as lean as it can be made: no undoing, no wrapping, and laid out once for all the lines of a
/// yield.
template <class Editor>
Cost costOfEditor() {
    Editor editor;
    editor.setReadOnly(true);
    editor.setUndoRedoEnabled(false);
    editor.setLineWrapMode(Editor::NoWrap);
    editor.resize(editorSize);
    editor.show();
    QCoreApplication::processEvents();
    std::array<QTextCharFormat, 2> formats;
    formats[0].setForeground(Qt::black);
    formats[1].setForeground(Qt::red);
    QTextCursor end(editor.document());
    int lines = 0;
    const Append append = [&](const Frame& frame) {
        if (lines % linesPerYield == 0) {
            end.beginEditBlock();
        }
        end.insertText(QString::fromStdString(ToHexText(frame.bytes)),
                       formats[static_cast<std::size_t>(frame.color)]);
        end.insertBlock();
        if (++lines % linesPerYield == 0) {
            end.endEditBlock();
            editor.verticalScrollBar()->setValue(editor.verticalScrollBar()->maximum());
        }
    };
    return costOfLines([&append] { feed(peerLog, append); });
}

constexpr double nanoseconds = 1e9;
constexpr double milliseconds = 1e3;

/// The median round of one figure.
double middle(const std::vector<LogFigures>& found, double LogFigures::*figure) {
    std::vector<double> values(found.size());
    std::ranges::transform(found, values.begin(), figure);
    return median(values);
}

void measureLongLog() {
    std::vector<LogFigures> found(logRounds);
    std::ranges::generate(found, measureLog);
    const auto of = [&found](double LogFigures::*figure) { return middle(found, figure); };
    // The two figures of one round, since they are only comparable with each other.
    const auto growth = [](const LogFigures& round) { return round.last / round.first; };
    std::ranges::nth_element(found, found.begin() + logRounds / 2, {}, growth);
    const LogFigures& lines = found[logRounds / 2];
    print({"terminal: a line of the 10th million", lines.last * nanoseconds, lines.first * nanoseconds, "ns",
           "of a new log's 1st million", 1.1});
    print({"terminal: memory of 10,000,000 frames", of(&LogFigures::memory) / million,
           of(&LogFigures::payload) / million, "MB", "their bytes", 1.5});
    print({"terminal: longest repaint of 200 places", of(&LogFigures::repaint) * milliseconds,
           repaintLimit * milliseconds, "ms", "limit", 1.0});
}

void measurePeers() {
    constexpr std::array<const char*, 2> names{"QPlainTextEdit", "QTextEdit"};
    std::array<Cost, 3> costs;
    std::array<std::vector<double>, 3> seconds;
    for (int round = 0; round < rounds; ++round) {
        costs = {costOfOurs(), costOfEditor<QPlainTextEdit>(), costOfEditor<QTextEdit>()};
        for (std::size_t side = 0; side < costs.size(); ++side) {
            seconds[side].push_back(costs[side].seconds);
        }
    }
    for (std::size_t peer = 0; peer < names.size(); ++peer) {
        print({"terminal: a line of 200,000", median(seconds[0]) * nanoseconds,
               median(seconds[peer + 1]) * nanoseconds, "ns", names[peer], 0.1});
        print({"terminal: memory of a line of 200,000", costs[0].bytes, costs[peer + 1].bytes, "bytes",
               names[peer], 0.2});
    }
}

void measure() {
    measureLongLog();
    measurePeers();
}

}  // namespace

}  // namespace vek::bench

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_LOGGING_RULES", "default.warning=false");  // what such a screen lacks
    const QApplication application(argc, argv);
    return vek::bench::run(vek::bench::measure);
}
