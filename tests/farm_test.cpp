// paneburst-farm through a real one-node Slurm cluster, which ctest starts
// before these tests (scripts/slurm-local.sh, as root) and stops after them.
// The shot: 30 frames of a written front sequence in High Quality, whose
// frames depend on the band count and on every step of the simulation.
#include <unistd.h>

#include <chrono>
#include <thread>

#include "tests/tool_support.h"

namespace {

using tool_support::file_bytes;
using tool_support::TempDir;
using tool_support::ToolRun;

constexpr int kWidth = 160, kHeight = 120;

// The cluster's variables, from the file the start script wrote.
bool join_cluster(std::string& why) {
    std::ifstream env(PANEBURST_SLURM_ENV);
    for (std::string line; std::getline(env, line);) {
        const auto eq = line.find('=');
        if (eq != std::string::npos) setenv(line.substr(0, eq).c_str(), line.substr(eq + 1).c_str(), 1);
    }
    if (std::getenv("SLURM_CONF")) return true;
    why = getuid() != 0 ? "the farm tests need root to start slurmctld and slurmd"
                        : "no Slurm cluster: scripts/slurm-local.sh start did not bring one up";
    return false;
}

void write_front(const TempDir& dir, int last) {
    std::filesystem::create_directories(dir.path("in"));
    for (int f = 1; f <= last; ++f) {
        char name[64];
        std::snprintf(name, sizeof name, "in/front.%04d.png", f);
        const auto px = tool_support::pattern8(kWidth, kHeight, f);
        tool_support::write_picture(dir.path(name), kWidth, kHeight, 3, "uint8", px.data());
    }
}

const std::vector<std::string> kShot = {"--front", "in/front.%04d.png", "--preset", "explosion", "--quality", "high",
                                        "--frames", "1-30"};

std::vector<std::string> with(std::vector<std::string> args, const std::vector<std::string>& more) {
    args.insert(args.end(), more.begin(), more.end());
    return args;
}

// The number printed after `label`, as in "render job 12".
std::string number_after(const std::string& text, const std::string& label) {
    const std::size_t at = text.find(label);
    EXPECT_NE(at, std::string::npos) << text;
    if (at == std::string::npos) return "";
    const std::size_t start = at + label.size();
    return text.substr(start, text.find_first_not_of("0123456789", start) - start);
}

class Farm {
public:
    explicit Farm(const TempDir& dir) : dir_(dir) {}

    ToolRun run(const std::vector<std::string>& args) const {
        return dir_.run(PANEBURST_FARM_EXE, with(args, {"--farm-dir", dir_.path("farm")}));
    }
    // Submits and returns the render job's id.
    std::string submit(const std::vector<std::string>& args) const {
        const ToolRun r = run(with({"submit"}, args));
        EXPECT_EQ(r.status, 0) << r.err;
        final_job = number_after(r.out, "final job ");
        return number_after(r.out, "render job ");
    }
    // The state word of every chunk, then of the final job.
    std::vector<std::string> states(const std::string& job, std::string* text = nullptr) const {
        const ToolRun r = run({"status", job});
        EXPECT_EQ(r.status, 0) << r.err;
        if (text) *text = r.out;
        std::vector<std::string> words;
        std::istringstream lines(r.out);
        // "chunk 1 (frames 9-16)  failed ...", "final job  pending ..."
        for (std::string l; std::getline(lines, l);) {
            std::istringstream w(l);
            std::string word, state;
            w >> word;
            const int skip = word == "chunk" ? 3 : word == "final" ? 1 : -1;
            for (int i = 0; i < skip; ++i) w >> state;
            if (skip > 0 && w >> state) words.push_back(state);
        }
        return words;
    }
    // Polls the status until `done` holds; gives up after four minutes.
    std::vector<std::string> wait(const std::string& job,
                                  const std::function<bool(const std::vector<std::string>&)>& done) const {
        std::vector<std::string> s;
        for (int i = 0; i < 480; ++i) {
            s = states(job);
            if (done(s)) break;
            std::this_thread::sleep_for(std::chrono::milliseconds(500));
        }
        return s;
    }

    mutable std::string final_job;  // of the last submit

private:
    const TempDir& dir_;
};

bool settled(const std::vector<std::string>& s) {
    for (std::size_t i = 0; i + 1 < s.size(); ++i)
        if (s[i] == "pending" || s[i] == "running") return false;
    return !s.empty();
}
bool finished(const std::vector<std::string>& s) { return !s.empty() && s.back() == "done"; }

void expect_same_frames(const TempDir& dir, const std::string& a, const std::string& b, int count) {
    for (int f = 1; f <= count; ++f) {
        char name[32];
        std::snprintf(name, sizeof name, "/shot.%04d.png", f);
        const std::string bytes = file_bytes(dir.path(a + name));
        ASSERT_FALSE(bytes.empty()) << a << name;
        ASSERT_EQ(bytes, file_bytes(dir.path(b + name))) << "frame " << f;
    }
    EXPECT_EQ(dir.files(a).size(), static_cast<std::size_t>(count)) << "no hidden or partial files";
}

class FarmThroughSlurm : public ::testing::Test {
protected:
    void SetUp() override {
        if (std::string why; !join_cluster(why)) GTEST_SKIP() << why;
        write_front(dir, 30);
        const ToolRun local = dir.render(with(kShot, {"--out", "local/shot.%04d.png", "--contact-sheet", "local.png"}));
        ASSERT_EQ(local.status, 0) << local.err;
    }
    TempDir dir;
    Farm farm{dir};
};

TEST_F(FarmThroughSlurm, ThirtyFramesInChunksOfEightMatchOneRender) {
    const std::string job = farm.submit(with(kShot, {"--out", "frames/shot.%04d.png", "--contact-sheet", "farm.png",
                                                     "--chunk", "8"}));
    const auto s = farm.wait(job, finished);
    EXPECT_EQ(s, (std::vector<std::string>{"done", "done", "done", "done", "done"}));
    expect_same_frames(dir, "frames", "local", 30);
    EXPECT_EQ(file_bytes(dir.path("farm.png")), file_bytes(dir.path("local.png")));
}

TEST_F(FarmThroughSlurm, FailedChunkShowsItsErrorAndResubmitCompletesTheShot) {
    const std::string good = file_bytes(dir.path("in/front.0012.png"));
    tool_support::write_text(dir.path("in/front.0012.png"), "not a picture");
    const std::string job = farm.submit(with(kShot, {"--out", "frames/shot.%04d.png", "--contact-sheet", "farm.png",
                                                     "--chunk", "8"}));
    std::string text;
    farm.wait(job, settled);
    EXPECT_EQ(farm.states(job, &text), (std::vector<std::string>{"done", "failed", "done", "done", "pending"}));
    EXPECT_NE(text.find("exit status 1"), std::string::npos) << text;
    EXPECT_NE(text.find("    | paneburst-render: front " + dir.path("in/front.0012.png") + " (frame 12): cannot read"),
              std::string::npos)
        << text;
    EXPECT_FALSE(std::filesystem::exists(dir.path("farm.png"))) << "the final job must not run";

    tool_support::write_text(dir.path("in/front.0012.png"), good);
    const ToolRun again = farm.run({"resubmit", job});
    ASSERT_EQ(again.status, 0) << again.err;
    EXPECT_NE(again.out.find("chunks 1 again"), std::string::npos) << again.out;
    EXPECT_EQ(farm.wait(job, finished), (std::vector<std::string>{"done", "done", "done", "done", "done"}));
    expect_same_frames(dir, "frames", "local", 30);
    EXPECT_EQ(file_bytes(dir.path("farm.png")), file_bytes(dir.path("local.png")));
}

TEST_F(FarmThroughSlurm, FailedFinalJobAloneIsSubmittedAgain) {
    const std::string job = farm.submit(with(kShot, {"--out", "frames/shot.%04d.png", "--contact-sheet",
                                                     "sheets/farm.png", "--chunk", "30"}));
    // The contact sheet's folder turns into a file while the chunk renders.
    std::filesystem::remove_all(dir.path("sheets"));
    tool_support::write_text(dir.path("sheets"), "in the way");
    std::string text;
    farm.wait(job, [](const std::vector<std::string>& s) { return !s.empty() && s.back() == "failed"; });
    EXPECT_EQ(farm.states(job, &text), (std::vector<std::string>{"done", "failed"}));
    EXPECT_NE(text.find("paneburst-farm: cannot write " + dir.path("sheets/farm.png")), std::string::npos) << text;

    std::filesystem::remove(dir.path("sheets"));
    std::filesystem::create_directory(dir.path("sheets"));
    const ToolRun again = farm.run({"resubmit", job});
    ASSERT_EQ(again.status, 0) << again.err;
    EXPECT_EQ(again.out.find("render job"), std::string::npos) << again.out;
    EXPECT_EQ(farm.wait(job, finished), (std::vector<std::string>{"done", "done"}));
    EXPECT_EQ(file_bytes(dir.path("sheets/farm.png")), file_bytes(dir.path("local.png")));
}

TEST_F(FarmThroughSlurm, CancelledTaskLeavesNoPartialOrHiddenFrame) {
    // Large frames, so that a write is likely under way when the signal comes.
    const std::string job =
        farm.submit({"--size", "1280x720", "--quality", "high", "--frames", "1-500", "--chunk", "500", "--out",
                     "big/shot.%04d.exr"});
    for (int i = 0; i < 480 && dir.files("big").size() < 2; ++i)
        std::this_thread::sleep_for(std::chrono::milliseconds(500));
    ASSERT_GE(dir.files("big").size(), 2u) << "the task never started writing";
    ASSERT_EQ(std::system(("scancel " + job + "_0").c_str()), 0);
    std::string text;
    farm.wait(job, settled);
    EXPECT_EQ(farm.states(job, &text).front(), "failed");
    EXPECT_NE(text.find("killed by signal 15 (cancelled or out of time)"), std::string::npos) << text;
    for (const std::string& name : dir.files("big")) {
        EXPECT_NE(name[0], '.') << "hidden temporary frame " << name;
        const tool_support::Picture p = tool_support::read_picture(dir.path("big/" + name));
        EXPECT_EQ(p.floats.size(), 1280u * 720u * 3u) << name;
    }
    // The final job waits for a chunk that will never succeed.
    std::system(("scancel " + job + " " + farm.final_job).c_str());
}

// Refused before anything reaches the scheduler: no cluster needed.
TEST(FarmSubmit, BadInputIsRefusedWithOneLineAndNothingSubmitted) {
    TempDir dir;
    write_front(dir, 30);
    tool_support::write_text(dir.path("bad.keys"), "1 Z Sped = 5\n");
    const struct {
        std::vector<std::string> args;
        std::string message;
    } cases[] = {
        {{"--front", "in/missing.%04d.png", "--frames", "1-30"}, "missing (frame 1; the shot needs frames 1-30)"},
        {{"--front", "in/front.%04d.png", "--frames", "1-31"}, "front.0031.png: missing (frame 31"},
        {{"--front", "in/front.%04d.png", "--back", "in/none.png"}, "--back " + dir.path("in/none.png") + ": missing"},
        {{"--front", "in/front.%04d.png", "--chunk", "0"}, "--chunk 0: a chunk needs at least one frame"},
        {{"--front", "in/front.%04d.png", "--keys", "none.keys"}, "--keys " + dir.path("none.keys")},
        {{"--front", "in/front.%04d.png", "--keys", "bad.keys"}, "Z Sped"},
        {{"--front", "in/front.%04d.png", "--set", "Z Sped=6"}, "unknown control \"Z Sped\""},
        {{"--front", "in/front.%04d.png", "--frames", "30-1"}, "--frames"},
    };
    Farm farm(dir);
    for (const auto& c : cases) {
        std::vector<std::string> args = with({"submit", "--out", "out/shot.%04d.png"}, c.args);
        const ToolRun r = farm.run(args);
        EXPECT_EQ(r.status, 2) << c.message;
        EXPECT_EQ(r.err.rfind("paneburst-farm: ", 0), 0u) << r.err;
        EXPECT_EQ(std::count(r.err.begin(), r.err.end(), '\n'), 1) << r.err;
        EXPECT_NE(r.err.find(c.message), std::string::npos) << r.err;
        EXPECT_TRUE(r.out.empty()) << r.out;
    }
    EXPECT_FALSE(std::filesystem::exists(dir.path("farm"))) << "nothing is written before the checks pass";
    EXPECT_TRUE(dir.files("out").empty());
}

TEST(FarmSubmit, StatusOfAJobItDidNotSubmitIsAUsageError) {
    TempDir dir;
    for (const char* command : {"status", "resubmit"}) {
        const ToolRun r = Farm(dir).run({command, "4711"});
        EXPECT_EQ(r.status, 2);
        EXPECT_EQ(r.err, "paneburst-farm: job 4711: not a job paneburst-farm submitted (nothing in " +
                             dir.path("farm") + "/jobs; use --farm-dir)\n");
    }
}

}  // namespace
