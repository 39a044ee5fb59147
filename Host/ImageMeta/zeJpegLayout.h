#ifndef ZEJPEGLAYOUT_H
#define ZEJPEGLAYOUT_H

#include "zeTiffLayout.h"

#include <cstdint>
#include <vector>

// Where a JPEG file keeps its pixels: everything after the header of its
// first scan. The frame header, the tables and the metadata segments
// (EXIF, XMP, ICC profile, comments) all come before it, and both the
// decoder's header read and the metadata reader stop there, so a reader
// that wants only those can leave the rest unread.
//
// The answer is given only for a marker sequence that reaches a scan
// intact; a segment running past the end of the file, a missing marker or an
// end of image before any scan makes pixelRanges() answer false, and the
// caller reads the whole file as before.
class zeJpegLayout
{
public:
    // Fills pixels with the one range after the first scan header. False
    // when the file is not a JPEG or its markers cannot be followed.
    static bool pixelRanges(const zeTiffLayout::ReadAt& read, std::uint64_t fileSize,
                            std::vector<zeTiffLayout::Range>& pixels);
};

#endif // ZEJPEGLAYOUT_H
