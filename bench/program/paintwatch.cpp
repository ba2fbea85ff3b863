#include "paintwatch.h"

#include <QCoreApplication>
#include <QEvent>
#include <chrono>
#include <cstdio>
#include <cstdlib>

namespace {

/// Tells the time as soon as the first window that paints itself has its picture on the screen.
class PaintWatch : public QObject {
  public:
    PaintWatch() { qApp->installEventFilter(this); }

    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::Paint) {
            painted_ = true;
        }
        if (event->type() != QEvent::Expose) {
            return false;
        }
        // Delivered here, since all painting happens within.
        watched->event(event);
        if (painted_) {
            tell();
        }
        return true;
    }

  private:
    [[noreturn]] static void tell() {
        const std::chrono::duration<double> now = std::chrono::steady_clock::now().time_since_epoch();
        std::printf("figure %.9f 0\n", now.count());
        std::fflush(stdout);
        std::_Exit(0);
    }

    bool painted_ = false;
};

}  // namespace

QObject* PaintWatchPlugin::create(const QString& name, const QString& parameters) {
    Q_UNUSED(name)
    Q_UNUSED(parameters)
    return new PaintWatch;
}
