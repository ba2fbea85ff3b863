#include "ui/qt/mainwindow.h"

#include <QCloseEvent>
#include <QGuiApplication>
#include <QMdiArea>
#include <QScreen>
#include <algorithm>

#include "ui/qt/formview.h"
#include "ui/qt/menus.h"
#include "ui/qt/qttext.h"
#include "ui/qt/twips.h"

namespace vek {

namespace {

constexpr QSize comfortableSize(1100, 800);
constexpr QSize smallestUseful(940, 680);  // the monitors need as much
constexpr QSize frameAllowance(8, 40);     // what a window manager's frame takes, roughly

}  // namespace

MainWindow::MainWindow(Form& form, Dispatcher& dispatcher)
    : form_(form), area_(new QMdiArea(this)), links_(dispatcher) {
    setObjectName(toQt(form.name));
    setCentralWidget(area_);
    area_->viewport()->setAutoFillBackground(false);
    area_->viewport()->setAttribute(Qt::WA_OpaquePaintEvent);  // it fills itself; once is enough
    makeMenu(form.menu(), *this, links_);
    if (ToolBar* bar = form.toolBar()) {
        makeToolBar(*bar, *this, links_);
    }
    if (StatusBar* bar = form.statusBar()) {
        makeStatusBar(*bar, *this, links_);
    }
    links_.show(form.caption, [this](const std::string& text) { setWindowTitle(toQt(text)); });
    runTimers(form, *this, links_);
    resize(comfortableSize.boundedTo(roomOnScreen() - frameAllowance));
    geometry_ = new WindowGeometry(form.geometry, *this, links_);
}

/// From the form's place on, to the right and down.
QSize MainWindow::roomOnScreen() const {
    const QSize before(pixelsFromTwips(form_.geometry.left), pixelsFromTwips(form_.geometry.top));
    return QGuiApplication::primaryScreen()->availableSize() - before;
}

/// A size that suits a common screen can be too much for a small one; but the windows inside need their room
/// more than the frame needs to be seen whole.
void MainWindow::keepOnScreen() {
    const QSize room = roomOnScreen().expandedTo(smallestUseful);
    form_.geometry.width = std::min(form_.geometry.width.get(), twipsFromPixels(room.width()));
    form_.geometry.height = std::min(form_.geometry.height.get(), twipsFromPixels(room.height()));
}

void MainWindow::present() {
    keepOnScreen();
    links_.show(form_.visible, [this](bool visible) { setVisible(visible); });
    geometry_->report();
}

void MainWindow::discard() {
    open_ = false;
    links_.cut();
    geometry_->detach();
    hide();
    deleteLater();
}

void MainWindow::requestClose() {
    if (open_) {
        links_.call([this] { form_.closeBoxPressed(); });
    }
}

void MainWindow::closeEvent(QCloseEvent* event) {
    event->ignore();
    requestClose();
}

void MainWindow::changeEvent(QEvent* event) {
    QMainWindow::changeEvent(event);
    // A maximized child window adds its own title; the caption stays what the form says.
    if (event->type() == QEvent::WindowTitleChange && open_ && windowTitle() != toQt(form_.caption)) {
        setWindowTitle(toQt(form_.caption));
    }
}

}  // namespace vek
