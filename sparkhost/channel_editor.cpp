// The channel editor as the plug-in describes it through its calls.
#include <cstdlib>

#include "sparkhost/host.h"

namespace sparkhost {

int Host::build_channel_editor() {
    auto fn = reinterpret_cast<int (*)()>(symbol("SparkChannelEditor"));
    return fn ? fn() : 0;
}

std::vector<EditorFolder> Host::channel_editor_tree() const {
    std::vector<EditorFolder> tree;
    std::map<int, std::string> names;
    for (const EditorCall& call : editor_calls) {
        switch (call.kind) {
            case EditorCall::Folder: {
                EditorFolder folder;
                folder.name = call.name;
                folder.first = call.first;
                tree.push_back(folder);
                break;
            }
            case EditorCall::Control: {
                if (tree.empty()) tree.emplace_back();
                EditorEntry entry;
                entry.control = std::atoi(call.name.c_str());  // recorded as text
                entry.first = call.first;
                entry.second = call.second;
                tree.back().entries.push_back(entry);
                break;
            }
            case EditorCall::Name: names[call.second] = call.name; break;
        }
    }
    for (EditorFolder& folder : tree)
        for (EditorEntry& entry : folder.entries) {
            auto it = names.find(entry.control);
            if (it != names.end()) entry.name = it->second;
        }
    return tree;
}

}  // namespace sparkhost
