#pragma once

#include <memory>
#include <string>

// Somebody with mouse and keyboard in front of the display. Each system has its own (gtk/, msw/). An action
// takes its time, and the window must go on handling events meanwhile.
class Hand {
public:
    virtual ~Hand() = default;

    // Null when there is none.
    static std::unique_ptr<Hand> find();

    // In the terms of xdotool.
    virtual void pressKey(const std::string& name) = 0;
    virtual void type(const std::string& text) = 0;
    // To a place in the client area of the window with this title, out of another one.
    virtual void movePointer(const std::string& title, int x, int y) = 0;
    virtual void click() = 0;
    // Whether the last action has been carried out. On Linux its effect may still be on its way to the
    // window.
    virtual bool isDone() = 0;
    // What was wrong with it, or nothing.
    virtual std::string problem() = 0;
};
