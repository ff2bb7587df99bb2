// A recording stand-in for the OpenGL entry points the overlay uses.
//
// A test executable that compiles gl_recorder.cpp defines glBegin, glEnd,
// glVertex2f, glColor3f, glLoadIdentity, glTranslatef, glScalef and glFlush
// itself; those definitions win over libGL's, for code linked into the
// executable and, when the executable exports its symbols (ENABLE_EXPORTS),
// for a plug-in it loads with dlopen. Nothing is drawn: the calls are kept.
// Keep this out of executables that need a real GL (the off-screen tests).
#pragma once

#include <string>
#include <vector>

namespace glrec {

struct Colour {
    float r = 1.0f, g = 1.0f, b = 1.0f;  // GL's initial current colour
};

struct Vertex {
    float x = 0.0f, y = 0.0f;
    Colour colour;  // the current colour when the vertex was given
};

// One glBegin ... glEnd block.
struct Primitive {
    unsigned mode = 0;  // GL_POINTS, GL_LINES, GL_POLYGON, ...
    Colour colour;      // the current colour at glBegin
    std::vector<Vertex> vertices;
};

// One line segment: a pair of consecutive vertices of a GL_LINES block.
struct Segment {
    float x0, y0, x1, y1;
    Colour colour;
};

// Every call in order, with its float arguments (glBegin: the mode).
struct Call {
    std::string name;
    std::vector<float> args;
};

struct Recording {
    std::vector<Primitive> primitives;
    std::vector<Call> calls;
    Colour colour;
    bool inside_begin = false;
    int errors = 0;  // nested glBegin, glEnd without glBegin, vertex outside a block

    // All GL_LINES blocks flattened into their segments, in drawing order.
    std::vector<Segment> segments() const;
    // The primitives of one mode, in drawing order.
    std::vector<Primitive> of_mode(unsigned mode) const;
    // Names of the calls that are not glBegin/glEnd/glVertex2f/glColor3f.
    std::vector<Call> state_calls() const;
};

// The recording the interposed functions write into.
Recording& recording();
// Forgets everything recorded (and resets the current colour to white).
void reset();

}  // namespace glrec
