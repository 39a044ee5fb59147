<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de_DE">
<context>
    <name>ColorLab</name>
    <message>
        <source>Render every page into DIR/&lt;page&gt;.png and exit.</source>
        <translation>Jede Seite als DIR/&lt;Seite&gt;.png rendern und beenden.</translation>
    </message>
    <message>
        <source>DIR</source>
        <translation>DIR</translation>
    </message>
    <message>
        <source>Shows the QtColor widgets, one page per widget.</source>
        <translation>Zeigt die QtColor-Widgets, eine Seite je Widget.</translation>
    </message>
    <message>
        <source>Run ColorLab --screenshot DIR to render every page into DIR without a display.</source>
        <translation>ColorLab --screenshot DIR rendert jede Seite ohne Anzeige nach DIR.</translation>
    </message>
    <message>
        <source>no display to show the window on: neither DISPLAY nor WAYLAND_DISPLAY is set.</source>
        <translation>keine Anzeige für das Fenster: weder DISPLAY noch WAYLAND_DISPLAY ist gesetzt.</translation>
    </message>
    <message>
        <source>Run ColorLab --help to list the options.</source>
        <translation>ColorLab --help listet die Optionen auf.</translation>
    </message>
    <message>
        <source>the window system could not be opened.</source>
        <translation>das Fenstersystem konnte nicht geöffnet werden.</translation>
    </message>
</context>
<context>
    <name>ColorLabWindow</name>
    <message>
        <source>ColorLab</source>
        <translation>ColorLab</translation>
    </message>
    <message>
        <source>Sliders</source>
        <translation>Schieberegler</translation>
    </message>
    <message>
        <source>Controls</source>
        <translation>Bedienelemente</translation>
    </message>
    <message>
        <source>Spectrum</source>
        <translation>Spektrum</translation>
    </message>
    <message>
        <source>Dialog</source>
        <translation>Dialog</translation>
    </message>
    <message>
        <source>Images</source>
        <translation>Bilder</translation>
    </message>
</context>
<context>
    <name>ColorModes</name>
    <message>
        <source>Hue</source>
        <translation>Farbton</translation>
    </message>
    <message>
        <source>Saturation</source>
        <translation>Sättigung</translation>
    </message>
    <message>
        <source>Value</source>
        <translation>Hellwert</translation>
    </message>
    <message>
        <source>Red</source>
        <translation>Rot</translation>
    </message>
    <message>
        <source>Green</source>
        <translation>Grün</translation>
    </message>
    <message>
        <source>Blue</source>
        <translation>Blau</translation>
    </message>
    <message>
        <source>L*</source>
        <translation>L*</translation>
    </message>
    <message>
        <source>a*</source>
        <translation>a*</translation>
    </message>
    <message>
        <source>b*</source>
        <translation>b*</translation>
    </message>
</context>
<context>
    <name>ControlsPage</name>
    <message>
        <source>Colour field</source>
        <translation>Farbfeld</translation>
    </message>
    <message>
        <source>Current colour</source>
        <translation>Aktuelle Farbe</translation>
    </message>
    <message>
        <source>Drag the colour to a swatch, or drop a colour here to use it</source>
        <translation>Ziehen Sie die Farbe auf ein Farbmuster oder legen Sie hier eine Farbe ab, um sie zu übernehmen</translation>
    </message>
    <message>
        <source>Field colour (HSV)</source>
        <translation>Farbe im Farbfeld (HSV)</translation>
    </message>
    <message>
        <source>Field slider value</source>
        <translation>Wert des Farbfeld-Schiebereglers</translation>
    </message>
    <message>
        <source>HSV (hue in degrees)</source>
        <translation>HSV (Farbton in Grad)</translation>
    </message>
    <message>
        <source>Linear RGB</source>
        <translation>Lineares RGB</translation>
    </message>
    <message>
        <source>sRGB-encoded RGB</source>
        <translation>sRGB-kodiertes RGB</translation>
    </message>
    <message>
        <source>CIE L*a*b*</source>
        <translation>CIE L*a*b*</translation>
    </message>
    <message>
        <source>(linear)</source>
        <translation>(linear)</translation>
    </message>
    <message>
        <source>(display)</source>
        <translation>(Anzeige)</translation>
    </message>
    <message>
        <source>Swatches</source>
        <translation>Farbmuster</translation>
    </message>
    <message>
        <source>Material</source>
        <translation>Material</translation>
    </message>
    <message>
        <source>Diffuse</source>
        <translation>Diffus</translation>
    </message>
    <message>
        <source>Specular</source>
        <translation>Spiegelnd</translation>
    </message>
    <message>
        <source>Emission</source>
        <translation>Emission</translation>
    </message>
    <message>
        <source>(no signal yet)</source>
        <translation>(noch kein Signal)</translation>
    </message>
</context>
<context>
    <name>DialogPage</name>
    <message>
        <source>Open the Colour Dialog…</source>
        <translation>Farbdialog öffnen…</translation>
    </message>
    <message>
        <source>Opens the colour dialog beside this window; the page follows every edit</source>
        <translation>Öffnet den Farbdialog neben diesem Fenster; die Seite folgt jeder Änderung</translation>
    </message>
    <message>
        <source>linear (sRGB switch on)</source>
        <translation>linear (sRGB-Schalter an)</translation>
    </message>
    <message>
        <source>sRGB-encoded (sRGB switch off)</source>
        <translation>sRGB-kodiert (sRGB-Schalter aus)</translation>
    </message>
    <message>
        <source>Colour from the dialog</source>
        <translation>Farbe aus dem Dialog</translation>
    </message>
    <message>
        <source>The colour as the host shows it on screen</source>
        <translation>Die Farbe, wie die Anwendung sie auf dem Bildschirm zeigt</translation>
    </message>
    <message>
        <source>Sent values, unconverted:</source>
        <translation>Gesendete Werte, unkonvertiert:</translation>
    </message>
    <message>
        <source>Values</source>
        <translation>Werte</translation>
    </message>
    <message>
        <source>Form sent</source>
        <translation>Gesendete Form</translation>
    </message>
    <message>
        <source>HSV as sent</source>
        <translation>HSV wie gesendet</translation>
    </message>
    <message>
        <source>RGB as sent</source>
        <translation>RGB wie gesendet</translation>
    </message>
    <message>
        <source>Linear RGB</source>
        <translation>Lineares RGB</translation>
    </message>
    <message>
        <source>sRGB-encoded RGB</source>
        <translation>sRGB-kodiertes RGB</translation>
    </message>
    <message>
        <source>Screen colour</source>
        <translation>Bildschirmfarbe</translation>
    </message>
    <message>
        <source>Daylight</source>
        <translation>Tageslicht</translation>
    </message>
    <message>
        <source>none (not loaded from a file)</source>
        <translation>keine (nicht aus einer Datei geladen)</translation>
    </message>
    <message>
        <source>Material &quot;%1&quot; and its spectrum</source>
        <translation>Material &quot;%1&quot; und sein Spektrum</translation>
    </message>
    <message>
        <source>The colour of the material&apos;s spectrum</source>
        <translation>Die Farbe des Spektrums des Materials</translation>
    </message>
    <message>
        <source>Colour</source>
        <translation>Farbe</translation>
    </message>
    <message>
        <source>Spectrum file</source>
        <translation>Spektrumdatei</translation>
    </message>
</context>
<context>
    <name>GuiModeLauncher</name>
    <message>
        <source>cannot start the window mode (%1): %2</source>
        <translation>Fenstermodus kann nicht gestartet werden (%1): %2</translation>
    </message>
</context>
<context>
    <name>ImageMetaGui</name>
    <message>
        <source>Show the image information dialog for FILE.</source>
        <translation>Zeigt den Dialog mit den Bildinformationen zu FILE.</translation>
    </message>
    <message>
        <source>FILE</source>
        <translation>FILE</translation>
    </message>
    <message>
        <source>--gui takes exactly one FILE and no command</source>
        <translation>--gui erwartet genau ein Argument FILE und keinen Befehl</translation>
    </message>
    <message>
        <source>cannot read %1: missing, not an image this program can decode, damaged, or larger than 1 GiB</source>
        <translation>%1 kann nicht gelesen werden: fehlt, ist kein Bild, das dieses Programm dekodieren kann, ist beschädigt oder größer als 1 GiB</translation>
    </message>
    <message>
        <source>Run &apos;zeimagemeta --help&apos; for usage.</source>
        <translation>&apos;zeimagemeta --help&apos; zeigt Hinweise zum Aufruf.</translation>
    </message>
    <message>
        <source>no display to show the dialog on: neither DISPLAY nor WAYLAND_DISPLAY is set; &apos;zeimagemeta show FILE&apos; prints the same information</source>
        <translation>keine Anzeige für den Dialog: weder DISPLAY noch WAYLAND_DISPLAY ist gesetzt; &apos;zeimagemeta show FILE&apos; gibt dieselben Angaben aus</translation>
    </message>
</context>
<context>
    <name>ImageMetaTool</name>
    <message>
        <source>Scene file the image was rendered from.</source>
        <translation>Szenendatei, aus der das Bild gerendert wurde.</translation>
    </message>
    <message>
        <source>NAME</source>
        <translation>NAME</translation>
    </message>
    <message>
        <source>Version of the rendering application.</source>
        <translation>Version der Anwendung, die das Bild gerendert hat.</translation>
    </message>
    <message>
        <source>V</source>
        <translation>V</translation>
    </message>
    <message>
        <source>Render date and time in ISO 8601, for example 2024-05-17T14:30:00.</source>
        <translation>Datum und Uhrzeit des Renderns nach ISO 8601, zum Beispiel 2024-05-17T14:30:00.</translation>
    </message>
    <message>
        <source>ISO8601</source>
        <translation>ISO8601</translation>
    </message>
    <message>
        <source>Settings groups the record carries, the sum of: 1 camera, 2 node visibilities, 4 switch node states, 8 image, 16 animation, 32 render passes, 64 ray tracing, 128 switch material states.</source>
        <translation>Einstellungsgruppen, die der Datensatz enthält, als Summe aus: 1 Kamera, 2 Sichtbarkeit der Knoten, 4 Zustände der Switch-Knoten, 8 Bild, 16 Animation, 32 Render-Durchgänge, 64 Raytracing, 128 Zustände der Switch-Materialien.</translation>
    </message>
    <message>
        <source>MASK</source>
        <translation>MASK</translation>
    </message>
    <message>
        <source>Also copy the file&apos;s EXIF data into its XMP, next to the record.</source>
        <translation>Kopiert zusätzlich die EXIF-Daten der Datei in ihre XMP-Daten, neben den Datensatz.</translation>
    </message>
    <message>
        <source>Shows and writes the metadata of image files: baseline tags, EXIF exposure data and the render-settings record.</source>
        <translation>Zeigt und schreibt die Metadaten von Bilddateien: Baseline-Tags, EXIF-Belichtungsdaten und den Datensatz der Render-Einstellungen.</translation>
    </message>
    <message>
        <source>Commands:</source>
        <translation>Befehle:</translation>
    </message>
    <message>
        <source>no command given</source>
        <translation>kein Befehl angegeben</translation>
    </message>
    <message>
        <source>unknown command &apos;%1&apos;</source>
        <translation>unbekannter Befehl &apos;%1&apos;</translation>
    </message>
    <message>
        <source>%1 takes exactly one FILE</source>
        <translation>%1 erwartet genau ein Argument FILE</translation>
    </message>
    <message>
        <source>show takes no --%1 option</source>
        <translation>show akzeptiert keine Option --%1</translation>
    </message>
    <message>
        <source>stamp needs the --%1 option</source>
        <translation>stamp benötigt die Option --%1</translation>
    </message>
    <message>
        <source>invalid date &apos;%1&apos;: expected ISO 8601, for example 2024-05-17T14:30:00</source>
        <translation>ungültiges Datum &apos;%1&apos;: erwartet wird ISO 8601, zum Beispiel 2024-05-17T14:30:00</translation>
    </message>
    <message>
        <source>invalid group mask &apos;%1&apos;: expected a whole number from 0 to %2</source>
        <translation>ungültige Gruppenmaske &apos;%1&apos;: erwartet wird eine ganze Zahl von 0 bis %2</translation>
    </message>
    <message>
        <source>%1 is larger than 1 GiB</source>
        <translation>%1 ist größer als 1 GiB</translation>
    </message>
    <message>
        <source>cannot read %1: %2</source>
        <translation>%1 kann nicht gelesen werden: %2</translation>
    </message>
    <message>
        <source>%1 is not an image whose metadata can be read: %2</source>
        <translation>%1 ist kein Bild, dessen Metadaten gelesen werden können: %2</translation>
    </message>
    <message>
        <source>cannot write a record into %1: its format carries no XMP metadata</source>
        <translation>in %1 kann kein Datensatz geschrieben werden: Das Dateiformat kann keine XMP-Metadaten aufnehmen</translation>
    </message>
    <message>
        <source>%1 has no EXIF data to copy into XMP; leave out --exif-in-xmp</source>
        <translation>%1 enthält keine EXIF-Daten, die nach XMP kopiert werden könnten; --exif-in-xmp weglassen</translation>
    </message>
    <message>
        <source>cannot write the metadata of %1: %2</source>
        <translation>die Metadaten von %1 können nicht geschrieben werden: %2</translation>
    </message>
    <message>
        <source>Run &apos;%1 --help&apos; for usage.</source>
        <translation>&apos;%1 --help&apos; zeigt Hinweise zum Aufruf.</translation>
    </message>
    <message>
        <source>Camera Settings</source>
        <translation>Kameraeinstellungen</translation>
    </message>
    <message>
        <source>Node Visibilities</source>
        <translation>Sichtbarkeit der Knoten</translation>
    </message>
    <message>
        <source>Switch Node States</source>
        <translation>Zustände der Switch-Knoten</translation>
    </message>
    <message>
        <source>Image Settings</source>
        <translation>Bildeinstellungen</translation>
    </message>
    <message>
        <source>Animation Settings</source>
        <translation>Animationseinstellungen</translation>
    </message>
    <message>
        <source>Renderpasses Settings</source>
        <translation>Einstellungen der Render-Durchgänge</translation>
    </message>
    <message>
        <source>Raytracing Settings</source>
        <translation>Raytracing-Einstellungen</translation>
    </message>
    <message>
        <source>Switch Material States</source>
        <translation>Zustände der Switch-Materialien</translation>
    </message>
    <message>
        <source>Print the size and channels of the image in FILE, the metadata blocks that the image loader attaches to it, each under its name in brackets, and its render-settings record. The pixels are not decoded.</source>
        <translation>Gibt Größe und Kanäle des Bildes in FILE aus, die Metadatenblöcke, die der Bildlader ihm anhängt, jeweils unter ihrem Namen in eckigen Klammern, und seinen Datensatz der Render-Einstellungen. Die Pixel werden nicht dekodiert.</translation>
    </message>
    <message>
        <source>Write a render-settings record into FILE (JPEG, PNG, TIFF, WebP) without re-encoding its pixels; a record already there is replaced. On any failure the file is left as it was.</source>
        <translation>Schreibt einen Datensatz der Render-Einstellungen in FILE (JPEG, PNG, TIFF, WebP), ohne die Pixel neu zu kodieren; ein vorhandener Datensatz wird ersetzt. Bei jedem Fehler bleibt die Datei unverändert.</translation>
    </message>
    <message>
        <source>Show the image information dialog for FILE.</source>
        <translation>Zeigt den Dialog mit den Bildinformationen zu FILE.</translation>
    </message>
    <message>
        <source>unknown</source>
        <translation>unbekannt</translation>
    </message>
    <message>
        <source>Dimensions:</source>
        <translation>Abmessungen:</translation>
    </message>
    <message>
        <source>Depth:</source>
        <translation>Farbtiefe:</translation>
    </message>
    <message>
        <source>Color channel:</source>
        <translation>Farbkanal:</translation>
    </message>
    <message>
        <source>Alpha channel:</source>
        <translation>Alphakanal:</translation>
    </message>
    <message>
        <source>yes</source>
        <translation>ja</translation>
    </message>
    <message>
        <source>no</source>
        <translation>nein</translation>
    </message>
    <message>
        <source>%1 x %2 px</source>
        <translation>%1 x %2 px</translation>
    </message>
    <message>
        <source>(none)</source>
        <translation>(keine)</translation>
    </message>
    <message>
        <source>Scene:</source>
        <translation>Szene:</translation>
    </message>
    <message>
        <source>Version:</source>
        <translation>Version:</translation>
    </message>
    <message>
        <source>Date:</source>
        <translation>Datum:</translation>
    </message>
    <message>
        <source>Groups:</source>
        <translation>Gruppen:</translation>
    </message>
    <message>
        <source>cannot write a record into %1: exiv2 cannot parse the XMP metadata already in it, which would be lost (%2); the file is left as it was</source>
        <translation>in %1 kann kein Datensatz geschrieben werden: exiv2 kann die darin vorhandenen XMP-Metadaten nicht lesen, die sonst verloren gingen (%2); die Datei bleibt unverändert</translation>
    </message>
    <message>
        <source>cannot save %1: %2; the file is left as it was</source>
        <translation>%1 kann nicht gespeichert werden: %2; die Datei bleibt unverändert</translation>
    </message>
    <message>
        <source>show FILE..., or stamp FILE.</source>
        <translation>show FILE... oder stamp FILE.</translation>
    </message>
    <message>
        <source>command FILE...</source>
        <translation>Befehl FILE...</translation>
    </message>
    <message>
        <source>With several files, each report begins with a line &quot;==&gt; FILE &lt;==&quot; and an empty line separates one report from the next; a file that cannot be read is named on standard error and the others are still shown.</source>
        <translation>Bei mehreren Dateien beginnt jeder Bericht mit einer Zeile &quot;==&gt; FILE &lt;==&quot;, und eine Leerzeile trennt die Berichte voneinander; eine Datei, die nicht gelesen werden kann, wird auf der Standardfehlerausgabe genannt, die übrigen werden trotzdem angezeigt.</translation>
    </message>
    <message>
        <source>Exit status: 0 on success, 1 when a file (with show, any of the files) cannot be read or written, 2 on a usage error.</source>
        <translation>Rückgabewert: 0 bei Erfolg, 1, wenn eine Datei (bei show: eine der Dateien) nicht gelesen oder geschrieben werden kann, 2 bei einem Aufruffehler.</translation>
    </message>
    <message>
        <source>show needs at least one FILE</source>
        <translation>show erwartet mindestens eine Datei (FILE)</translation>
    </message>
</context>
<context>
    <name>ImagesPage</name>
    <message>
        <source>The image information dialog lists what an image file carries besides its pixels: its size and channels, the camera and copyright tags and the EXIF exposure data.</source>
        <translation>Der Dialog mit den Bildinformationen zeigt, was eine Bilddatei außer ihren Pixeln enthält: Größe und Kanäle, die Kamera- und Copyright-Tags und die EXIF-Belichtungsdaten.</translation>
    </message>
    <message>
        <source>Image information...</source>
        <translation>Bildinformationen...</translation>
    </message>
    <message>
        <source>Sample camera photo</source>
        <translation>Beispielfoto einer Kamera</translation>
    </message>
    <message>
        <source>A JPEG that ColorLab writes at start-up, with the tags a camera records: maker and model, exposure time, f-number, shutter speed and aperture, exposure bias, subject distance and focal lengths.</source>
        <translation>Ein JPEG, das ColorLab beim Start schreibt, mit den Tags, die eine Kamera aufzeichnet: Hersteller und Modell, Belichtungszeit, Blendenzahl, Verschlusszeit und Blendenwert, Belichtungskorrektur, Entfernung zum Motiv und Brennweiten.</translation>
    </message>
    <message>
        <source>Sample photo information</source>
        <translation>Informationen zum Beispielfoto</translation>
    </message>
    <message>
        <source>Cannot make a folder for the sample photo: %1</source>
        <translation>Für das Beispielfoto kann kein Ordner angelegt werden: %1</translation>
    </message>
    <message>
        <source>Cannot read %1: it is missing, not an image ColorLab can decode, or damaged.</source>
        <translation>%1 kann nicht gelesen werden: Die Datei fehlt, ist kein Bild, das ColorLab dekodieren kann, oder ist beschädigt.</translation>
    </message>
    <message>
        <source>Image Information</source>
        <translation>Bildinformationen</translation>
    </message>
    <message>
        <source>Images (*.jpg *.jpeg *.png *.tif *.tiff *.webp *.bmp *.gif);;All files (*)</source>
        <translation>Bilder (*.jpg *.jpeg *.png *.tif *.tiff *.webp *.bmp *.gif);;Alle Dateien (*)</translation>
    </message>
    <message>
        <source>Image browser</source>
        <translation>Bildbrowser</translation>
    </message>
    <message>
        <source>Thumbnails of a folder of renders, and the render-settings groups the chosen image carries: the ticked ones come back with the file.</source>
        <translation>Vorschaubilder eines Ordners mit Renderings und die Gruppen von Rendereinstellungen, die das gewählte Bild enthält: die angehakten kommen mit der Datei zurück.</translation>
    </message>
    <message>
        <source>Browse images...</source>
        <translation>Bilder durchsuchen...</translation>
    </message>
    <message>
        <source>Browse in the picker program...</source>
        <translation>Im Auswahlprogramm durchsuchen...</translation>
    </message>
    <message>
        <source>Cannot make a folder for the sample renders.</source>
        <translation>Für die Beispielrenderings kann kein Ordner angelegt werden.</translation>
    </message>
    <message>
        <source>Choose a Rendered Image</source>
        <translation>Gerendertes Bild wählen</translation>
    </message>
    <message>
        <source>Chosen file: none</source>
        <translation>Gewählte Datei: keine</translation>
    </message>
    <message>
        <source>Chosen file: %1</source>
        <translation>Gewählte Datei: %1</translation>
    </message>
    <message>
        <source>Render-settings groups: %1 (mask %2)</source>
        <translation>Gruppen der Rendereinstellungen: %1 (Maske %2)</translation>
    </message>
    <message>
        <source>Camera Settings</source>
        <translation>Kameraeinstellungen</translation>
    </message>
    <message>
        <source>Image Settings</source>
        <translation>Bildeinstellungen</translation>
    </message>
    <message>
        <source>Animation Settings</source>
        <translation>Animationseinstellungen</translation>
    </message>
    <message>
        <source>Renderpasses Settings</source>
        <translation>Einstellungen der Render-Durchgänge</translation>
    </message>
    <message>
        <source>Raytracing Settings</source>
        <translation>Raytracing-Einstellungen</translation>
    </message>
    <message>
        <source>Node Visibilities</source>
        <translation>Sichtbarkeit der Knoten</translation>
    </message>
    <message>
        <source>Switch Node States</source>
        <translation>Zustände der Switch-Knoten</translation>
    </message>
    <message>
        <source>Switch Material States</source>
        <translation>Zustände der Switch-Materialien</translation>
    </message>
    <message>
        <source>none</source>
        <translation>keine</translation>
    </message>
</context>
<context>
    <name>PickerArguments</name>
    <message>
        <source>no display to show the image browser on: neither DISPLAY nor WAYLAND_DISPLAY is set</source>
        <translation>keine Anzeige für den Bildbrowser: weder DISPLAY noch WAYLAND_DISPLAY ist gesetzt</translation>
    </message>
    <message>
        <source>expected %1 arguments, got %2</source>
        <translation>%1 Argumente erwartet, %2 erhalten</translation>
    </message>
    <message>
        <source>the window id &quot;%1&quot; is not a decimal number</source>
        <translation>die Fensterkennung &quot;%1&quot; ist keine Dezimalzahl</translation>
    </message>
    <message>
        <source>the last argument must be 1 (answer with the mask) or 0, not &quot;%1&quot;</source>
        <translation>das letzte Argument muss 1 (Antwort mit Maske) oder 0 sein, nicht &quot;%1&quot;</translation>
    </message>
    <message>
        <source>Usage: qimageFileDialog WINDOW-ID CAPTION DIRECTORY FILTER 1|0</source>
        <translation>Aufruf: qimageFileDialog WINDOW-ID CAPTION DIRECTORY FILTER 1|0</translation>
    </message>
</context>
<context>
    <name>SampleCameraJpeg</name>
    <message>
        <source>Cannot encode the sample photo: %1</source>
        <translation>Das Beispielfoto kann nicht kodiert werden: %1</translation>
    </message>
    <message>
        <source>Cannot add the camera tags to the sample photo: %1</source>
        <translation>Die Kamera-Tags können dem Beispielfoto nicht hinzugefügt werden: %1</translation>
    </message>
    <message>
        <source>Cannot write %1: %2</source>
        <translation>%1 kann nicht geschrieben werden: %2</translation>
    </message>
</context>
<context>
    <name>SampleRenders</name>
    <message>
        <source>Cannot write the sample render %1.</source>
        <translation>Das Beispielrendering %1 kann nicht geschrieben werden.</translation>
    </message>
    <message>
        <source>Cannot stamp the render settings into %1: %2</source>
        <translation>Die Rendereinstellungen können nicht in %1 geschrieben werden: %2</translation>
    </message>
</context>
<context>
    <name>ScreenshotWriter</name>
    <message>
        <source>Cannot create the directory %1.</source>
        <translation>Das Verzeichnis %1 kann nicht angelegt werden.</translation>
    </message>
    <message>
        <source>Cannot write %1.</source>
        <translation>%1 kann nicht geschrieben werden.</translation>
    </message>
    <message>
        <source>Cannot show the information of the sample photo.</source>
        <translation>Die Informationen zum Beispielfoto können nicht angezeigt werden.</translation>
    </message>
    <message>
        <source>The image browser did not show the sample renders in time.</source>
        <translation>Der Bildbrowser hat die Beispielrenderings nicht rechtzeitig gezeigt.</translation>
    </message>
</context>
<context>
    <name>SlidersPage</name>
    <message>
        <source>Channels</source>
        <translation>Kanäle</translation>
    </message>
    <message>
        <source>Current colour</source>
        <translation>Aktuelle Farbe</translation>
    </message>
    <message>
        <source>Show screen colours sRGB-encoded (QZEColor::s_useGamma)</source>
        <translation>Bildschirmfarben sRGB-kodiert anzeigen (QZEColor::s_useGamma)</translation>
    </message>
    <message>
        <source>HSV (hue in degrees)</source>
        <translation>HSV (Farbton in Grad)</translation>
    </message>
    <message>
        <source>Linear RGB</source>
        <translation>Lineares RGB</translation>
    </message>
    <message>
        <source>sRGB-encoded RGB</source>
        <translation>sRGB-kodiertes RGB</translation>
    </message>
    <message>
        <source>8-bit linear (getQColor)</source>
        <translation>8 Bit linear (getQColor)</translation>
    </message>
    <message>
        <source>8-bit on screen (getGammaQColor)</source>
        <translation>8 Bit auf dem Bildschirm (getGammaQColor)</translation>
    </message>
    <message>
        <source>CIE L*a*b*</source>
        <translation>CIE L*a*b*</translation>
    </message>
</context>
<context>
    <name>SpectrumPage</name>
    <message>
        <source>Press and drag on the empty plot to paint values. Drag a dot to change one sample, and with non-uniform sampling its wavelength.</source>
        <translation>Auf einer freien Stelle des Diagramms drücken und ziehen, um Werte zu zeichnen. Einen Punkt ziehen, um einen Abtastwert zu ändern, bei ungleichmäßiger Abtastung auch seine Wellenlänge.</translation>
    </message>
    <message>
        <source>Spectrum</source>
        <translation>Spektrum</translation>
    </message>
    <message>
        <source>Daylight D65</source>
        <translation>Tageslicht D65</translation>
    </message>
    <message>
        <source>Smits spectrum of a colour...</source>
        <translation>Smits-Spektrum einer Farbe...</translation>
    </message>
    <message>
        <source>Non-uniform sampling</source>
        <translation>Ungleichmäßige Abtastung</translation>
    </message>
    <message>
        <source>Dragged dots move in wavelength too, never past their neighbours.</source>
        <translation>Gezogene Punkte verschieben sich auch in der Wellenlänge, aber nie über ihre Nachbarn hinaus.</translation>
    </message>
    <message>
        <source>Top of the value axis</source>
        <translation>Obergrenze der Werteachse</translation>
    </message>
    <message>
        <source>File</source>
        <translation>Datei</translation>
    </message>
    <message>
        <source>Load...</source>
        <translation>Laden...</translation>
    </message>
    <message>
        <source>Save...</source>
        <translation>Speichern...</translation>
    </message>
    <message>
        <source>Colour of the spectrum</source>
        <translation>Farbe des Spektrums</translation>
    </message>
    <message>
        <source>CIE daylight D65, %1 to %2 nm in %3 nm steps.</source>
        <translation>CIE-Tageslicht D65, %1 bis %2 nm in Schritten von %3 nm.</translation>
    </message>
    <message>
        <source>Smits spectrum of linear RGB %1, %2, %3.</source>
        <translation>Smits-Spektrum von linearem RGB %1, %2, %3.</translation>
    </message>
    <message>
        <source>Colour for the Smits spectrum</source>
        <translation>Farbe für das Smits-Spektrum</translation>
    </message>
    <message>
        <source>Could not load %1; the spectrum is unchanged.</source>
        <translation>%1 konnte nicht geladen werden; das Spektrum bleibt unverändert.</translation>
    </message>
    <message>
        <source>Loaded %1.</source>
        <translation>%1 geladen.</translation>
    </message>
    <message>
        <source>Could not save %1.</source>
        <translation>%1 konnte nicht gespeichert werden.</translation>
    </message>
    <message>
        <source>Saved %1.</source>
        <translation>%1 gespeichert.</translation>
    </message>
    <message>
        <source>Load Spectrum File</source>
        <translation>Spektrumdatei laden</translation>
    </message>
    <message>
        <source>Spectrum File (*.spectral *.txt)</source>
        <translation>Spektrumdatei (*.spectral *.txt)</translation>
    </message>
    <message>
        <source>Save Spectrum File</source>
        <translation>Spektrumdatei speichern</translation>
    </message>
    <message>
        <source>Spectrum File (*.spectral)</source>
        <translation>Spektrumdatei (*.spectral)</translation>
    </message>
    <message>
        <source>Linear RGB: %1, %2, %3</source>
        <translation>Lineares RGB: %1, %2, %3</translation>
    </message>
</context>
<context>
    <name>SpectrumTool</name>
    <message>
        <source>FILE</source>
        <translation>FILE</translation>
    </message>
    <message>
        <source>Print the version, sampling, sample count, wavelength range, band sum, photometric value and RGB of FILE as &quot;key: value&quot; lines.</source>
        <translation>Gibt Version, Abtastung, Anzahl der Abtastwerte, Wellenlängenbereich, Bandsumme, photometrischen Wert und RGB von FILE als Zeilen der Form &quot;Schlüssel: Wert&quot; aus.</translation>
    </message>
    <message>
        <source>IN OUT</source>
        <translation>IN OUT</translation>
    </message>
    <message>
        <source>Read IN (.spectral or .txt) and write it to OUT as a .spectral file.</source>
        <translation>Liest IN (.spectral oder .txt) und schreibt es als .spectral-Datei nach OUT.</translation>
    </message>
    <message>
        <source>R G B</source>
        <translation>R G B</translation>
    </message>
    <message>
        <source>Write the reflectance spectrum of the linear RGB colour R G B (Smits&apos; method) on the grid, by default 380,5,81.</source>
        <translation>Schreibt das Reflexionsspektrum der linearen RGB-Farbe R G B (Verfahren nach Smits), abgetastet auf dem Raster, standardmäßig 380,5,81.</translation>
    </message>
    <message>
        <source>IN</source>
        <translation>IN</translation>
    </message>
    <message>
        <source>Interpolate IN linearly onto the grid and write the result.</source>
        <translation>Interpoliert IN linear auf das Raster und schreibt das Ergebnis.</translation>
    </message>
    <message>
        <source>Uniform wavelength grid in nm: first wavelength, spacing and number of samples.</source>
        <translation>Gleichmäßiges Wellenlängenraster in nm: erste Wellenlänge, Schrittweite und Anzahl der Abtastwerte.</translation>
    </message>
    <message>
        <source>START,DELTA,NUM</source>
        <translation>START,DELTA,NUM</translation>
    </message>
    <message>
        <source>Write the result to OUT; its name must contain .spectral.</source>
        <translation>Schreibt das Ergebnis nach OUT; der Name muss .spectral enthalten.</translation>
    </message>
    <message>
        <source>OUT</source>
        <translation>OUT</translation>
    </message>
    <message>
        <source>One of the commands above, then its arguments.</source>
        <translation>Einer der obigen Befehle, gefolgt von seinen Argumenten.</translation>
    </message>
    <message>
        <source>command [arguments...]</source>
        <translation>command [arguments...]</translation>
    </message>
    <message>
        <source>Inspects, converts and creates spectrum files: native .spectral files and two-column .txt files (wavelength in nm, value).</source>
        <translation>Untersucht, konvertiert und erzeugt Spektrumdateien: native .spectral-Dateien und zweispaltige .txt-Dateien (Wellenlänge in nm, Wert).</translation>
    </message>
    <message>
        <source>Commands:</source>
        <translation>Befehle:</translation>
    </message>
    <message>
        <source>Exit status: 0 on success, 1 when a file cannot be read or written or holds no valid spectrum, 2 on a usage error.</source>
        <translation>Rückgabewert: 0 bei Erfolg, 1, wenn eine Datei nicht gelesen oder geschrieben werden kann oder kein gültiges Spektrum enthält, 2 bei einem Aufruffehler.</translation>
    </message>
    <message>
        <source>no command given</source>
        <translation>kein Befehl angegeben</translation>
    </message>
    <message>
        <source>unknown command &apos;%1&apos;</source>
        <translation>unbekannter Befehl &apos;%1&apos;</translation>
    </message>
    <message>
        <source>wrong number of arguments; usage: %1</source>
        <translation>falsche Anzahl von Argumenten; Aufruf: %1</translation>
    </message>
    <message>
        <source>%1 takes no %2 option</source>
        <translation>%1 akzeptiert keine Option %2</translation>
    </message>
    <message>
        <source>%1 needs the %2 option</source>
        <translation>%1 benötigt die Option %2</translation>
    </message>
    <message>
        <source>invalid grid &apos;%1&apos;: expected START,DELTA,NUM as three whole numbers</source>
        <translation>ungültiges Raster &apos;%1&apos;: erwartet wird START,DELTA,NUM als drei ganze Zahlen</translation>
    </message>
    <message>
        <source>grid &apos;%1&apos; out of range: START must be at least 0, DELTA and NUM at least 1, NUM at most %2 and the last wavelength at most %3 nm</source>
        <translation>Raster &apos;%1&apos; außerhalb des gültigen Bereichs: START muss mindestens 0 sein, DELTA und NUM mindestens 1, NUM höchstens %2 und die letzte Wellenlänge höchstens %3 nm</translation>
    </message>
    <message>
        <source>&apos;%1&apos; is not a number</source>
        <translation>&apos;%1&apos; ist keine Zahl</translation>
    </message>
    <message>
        <source>%1: unknown file type; expected a .spectral or .txt file</source>
        <translation>%1: unbekannter Dateityp; erwartet wird eine .spectral- oder .txt-Datei</translation>
    </message>
    <message>
        <source>cannot read %1: %2</source>
        <translation>%1 kann nicht gelesen werden: %2</translation>
    </message>
    <message>
        <source>%1 is not a valid spectrum file</source>
        <translation>%1 ist keine gültige Spektrumdatei</translation>
    </message>
    <message>
        <source>%1 holds no samples</source>
        <translation>%1 enthält keine Abtastwerte</translation>
    </message>
    <message>
        <source>cannot write %1: %2</source>
        <translation>%1 kann nicht geschrieben werden: %2</translation>
    </message>
    <message>
        <source>cannot write %1</source>
        <translation>%1 kann nicht geschrieben werden</translation>
    </message>
    <message>
        <source>output file &apos;%1&apos; must have a name containing .spectral</source>
        <translation>der Name der Ausgabedatei &apos;%1&apos; muss .spectral enthalten</translation>
    </message>
    <message>
        <source>Run &apos;%1 --help&apos; for usage.</source>
        <translation>&apos;%1 --help&apos; zeigt Hinweise zum Aufruf.</translation>
    </message>
    <message>
        <source>Accept an input file that was not read to its end (text after the data, a pair that is not two numbers); where reading stopped is still reported.</source>
        <translation>Akzeptiert eine Eingabedatei, die nicht bis zum Ende gelesen wurde (Text nach den Daten, ein Paar, das nicht aus zwei Zahlen besteht); wo das Lesen endete, wird weiterhin gemeldet.</translation>
    </message>
    <message>
        <source>Input files may hold at most %1 MiB. A file that is not read to its end (a comment or other text among the numbers, a lone number at the end, text after the samples a header announces) is an error, with the line where reading stopped, unless --allow-partial is given. Outputs are written whole to a temporary file and then renamed, so a failed write leaves an existing file unchanged; IN and OUT may be the same file.</source>
        <translation>Eingabedateien dürfen höchstens %1 MiB groß sein. Eine Datei, die nicht bis zum Ende gelesen wird (ein Kommentar oder anderer Text zwischen den Zahlen, eine einzelne Zahl am Ende, Text nach den Abtastwerten, die ein Header ankündigt), ist ein Fehler, mit Angabe der Zeile, an der das Lesen endete, sofern nicht --allow-partial angegeben ist. Ausgaben werden vollständig in eine temporäre Datei geschrieben und dann umbenannt, sodass ein fehlgeschlagenes Schreiben eine vorhandene Datei unverändert lässt; IN und OUT dürfen dieselbe Datei sein.</translation>
    </message>
    <message>
        <source>R G B are linear values from 0 to 1; larger values (such as 8-bit 255) are clipped, with a warning. The rgb that info prints is not normalised: a constant spectrum of 1.0 gives about 10.69 in each channel.</source>
        <translation>R G B sind lineare Werte von 0 bis 1; größere Werte (etwa 8 Bit 255) werden mit einer Warnung abgeschnitten. Der von info ausgegebene rgb-Wert ist nicht normiert: Ein konstantes Spektrum von 1.0 ergibt etwa 10.69 in jedem Kanal.</translation>
    </message>
    <message>
        <source>R G B above 1 (%1 %2 %3) give a reflectance clipped at 1; the channels are linear values from 0 to 1 (divide 8-bit values by 255)</source>
        <translation>R G B über 1 (%1 %2 %3) ergeben eine bei 1 abgeschnittene Reflexion; die Kanäle sind lineare Werte von 0 bis 1 (8-Bit-Werte durch 255 teilen)</translation>
    </message>
    <message>
        <source>cannot read %1: it is larger than %2 MiB</source>
        <translation>%1 kann nicht gelesen werden: die Datei ist größer als %2 MiB</translation>
    </message>
    <message>
        <source>%1 was not read to its end; give --allow-partial to accept what was read</source>
        <translation>%1 wurde nicht bis zum Ende gelesen; --allow-partial angeben, um das Gelesene zu akzeptieren</translation>
    </message>
    <message>
        <source>%1: reading stopped at line %2: %3</source>
        <translation>%1: Lesen endete in Zeile %2: %3</translation>
    </message>
    <message>
        <source>warning: %1</source>
        <translation>Warnung: %1</translation>
    </message>
</context>
</TS>
