#ifndef ZEEXIV2_H
#define ZEEXIV2_H

#include <exiv2/image.hpp>

#include <cstddef>
#include <memory>
#include <string>

// The kit's one way into exiv2. Images are always handed over as bytes in
// memory, never as paths: exiv2 would fetch a path that looks like a URL
// over the network, and the kit reads and replaces files itself.
// Every function here may throw what exiv2 throws; callers catch at the
// kit's boundary.
class zeExiv2
{
public:
    // Sets exiv2 up once per process, from whichever thread comes first:
    // the XMP toolkit with a lock so later namespace registrations are
    // serialised, the render-settings namespace, and exiv2's messages sent
    // to zeLog::warning (unless the host installed its own exiv2 handler).
    static void prepare();

    // The image held in data, with its metadata read.
    static std::unique_ptr<Exiv2::Image> open(const char* data, std::size_t size);

    // The whole file as it stands after writeMetadata().
    static std::string bytesOf(Exiv2::Image& image);
};

#endif // ZEEXIV2_H
