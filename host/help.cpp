#include "host/help.h"

#include <cstdlib>
#include <cstring>

namespace {
// The page name, as the help always kept it: a fixed buffer, so a topic
// longer than it is cut (no topic of this plug-in comes close).
char page_name[1024];
}  // namespace

std::string help_command(const char* topic) {
    const char* root = std::getenv("DIR_7");
    const char* browser_env = std::getenv("Q7_HELP_BROWSER");
    const std::string browser = browser_env ? browser_env : "firefox";
    // Built as strings: the command holds the whole address whatever the length of DIR_7.
    const std::string dir = std::string(root ? root : "/usr/local/Corvane") + "/dl/help";

    std::strncpy(page_name, topic ? topic : "", sizeof page_name - 1);
    page_name[sizeof page_name - 1] = '\0';
    // Drop the extension: the last dot and what follows, unless the only dot
    // starts the name (".htm" stays a name).
    char* dot = std::strrchr(page_name, '.');
    if (dot && dot != page_name) *dot = '\0';

    const std::string url = "file:" + dir + "/" + page_name + ".htm";
    return browser + " -geometry +50+50 " + url + " &";
}

int display_help_topic(const char* topic) { return std::system(help_command(topic).c_str()) == -1 ? 1 : 0; }
