// Runs the real paneburst-view window on a script (the test runs under
// xvfb-run with Mesa's software OpenGL) and reads the state it wrote.
#pragma once

#include <map>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "tests/tool_support.h"

namespace view_support {

using tool_support::quote;
using tool_support::TempDir;
using tool_support::ToolRun;

// Runs the viewer in the folder on `script`, with the extra arguments and
// environment assignments ("NAME=value") before the command.
inline ToolRun view(const TempDir& dir, const std::string& script, const std::vector<std::string>& args = {},
                    const std::string& env = "") {
    tool_support::write_text(dir.path("steps.txt"), script);
    std::string cmd = "cd " + quote(dir.path("")) + " && " + env + " " + quote(PANEBURST_VIEW_EXE) +
                      " --script steps.txt";
    for (const std::string& a : args) cmd += " " + quote(a);
    cmd += " >" + quote(dir.path(".stdout")) + " 2>" + quote(dir.path(".stderr")) + " </dev/null";
    const int raw = std::system(cmd.c_str());
    return {WIFEXITED(raw) ? WEXITSTATUS(raw) : -1, tool_support::file_bytes(dir.path(".stdout")),
            tool_support::file_bytes(dir.path(".stderr"))};
}

// The "state FILE" step's lines.
struct State {
    std::map<std::string, std::string> fields;  // first word -> rest, for single lines
    std::map<int, double> values;
    std::set<int> hidden, disabled;
    std::map<int, std::map<double, double>> keys;
    std::vector<std::string> folders, log;
    double operator[](int control) const { return values.count(control) ? values.at(control) : -12345; }
    int field(const std::string& name) const { return fields.count(name) ? std::stoi(fields.at(name)) : -1; }
};

inline State read_state(const std::string& path) {
    State s;
    std::istringstream in(tool_support::file_bytes(path));
    std::string line;
    while (std::getline(in, line)) {
        std::istringstream words(line);
        std::string name;
        words >> name;
        std::string rest;
        std::getline(words >> std::ws, rest);
        std::istringstream r(rest);
        int n = 0;
        double a = 0, b = 0;
        if (name == "value" && r >> n >> a) s.values[n] = a;
        else if (name == "hidden" && r >> n) s.hidden.insert(n);
        else if (name == "disabled" && r >> n) s.disabled.insert(n);
        else if (name == "key" && r >> n >> a >> b) s.keys[n][a] = b;
        else if (name == "folder") s.folders.push_back(rest);
        else if (name == "log") s.log.push_back(rest);
        else s.fields[name] = rest;
    }
    return s;
}

// 8-bit RGB pixels of a picture file (PNG as the viewer's screenshots and the renderer's frames).
inline std::vector<std::uint16_t> pixels(const std::string& path) { return tool_support::read_picture(path).ints; }

}  // namespace view_support
