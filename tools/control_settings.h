// Setting the plug-in's controls from the command line as the host's user
// interface would: by title ("Z Speed") or number ("15"), clamped to the
// control's range, with the callback called afterwards.
#pragma once
#include <map>
#include <string>

#include "sparkhost/host.h"
#include "tools/status.h"

namespace tools {

// Control numbers of the host's pages that the tool drives by name.
constexpr int kDemosControl = 19;
constexpr int kBlendControl = 27;
constexpr int kQualityControl = 30;
constexpr int kResolutionControl = 33;
constexpr int kLightColourControl = 42;
constexpr int kUse2DMatteControl = 49;
constexpr int kUse3DMatteControl = 51;
constexpr int kLowQuality = 2;

// A decimal number ("6", "-0.5", "1e3"); not hexadecimal, "inf" or "nan".
// Blanks after it are allowed. False when the text is not one.
bool parse_decimal(const std::string& text, double& value);

// Finds a control by its title without the value format (case and runs of
// blanks do not matter) or by its number. An unknown name is a usage error
// that suggests the closest titles.
Status find_control(sparkhost::Host& host, const std::string& name, sparkhost::Control*& control);

// Reads a value for a control: a number; for checkboxes also on/off,
// yes/no, true/false; for popups also an entry's text ("Low Quality",
// "1/4"). Clamps to the control's range with a warning.
Status parse_control_value(const sparkhost::Control& control, const std::string& text, double& value,
                           const std::string& context);

// The check of every value of the setup file `path` as it is loaded: a
// number of the control's kind (whole for counts, entries and checkboxes;
// the file's 0xAABBGGRR word or #RRGGBB for the colour), clamped to the
// control's range with the warning --set gives; anything else is a usage
// error naming the file, the line and the control.
sparkhost::Host::SetupCheck setup_value_check(const std::string& path);

// Writes the value and lets the plug-in see it as a user change: the page
// copies of a common control (Clear Overlay, resolution, Auto Preview) are
// kept equal, and any other control's callback is called.
void write_control(sparkhost::Host& host, sparkhost::Control& control, double value);

// Auto Preview makes a callback re-process the frame at once, which would
// advance the simulation outside the frame range: the tool renders with it
// off and puts the user's value back for setups.
class AutoPreviewOff {
public:
    explicit AutoPreviewOff(sparkhost::Host& host);
    ~AutoPreviewOff() { restore(); }
    void restore();
    void suspend();
    // Takes the value just written into Auto Preview as the user's.
    void adopt();

private:
    sparkhost::Host& host_;
    std::map<int, double> saved_;
};

// "Z Speed=6" / "15=6". A value for Auto Preview becomes the user's value
// that `auto_preview` puts back for setups.
Status apply_setting(sparkhost::Host& host, const std::string& assignment, const std::string& option,
                     AutoPreviewOff* auto_preview = nullptr);

// The effect's demo presets: the Demos popup value set, then its callback.
// Returns false (with a warning) when the plug-in has no Demos control.
bool apply_preset(sparkhost::Host& host, const std::string& name);

// Every control with page, number, kind, title, range, default and current value.
void list_controls(sparkhost::Host& host, const std::map<int, double>& defaults);
std::map<int, double> control_values(sparkhost::Host& host);

}  // namespace tools
