#include "ui/qt/frontend.h"

#include <QApplication>
#include <QMdiArea>
#include <QSessionManager>
#include <utility>

#include "ui/qt/besidewindow.h"
#include "ui/qt/childwindow.h"
#include "ui/qt/endsignals.h"
#include "ui/qt/frontstyle.h"
#include "ui/qt/icons.h"
#include "ui/qt/mainwindow.h"

namespace vek {

FrontEnd::FrontEnd() : endSignals_(std::make_unique<EndSignals>([this] { requestEnd(); })) {
    QApplication::setStyle(new FrontStyle(QStringLiteral("Fusion")));
    QApplication::setWindowIcon(programIcon());
    QApplication::setQuitOnLastWindowClosed(false);  // the program decides when it ends
    QCoreApplication::installTranslator(&texts_);
    QObject::connect(qApp, &QGuiApplication::commitDataRequest, endSignals_.get(),
                     [this](QSessionManager& /*session*/) { requestEnd(); });
}

FrontEnd::~FrontEnd() = default;

int FrontEnd::exec(const std::function<void()>& start) {
    dispatcher_.run(start);
    const int status = dispatcher_.ending() ? 0 : QApplication::exec();
    dispatcher_.stop();
    discardAll();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    return status;
}

void FrontEnd::shown(Form& form) {
    if (dispatcher_.ending()) {
        return;
    }
    using Show = void (FrontEnd::*)(Form&);
    constexpr Show shows[] = {&FrontEnd::showMain, &FrontEnd::showBeside, &FrontEnd::showChild};
    (this->*shows[static_cast<int>(form.kind)])(form);
}

void FrontEnd::showMain(Form& form) {
    mainWindow_ = new MainWindow(form, dispatcher_);
    windows_.emplace(&form, mainWindow_);
    mainWindow_->present();
    paintMain();
    for (Form* waiting : std::exchange(waiting_, {})) {
        makeBeside(*waiting);
    }
}

/// The main window has its picture before anything is done for the others, and nobody uses it before they are
/// there.
void FrontEnd::paintMain() {
    const InputHold hold(desktop_);
    desktop_.processEvents();
}

void FrontEnd::showBeside(Form& form) {
    if (mainWindow_ == nullptr) {
        waiting_.push_back(&form);
    } else {
        makeBeside(form);
    }
}

void FrontEnd::makeBeside(Form& form) {
    auto* const window = new BesideWindow(form, dispatcher_);
    windows_.emplace(&form, window);
    window->attachTo(*mainWindow_);
    window->present();
}

void FrontEnd::showChild(Form& form) {
    if (mainWindow_ == nullptr) {
        return;
    }
    auto* const window = new ChildWindow(form, dispatcher_, mainWindow_->area());
    windows_.emplace(&form, window);
    window->present();
}

void FrontEnd::closed(Form& form) {
    std::erase(waiting_, &form);
    const auto found = windows_.find(&form);
    if (found == windows_.end()) {
        return;
    }
    FormWindow* const window = found->second;
    if (window == mainWindow_) {
        discardAll();  // the others stand inside or beside it
        return;
    }
    windows_.erase(found);
    window->discard();
}

void FrontEnd::discardAll() {
    for (const auto& [form, window] : std::exchange(windows_, {})) {
        window->discard();
    }
    waiting_.clear();
    mainWindow_ = nullptr;
}

void FrontEnd::leave() {
    const QWidgetList windows = QApplication::topLevelWidgets();
    for (QWidget* window : windows) {
        window->hide();
    }
    QCoreApplication::exit(0);
}

void FrontEnd::requestEnd() {
    if (mainWindow_ != nullptr) {
        mainWindow_->requestClose();
    } else {
        dispatcher_.run([] { throw ProgramEnd{}; });  // a message box is up before the first window
    }
}

}  // namespace vek
