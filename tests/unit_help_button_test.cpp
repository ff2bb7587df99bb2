// The Help button's reaction to a browser that could not be started. A real
// `system` fails only when no shell can be started at all, so the display
// function is replaced here.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "host/help_button.h"
#include "sparkhost/host.h"

namespace {

std::vector<std::string> topics;

int display_fails(const char* topic) {
    topics.push_back(topic);
    return 1;
}

int display_starts(const char* topic) {
    topics.push_back(topic);
    return 0;
}

}  // namespace

TEST(HelpButton, ReportsABrowserThatCouldNotBeStarted) {
    sparkhost::Host host;
    host.echo_messages = false;
    topics.clear();
    open_help(display_fails);
    ASSERT_EQ(host.messages.size(), 1u);
    EXPECT_EQ(host.messages[0].kind, sparkhost::Message::Error);
    EXPECT_EQ(host.messages[0].text, "Error in opening help file (failed to spawn netscape process)");
    EXPECT_EQ(topics, std::vector<std::string>{"paneburst.htm"});

    open_help(display_starts);
    EXPECT_EQ(host.messages.size(), 1u);  // nothing more to say
    EXPECT_EQ(topics.size(), 2u);
}
