// Recording definitions of the GL entry points; see gl_recorder.h.
#include "tests/gl_recorder.h"

#include <GL/gl.h>

namespace glrec {

Recording& recording() {
    static Recording r;
    return r;
}

void reset() { recording() = Recording(); }

std::vector<Segment> Recording::segments() const {
    std::vector<Segment> out;
    for (const Primitive& p : primitives) {
        if (p.mode != GL_LINES) continue;
        for (std::size_t i = 0; i + 1 < p.vertices.size(); i += 2) {
            const Vertex& a = p.vertices[i];
            const Vertex& b = p.vertices[i + 1];
            out.push_back({a.x, a.y, b.x, b.y, a.colour});
        }
    }
    return out;
}

std::vector<Primitive> Recording::of_mode(unsigned mode) const {
    std::vector<Primitive> out;
    for (const Primitive& p : primitives)
        if (p.mode == mode) out.push_back(p);
    return out;
}

std::vector<Call> Recording::state_calls() const {
    std::vector<Call> out;
    for (const Call& c : calls)
        if (c.name != "glBegin" && c.name != "glEnd" && c.name != "glVertex2f" && c.name != "glColor3f")
            out.push_back(c);
    return out;
}

}  // namespace glrec

using glrec::recording;

extern "C" {

void glBegin(GLenum mode) {
    auto& r = recording();
    r.calls.push_back({"glBegin", {static_cast<float>(mode)}});
    if (r.inside_begin) ++r.errors;
    r.inside_begin = true;
    glrec::Primitive p;
    p.mode = mode;
    p.colour = r.colour;
    r.primitives.push_back(p);
}

void glEnd(void) {
    auto& r = recording();
    r.calls.push_back({"glEnd", {}});
    if (!r.inside_begin) ++r.errors;
    r.inside_begin = false;
}

void glVertex2f(GLfloat x, GLfloat y) {
    auto& r = recording();
    r.calls.push_back({"glVertex2f", {x, y}});
    if (!r.inside_begin || r.primitives.empty()) {
        ++r.errors;
        return;
    }
    r.primitives.back().vertices.push_back({x, y, r.colour});
}

void glColor3f(GLfloat red, GLfloat green, GLfloat blue) {
    auto& r = recording();
    r.calls.push_back({"glColor3f", {red, green, blue}});
    r.colour = {red, green, blue};
}

void glLoadIdentity(void) { recording().calls.push_back({"glLoadIdentity", {}}); }

void glTranslatef(GLfloat x, GLfloat y, GLfloat z) {
    recording().calls.push_back({"glTranslatef", {x, y, z}});
}

void glScalef(GLfloat x, GLfloat y, GLfloat z) { recording().calls.push_back({"glScalef", {x, y, z}}); }

void glFlush(void) { recording().calls.push_back({"glFlush", {}}); }

}  // extern "C"
