#include <malloc.h>

#include <QApplication>
#include <QPlainTextEdit>
#include <QScrollBar>
#include <QTextCursor>
#include <QTextEdit>
#include <algorithm>
#include <array>
#include <ctime>
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
#include "support/fakefolders.h"
#include "support/fakeprofilefiles.h"
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
constexpr int rounds = 5;
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

/// Appends frames and lets the windows follow; returns the bytes of the frames.
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

/// The whole program on the screen, with the terminal beside its main window.
class Screen {
  public:
    template <class Work>
    void run(Work work) {
        frontEnd_.exec([this, work] {
            program_.windows.open(std::make_unique<frmModBus>(program_));
            QCoreApplication::processEvents();
            work(program_.terminalLog, view());
            throw ProgramEnd();
        });
    }

  private:
    static LogView& view() {
        for (QWidget* window : QApplication::topLevelWidgets()) {
            auto* const found = window->findChild<LogView*>();
            if (found != nullptr && found->isVisible()) {
                return *found;
            }
        }
        throw std::runtime_error("the terminal is not shown");
    }

    FrontEnd frontEnd_;
    FakeClock clock_;
    FakeSerial serial_{clock_};
    FakeProfileFiles profileFiles_;
    FakeFolders folders_;
    Program program_{{frontEnd_.desktop(), frontEnd_, serial_, profileFiles_, folders_, {}}};
};

struct LogFigures {
    double first = 0;    ///< seconds a line of the first million
    double last = 0;     ///< the same of the last
    double memory = 0;   ///< bytes
    double payload = 0;  ///< bytes of the frames
    double repaint = 0;  ///< seconds, the longest of all places
    int scrollRange = 0;
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

LogFigures measureLog() {
    LogFigures figures;
    Screen screen;
    screen.run([&figures](LogStore& log, LogView& view) {
        const Append append = [&log](const Frame& frame) {
            log.append(frame.color, LogForm::Hex, frame.bytes);
        };
        const double before = heapBytes();
        std::size_t bytes = 0;
        figures.first = processorSecondsOf([&] { bytes += feed(million, append); }) / million;
        bytes += feed(longLog - 2 * million, append);
        figures.last = processorSecondsOf([&] { bytes += feed(million, append); }) / million;
        figures.memory = heapBytes() - before;
        figures.payload = static_cast<double>(bytes);
        figures.repaint = longestRepaint(view);
        figures.scrollRange = view.verticalScrollBar()->maximum();
    });
    if (figures.scrollRange < longLog - million) {
        throw std::runtime_error("the terminal does not follow its log");
    }
    return figures;
}

struct Cost {
    double seconds = 0;
    double bytes = 0;
};

Cost costOfLines(const Append& append) {
    Cost cost;
    const double before = heapBytes();
    cost.seconds = processorSecondsOf([&] { feed(peerLog, append); }) / peerLog;
    cost.bytes = (heapBytes() - before) / peerLog;
    return cost;
}

Cost costOfOurs() {
    Cost cost;
    Screen screen;
    screen.run([&cost](LogStore& log, LogView& /*view*/) {
        cost =
            costOfLines([&log](const Frame& frame) { log.append(frame.color, LogForm::Hex, frame.bytes); });
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
    return costOfLines([&](const Frame& frame) {
        if (lines % linesPerYield == 0) {
            end.beginEditBlock();
        }
        end.insertText(QString::fromStdString(hexText(frame.bytes)),
                       formats[static_cast<std::size_t>(frame.color)]);
        end.insertBlock();
        if (++lines % linesPerYield == 0) {
            end.endEditBlock();
            editor.verticalScrollBar()->setValue(editor.verticalScrollBar()->maximum());
        }
    });
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
    std::vector<LogFigures> found(rounds);
    std::ranges::generate(found, measureLog);
    const auto of = [&found](double LogFigures::*figure) { return middle(found, figure); };
    print({"terminal: a line of the 10th million", of(&LogFigures::last) * nanoseconds,
           of(&LogFigures::first) * nanoseconds, "ns", "of the 1st million", 1.1});
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
