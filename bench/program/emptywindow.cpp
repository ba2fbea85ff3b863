#include <QApplication>
#include <QLabel>
#include <QMainWindow>

/// The least that a program with a window can do, for comparison; with an argument, the same with this text
/// in the window.
int main(int argc, char** argv) {
    const QApplication application(argc, argv);
    QMainWindow window;
    if (argc > 1) {
        window.setCentralWidget(new QLabel(QString::fromLocal8Bit(argv[1])));
    }
    window.show();
    return QApplication::exec();
}
