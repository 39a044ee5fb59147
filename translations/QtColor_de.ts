<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de_DE">
<context>
    <name>QZEColorArray</name>
    <message>
        <source>Custom colours</source>
        <translation>Eigene Farben</translation>
    </message>
    <message>
        <source>Free cell</source>
        <translation>Freie Zelle</translation>
    </message>
    <message>
        <source>H: %1  S: %2  V: %3
R: %4  G: %5  B: %6</source>
        <translation>H: %1  S: %2  V: %3
R: %4  G: %5  B: %6</translation>
    </message>
</context>
<context>
    <name>QZEColorField</name>
    <message>
        <source>hue</source>
        <translation>Farbton</translation>
    </message>
    <message>
        <source>saturation</source>
        <translation>Sättigung</translation>
    </message>
    <message>
        <source>value</source>
        <translation>Hellwert</translation>
    </message>
    <message>
        <source>red</source>
        <translation>Rot</translation>
    </message>
    <message>
        <source>green</source>
        <translation>Grün</translation>
    </message>
    <message>
        <source>blue</source>
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
    <message>
        <source>Colour field</source>
        <translation>Farbfeld</translation>
    </message>
    <message>
        <source>%1 from left to right, %2 from bottom to top, at a fixed %3</source>
        <translation>%1 von links nach rechts, %2 von unten nach oben, %3 fest</translation>
    </message>
</context>
<context>
    <name>QZEColorSlider</name>
    <message>
        <source>Disabled, using photometric mode.</source>
        <translation>Deaktiviert, fotometrischer Modus aktiv.</translation>
    </message>
    <message>
        <source>Disabled, using spectral data.</source>
        <translation>Deaktiviert, Spektraldaten werden verwendet.</translation>
    </message>
</context>
<context>
    <name>QZESpectrumPlot</name>
    <message>
        <source>Sample: %1 / Wavelength: %2 / Value: %3</source>
        <translation>Abtastwert: %1 / Wellenlänge: %2 / Wert: %3</translation>
    </message>
</context>
<context>
    <name>zeFile</name>
    <message>
        <source>Cannot Read File</source>
        <translation>Datei kann nicht gelesen werden</translation>
    </message>
    <message>
        <source>No file name was given.</source>
        <translation>Es wurde kein Dateiname angegeben.</translation>
    </message>
    <message>
        <source>The file &quot;%1&quot; does not exist.</source>
        <translation>Die Datei &quot;%1&quot; existiert nicht.</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is a folder, not a file.</source>
        <translation>&quot;%1&quot; ist ein Ordner, keine Datei.</translation>
    </message>
    <message>
        <source>You do not have permission to read &quot;%1&quot;.</source>
        <translation>Sie haben keine Berechtigung, &quot;%1&quot; zu lesen.</translation>
    </message>
    <message>
        <source>Cannot Write File</source>
        <translation>Datei kann nicht geschrieben werden</translation>
    </message>
    <message>
        <source>You do not have permission to write &quot;%1&quot;.</source>
        <translation>Sie haben keine Berechtigung, &quot;%1&quot; zu schreiben.</translation>
    </message>
    <message>
        <source>Cannot create &quot;%1&quot;: the folder &quot;%2&quot; does not exist.</source>
        <translation>&quot;%1&quot; kann nicht angelegt werden: Der Ordner &quot;%2&quot; existiert nicht.</translation>
    </message>
    <message>
        <source>Cannot create &quot;%1&quot;: &quot;%2&quot; is not a folder.</source>
        <translation>&quot;%1&quot; kann nicht angelegt werden: &quot;%2&quot; ist kein Ordner.</translation>
    </message>
    <message>
        <source>Cannot create &quot;%1&quot;: you do not have permission to write in the folder &quot;%2&quot;.</source>
        <translation>&quot;%1&quot; kann nicht angelegt werden: Sie haben keine Schreibberechtigung im Ordner &quot;%2&quot;.</translation>
    </message>
</context>
</TS>
