<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de_DE">
<context>
    <name>QStyledItemDelegate</name>
    <message>
        <source>Loading ...</source>
        <translation>Wird geladen ...</translation>
    </message>
</context>
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
    <name>QZEColorDialog</name>
    <message>
        <source>R: </source>
        <translation>R: </translation>
    </message>
    <message>
        <source>G: </source>
        <translation>G: </translation>
    </message>
    <message>
        <source>B: </source>
        <translation>B: </translation>
    </message>
    <message>
        <source>H: </source>
        <translation>H: </translation>
    </message>
    <message>
        <source>S: </source>
        <translation>S: </translation>
    </message>
    <message>
        <source>V: </source>
        <translation>V: </translation>
    </message>
    <message>
        <source>L*: </source>
        <translation>L*: </translation>
    </message>
    <message>
        <source>a*: </source>
        <translation>a*: </translation>
    </message>
    <message>
        <source>b*: </source>
        <translation>b*: </translation>
    </message>
    <message>
        <source>Disable Non-Uniform Sampling</source>
        <translation>Ungleichmäßige Abtastung deaktivieren</translation>
    </message>
    <message>
        <source>To disable non-uniform sampling, please select the preferred uniform sampling distribution and press &quot;Apply&quot;.
Warning! Your original sampling will be changed and non-uniform samples are lost!</source>
        <translation>Zum Deaktivieren der ungleichmäßigen Abtastung die gewünschte gleichmäßige Abtastverteilung wählen und &quot;Anwenden&quot; drücken.
Warnung! Die ursprüngliche Abtastung wird geändert und ungleichmäßige Abtastwerte gehen verloren!</translation>
    </message>
    <message>
        <source>Ok</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Load Spectrum File</source>
        <translation>Spektrumdatei laden</translation>
    </message>
    <message>
        <source>Add Spectrum File</source>
        <translation>Spektrumdatei hinzufügen</translation>
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
        <source>X: </source>
        <translation>X: </translation>
    </message>
    <message>
        <source>Y: </source>
        <translation>Y: </translation>
    </message>
    <message>
        <source>Z: </source>
        <translation>Z: </translation>
    </message>
    <message>
        <source>Start: %1 / Delta: %2 / Num: / %3</source>
        <translation>Start: %1 / Delta: %2 / Num: / %3</translation>
    </message>
    <message>
        <source>Default</source>
        <translation>Standard</translation>
    </message>
</context>
<context>
    <name>QZEColorDialogGUI</name>
    <message>
        <source>Choose a Color</source>
        <translation>Farbe wählen</translation>
    </message>
    <message>
        <source>Color</source>
        <translation>Farbe</translation>
    </message>
    <message>
        <source>set color field to Qt::red mode</source>
        <translation>Farbfeld in den Modus Qt::red schalten</translation>
    </message>
    <message>
        <source>Red</source>
        <translation>Rot</translation>
    </message>
    <message>
        <source>change red color component</source>
        <translation>Rotanteil ändern</translation>
    </message>
    <message>
        <source>enter red color component</source>
        <translation>Rotanteil eingeben</translation>
    </message>
    <message>
        <source>set color field to Qt::green mode</source>
        <translation>Farbfeld in den Modus Qt::green schalten</translation>
    </message>
    <message>
        <source>Green</source>
        <translation>Grün</translation>
    </message>
    <message>
        <source>change green color component</source>
        <translation>Grünanteil ändern</translation>
    </message>
    <message>
        <source>enter green color component</source>
        <translation>Grünanteil eingeben</translation>
    </message>
    <message>
        <source>set color field to Qt::blue mode</source>
        <translation>Farbfeld in den Modus Qt::blue schalten</translation>
    </message>
    <message>
        <source>Blue</source>
        <translation>Blau</translation>
    </message>
    <message>
        <source>change blue color component</source>
        <translation>Blauanteil ändern</translation>
    </message>
    <message>
        <source>enter blue color component</source>
        <translation>Blauanteil eingeben</translation>
    </message>
    <message>
        <source>set color field to hue mode</source>
        <translation>Farbfeld in den Farbton-Modus schalten</translation>
    </message>
    <message>
        <source>Hue</source>
        <translation>Farbton</translation>
    </message>
    <message>
        <source>change hue</source>
        <translation>Farbton ändern</translation>
    </message>
    <message>
        <source>enter hue</source>
        <translation>Farbton eingeben</translation>
    </message>
    <message>
        <source>set color field to saturation mode</source>
        <translation>Farbfeld in den Sättigungs-Modus schalten</translation>
    </message>
    <message>
        <source>Sat</source>
        <translation>Sätt.</translation>
    </message>
    <message>
        <source>change saturation</source>
        <translation>Sättigung ändern</translation>
    </message>
    <message>
        <source>enter saturation</source>
        <translation>Sättigung eingeben</translation>
    </message>
    <message>
        <source>set color field to value mode</source>
        <translation>Farbfeld in den Hellwert-Modus schalten</translation>
    </message>
    <message>
        <source>Value</source>
        <translation>Hellwert</translation>
    </message>
    <message>
        <source>change value</source>
        <translation>Hellwert ändern</translation>
    </message>
    <message>
        <source>enter value</source>
        <translation>Hellwert eingeben</translation>
    </message>
    <message>
        <source>L*</source>
        <translation>L*</translation>
    </message>
    <message>
        <source>change lightness of the color</source>
        <translation>Helligkeit der Farbe ändern</translation>
    </message>
    <message>
        <source>enter lightness of the color</source>
        <translation>Helligkeit der Farbe eingeben</translation>
    </message>
    <message>
        <source>a*</source>
        <translation>a*</translation>
    </message>
    <message>
        <source>change balance between red/magenta and green</source>
        <translation>Verhältnis zwischen Rot/Magenta und Grün ändern</translation>
    </message>
    <message>
        <source>enter balance between red/magenta and green</source>
        <translation>Verhältnis zwischen Rot/Magenta und Grün eingeben</translation>
    </message>
    <message>
        <source>b*</source>
        <translation>b*</translation>
    </message>
    <message>
        <source>change balance between yellow and blue</source>
        <translation>Verhältnis zwischen Gelb und Blau ändern</translation>
    </message>
    <message>
        <source>enter balance between yellow and blue</source>
        <translation>Verhältnis zwischen Gelb und Blau eingeben</translation>
    </message>
    <message>
        <source>Current</source>
        <translation>Aktuell</translation>
    </message>
    <message>
        <source>Current color</source>
        <translation>Aktuelle Farbe</translation>
    </message>
    <message>
        <source>Previous color</source>
        <translation>Vorherige Farbe</translation>
    </message>
    <message>
        <source>Output Color</source>
        <translation>Ausgabefarbe</translation>
    </message>
    <message>
        <source>R: 1.0</source>
        <translation>R: 1.0</translation>
    </message>
    <message>
        <source>G: 0.0</source>
        <translation>G: 0.0</translation>
    </message>
    <message>
        <source>B: 0.0</source>
        <translation>B: 0.0</translation>
    </message>
    <message>
        <source>H: 0.0</source>
        <translation>H: 0.0</translation>
    </message>
    <message>
        <source>S: 1.0</source>
        <translation>S: 1.0</translation>
    </message>
    <message>
        <source>V: 0.0</source>
        <translation>V: 0.0</translation>
    </message>
    <message>
        <source>L*: 0.0</source>
        <translation>L*: 0.0</translation>
    </message>
    <message>
        <source>a*: 1.0</source>
        <translation>a*: 1.0</translation>
    </message>
    <message>
        <source>b*: 0.0</source>
        <translation>b*: 0.0</translation>
    </message>
    <message>
        <source>The pipette allows picking a color from screen.
Activate the Pipette and left-click anywhere on the desktop.
To abort picking click again the Pipette button or right-click anywhere.</source>
        <translation>Mit der Pipette lässt sich eine Farbe vom Bildschirm aufnehmen.
Pipette aktivieren und an einer beliebigen Stelle des Desktops mit links klicken.
Zum Abbrechen erneut auf die Pipette klicken oder an einer beliebigen Stelle mit rechts klicken.</translation>
    </message>
    <message>
        <source>Pick a color from the screen</source>
        <translation>Farbe vom Bildschirm aufnehmen</translation>
    </message>
    <message>
        <source>Pipette</source>
        <translation>Pipette</translation>
    </message>
    <message>
        <source>output gamma corrected color</source>
        <translation>gammakorrigierte Farbe ausgeben</translation>
    </message>
    <message>
        <source>Use sRGB Colors</source>
        <translation>sRGB-Farben verwenden</translation>
    </message>
    <message>
        <source>add current color to custom colors</source>
        <translation>aktuelle Farbe zu den eigenen Farben hinzufügen</translation>
    </message>
    <message>
        <source>Store Color</source>
        <translation>Farbe speichern</translation>
    </message>
    <message>
        <source>&lt;p&gt;&lt;b&gt;Custom colors&lt;/b&gt;&lt;/p&gt;&lt;p&gt;&lt;i&gt;Store Color&lt;/i&gt; keeps the current color in the next free cell; once all cells are full, the oldest one is replaced.&lt;/p&gt;&lt;p&gt;Click a cell, or move to it with the arrow keys and press Space, to make its color the current one. Empty cells do nothing.&lt;/p&gt;</source>
        <translation>&lt;p&gt;&lt;b&gt;Eigene Farben&lt;/b&gt;&lt;/p&gt;&lt;p&gt;&lt;i&gt;Farbe speichern&lt;/i&gt; legt die aktuelle Farbe in der nächsten freien Zelle ab; sind alle Zellen belegt, wird die älteste ersetzt.&lt;/p&gt;&lt;p&gt;Eine Zelle anklicken oder mit den Pfeiltasten zu ihr wechseln und die Leertaste drücken, um ihre Farbe zur aktuellen zu machen. Leere Zellen bewirken nichts.&lt;/p&gt;</translation>
    </message>
    <message>
        <source>accept the current color</source>
        <translation>aktuelle Farbe übernehmen</translation>
    </message>
    <message>
        <source>Accept</source>
        <translation>Übernehmen</translation>
    </message>
    <message>
        <source>close dialog and use the previous color</source>
        <translation>Dialog schließen und die vorherige Farbe verwenden</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Spectrum</source>
        <translation>Spektrum</translation>
    </message>
    <message>
        <source>X: 0.0</source>
        <translation>X: 0.0</translation>
    </message>
    <message>
        <source>Y: 1.0</source>
        <translation>Y: 1.0</translation>
    </message>
    <message>
        <source>Z: 0.0</source>
        <translation>Z: 0.0</translation>
    </message>
    <message>
        <source>Spectrum plot</source>
        <translation>Spektrumdiagramm</translation>
    </message>
    <message>
        <source>enable advanced tools to edit the sample placement of the current spectral distribution</source>
        <translation>erweiterte Werkzeuge zum Bearbeiten der Lage der Abtastwerte der aktuellen Spektralverteilung aktivieren</translation>
    </message>
    <message>
        <source>Edit Sample Distribution</source>
        <translation>Abtastverteilung bearbeiten</translation>
    </message>
    <message>
        <source>Presets</source>
        <translation>Vorgaben</translation>
    </message>
    <message>
        <source>select sample distribution from presets</source>
        <translation>Abtastverteilung aus den Vorgaben wählen</translation>
    </message>
    <message>
        <source>enable editing of the wavelengths of the samples</source>
        <translation>Bearbeiten der Wellenlängen der Abtastwerte aktivieren</translation>
    </message>
    <message>
        <source>Allow Non-Uniform Sample Distribution</source>
        <translation>Ungleichmäßige Abtastverteilung zulassen</translation>
    </message>
    <message>
        <source>Start</source>
        <translation>Start</translation>
    </message>
    <message>
        <source>enter the wavelength of the first sample</source>
        <translation>Wellenlänge des ersten Abtastwerts eingeben</translation>
    </message>
    <message>
        <source>Delta</source>
        <translation>Delta</translation>
    </message>
    <message>
        <source>enter the sample spacing in the wavelength domain</source>
        <translation>Abstand der Abtastwerte in der Wellenlänge eingeben</translation>
    </message>
    <message>
        <source>Number</source>
        <translation>Anzahl</translation>
    </message>
    <message>
        <source>enter the total number of samples</source>
        <translation>Gesamtzahl der Abtastwerte eingeben</translation>
    </message>
    <message>
        <source>Apply</source>
        <translation>Anwenden</translation>
    </message>
    <message>
        <source>Basic</source>
        <translation>Basis</translation>
    </message>
    <message>
        <source>File</source>
        <translation>Datei</translation>
    </message>
    <message>
        <source>Enter path to select spectral input file.</source>
        <translation>Pfad der spektralen Eingabedatei eingeben.</translation>
    </message>
    <message>
        <source>Browse file system to select a spectral input file and add it to the current spectral distribution.</source>
        <translation>Im Dateisystem eine spektrale Eingabedatei wählen und zur aktuellen Spektralverteilung hinzufügen.</translation>
    </message>
    <message>
        <source>Add spectrum file</source>
        <translation>Spektrumdatei hinzufügen</translation>
    </message>
    <message>
        <source>Browse file system to select a spectral input file.</source>
        <translation>Im Dateisystem eine spektrale Eingabedatei wählen.</translation>
    </message>
    <message>
        <source>Load spectrum file</source>
        <translation>Spektrumdatei laden</translation>
    </message>
    <message>
        <source>Save current spectral distribution to a file.</source>
        <translation>Aktuelle Spektralverteilung in einer Datei speichern.</translation>
    </message>
    <message>
        <source>Save spectrum file</source>
        <translation>Spektrumdatei speichern</translation>
    </message>
    <message>
        <source>0</source>
        <translation>0</translation>
    </message>
    <message>
        <source>Scale</source>
        <translation>Skalieren</translation>
    </message>
    <message>
        <source>scale current spectral distribution preserving the hue</source>
        <translation>aktuelle Spektralverteilung unter Beibehaltung des Farbtons skalieren</translation>
    </message>
    <message>
        <source>Analytic</source>
        <translation>Analytisch</translation>
    </message>
    <message>
        <source>Function</source>
        <translation>Funktion</translation>
    </message>
    <message>
        <source>Choose an analytic function.</source>
        <translation>Analytische Funktion wählen.</translation>
    </message>
    <message>
        <source>Blackbody</source>
        <translation>Schwarzer Körper</translation>
    </message>
    <message>
        <source>CIE D</source>
        <translation>CIE D</translation>
    </message>
    <message>
        <source>Gauss</source>
        <translation>Gauß</translation>
    </message>
    <message>
        <source>Cosine</source>
        <translation>Kosinus</translation>
    </message>
    <message>
        <source>Bartlett</source>
        <translation>Bartlett</translation>
    </message>
    <message>
        <source>Blackman</source>
        <translation>Blackman</translation>
    </message>
    <message>
        <source>Connes</source>
        <translation>Connes</translation>
    </message>
    <message>
        <source>Hamming</source>
        <translation>Hamming</translation>
    </message>
    <message>
        <source>Hanning</source>
        <translation>Hanning</translation>
    </message>
    <message>
        <source>Lorentzian</source>
        <translation>Lorentz</translation>
    </message>
    <message>
        <source>Welch</source>
        <translation>Welch</translation>
    </message>
    <message>
        <source>Peak Wavelength</source>
        <translation>Spitzenwellenlänge</translation>
    </message>
    <message>
        <source>enter the wavelength of the peak</source>
        <translation>Wellenlänge des Maximums eingeben</translation>
    </message>
    <message>
        <source>Peak Intensity</source>
        <translation>Spitzenintensität</translation>
    </message>
    <message>
        <source>enter the intensity of the peak</source>
        <translation>Intensität des Maximums eingeben</translation>
    </message>
    <message>
        <source>FWHM</source>
        <translation>FWHM</translation>
    </message>
    <message>
        <source>enter the Full Width at Half Maximum</source>
        <translation>Halbwertsbreite (FWHM) eingeben</translation>
    </message>
    <message>
        <source>Temperature</source>
        <translation>Temperatur</translation>
    </message>
    <message>
        <source> Kelvin</source>
        <translation> Kelvin</translation>
    </message>
    <message>
        <source>Add the analytic function to the current spectral distribution.</source>
        <translation>Analytische Funktion zur aktuellen Spektralverteilung hinzufügen.</translation>
    </message>
    <message>
        <source>Add</source>
        <translation>Hinzufügen</translation>
    </message>
    <message>
        <source>Set the analytic function as new spectral distribution.</source>
        <translation>Analytische Funktion als neue Spektralverteilung setzen.</translation>
    </message>
    <message>
        <source>Set</source>
        <translation>Setzen</translation>
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
    <name>QZEConvertImage</name>
    <message>
        <source>TOO BIG</source>
        <translation>ZU GROSS</translation>
    </message>
    <message>
        <source>CONVERSION ERROR</source>
        <translation>KONVERTIERUNGSFEHLER</translation>
    </message>
</context>
<context>
    <name>QZEImageFileDialog</name>
    <message>
        <source>&lt;filename&gt;</source>
        <translation>&lt;Dateiname&gt;</translation>
    </message>
    <message>
        <source>&lt;version&gt;</source>
        <translation>&lt;Version&gt;</translation>
    </message>
    <message>
        <source>&lt;render date&gt;</source>
        <translation>&lt;Renderdatum&gt;</translation>
    </message>
</context>
<context>
    <name>QZEImageFileDialogGUI</name>
    <message>
        <source>Image File Browser</source>
        <translation>Bilddatei-Browser</translation>
    </message>
    <message>
        <source>Talq File</source>
        <translation>Talq-Datei</translation>
    </message>
    <message>
        <source>&lt;filename&gt;</source>
        <translation>&lt;Dateiname&gt;</translation>
    </message>
    <message>
        <source>&lt;version&gt;</source>
        <translation>&lt;Version&gt;</translation>
    </message>
    <message>
        <source>&lt;render date&gt;</source>
        <translation>&lt;Renderdatum&gt;</translation>
    </message>
    <message>
        <source>Render Date</source>
        <translation>Renderdatum</translation>
    </message>
    <message>
        <source>Camera Settings</source>
        <translation>Kameraeinstellungen</translation>
    </message>
    <message>
        <source>File Output</source>
        <translation>Dateiausgabe</translation>
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
        <source>Scenegraph</source>
        <translation>Szenengraph</translation>
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
        <source>Ok</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
</context>
<context>
    <name>QZEScreenPicker</name>
    <message>
        <source>This Wayland session does not let applications read the screen,
and its desktop portal offers no color picker.</source>
        <translation>Diese Wayland-Sitzung erlaubt Anwendungen nicht, den Bildschirm auszulesen,
und ihr Desktop-Portal bietet keine Farbauswahl an.</translation>
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
    <name>QtColorDesignerPlugin</name>
    <message>
        <source>Colour slider</source>
        <translation>Farbregler</translation>
    </message>
    <message>
        <source>A slider over one colour component (hue, saturation, value, red, green, blue, L*, a* or b*) painted with the colours it selects.</source>
        <translation>Ein Regler für eine Farbkomponente (Farbton, Sättigung, Hellwert, Rot, Grün, Blau, L*, a* oder b*), gemalt in den Farben, die er auswählt.</translation>
    </message>
    <message>
        <source>Colour button</source>
        <translation>Farbschaltfläche</translation>
    </message>
    <message>
        <source>A colour swatch that opens the shared colour dialog on a click and takes colours by drag and drop.</source>
        <translation>Ein Farbfeld, das bei einem Klick den gemeinsamen Farbdialog öffnet und Farben per Ziehen und Ablegen übernimmt.</translation>
    </message>
    <message>
        <source>Colour manipulator</source>
        <translation>Farbmanipulator</translation>
    </message>
    <message>
        <source>A colour button with a value slider beside it, for editing one material colour.</source>
        <translation>Eine Farbschaltfläche mit einem Hellwertregler daneben, zum Bearbeiten einer Materialfarbe.</translation>
    </message>
    <message>
        <source>Spectrum plot</source>
        <translation>Spektrumsdiagramm</translation>
    </message>
    <message>
        <source>An editable plot of a spectrum from 380 to 780 nm, in a view that keeps it filling the view.</source>
        <translation>Ein bearbeitbares Diagramm eines Spektrums von 380 bis 780 nm, in einer Ansicht, die es stets ausfüllt.</translation>
    </message>
    <message>
        <source>Colour field</source>
        <translation>Farbfeld</translation>
    </message>
    <message>
        <source>A two-dimensional colour field for picking the two components that the field&apos;s mode leaves free.</source>
        <translation>Ein zweidimensionales Farbfeld zur Wahl der beiden Komponenten, die der Modus des Feldes freilässt.</translation>
    </message>
    <message>
        <source>Custom colours</source>
        <translation>Eigene Farben</translation>
    </message>
    <message>
        <source>Two rows of custom colour cells, optionally kept between runs.</source>
        <translation>Zwei Reihen eigener Farbzellen, auf Wunsch zwischen Programmläufen gespeichert.</translation>
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
<context>
    <name>zeTextureMetaDataGUI</name>
    <message>
        <source>Image Information</source>
        <translation>Bildinformationen</translation>
    </message>
    <message>
        <source>&lt;filename&gt;</source>
        <translation>&lt;Dateiname&gt;</translation>
    </message>
    <message>
        <source>Ok</source>
        <translation>OK</translation>
    </message>
</context>
<context>
    <name>zeTextureMetaDataGUII</name>
    <message>
        <source>Samples per pixel:	</source>
        <translation>Kanäle pro Pixel:	</translation>
    </message>
    <message>
        <source>Bits per sample:		</source>
        <translation>Bits pro Kanal:		</translation>
    </message>
    <message>
        <source>Camera maker:		</source>
        <translation>Hersteller:		</translation>
    </message>
    <message>
        <source>Camera model:		</source>
        <translation>Kameramodell:		</translation>
    </message>
    <message>
        <source>Software:		</source>
        <translation>Software:		</translation>
    </message>
    <message>
        <source>Artist:		</source>
        <translation>Urheber:		</translation>
    </message>
    <message>
        <source>Image description:	</source>
        <translation>Bildbeschreibung:	</translation>
    </message>
    <message>
        <source>Copyright:		</source>
        <translation>Copyright:		</translation>
    </message>
    <message>
        <source>Yes</source>
        <translation>Ja</translation>
    </message>
    <message>
        <source>No</source>
        <translation>Nein</translation>
    </message>
    <message>
        <source>Dimension:		</source>
        <translation>Abmessungen:		</translation>
    </message>
    <message>
        <source>Depth:		</source>
        <translation>Farbtiefe:		</translation>
    </message>
    <message>
        <source>Color channel:		</source>
        <translation>Farbkanal:		</translation>
    </message>
    <message>
        <source>Alpha channel:		</source>
        <translation>Alphakanal:		</translation>
    </message>
    <message>
        <source>Exposure time:		</source>
        <translation>Belichtungszeit:		</translation>
    </message>
    <message>
        <source>F number:		F</source>
        <translation>Blendenzahl:		F</translation>
    </message>
    <message>
        <source>Shutter speed:		</source>
        <translation>Verschlusszeit:		</translation>
    </message>
    <message>
        <source> Tv</source>
        <translation> Tv</translation>
    </message>
    <message>
        <source>Aperture:		</source>
        <translation>Blendenwert:		</translation>
    </message>
    <message>
        <source> Av</source>
        <translation> Av</translation>
    </message>
    <message>
        <source> (F</source>
        <translation> (F</translation>
    </message>
    <message>
        <source>Brightness:		</source>
        <translation>Helligkeit:		</translation>
    </message>
    <message>
        <source>Exposure bias:		</source>
        <translation>EV-Korrektur:		</translation>
    </message>
    <message>
        <source> EV</source>
        <translation> EV</translation>
    </message>
    <message>
        <source>Subject distance:	</source>
        <translation>Entfernung zum Motiv:	</translation>
    </message>
    <message>
        <source>Lens focal length:	</source>
        <translation>Objektivbrennweite:	</translation>
    </message>
    <message>
        <source>Lens focal length in 35mm:	</source>
        <translation>Brennweite in 35mm:	</translation>
    </message>
</context>
</TS>
