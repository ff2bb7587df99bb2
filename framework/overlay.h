// Viewer overlay base: the effect draws its handles through it and receives
// pointer events.
#pragma once

enum InterType { kHover = 0, kPress = 1, kDrag = 2, kRelease = 3 };

class OverlayQ7 {
public:
    virtual ~OverlayQ7() = default;
    virtual void RenderOverlay() {}
    virtual int HandleInteraction(InterType, float, float) { return 0; }
};
