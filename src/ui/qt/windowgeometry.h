#pragma once

#include <QMargins>
#include <QObject>
#include <QPoint>
#include <QSize>

#include "platform/form.h"
#include "ui/qt/links.h"

namespace vek {

/// Keeps a top-level window where its form's geometry says, and the geometry where the user has moved the
/// window.
class WindowGeometry : public QObject {
    Q_OBJECT

  public:
    /// Lives as a child of `window`; does nothing any more once `links` are gone.
    WindowGeometry(Geometry& geometry, QWidget& window, Links& links);

    /// Puts the window where the form's geometry says.
    void apply();

    /// Tells the form where the window stands and how large it is; to be called when it has been shown.
    void report();

    /// The form is closed: its geometry must not be touched any more.
    void detach() { geometry_ = nullptr; }

    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void placeWindow();
    void sizeWindow();
    void allowForFrame();
    QMargins frame() const;

    Geometry* geometry_;
    QWidget& window_;
    Dispatcher& dispatcher_;
    QMargins frame_;
    QSize wanted_{0, 0};      ///< by the form, as long as its frame may be missing; 0 = the window's own
    bool reporting_ = false;  ///< the change of geometry comes from the window
};

}  // namespace vek
