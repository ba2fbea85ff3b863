#include "ui/qt/controlviews.h"

#include <QAbstractButton>
#include <QCheckBox>
#include <QComboBox>
#include <QFontDatabase>
#include <QFontMetrics>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QWidget>
#include <algorithm>

#include "ui/qt/indicators.h"
#include "ui/qt/logview.h"
#include "ui/qt/optionradio.h"
#include "ui/qt/qttext.h"
#include "ui/qt/twips.h"

namespace vek {

namespace {

constexpr int fieldPadding = 12;  // frame and margins of a field beside its characters
constexpr int comboCharacters = 12;
constexpr double titleScale = 1.3;
constexpr QColor refusedColor{255, 170, 170};
constexpr QColor failedColor{220, 40, 40};

int widthOfCharacters(const QWidget& widget, int count) {
    return widget.fontMetrics().horizontalAdvance(QLatin1Char('0')) * count + fieldPadding;
}

/// As wide as it must be, wider where there is room; the toolkit's own field asks for 17 characters always.
class Field : public QLineEdit {
  public:
    Field(int characters, QWidget* parent) : QLineEdit(parent), characters_(characters) {}

    QSize sizeHint() const override {
        return {widthOfCharacters(*this, characters_), QLineEdit::sizeHint().height()};
    }
    QSize minimumSizeHint() const override { return sizeHint(); }

  private:
    int characters_;
};

/// Keeps room for a number of characters, and grows with longer texts.
class TextLabel : public QLabel {
  public:
    TextLabel(int characters, QWidget* parent) : QLabel(parent), characters_(characters) {}

    QSize sizeHint() const override { return withRoom(QLabel::sizeHint()); }
    QSize minimumSizeHint() const override { return withRoom(QLabel::minimumSizeHint()); }

  private:
    QSize withRoom(QSize size) const {
        return characters_ == 0 ? size : size.expandedTo({widthOfCharacters(*this, characters_), 0});
    }

    int characters_;
};

Qt::Alignment alignmentOf(Align align) {
    constexpr Qt::AlignmentFlag flags[] = {Qt::AlignLeft, Qt::AlignHCenter, Qt::AlignRight};
    return flags[static_cast<int>(align)] | Qt::AlignVCenter;
}

QFont fontOf(TextStyle style, QFont font) {
    if (style == TextStyle::FixedWidth) {
        return QFontDatabase::systemFont(QFontDatabase::FixedFont);
    }
    font.setBold(style != TextStyle::Normal);
    if (style == TextStyle::Title) {
        font.setPointSizeF(font.pointSizeF() * titleScale);
    }
    return font;
}

void sink(QLabel& label) {
    label.setFrameStyle(QFrame::StyledPanel | QFrame::Sunken);
    label.setBackgroundRole(QPalette::Base);
    label.setAutoFillBackground(true);
    label.setMargin(2);
}

void setBackground(QLabel& label, const std::optional<Color>& color) {
    QPalette palette;
    if (color) {
        palette.setColor(label.backgroundRole(), QColor(color->red, color->green, color->blue));
        palette.setColor(label.foregroundRole(), Qt::black);  // readable on each of the signal colours
        label.setAutoFillBackground(true);
    }
    label.setPalette(palette);
}

QWidget* makeView(Label& control, QWidget& parent, Links& links) {
    auto* label = new TextLabel(control.minimumCharacters, &parent);
    label->setTextFormat(Qt::PlainText);
    label->setAlignment(alignmentOf(control.align));
    label->setFont(fontOf(control.style, label->font()));
    if (control.sunken) {
        sink(*label);
    }
    links.show(control.caption, [label](const std::string& text) { label->setText(toQt(text)); });
    links.show(control.backColor,
               [label](const std::optional<Color>& color) { setBackground(*label, color); });
    return label;
}

void markRefused(QWidget& field, bool refused) {
    QPalette palette;
    if (refused) {
        palette.setColor(QPalette::Base, refusedColor);
        palette.setColor(QPalette::Text, Qt::black);
    }
    field.setPalette(palette);
}

QWidget* makeView(TextBox& control, QWidget& parent, Links& links) {
    auto* edit = new Field(control.minimumCharacters, &parent);
    links.show(control.text, [edit](const std::string& text) {
        if (edit->text() != toQt(text)) {
            edit->setText(toQt(text));
            edit->setCursorPosition(0);  // a long text is seen from its beginning
        }
    });
    links.show(control.refused, [edit](bool refused) { markRefused(*edit, refused); });
    links.on(edit, &QLineEdit::textChanged,
             [&control, &links](const QString& text) { links.change(control.text, fromQt(text)); });
    return edit;
}

/// Whoever reads the button aloud is told the caption itself.
void showCaption(Property<std::string>& caption, char letter, QAbstractButton& button, Links& links) {
    links.show(caption, [&button, letter](const std::string& text) {
        button.setText(captionText(text, letter));
        button.setAccessibleName(toQt(text));
    });
}

QWidget* makeView(Button& control, QWidget& parent, Links& links) {
    auto* button = new QPushButton(&parent);
    button->setAutoDefault(true);  // Enter presses the button that has the focus
    showCaption(control.caption, control.mnemonic, *button, links);
    links.on(button, &QPushButton::clicked, [&control, &links] { links.call(control.click); });
    return button;
}

QWidget* makeView(CheckBox& control, QWidget& parent, Links& links) {
    auto* box = new QCheckBox(&parent);
    showCaption(control.caption, control.mnemonic, *box, links);
    const auto draw = [box, &control](bool /*changed*/) {
        box->setTristate(control.unknown);
        box->setCheckState(control.unknown ? Qt::PartiallyChecked
                           : control.value ? Qt::Checked
                                           : Qt::Unchecked);
    };
    links.show(control.value, draw);
    links.show(control.unknown, draw);
    links.on(box, &QCheckBox::stateChanged, [&control, &links](int state) {
        if (state != Qt::PartiallyChecked) {
            links.change(control.value, state == Qt::Checked, control.click);
        }
    });
    return box;
}

QWidget* makeView(OptionButton& control, QWidget& parent, Links& links) {
    auto* radio = new OptionRadio(control, parent);
    showCaption(control.caption, 0, *radio, links);
    links.show(control.value, [radio](bool set) {
        radio->setChecked(set);
        radio->updateTabStop();
    });
    links.show(control.enabled, [radio](bool /*enabled*/) { radio->updateTabStop(); });
    links.on(radio, &OptionRadio::toggled,
             [&control, &links](bool set) { links.change(control.value, set); });
    return radio;
}

/// The list holds what the program put into it; what the user types stays in the edit field.
void fill(QComboBox& box, const std::vector<std::string>& items) {
    const QString typed = box.currentText();
    const QSignalBlocker quiet(box);
    box.clear();
    for (const std::string& item : items) {
        box.addItem(toQt(item));
    }
    box.setCurrentIndex(-1);
    box.setEditText(typed);
}

QWidget* makeView(ComboBox& control, QWidget& parent, Links& links) {
    auto* box = new QComboBox(&parent);
    box->setEditable(true);
    box->setInsertPolicy(QComboBox::NoInsert);
    box->setCompleter(nullptr);
    box->setSizeAdjustPolicy(QComboBox::AdjustToContents);
    QLineEdit* edit = box->lineEdit();
    edit->setPlaceholderText(toQt(control.hint));
    box->setMinimumContentsLength(
        std::max(comboCharacters, static_cast<int>(edit->placeholderText().size())));
    links.show(control.items, [box](const std::vector<std::string>& items) { fill(*box, items); });
    links.show(control.text, [box](const std::string& text) {
        if (box->currentText() != toQt(text)) {
            box->setEditText(toQt(text));
        }
    });
    const auto markSelection = [&control, &links, edit] {
        links.change(control.selectedText, fromQt(edit->selectedText()), nullptr);
    };
    links.on(edit, &QLineEdit::textChanged, [&control, &links, markSelection](const QString& text) {
        markSelection();
        links.change(control.text, fromQt(text));
    });
    // A field that loses the focus shows its marking no longer, but what the user marked counts when he then
    // presses a button.
    links.on(edit, &QLineEdit::selectionChanged, [edit, markSelection] {
        if (edit->hasFocus() || edit->hasSelectedText()) {
            markSelection();
        }
    });
    links.on(box, &QComboBox::activated, [edit](int /*index*/) { edit->selectAll(); });
    return box;
}

QWidget* makeView(Frame& control, QWidget& parent, Links& links) {
    auto* group = new QGroupBox(&parent);
    links.show(control.caption, [group](const std::string& text) { group->setTitle(captionText(text)); });
    return group;
}

QWidget* makeView(Slider& control, QWidget& parent, Links& links) {
    auto* slider = new PositionBar(&parent);
    slider->setRange(control.minimum, control.maximum);
    slider->setTickInterval((control.maximum - control.minimum) / PositionBar::tickSpaces);
    links.show(control.value, [slider](int position) { slider->setValue(position); });
    return slider;
}

/// The toolkit's bar paints at once, also while no events are handled.
QWidget* makeView(ProgressBar& control, QWidget& parent, Links& links) {
    auto* bar = new QProgressBar(&parent);
    links.show(control.total, [bar](int total) {
        bar->setTextVisible(total > 0);
        bar->setRange(0, std::max(total, 1));
    });
    links.show(control.text, [bar](const std::string& text) { bar->setFormat(toQt(text)); });
    links.show(control.failed, [bar](bool failed) {
        QPalette palette;
        if (failed) {
            palette.setColor(QPalette::Highlight, failedColor);
        }
        bar->setPalette(palette);
    });
    links.show(control.done, [bar](int done) { bar->setValue(done); });
    return bar;
}

QWidget* makeView(Shape& control, QWidget& parent, Links& links) {
    auto* lamp = new Lamp(&parent);
    links.show(control.fillColor,
               [lamp](const Color& color) { lamp->setColor(QColor(color.red, color.green, color.blue)); });
    return lamp;
}

QWidget* makeView(Picture& /*control*/, QWidget& parent, Links& /*links*/) {
    return new ProgramPicture(&parent);
}

QWidget* makeView(Log& control, QWidget& parent, Links& links) {
    auto* view = new LogView(control.store, &parent);
    links.show(control.height, [view](int twips) { view->setWantedHeight(pixelsFromTwips(twips)); });
    return view;
}

}  // namespace

void bindCommon(Control& control, QWidget& widget, Links& links) {
    widget.setObjectName(toQt(control.name));
    links.show(control.visible, [&widget](bool visible) { widget.setVisible(visible); });
    links.show(control.enabled, [&widget](bool enabled) { widget.setEnabled(enabled); });
    links.show(control.toolTip, [&widget](const std::string& text) { widget.setToolTip(toQt(text)); });
}

QWidget* makeControlView(PlacedControl control, QWidget& parent, Links& links) {
    return std::visit(
        [&](auto* kind) {
            QWidget* const view = makeView(*kind, parent, links);
            bindCommon(*kind, *view, links);
            return view;
        },
        control);
}

}  // namespace vek
