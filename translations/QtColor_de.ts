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
    <name>QZEColorDialog</name>
    <message>
        <source>R: </source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>G: </source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>B: </source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>H: </source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>S: </source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>V: </source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>L*: </source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>a*: </source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>b*: </source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Disable Non-Uniform Sampling</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>To disable non-uniform sampling, please select the preferred uniform sampling distribution and press &quot;Apply&quot;.
Warning! Your original sampling will be changed and non-uniform samples are lost!</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Ok</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Load Spectrum File</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Add Spectrum File</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Spectrum File (*.spectral *.txt)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Save Spectrum File</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Spectrum File (*.spectral)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>X: </source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Y: </source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Z: </source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Start: %1 / Delta: %2 / Num: / %3</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Default</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>QZEColorDialogGUI</name>
    <message>
        <source>Choose a Color</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Color</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>set color field to Qt::red mode</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Red</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>change red color component</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>enter red color component</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>set color field to Qt::green mode</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Green</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>change green color component</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>enter green color component</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>set color field to Qt::blue mode</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Blue</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>change blue color component</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>enter blue color component</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>set color field to hue mode</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Hue</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>change hue</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>enter hue</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>set color field to saturation mode</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Sat</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>change saturation</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>enter saturation</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>set color field to value mode</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Value</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>change value</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>enter value</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>L*</source>
        <translation type="unfinished">L*</translation>
    </message>
    <message>
        <source>change lightness of the color</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>enter lightness of the color</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>a*</source>
        <translation type="unfinished">a*</translation>
    </message>
    <message>
        <source>change balance between red/magenta and green</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>enter balance between red/magenta and green</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>b*</source>
        <translation type="unfinished">b*</translation>
    </message>
    <message>
        <source>change balance between yellow and blue</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>enter balance between yellow and blue</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Current</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Current color</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Previous color</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Output Color</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>R: 1.0</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>G: 0.0</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>B: 0.0</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>H: 0.0</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>S: 1.0</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>V: 0.0</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>L*: 0.0</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>a*: 1.0</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>b*: 0.0</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The pipette allows picking a color from screen.
Activate the Pipette and left-click anywhere on the desktop.
To abort picking click again the Pipette button or right-click anywhere.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Pick a color from the screen</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Pipette</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>output gamma corrected color</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Use sRGB Colors</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>add current color to custom colors</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Store Color</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&lt;p&gt;&lt;b&gt;Custom colors&lt;/b&gt;&lt;/p&gt;&lt;p&gt;&lt;i&gt;Store Color&lt;/i&gt; keeps the current color in the next free cell; once all cells are full, the oldest one is replaced.&lt;/p&gt;&lt;p&gt;Click a cell, or move to it with the arrow keys and press Space, to make its color the current one. Empty cells do nothing.&lt;/p&gt;</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>accept the current color</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Accept</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>close dialog and use the previous color</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Spectrum</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>X: 0.0</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Y: 1.0</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Z: 0.0</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Spectrum plot</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>enable advanced tools to edit the sample placement of the current spectral distribution</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Edit Sample Distribution</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Presets</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>select sample distribution from presets</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>enable editing of the wavelengths of the samples</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Allow Non-Uniform Sample Distribution</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Start</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>enter the wavelength of the first sample</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Delta</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>enter the sample spacing in the wavelength domain</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Number</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>enter the total number of samples</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Apply</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Basic</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>File</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Enter path to select spectral input file.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Browse file system to select a spectral input file and add it to the current spectral distribution.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Add spectrum file</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Browse file system to select a spectral input file.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Load spectrum file</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Save current spectral distribution to a file.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Save spectrum file</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>0</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Scale</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>scale current spectral distribution preserving the hue</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Analytic</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Function</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Choose an analytic function.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Blackbody</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>CIE D</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Gauss</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Cosine</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Bartlett</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Blackman</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Connes</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Hamming</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Hanning</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Lorentzian</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Welch</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Peak Wavelength</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>enter the wavelength of the peak</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Peak Intensity</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>enter the intensity of the peak</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>FWHM</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>enter the Full Width at Half Maximum</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Temperature</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source> Kelvin</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Add the analytic function to the current spectral distribution.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Add</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Set the analytic function as new spectral distribution.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Set</source>
        <translation type="unfinished"></translation>
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
    <name>QZEScreenPicker</name>
    <message>
        <source>This Wayland session does not let applications read the screen,
and its desktop portal offers no color picker.</source>
        <translation type="unfinished"></translation>
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
<context>
    <name>zeTextureMetaDataGUI</name>
    <message>
        <source>Image Information</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&lt;filename&gt;</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Ok</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>zeTextureMetaDataGUII</name>
    <message>
        <source>Samples per pixel:	</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Bits per sample:		</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Camera maker:		</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Camera model:		</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Software:		</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Artist:		</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Image description:	</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Copyright:		</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Yes</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Dimension:		</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Depth:		</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Color channel:		</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Alpha channel:		</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Exposure time:		</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>F number:		F</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Shutter speed:		</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source> Tv</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Aperture:		</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source> Av</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source> (F</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Brightness:		</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Exposure bias:		</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source> EV</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Subject distance:	</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Lens focal length:	</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Lens focal length in 35mm:	</source>
        <translation type="unfinished"></translation>
    </message>
</context>
</TS>
