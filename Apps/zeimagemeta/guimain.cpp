#include "ImageMetaGui.h"

// The window mode of zeimagemeta, started by it for "zeimagemeta --gui FILE".
int main(int argc, char** argv)
{
    return ImageMetaGui::run(argc, argv);
}
