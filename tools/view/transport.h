// The transport: play and pause, one step on, a frame to go to, looping over
// the shot's frames, the simulation restarted from the shot's start, the
// frame counter and the frames per second measured while playing.
#pragma once
#include <chrono>
#include <deque>
#include <functional>

#include "tools/status.h"
#include "tools/view/shot.h"

namespace view {

class Transport {
public:
    explicit Transport(Shot& shot) : shot_(shot) {}
    // Draws the transport row. `shown` is called after a frame was processed.
    void draw(const std::function<void(const tools::Status&)>& shown);
    // While playing: processes the next frame (looping). Returns false when not playing.
    bool tick(const std::function<void(const tools::Status&)>& shown);

    bool playing = false;
    bool loop = true;
    void frame_done();  // for the frames-per-second figure
    double fps() const;

private:
    Shot& shot_;
    int go_to_ = 1;
    std::deque<std::chrono::steady_clock::time_point> times_;
};

}  // namespace view
