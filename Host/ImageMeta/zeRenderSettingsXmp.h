#ifndef ZERENDERSETTINGSXMP_H
#define ZERENDERSETTINGSXMP_H

#include "zeRenderSettings.h"

#include <exiv2/xmp_exiv2.hpp>

#include <string>

// The render-settings record as an XMP schema of our own, so that it travels
// in every format that carries XMP (JPEG, PNG, TIFF, WebP and more).
//
// Namespace "urn:qtcolor:render-settings:1.0/", prefix "qtcRender"
// (docs/render-settings-record.md describes the schema). Properties:
//   qtcRender:SceneFile, qtcRender:ApplicationVersion, qtcRender:RenderDate
//     simple texts, each written only when set;
//   qtcRender:Camera (bit 1), NodeVisibilities (2), SwitchNodeStates (4),
//   Image (8), Animation (16), RenderPasses (32), RayTracing (64),
//   SwitchMaterialStates (128)
//     one ordered array (rdf:Seq) per carried group, empty when the group
//     carries no settings; each item a structure with the text fields
//     qtcRender:Key and qtcRender:Value.
// Texts are UTF-8; what XML cannot carry (bytes that are not UTF-8, control
// characters other than tab, line feed and carriage return) is written as
// U+FFFD. The group mask is not stored separately: a group is carried exactly when
// its array is present. Readers go by the namespace URI, so a packet that
// binds another prefix to it reads the same (structure fields are matched
// by their local names); unknown properties of the namespace are skipped,
// items without a key too.
//
// Records written before the namespace was fixed use
// LegacyNamespaceURI (with the prefix "qzeRender"). They are read the same
// way when a packet has no property of the current namespace, and
// restamping replaces them: writing erases both namespaces.
//
// exiv2 keeps one process-wide table from prefixes to namespaces and
// follows the bindings of every packet it parses: a packet that binds
// "qtcRender" to another namespace takes the prefix over until a packet
// binds it back. So the reading functions find the record by the prefix the
// namespace has at that moment, never by the name "qtcRender", and writing
// first claims the prefix back (registerNamespace()).
//
// EXIF inside XMP uses the standard EXIF schema (exif:ExposureTime ...), as
// exiv2 converts EXIF to XMP, not properties of ours.
class zeRenderSettingsXmp
{
public:
    static constexpr const char* NamespaceURI = "urn:qtcolor:render-settings:1.0/";
    static constexpr const char* Prefix = "qtcRender";
    static constexpr const char* LegacyNamespaceURI =
        "http://ns.qtcolor.example/render-settings/1.0/";

    // Binds Prefix to NamespaceURI in exiv2's table unless it already is.
    static void registerNamespace();
    // Whether Prefix stands for NamespaceURI at the moment.
    static bool ownsPrefix();

    // Replaces the record in xmp by record (an empty record only removes
    // it); needs ownsPrefix().
    static void write(const zeRenderSettings& record, Exiv2::XmpData& xmp);
    // Reads the record out of xmp, from the current namespace or, when xmp
    // has no property of it, from the legacy one; false when xmp has no
    // property of either (record is then left empty).
    static bool read(const Exiv2::XmpData& xmp, zeRenderSettings& record);
    // Removes the properties of both namespaces.
    static void erase(Exiv2::XmpData& xmp);

    // Whether xmp holds a property of the record (either namespace) or of the
    // EXIF schema.
    static bool carriesRecordOrExif(const Exiv2::XmpData& xmp);
    // Parses packet into xmp; false when it is not XMP.
    static bool decodePacket(const std::string& packet, Exiv2::XmpData& xmp);
};

#endif // ZERENDERSETTINGSXMP_H
