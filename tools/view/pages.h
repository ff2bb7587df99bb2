// The plug-in's pages of controls, built from its descriptors as the host
// builds them: a tab per page with the plug-in's page title, each control at
// its slot, sliders with the descriptor's title format, range and step,
// checkboxes, popups, push buttons, the colour pot and text fields. Hidden controls are
// left out; a slider whose range the plug-in has closed (minimum = maximum)
// or a popup reduced to one entry is greyed. A right click on a control
// offers keys at the current frame; animated controls are marked.
#pragma once
#include <functional>
#include <string>
#include <vector>

#include "tools/view/shot.h"

namespace view {

class Pages {
public:
    explicit Pages(Shot& shot) : shot_(shot) {}
    // Draws the tabs' contents and notes the changes the user makes.
    void draw();
    // Passes the changes noted to the plug-in, outside the window's frame: a
    // callback may ask a question, which draws frames of its own until it is
    // answered. `changed` is called after each, with true when the plug-in
    // processed the frame.
    void apply(const std::function<void(bool processed)>& changed);
    // True when the control cannot be changed from its page.
    static bool disabled(const sparkhost::Control& c);

private:
    void control(sparkhost::Control& c);
    void key_menu(sparkhost::Control& c);

    Shot& shot_;
    struct Change {
        int number;
        double value;
        bool button;
    };
    std::vector<Change> changes_;
};

// A control's title as its page shows it: the title format filled with the value.
std::string shown_title(const sparkhost::Control& c);

}  // namespace view
