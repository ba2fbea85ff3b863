#pragma once

#include <QRadioButton>

#include "platform/controls.h"

namespace vek {

/// An option button whose group is kept by the program. The group is one stop of the tab key; the arrow keys
/// choose within it.
class OptionRadio : public QRadioButton {
    Q_OBJECT

  public:
    OptionRadio(OptionButton& control, QWidget& parent);

    /// To be called when the value or the enabling of this button has changed.
    void updateTabStop();

  protected:
    void nextCheckState() override { setChecked(true); }
    void keyPressEvent(QKeyEvent* event) override;

  private:
    OptionRadio* viewOf(const OptionButton* option) const;
    bool choosable(const OptionButton* option) const;
    const OptionButton* tabStop() const;
    void choose(int step);

    OptionButton& control_;
};

}  // namespace vek
