#include "cli/report.h"

#include "blade/process/blademessages.h"

#include <unistd.h>

#include <iostream>

Report::Report()
    : showsProgress_(isatty(STDERR_FILENO) != 0)
{
    BladeMessages::setHandler([this](const std::string& text) { note(text); });
}

Report::~Report()
{
    clearProgress();
    BladeMessages::setHandler(nullptr);
}

void Report::progress(const std::string& stage, int done, int total)
{
    if (!showsProgress_ || total < 1) {
        return;
    }
    std::cerr << "\r\x1b[K" << stage << " " << 100 * done / total << " %" << std::flush;
    lineOpen_ = true;
    if (done >= total) {
        clearProgress();
    }
}

void Report::clearProgress()
{
    if (lineOpen_) {
        std::cerr << "\r\x1b[K" << std::flush;
        lineOpen_ = false;
    }
}

void Report::note(const std::string& text)
{
    clearProgress();
    const std::size_t last = text.find_last_not_of('\n');
    std::cerr << "crenara: " << text.substr(0, last + 1) << std::endl;
}

void Report::fault(const std::string& text)
{
    hasFaults_ = true;
    note(text);
}
