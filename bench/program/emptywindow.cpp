#include <QApplication>
#include <QMainWindow>

/// The least that a program with a window can do, for comparison.
int main(int argc, char** argv) {
    const QApplication application(argc, argv);
    QMainWindow window;
    window.show();
    return QApplication::exec();
}
