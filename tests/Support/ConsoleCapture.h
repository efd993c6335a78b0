// Collects what a scope prints on standard error, where the console sink writes.
#pragma once

#include <gtest/gtest.h>

#include <string>

namespace Test {

class ConsoleCapture {
public:
    ConsoleCapture() { testing::internal::CaptureStderr(); }
    ~ConsoleCapture() { Text(); }
    ConsoleCapture(ConsoleCapture const&) = delete;
    ConsoleCapture& operator=(ConsoleCapture const&) = delete;

    // Ends the capture and gives the text.
    std::string const& Text() {
        if (!_done) {
            _text = testing::internal::GetCapturedStderr();
            _done = true;
        }
        return _text;
    }
    bool Has(std::string const& piece) { return Text().find(piece) != std::string::npos; }

private:
    std::string _text;
    bool _done = false;
};

}  // namespace Test
