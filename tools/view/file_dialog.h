// A small modal file dialog over std::filesystem: folders and files of one
// folder, a name field, Up, OK and Cancel. Opened for the viewer's own
// Open/Save commands and for the plug-in's file browser (amplitude import).
#pragma once
#include <functional>
#include <string>
#include <vector>

namespace view {

class FileDialog {
public:
    // `done` receives the chosen path, or an empty text when cancelled.
    void open(const std::string& title, const std::string& folder, bool saving,
              std::function<void(const std::string&)> done);
    bool is_open() const { return open_; }
    void draw();
    // Answers the dialog as if the user had typed the path and pressed OK
    // (an empty path cancels).
    void choose(const std::string& path);
    const std::string& title() const { return title_; }

private:
    void list();

    bool open_ = false, opening_ = false, saving_ = false;
    std::string title_, folder_;
    char name_[512] = {};
    std::vector<std::pair<std::string, bool>> entries_;  // name, is a folder
    std::string error_;
    std::function<void(const std::string&)> done_;
};

}  // namespace view
