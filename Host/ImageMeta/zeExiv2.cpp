#include "zeExiv2.h"

#include "zeLog.h"
#include "zeRenderSettingsXmp.h"

#include <exiv2/error.hpp>
#include <exiv2/xmp_exiv2.hpp>

#include <mutex>
#include <stdexcept>

namespace {

std::mutex s_xmpToolkitLock;

void lockXmpToolkit(void*, bool lock)
{
    if (lock)
        s_xmpToolkitLock.lock();
    else
        s_xmpToolkitLock.unlock();
}

void forwardToLog(int, const char* message)
{
    std::string text = message;
    while (!text.empty() && (text.back() == '\n' || text.back() == '\r'))
        text.pop_back();
    zeLog::warning("exiv2: %s", text.c_str());
}

} // namespace

void zeExiv2::prepare()
{
    static std::once_flag once;
    std::call_once(once, [] {
        Exiv2::XmpParser::initialize(lockXmpToolkit);
        zeRenderSettingsXmp::registerNamespace();
        if (Exiv2::LogMsg::handler() == Exiv2::LogMsg::defaultHandler)
            Exiv2::LogMsg::setHandler(forwardToLog);
    });
}

std::unique_ptr<Exiv2::Image> zeExiv2::open(const char* data, std::size_t size)
{
    prepare();
    std::unique_ptr<Exiv2::Image> image(
        Exiv2::ImageFactory::open(reinterpret_cast<const Exiv2::byte*>(data), long(size))
            .release());
    if (!image)
        throw std::runtime_error("not an image");
    image->readMetadata();
    return image;
}

std::string zeExiv2::bytesOf(Exiv2::Image& image)
{
    Exiv2::BasicIo& io = image.io();
    if (io.open() != 0)
        throw std::runtime_error("the written image cannot be read back");
    io.seek(0L, Exiv2::BasicIo::beg);
    const Exiv2::DataBuf contents = io.read(long(io.size()));
    io.close();
    return std::string(reinterpret_cast<const char*>(contents.pData_), std::size_t(contents.size_));
}
