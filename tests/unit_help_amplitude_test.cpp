// The help browser command (run through the plug-in's help button elsewhere) and the amplitude key import.
#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <map>
#include <string>

#include "host/amplitude_import.h"
#include "host/help.h"
#include "sparkhost/host.h"

namespace {

// Sets, or for null unsets, an environment variable.
void set_env(const char* name, const char* value) { value ? setenv(name, value, 1) : unsetenv(name); }

std::string write_file(const std::string& name, const std::string& text) {
    return std::ofstream(testing::TempDir() + "/" + name, std::ios::binary) << text, testing::TempDir() + "/" + name;
}

std::string record(const char* key, const char* frame, const char* value) {
    return std::string("\tKey ") + key + "\n\t\tFrame " + frame + "\n\t\tValue " + value + "\n\t\tEnd\n";
}

std::string header(const char* size) { return std::string("Channel Amplitude 1:\n\tSize ") + size + "\n"; }

}  // namespace

TEST(HelpCommand, RootBrowserAndPageName) {
    const std::string long_root(5000, 'r');  // the command holds any length of root
    const struct { const char *root, *browser, *page; std::string expected; } cases[] = {
        {nullptr, nullptr, "paneburst.htm", "firefox -geometry +50+50 file:/usr/local/Corvane/dl/help/paneburst.htm &"},
        {"/r", "b", "a.b.htm", "b -geometry +50+50 file:/r/dl/help/a.b.htm &"},
        {"/r", "b", ".htm", "b -geometry +50+50 file:/r/dl/help/.htm.htm &"},
        {"/r", "b", "manual", "b -geometry +50+50 file:/r/dl/help/manual.htm &"},
        {long_root.c_str(), "b", "x.htm", "b -geometry +50+50 file:" + long_root + "/dl/help/x.htm &"}};
    for (const auto& c : cases) {
        set_env("DIR_7", c.root), set_env("Q7_HELP_BROWSER", c.browser);
        EXPECT_EQ(help_command(c.page), c.expected) << c.page;
    }
    set_env("DIR_7", nullptr), set_env("Q7_HELP_BROWSER", nullptr);
}

struct AmplitudeImport : testing::Test {
    sparkhost::Host host;
    std::map<float, float> keys() { return host.curves().count(93) ? host.curves().at(93) : std::map<float, float>{}; }
};

// Keys sit at their key number (the frame is read, not used); Size limits the records read, a negative
// Size reads until a record fails, and a short file sets what it has without a message.
TEST_F(AmplitudeImport, KeysSizesWhiteSpaceAndBadFiles) {
    using Keys = std::map<float, float>;
    const std::string all3 = record("1", "10", "0.5") + record("2", "20", "-3.25") + record("7", "30", "1000");
    const Keys three = {{1.0f, 0.5f}, {2.0f, -3.25f}, {7.0f, 1000.0f}};
    const struct { std::string text; Keys expected; } cases[] = {
        {header("3") + all3, three},
        {header("0") + all3, {}},
        {header("3") + record("1", "1", "1") + record("2", "2", "2"), {{1.0f, 1.0f}, {2.0f, 2.0f}}},
        {header("-1") + all3 + "\tKey x\n", three},
        {header("1") + all3, {{1.0f, 0.5f}}},
        {"Channel Amplitude 3:Size 2 Key 1 Frame 1 Value 2.5 End\r\n  Key 2\n\n Frame 2 Value 3.5End",
         {{1.0f, 2.5f}, {2.0f, 3.5f}}}};
    for (const auto& c : cases) {
        host.clear_keys(93);
        aiff_file_CB(write_file("amp_keys.txt", c.text).c_str());
        EXPECT_EQ(keys(), c.expected) << c.text;
    }
    EXPECT_TRUE(host.messages.empty());
    // Bad files keep the keys already set.
    host.set_key(93, 5.0f, 42.0f);
    const struct { std::string path; const char* message; } bad[] = {
        {testing::TempDir() + "/no_such_amplitude_file.txt", "Unable to open file|1"},
        {write_file("amp_bad_size.txt", header("many")), "Not a valid control file|1"},
        {write_file("amp_not_header.txt", "Channel Volume 1:\n\tSize 2\n"), "Not a valid control file|1"},
        {write_file("amp_binary.txt", std::string("Channel Amplitude 1:\n\tSize 5\n\tKey 1\n\0\xff\x01", 38)), ""},
        {write_file("amp_garbage.txt", header("3") + "\tKey 1\n\t\tFrame 1\n\t\tValue nan-ish\n"), ""}};
    for (const auto& c : bad) {
        host.messages.clear();
        aiff_file_CB(c.path.c_str());
        EXPECT_EQ(host.messages.empty() ? "" : host.messages.back().text + "|" + std::to_string(host.messages.size()),
                  c.message) << c.path;
    }
    EXPECT_EQ(keys().at(5.0f), 42.0f);
}

TEST_F(AmplitudeImport, ButtonOpensTheBrowserInTheWorkingDirectory) {
    std::string asked = "-", path = write_file("amp_browser.txt", header("1") + record("3", "1", "0.25"));
    host.working_dir = "/some/work/dir";
    host.file_browser = [&](const std::string& dir, const std::string& ext) { return asked = dir + "|" + ext, path; };
    EXPECT_EQ(import_aiff_CB(1, HostFrameRecord{}), nullptr);
    EXPECT_EQ(asked, "/some/work/dir|");
    EXPECT_EQ(keys(), (std::map<float, float>{{3.0f, 0.25f}}));
}
