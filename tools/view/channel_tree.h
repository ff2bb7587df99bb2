// The channel editor's tree as the plug-in builds it through
// SparkChannelEditor: its folders, and in each the channels with the names
// the plug-in gave them, their value at the current frame and their keys.
#pragma once
#include <vector>

#include "sparkhost/host.h"

namespace view {

class ChannelTree {
public:
    // Asks the plug-in for the tree, as the host does when it builds the editor.
    void build(sparkhost::Host& host);
    void draw(sparkhost::Host& host, int frame);
    const std::vector<sparkhost::EditorFolder>& folders() const { return folders_; }

private:
    std::vector<sparkhost::EditorFolder> folders_;
};

}  // namespace view
