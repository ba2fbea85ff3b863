#pragma once

#include <cstddef>
#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "platform/color.h"
#include "platform/logstore.h"
#include "platform/property.h"

/// The controls of the windows as plain data: what a control shows and what happens when it is used. A front
/// end draws them and changes them as the user does; the windows' code reads and sets them and never sees a
/// toolkit.
///
/// All texts are UTF-8. `name` is the name by which tools and tests find the control. A handler that is not
/// set does nothing. A front end sets the changed property first and calls the handler afterwards.
namespace vek {

struct Control {
    explicit Control(std::string controlName) : name(std::move(controlName)) {}
    virtual ~Control() = default;
    Control(const Control&) = delete;
    Control& operator=(const Control&) = delete;

    const std::string name;
    Property<bool> visible{true};
    Property<bool> enabled{true};
    Property<std::string> toolTip;
};

enum class Align { Left, Center, Right };

enum class TextStyle { Normal, Bold, Title, FixedWidth };

struct Label : Control {
    explicit Label(std::string controlName, std::string text = {})
        : Control(std::move(controlName)), caption(std::move(text)) {}

    Property<std::string> caption;
    Align align = Align::Left;
    TextStyle style = TextStyle::Normal;
    int minimumCharacters =
        0;  ///< width kept free for a text of this length, so that a changing text moves nothing
    bool sunken = false;  ///< drawn as a field: a value, in contrast to a text that names one
    Property<std::optional<Color>> backColor;  ///< behind the text; nothing = the toolkit's own
};

struct TextBox : Control {
    explicit TextBox(std::string controlName) : Control(std::move(controlName)) {
        changed_ = text.observe([this](const std::string& /*text*/) { unknown = refused = false; });
    }

    Property<std::string> text;
    bool unknown = false;           ///< the text is no value, until it changes
    Property<bool> refused{false};  ///< marked: the text has not been accepted; until it changes
    int minimumCharacters = 8;

  private:
    Subscription changed_;
};

struct Button : Control {
    Button(std::string controlName, std::string text, char key = 0)
        : Control(std::move(controlName)), caption(std::move(text)), mnemonic(key) {}

    Property<std::string> caption;
    const char mnemonic;  ///< a letter of the caption; Alt with it presses the button. 0 = none
    std::function<void()> click;
};

struct CheckBox : Control {
    CheckBox(std::string controlName, std::string text, char key = 0)
        : Control(std::move(controlName)), caption(std::move(text)), mnemonic(key) {
        changed_ = value.observe([this](bool /*set*/) { unknown = false; });
    }

    /// The same as the user's click, but also from the third state to "not set".
    void decide(bool set) {
        value = set;
        unknown = false;
    }

    Property<std::string> caption;
    const char mnemonic;
    Property<bool> value{false};
    Property<bool> unknown{
        false};  ///< a third state, drawn as neither set nor clear, until the value changes
    std::function<void()> click;

  private:
    Subscription changed_;
};

struct OptionButton;

/// A named frame around other controls. Its option buttons are one group: at most one of them is set.
struct Frame : Control {
    Frame(std::string controlName, std::string text)
        : Control(std::move(controlName)), caption(std::move(text)) {}

    Property<std::string> caption;
    std::vector<OptionButton*> options;
};

struct OptionButton : Control {
    /// The group must live as long as the button.
    OptionButton(Frame& itsGroup, std::string controlName, std::string text = {})
        : Control(std::move(controlName)), caption(std::move(text)), group(itsGroup) {
        group.options.push_back(this);
        exclusive_ = value.observe([this](bool set) {
            if (set) {
                clearOthers();
            }
        });
    }

    Property<std::string> caption;
    Property<bool> value{false};
    Frame& group;

  private:
    void clearOthers() {
        for (OptionButton* option : group.options) {
            if (option != this) {
                option->value = false;
            }
        }
    }

    Subscription exclusive_;
};

struct ComboBox : Control {
    using Control::Control;

    Property<std::vector<std::string>> items;
    Property<std::string> text;          ///< of the edit field
    Property<std::string> selectedText;  ///< the part of the edit field that the user has marked
    std::string hint;                    ///< shown while the edit field is empty
};

/// A position between two ends. The program moves it, the user only reads it.
struct Slider : Control {
    Slider(std::string controlName, int lowest, int highest)
        : Control(std::move(controlName)), minimum(lowest), maximum(highest) {}

    const int minimum;
    const int maximum;
    Property<int> value{0};
};

/// How far an operation is, shown as a bar with its numbers.
struct ProgressBar : Control {
    using Control::Control;

    Property<int> total{0};  ///< 0 = nothing to show
    Property<int> done{0};
    Property<std::string> text;
    Property<bool> failed{false};  ///< drawn in red
};

/// A round indicator.
struct Shape : Control {
    explicit Shape(std::string controlName, Color color = colors::grey)
        : Control(std::move(controlName)), fillColor(color) {}

    Property<Color> fillColor;
};

/// The program's own picture.
struct Picture : Control {
    using Control::Control;
};

/// A view of a log, as text that can be marked and copied but not edited.
struct Log : Control {
    Log(std::string controlName, LogStore& lines) : Control(std::move(controlName)), store(lines) {}

    LogStore& store;
    Property<int> height{0};  ///< twips; 0 = as the layout gives
};

/// A control that has a place inside a window, of any of their kinds. A front end that draws one kind less
/// does not compile.
using PlacedControl = std::variant<Label*, TextBox*, Button*, CheckBox*, OptionButton*, ComboBox*, Frame*,
                                   Slider*, ProgressBar*, Shape*, Picture*, Log*>;

struct MenuItem : Control {
    MenuItem(std::string controlName, std::string text, char key = 0)
        : Control(std::move(controlName)), caption(std::move(text)), mnemonic(key) {}

    bool isSeparator() const { return caption.get() == "-"; }

    Property<std::string> caption;
    const char mnemonic;
    bool checkable = false;
    Property<bool> checked{false};
    std::function<void()> click;
    std::vector<MenuItem*> items;  ///< of a submenu
};

struct ToolButton : Control {
    enum class Kind { Push, Check, Separator };

    ToolButton(std::string key, std::string text, Kind buttonKind = Kind::Push)
        : Control(std::move(key)), caption(std::move(text)), kind(buttonKind) {}

    const std::string caption;
    const Kind kind;
    Property<bool> pressed{false};
};

struct ToolBar : Control {
    using Control::Control;

    std::vector<ToolButton*> buttons;
    std::function<void(const std::string& key)> buttonClick;
};

struct StatusBar : Control {
    using Control::Control;

    std::vector<Label*> panels;
};

/// Ticks every `interval` milliseconds while it is enabled. It has no picture.
struct Timer {
    Property<int> interval{0};
    Property<bool> enabled{false};
    std::function<void()> tick;
};

/// Controls of one kind under one name; element i is named `name_i`. Option buttons also get their group.
template <class ControlKind>
class ControlArray {
  public:
    template <class... Group>
    ControlArray(const std::string& name, std::size_t count, Group&... group) {
        for (std::size_t index = 0; index < count; ++index) {
            elements_.emplace_back(group..., name + "_" + std::to_string(index));
        }
    }

    ControlKind& operator[](std::size_t index) { return elements_.at(index); }
    const ControlKind& operator[](std::size_t index) const { return elements_.at(index); }
    std::size_t size() const { return elements_.size(); }
    auto begin() { return elements_.begin(); }
    auto end() { return elements_.end(); }

  private:
    std::deque<ControlKind> elements_;  // moves none of them
};

}  // namespace vek
