// FileResult: what a file reader or writer tells its caller, who shows the box.
#pragma once
#include <string>
#include <utility>

// Done, or done with a warning, or failed; with the text of the box the caller shows. The readers
// and writers of this folder show nothing themselves.
struct FileResult {
    enum class Box { None, Warning, Error };

    Box box = Box::None;
    std::string text; // the box's text; empty with Box::None

    static FileResult warning(std::string text) { return {Box::Warning, std::move(text)}; }
    static FileResult error(std::string text) { return {Box::Error, std::move(text)}; }

    // True unless the work failed: a warning still leaves it done.
    explicit operator bool() const { return box != Box::Error; }
};
