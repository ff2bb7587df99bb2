// The plug-in's pages of controls, built from its descriptors as the host
// builds them: a tab per page with the plug-in's page title, each control at
// its slot, sliders with the descriptor's title format, range and step,
// checkboxes, popups, push buttons and the colour pot. Hidden controls are
// left out; a slider whose range the plug-in has closed (minimum = maximum)
// or a popup reduced to one entry is greyed. A right click on a control
// offers keys at the current frame; animated controls are marked.
#pragma once
#include <functional>
#include <string>

#include "tools/view/shot.h"

namespace view {

class Pages {
public:
    explicit Pages(Shot& shot) : shot_(shot) {}
    // Draws the tabs' contents; `changed` is called after every change the
    // user makes, with true when the plug-in processed the frame.
    void draw(const std::function<void(bool processed)>& changed);
    // True when the control cannot be changed from its page.
    static bool disabled(const sparkhost::Control& c);

private:
    void control(sparkhost::Control& c, const std::function<void(bool)>& changed);
    void key_menu(sparkhost::Control& c);

    Shot& shot_;
};

// A control's title as its page shows it: the title format filled with the value.
std::string shown_title(const sparkhost::Control& c);

}  // namespace view
