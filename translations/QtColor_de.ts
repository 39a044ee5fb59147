<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de_DE">
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
</TS>
