#ifndef STREAMCAPTURE_H
#define STREAMCAPTURE_H

#include <QStringList>

#include <iosfwd>
#include <sstream>

// Collects what the spectral model writes to std::cout and std::cerr while
// the capture lives, so that its progress lines stay out of the tool's own
// output. Both streams go into one buffer in the order they were written.
class StreamCapture
{
public:
    StreamCapture();
    ~StreamCapture();
    StreamCapture(const StreamCapture&) = delete;
    StreamCapture& operator=(const StreamCapture&) = delete;

    // The captured lines that report a failure ("ERROR Spectrum: ...",
    // "Error reading Spectrum File: ...").
    QStringList errorLines() const;

private:
    std::ostringstream _buffer;
    std::streambuf* _out;
    std::streambuf* _err;
};

#endif // STREAMCAPTURE_H
