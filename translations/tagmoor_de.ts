<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de_DE" sourcelanguage="en_US">
<context>
    <name>BatchSummary</name>
    <message>
        <source>%1 / %1</source>
        <translation>%1 / %1</translation>
    </message>
    <message>
        <source>1 photo was not reached: the run was stopped</source>
        <translation>1 Foto wurde nicht erreicht: der Lauf wurde angehalten</translation>
    </message>
    <message>
        <source>%1 photos were not reached: the run was stopped</source>
        <translation>%1 Fotos wurden nicht erreicht: der Lauf wurde angehalten</translation>
    </message>
    <message>
        <source>Batch Process Completed!</source>
        <translation>Stapelverarbeitung abgeschlossen!</translation>
    </message>
    <message>
        <source>Batch Process Partially Completed!</source>
        <translation>Stapelverarbeitung teilweise abgeschlossen!</translation>
    </message>
    <message>
        <source>Batch Count</source>
        <translation>Anzahl im Stapel</translation>
    </message>
    <message>
        <source>Images Processed</source>
        <translation>Verarbeitete Bilder</translation>
    </message>
    <message>
        <source>Photos Skipped</source>
        <translation>Übersprungene Fotos</translation>
    </message>
    <message>
        <source>Output Directory: </source>
        <translation>Ausgabeordner: </translation>
    </message>
    <message>
        <source>%1 Photos saved successfully!</source>
        <translation>%1 Fotos erfolgreich gespeichert!</translation>
    </message>
    <message>
        <source>%1 Photo saved successfully!</source>
        <translation>%1 Foto erfolgreich gespeichert!</translation>
    </message>
</context>
<context>
    <name>DateSummary</name>
    <message>
        <source>Keep Original</source>
        <translation>Original behalten</translation>
    </message>
    <message>
        <source>Day</source>
        <translation>Tag</translation>
    </message>
    <message>
        <source>Month</source>
        <translation>Monat</translation>
    </message>
    <message>
        <source>Year</source>
        <translation>Jahr</translation>
    </message>
    <message>
        <source>Time</source>
        <translation>Uhrzeit</translation>
    </message>
    <message>
        <source>Update: </source>
        <translation>Ändern: </translation>
    </message>
    <message>
        <source>Inc/Dec: </source>
        <translation>Erhöhen/Verringern: </translation>
    </message>
    <message>
        <source>Empty Value</source>
        <translation>Leerer Wert</translation>
    </message>
    <message>
        <source>Hour</source>
        <translation>Stunde</translation>
    </message>
    <message>
        <source>Minute</source>
        <translation>Minute</translation>
    </message>
    <message>
        <source>Second</source>
        <translation>Sekunde</translation>
    </message>
</context>
<context>
    <name>FieldInput</name>
    <message>
        <source>Value can not be greater than </source>
        <translation>Der Wert darf nicht größer sein als </translation>
    </message>
</context>
<context>
    <name>FolderAccess</name>
    <message>
        <source>Please grant access to your Home Folder to continue</source>
        <translation>Bitte gewähren Sie Zugriff auf Ihren persönlichen Ordner, um fortzufahren</translation>
    </message>
    <message>
        <source>Home Folder</source>
        <translation>Persönlicher Ordner</translation>
    </message>
    <message>
        <source>Grant Access</source>
        <translation>Zugriff gewähren</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
</context>
<context>
    <name>Form</name>
    <message>
        <source>Artist</source>
        <translation>Künstler</translation>
    </message>
    <message>
        <source>Image Description</source>
        <translation>Bildbeschreibung</translation>
    </message>
    <message>
        <source>Copyright</source>
        <translation>Copyright</translation>
    </message>
    <message>
        <source>Software</source>
        <translation>Software</translation>
    </message>
    <message>
        <source>User Comment</source>
        <translation>Benutzerkommentar</translation>
    </message>
    <message>
        <source>Make</source>
        <translation>Hersteller</translation>
    </message>
    <message>
        <source>Camera Model</source>
        <translation>Kameramodell</translation>
    </message>
    <message>
        <source>Owner Name</source>
        <translation>Name des Besitzers</translation>
    </message>
    <message>
        <source>Serial Number</source>
        <translation>Seriennummer</translation>
    </message>
    <message>
        <source>Date Time Original</source>
        <translation>Aufnahmedatum (Original)</translation>
    </message>
    <message>
        <source>Creation Date</source>
        <translation>Erstellungsdatum</translation>
    </message>
    <message>
        <source>Modify Date</source>
        <translation>Änderungsdatum</translation>
    </message>
    <message>
        <source>ISO</source>
        <translation>ISO</translation>
    </message>
    <message>
        <source>F Number</source>
        <translation>Blendenzahl</translation>
    </message>
    <message>
        <source>Focal Length</source>
        <translation>Brennweite</translation>
    </message>
    <message>
        <source>Focal Length (35 mm)</source>
        <translation>Brennweite (35 mm)</translation>
    </message>
    <message>
        <source>Flash</source>
        <translation>Blitz</translation>
    </message>
    <message>
        <source>Orientation</source>
        <translation>Ausrichtung</translation>
    </message>
    <message>
        <source>Exposure Mode</source>
        <translation>Belichtungsmodus</translation>
    </message>
    <message>
        <source>Exposure Program</source>
        <translation>Belichtungsprogramm</translation>
    </message>
    <message>
        <source>Exposure Time</source>
        <translation>Belichtungszeit</translation>
    </message>
    <message>
        <source>Metering Mode</source>
        <translation>Messmethode</translation>
    </message>
    <message>
        <source>Scene Capture Type</source>
        <translation>Szenentyp</translation>
    </message>
    <message>
        <source>White Balance</source>
        <translation>Weißabgleich</translation>
    </message>
    <message>
        <source>Saturation</source>
        <translation>Sättigung</translation>
    </message>
    <message>
        <source>Sensing Method</source>
        <translation>Sensortyp</translation>
    </message>
    <message>
        <source>Sharpness</source>
        <translation>Schärfe</translation>
    </message>
    <message>
        <source>Subject Distance Range</source>
        <translation>Motiventfernungsbereich</translation>
    </message>
    <message>
        <source>Lens Make</source>
        <translation>Objektivhersteller</translation>
    </message>
    <message>
        <source>Lens Model</source>
        <translation>Objektivmodell</translation>
    </message>
    <message>
        <source>Lens Serial Number</source>
        <translation>Seriennummer des Objektivs</translation>
    </message>
    <message>
        <source>Latitude</source>
        <translation>Breitengrad</translation>
    </message>
    <message>
        <source>Latitude Ref.</source>
        <translation>Breitengrad-Bezug</translation>
    </message>
    <message>
        <source>Longitude</source>
        <translation>Längengrad</translation>
    </message>
    <message>
        <source>Longitude Ref.</source>
        <translation>Längengrad-Bezug</translation>
    </message>
    <message>
        <source>Altitude</source>
        <translation>Höhe</translation>
    </message>
    <message>
        <source>Altitude Ref.</source>
        <translation>Höhen-Bezug</translation>
    </message>
    <message>
        <source>Compression</source>
        <translation>Komprimierung</translation>
    </message>
    <message>
        <source>Document Name</source>
        <translation>Dokumentname</translation>
    </message>
    <message>
        <source>X Resolution</source>
        <translation>X-Auflösung</translation>
    </message>
    <message>
        <source>Y Resolution</source>
        <translation>Y-Auflösung</translation>
    </message>
    <message>
        <source>Host Computer</source>
        <translation>Host-Computer</translation>
    </message>
    <message>
        <source>Primary Chromaticities</source>
        <translation>Primärfarbwerte</translation>
    </message>
    <message>
        <source>Spectral Sensitivity</source>
        <translation>Spektrale Empfindlichkeit</translation>
    </message>
    <message>
        <source>Sensitivity Type</source>
        <translation>Empfindlichkeitstyp</translation>
    </message>
    <message>
        <source>Standard Output Sensitivity</source>
        <translation>Standard-Ausgabeempfindlichkeit</translation>
    </message>
    <message>
        <source>Compressed Bits per Pixel</source>
        <translation>Komprimierte Bits pro Pixel</translation>
    </message>
    <message>
        <source>Max Aperture Value</source>
        <translation>Größte Blendenöffnung</translation>
    </message>
    <message>
        <source>Color Space</source>
        <translation>Farbraum</translation>
    </message>
    <message>
        <source>Light Source</source>
        <translation>Lichtquelle</translation>
    </message>
    <message>
        <source>Digital Zoom Ratio</source>
        <translation>Digitaler Zoomfaktor</translation>
    </message>
    <message>
        <source>By-line</source>
        <translation>Urheber</translation>
    </message>
    <message>
        <source>By-line Title</source>
        <translation>Titel des Urhebers</translation>
    </message>
    <message>
        <source>Copyright Notice</source>
        <translation>Copyright-Vermerk</translation>
    </message>
    <message>
        <source>Headline</source>
        <translation>Überschrift</translation>
    </message>
    <message>
        <source>Caption/Abstract</source>
        <translation>Beschreibung</translation>
    </message>
    <message>
        <source>Writer/Editor</source>
        <translation>Verfasser der Beschreibung</translation>
    </message>
    <message>
        <source>Object Name</source>
        <translation>Objektname</translation>
    </message>
    <message>
        <source>Category</source>
        <translation>Kategorie</translation>
    </message>
    <message>
        <source>Supplemental Categories</source>
        <translation>Zusätzliche Kategorien</translation>
    </message>
    <message>
        <source>Keywords</source>
        <translation>Stichwörter</translation>
    </message>
    <message>
        <source>Sub-location</source>
        <translation>Ort (Detail)</translation>
    </message>
    <message>
        <source>City</source>
        <translation>Stadt</translation>
    </message>
    <message>
        <source>Province/State</source>
        <translation>Bundesland/Provinz</translation>
    </message>
    <message>
        <source>Country Name</source>
        <translation>Land</translation>
    </message>
    <message>
        <source>Country Code</source>
        <translation>Ländercode</translation>
    </message>
    <message>
        <source>Transmission Reference</source>
        <translation>Übermittlungsreferenz</translation>
    </message>
    <message>
        <source>Special Instructions</source>
        <translation>Besondere Hinweise</translation>
    </message>
    <message>
        <source>Credit</source>
        <translation>Bildnachweis</translation>
    </message>
    <message>
        <source>Source</source>
        <translation>Quelle</translation>
    </message>
    <message>
        <source>Lens</source>
        <translation>Objektiv</translation>
    </message>
    <message>
        <source>Create Date</source>
        <translation>Erstellungsdatum</translation>
    </message>
    <message>
        <source>Date Created</source>
        <translation>Erstellt am</translation>
    </message>
    <message>
        <source>General</source>
        <translation>Allgemein</translation>
    </message>
    <message>
        <source>Camera</source>
        <translation>Kamera</translation>
    </message>
    <message>
        <source>Date</source>
        <translation>Datum</translation>
    </message>
    <message>
        <source>Camera Settings</source>
        <translation>Kameraeinstellungen</translation>
    </message>
    <message>
        <source>Advanced Camera Settings</source>
        <translation>Erweiterte Kameraeinstellungen</translation>
    </message>
    <message>
        <source>GPS</source>
        <translation>GPS</translation>
    </message>
    <message>
        <source>TIFF Data</source>
        <translation>TIFF-Daten</translation>
    </message>
    <message>
        <source>Others</source>
        <translation>Weitere</translation>
    </message>
    <message>
        <source>Author</source>
        <translation>Autor</translation>
    </message>
    <message>
        <source>Information</source>
        <translation>Information</translation>
    </message>
    <message>
        <source>Location</source>
        <translation>Ort</translation>
    </message>
    <message>
        <source>Workflow</source>
        <translation>Arbeitsablauf</translation>
    </message>
    <message>
        <source>Photoshop</source>
        <translation>Photoshop</translation>
    </message>
    <message>
        <source>EXIF Editor</source>
        <translation>EXIF-Editor</translation>
    </message>
    <message>
        <source>IPTC Editor</source>
        <translation>IPTC-Editor</translation>
    </message>
    <message>
        <source>XMP Editor</source>
        <translation>XMP-Editor</translation>
    </message>
</context>
<context>
    <name>Geotag</name>
    <message>
        <source>a point without a valid position</source>
        <translation>ein Punkt ohne gültige Position</translation>
    </message>
    <message>
        <source>not a GPX file</source>
        <translation>keine GPX-Datei</translation>
    </message>
    <message>
        <source>too large to be a track log</source>
        <translation>zu groß für eine Trackaufzeichnung</translation>
    </message>
    <message>
        <source>no capture date (DateTimeOriginal or CreateDate)</source>
        <translation>kein Aufnahmedatum (DateTimeOriginal oder CreateDate)</translation>
    </message>
    <message>
        <source>no track points with a time were loaded</source>
        <translation>es wurden keine Trackpunkte mit Zeitangabe geladen</translation>
    </message>
    <message>
        <source>taken at %1, before the track starts (%2)</source>
        <translation>aufgenommen um %1, vor Beginn des Tracks (%2)</translation>
    </message>
    <message>
        <source>taken at %1, after the track ends (%2)</source>
        <translation>aufgenommen um %1, nach Ende des Tracks (%2)</translation>
    </message>
    <message>
        <source>taken at %1, in a gap of %2 s between fixes (at most %3 s is bridged)</source>
        <translation>aufgenommen um %1, in einer Lücke von %2 s zwischen zwei Punkten (höchstens %3 s werden überbrückt)</translation>
    </message>
</context>
<context>
    <name>GroupTabs</name>
    <message>
        <source>EXIF</source>
        <translation>EXIF</translation>
    </message>
    <message>
        <source>IPTC</source>
        <translation>IPTC</translation>
    </message>
    <message>
        <source>XMP</source>
        <translation>XMP</translation>
    </message>
</context>
<context>
    <name>HomeSession</name>
    <message>
        <source>Paste Metadata</source>
        <translation>Metadaten einfügen</translation>
    </message>
    <message>
        <source>Paste</source>
        <translation>Einfügen</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Nothing has been copied. Choose Copy Metadata on a photo whose values you want to give other photos.</source>
        <translation>Es wurde nichts kopiert. Wählen Sie „Metadaten kopieren“ bei einem Foto, dessen Werte Sie anderen Fotos geben möchten.</translation>
    </message>
    <message>
        <source>The ticked values become edits of the marked photos: %1.</source>
        <translation>Die angekreuzten Werte werden zu Änderungen der markierten Fotos: %1.</translation>
    </message>
    <message>
        <source>imported tables: %1</source>
        <translation>importierte Tabellen: %1</translation>
    </message>
</context>
<context>
    <name>Keywords</name>
    <message>
        <source>The keyword &quot;%1&quot; is %2 bytes long; a keyword holds at most %3 bytes.</source>
        <translation>Das Stichwort „%1“ ist %2 Bytes lang; ein Stichwort fasst höchstens %3 Bytes.</translation>
    </message>
</context>
<context>
    <name>ListExchange</name>
    <message>
        <source>Export Metadata</source>
        <translation>Metadaten exportieren</translation>
    </message>
    <message>
        <source>Import Metadata</source>
        <translation>Metadaten importieren</translation>
    </message>
    <message>
        <source>The file %1 cannot be written: %2</source>
        <translation>Die Datei %1 kann nicht geschrieben werden: %2</translation>
    </message>
    <message>
        <source>Export the metadata of the photos to</source>
        <translation>Metadaten der Fotos exportieren nach</translation>
    </message>
    <message>
        <source>Choose a metadata table (CSV) whose rows name photos of the list.</source>
        <translation>Wählen Sie eine Metadatentabelle (CSV), deren Zeilen Fotos der Liste nennen.</translation>
    </message>
</context>
<context>
    <name>ListTables</name>
    <message>
        <source>… and %1 more</source>
        <translation>… und %1 weitere</translation>
    </message>
    <message>
        <source>The file %1 cannot be read.</source>
        <translation>Die Datei %1 kann nicht gelesen werden.</translation>
    </message>
    <message>
        <source>The file %1 is too large for a metadata table.</source>
        <translation>Die Datei %1 ist zu groß für eine Metadatentabelle.</translation>
    </message>
    <message>
        <source>The file %1 is no metadata table: it needs a first line of column names with a SourceFile column.</source>
        <translation>Die Datei %1 ist keine Metadatentabelle: Sie braucht eine erste Zeile mit Spaltennamen und einer Spalte SourceFile.</translation>
    </message>
    <message>
        <source>Rows read: %1. Photos matched: %2.</source>
        <translation>Gelesene Zeilen: %1. Zugeordnete Fotos: %2.</translation>
    </message>
    <message>
        <source>The matched photos are marked. Their new values show in Review Changes... and are written by Start Process.</source>
        <translation>Die zugeordneten Fotos sind markiert. Ihre neuen Werte zeigt „Änderungen prüfen...“, geschrieben werden sie mit „Verarbeitung starten“.</translation>
    </message>
    <message>
        <source>Rows that match no photo of the list:</source>
        <translation>Zeilen ohne passendes Foto in der Liste:</translation>
    </message>
    <message>
        <source>Columns not understood, left out:</source>
        <translation>Nicht erkannte Spalten, ausgelassen:</translation>
    </message>
    <message>
        <source>Cells left out:</source>
        <translation>Ausgelassene Zellen:</translation>
    </message>
</context>
<context>
    <name>LocalTime</name>
    <message>
        <source>no GPS position</source>
        <translation>keine GPS-Position</translation>
    </message>
    <message>
        <source>no time zone found for %1, %2</source>
        <translation>keine Zeitzone für %1, %2 gefunden</translation>
    </message>
    <message>
        <source>%1 (no capture date to shift)</source>
        <translation>%1 (kein Aufnahmedatum zum Verschieben)</translation>
    </message>
    <message>
        <source>%1 (%2), dates move by %3 from %4 (%5)</source>
        <translation>%1 (%2), Daten verschieben sich um %3 gegenüber %4 (%5)</translation>
    </message>
</context>
<context>
    <name>MetadataClipboard</name>
    <message>
        <source>Alt text</source>
        <translation>Alternativtext</translation>
    </message>
    <message>
        <source>Extended description</source>
        <translation>Erweiterte Beschreibung</translation>
    </message>
    <message>
        <source>Event</source>
        <translation>Ereignis</translation>
    </message>
    <message>
        <source>Usage terms</source>
        <translation>Nutzungsbedingungen</translation>
    </message>
    <message>
        <source>Credit line</source>
        <translation>Bildnachweis</translation>
    </message>
    <message>
        <source>Instructions</source>
        <translation>Anweisungen</translation>
    </message>
    <message>
        <source>Creator email</source>
        <translation>E-Mail des Urhebers</translation>
    </message>
    <message>
        <source>Creator phone</source>
        <translation>Telefon des Urhebers</translation>
    </message>
    <message>
        <source>Creator website</source>
        <translation>Website des Urhebers</translation>
    </message>
    <message>
        <source>Creator city</source>
        <translation>Ort des Urhebers</translation>
    </message>
    <message>
        <source>Creator country</source>
        <translation>Land des Urhebers</translation>
    </message>
    <message>
        <source>Rating</source>
        <translation>Bewertung</translation>
    </message>
    <message>
        <source>rejected</source>
        <translation>abgelehnt</translation>
    </message>
    <message>
        <source>Label</source>
        <translation>Farbmarkierung</translation>
    </message>
    <message>
        <source>People shown</source>
        <translation>Abgebildete Personen</translation>
    </message>
</context>
<context>
    <name>MetadataForm</name>
    <message>
        <source>Multiple Values</source>
        <translation>Mehrere Werte</translation>
    </message>
    <message>
        <source>Empty value in all images</source>
        <translation>In allen Bildern leer</translation>
    </message>
    <message>
        <source>Changing the value of GPS Latitude Ref. will change the current selected location. You may edit the correct location using &apos;Edit Location&apos; from the right pane. Are you sure you want to continue?</source>
        <translation>Wenn Sie den Wert von GPS-Breitengrad-Bezug ändern, ändert sich der gewählte Ort. Den richtigen Ort können Sie mit ‚Ort bearbeiten‘ im rechten Bereich einstellen. Möchten Sie wirklich fortfahren?</translation>
    </message>
    <message>
        <source>Changing the value of GPS Longitude Ref. will change the current selected location. You may edit the correct location using &apos;Edit Location&apos; from the right pane. Are you sure you want to continue?</source>
        <translation>Wenn Sie den Wert von GPS-Längengrad-Bezug ändern, ändert sich der gewählte Ort. Den richtigen Ort können Sie mit ‚Ort bearbeiten‘ im rechten Bereich einstellen. Möchten Sie wirklich fortfahren?</translation>
    </message>
    <message>
        <source>Location coordinates will change</source>
        <translation>Die Koordinaten des Orts ändern sich</translation>
    </message>
</context>
<context>
    <name>PanelFilter</name>
    <message>
        <source>Add Photos</source>
        <translation>Fotos hinzufügen</translation>
    </message>
</context>
<context>
    <name>PhotoLibraryReader</name>
    <message>
        <source>Tag: %1</source>
        <translation>Schlagwort: %1</translation>
    </message>
    <message>
        <source>Event of %1</source>
        <translation>Ereignis vom %1</translation>
    </message>
    <message>
        <source>it leads outside the library &quot;%1&quot;</source>
        <translation>er führt aus der Mediathek „%1“ hinaus</translation>
    </message>
    <message>
        <source>The database of &quot;%1&quot; is not one Tagmoor can read, so no photos were added from it.</source>
        <translation>Die Datenbank von „%1“ kann Tagmoor nicht lesen, daher wurden daraus keine Fotos hinzugefügt.</translation>
    </message>
    <message>
        <source>The library &quot;%1&quot; holds no photo database, so no photos were added from it.</source>
        <translation>Die Mediathek „%1“ enthält keine Fotodatenbank, daher wurden daraus keine Fotos hinzugefügt.</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is not a photo library Tagmoor can read.</source>
        <translation>„%1“ ist keine Fotomediathek, die Tagmoor lesen kann.</translation>
    </message>
    <message>
        <source>The database of &quot;%1&quot; could not be read, so no photos were added from it.</source>
        <translation>Die Datenbank von „%1“ konnte nicht gelesen werden, daher wurden daraus keine Fotos hinzugefügt.</translation>
    </message>
</context>
<context>
    <name>PinCallout</name>
    <message>
        <source>show details</source>
        <translation>Details zeigen</translation>
    </message>
    <message>
        <source>Informative text goes here</source>
        <translation>Hier stehen weitere Informationen</translation>
    </message>
</context>
<context>
    <name>PresetCheck</name>
    <message>
        <source>A preset name cannot hold a line break, a tab or another control character, nor begin with &quot;--&quot;. Please enter another name.</source>
        <translation>Ein Vorgabenname darf keinen Zeilenumbruch, keinen Tabulator und kein anderes Steuerzeichen enthalten und nicht mit „--“ beginnen. Bitte geben Sie einen anderen Namen ein.</translation>
    </message>
</context>
<context>
    <name>PresetStore</name>
    <message>
        <source>No name specified!</source>
        <translation>Kein Name angegeben!</translation>
    </message>
    <message>
        <source>Please enter a Preset name to be saved.</source>
        <translation>Bitte geben Sie einen Namen für die zu speichernde Vorgabe ein.</translation>
    </message>
    <message>
        <source>Invalid Preset name.</source>
        <translation>Ungültiger Vorgabenname.</translation>
    </message>
    <message>
        <source>Preset name already exists</source>
        <translation>Vorgabenname existiert bereits</translation>
    </message>
    <message>
        <source>A Preset with same name already exists. Please enter a new Preset name.</source>
        <translation>Eine Vorgabe mit demselben Namen existiert bereits. Bitte geben Sie einen neuen Vorgabennamen ein.</translation>
    </message>
</context>
<context>
    <name>RenamePanel</name>
    <message>
        <source>Example:</source>
        <translation>Beispiel:</translation>
    </message>
    <message>
        <source>Example: </source>
        <translation>Beispiel: </translation>
    </message>
    <message>
        <source>&apos;Add Text&apos; textfield is empty</source>
        <translation>Das Textfeld ‚Text hinzufügen‘ ist leer</translation>
    </message>
    <message>
        <source>&apos;Find&apos; textfield is empty</source>
        <translation>Das Textfeld ‚Suchen‘ ist leer</translation>
    </message>
    <message>
        <source>The name can not hold &quot;/&quot;</source>
        <translation>Der Name darf kein „/“ enthalten</translation>
    </message>
    <message>
        <source>The date pattern can not make names</source>
        <translation>Aus dem Datumsmuster lassen sich keine Namen bilden</translation>
    </message>
    <message>
        <source>Overwrite if a file exists with the same name in the destination folder.</source>
        <translation>Überschreiben, wenn im Zielordner eine Datei mit demselben Namen existiert.</translation>
    </message>
    <message>
        <source>Overwrite</source>
        <translation>Überschreiben</translation>
    </message>
    <message>
        <source>Do not Overwrite</source>
        <translation>Nicht überschreiben</translation>
    </message>
</context>
<context>
    <name>RunSummary</name>
    <message>
        <source>rename: add &quot;%1&quot;</source>
        <translation>umbenennen: „%1“ hinzufügen</translation>
    </message>
    <message>
        <source>rename: &quot;%1&quot; to &quot;%2&quot;</source>
        <translation>umbenennen: „%1“ zu „%2“</translation>
    </message>
    <message>
        <source>rename: name format</source>
        <translation>umbenennen: Namensformat</translation>
    </message>
    <message>
        <source>rename: capture date</source>
        <translation>umbenennen: Aufnahmedatum</translation>
    </message>
    <message>
        <source>emptied</source>
        <translation>geleert</translation>
    </message>
    <message>
        <source>y</source>
        <translation>J</translation>
    </message>
    <message>
        <source>mo</source>
        <translation>Mon</translation>
    </message>
    <message>
        <source>d</source>
        <translation>T</translation>
    </message>
    <message>
        <source>unchanged</source>
        <translation>unverändert</translation>
    </message>
    <message>
        <source>h</source>
        <translation>h</translation>
    </message>
    <message>
        <source>min</source>
        <translation>min</translation>
    </message>
    <message>
        <source>s</source>
        <translation>s</translation>
    </message>
    <message>
        <source>set</source>
        <translation>festgelegt</translation>
    </message>
    <message>
        <source>1 field edited</source>
        <translation>1 Feld bearbeitet</translation>
    </message>
    <message>
        <source>%1 fields edited</source>
        <translation>%1 Felder bearbeitet</translation>
    </message>
    <message>
        <source>location: %1</source>
        <translation>Ort: %1</translation>
    </message>
    <message>
        <source>preset: %1</source>
        <translation>Vorgabe: %1</translation>
    </message>
    <message>
        <source>rating: rejected</source>
        <translation>Bewertung: abgelehnt</translation>
    </message>
    <message>
        <source>rating: %1</source>
        <translation>Bewertung: %1</translation>
    </message>
    <message>
        <source>keywords: %1</source>
        <translation>Stichwörter: %1</translation>
    </message>
    <message>
        <source>label: none</source>
        <translation>Markierung: keine</translation>
    </message>
    <message>
        <source>label: %1</source>
        <translation>Markierung: %1</translation>
    </message>
    <message>
        <source>1 IPTC text</source>
        <translation>1 IPTC-Text</translation>
    </message>
    <message>
        <source>%1 IPTC texts</source>
        <translation>%1 IPTC-Texte</translation>
    </message>
</context>
<context>
    <name>ScanProgress</name>
    <message>
        <source>Path: Analysing objects...</source>
        <translation>Pfad: Objekte werden untersucht...</translation>
    </message>
    <message>
        <source>Objects Selected: 0 / 0</source>
        <translation>Ausgewählte Objekte: 0 / 0</translation>
    </message>
    <message>
        <source>Path: </source>
        <translation>Pfad: </translation>
    </message>
    <message>
        <source>%1 Images Selected</source>
        <translation>%1 Bilder ausgewählt</translation>
    </message>
    <message>
        <source>Objects Selected: %1 / %2</source>
        <translation>Ausgewählte Objekte: %1 / %2</translation>
    </message>
</context>
<context>
    <name>StartProcessChain</name>
    <message>
        <source>No options selected for removing metadata</source>
        <translation>Keine Optionen zum Entfernen von Metadaten ausgewählt</translation>
    </message>
    <message>
        <source>Please select what needs to be removed in order to process the selected images.</source>
        <translation>Bitte wählen Sie aus, was entfernt werden soll, um die ausgewählten Bilder zu verarbeiten.</translation>
    </message>
    <message>
        <source>Are you sure to edit metadata of all the selected images?</source>
        <translation>Möchten Sie die Metadaten aller ausgewählten Bilder wirklich bearbeiten?</translation>
    </message>
    <message>
        <source>The selected images will be processed to have the new metadata values you have edited. Please click on YES to process all the selected images otherwise click NO.</source>
        <translation>Die ausgewählten Bilder erhalten die neuen Metadatenwerte, die Sie bearbeitet haben. Klicken Sie auf JA, um alle ausgewählten Bilder zu verarbeiten, andernfalls auf NEIN.</translation>
    </message>
    <message>
        <source>No Changes in Metadata found</source>
        <translation>Keine Änderungen an den Metadaten gefunden</translation>
    </message>
    <message>
        <source>There are no changes observed in the Metadata for all the selected images. Do you still wish to proceed?</source>
        <translation>Für die ausgewählten Bilder wurden keine Änderungen an den Metadaten festgestellt. Möchten Sie trotzdem fortfahren?</translation>
    </message>
    <message>
        <source>The selected images will be processed to have the new metadata values you have edited and unedited values will be cleared. Please click on YES to process all the selected images otherwise click NO.</source>
        <translation>Die ausgewählten Bilder erhalten die neuen Metadatenwerte, die Sie bearbeitet haben, und nicht bearbeitete Werte werden gelöscht. Klicken Sie auf JA, um alle ausgewählten Bilder zu verarbeiten, andernfalls auf NEIN.</translation>
    </message>
    <message>
        <source>Are you sure to delete the selected metadata for all the selected images?</source>
        <translation>Möchten Sie die ausgewählten Metadaten aus allen ausgewählten Bildern wirklich löschen?</translation>
    </message>
    <message>
        <source>The selected metadata items will be removed for all the selected images. Are you sure to proceed?</source>
        <translation>Die ausgewählten Metadaten werden aus allen ausgewählten Bildern entfernt. Möchten Sie wirklich fortfahren?</translation>
    </message>
    <message>
        <source>There are no photos selected</source>
        <translation>Es sind keine Fotos ausgewählt</translation>
    </message>
    <message>
        <source>Please select photos for processing</source>
        <translation>Bitte wählen Sie Fotos zur Verarbeitung aus</translation>
    </message>
    <message>
        <source>Files cannot be saved in the selected folder</source>
        <translation>Im ausgewählten Ordner können keine Dateien gespeichert werden</translation>
    </message>
    <message>
        <source>Please select output folder within your user folder.</source>
        <translation>Bitte wählen Sie einen Ausgabeordner innerhalb Ihres Benutzerordners.</translation>
    </message>
    <message>
        <source>Access to User Directory required.</source>
        <translation>Zugriff auf den Benutzerordner erforderlich.</translation>
    </message>
    <message>
        <source>Please allow access to your &apos;User Directory&apos; to save processed images at their source location.</source>
        <translation>Bitte erlauben Sie den Zugriff auf Ihren ‚Benutzerordner‘, um verarbeitete Bilder an ihrem Ursprungsort zu speichern.</translation>
    </message>
    <message>
        <source>Overwrite files with same source and destination path?</source>
        <translation>Dateien mit gleichem Quell- und Zielpfad überschreiben?</translation>
    </message>
    <message>
        <source>The output folder for some of the files is same as their source and these will be overwritten. Please choose how to proceed.</source>
        <translation>Für einige Dateien ist der Ausgabeordner ihr Quellordner; sie würden überschrieben. Bitte wählen Sie, wie es weitergehen soll.</translation>
    </message>
    <message>
        <source>Overwrite</source>
        <translation>Überschreiben</translation>
    </message>
    <message>
        <source>Do not Overwrite</source>
        <translation>Nicht überschreiben</translation>
    </message>
    <message>
        <source>Invalid Preset name.</source>
        <translation>Ungültiger Vorgabenname.</translation>
    </message>
    <message>
        <source>You need to enter a name for saving the preset.</source>
        <translation>Zum Speichern der Vorgabe müssen Sie einen Namen eingeben.</translation>
    </message>
    <message>
        <source>Name already exists</source>
        <translation>Name existiert bereits</translation>
    </message>
    <message>
        <source>The entered name already exists. Please enter a new preset name.</source>
        <translation>Der eingegebene Name existiert bereits. Bitte geben Sie einen neuen Vorgabennamen ein.</translation>
    </message>
    <message>
        <source>Save selected settings as a preset</source>
        <translation>Ausgewählte Einstellungen als Vorgabe speichern</translation>
    </message>
    <message>
        <source>If you want to save the selected settings as a preset to be used for next batch processing, enter a name and click on Save and Process otherwise click on Skip and Process.</source>
        <translation>Wenn Sie die ausgewählten Einstellungen als Vorgabe für die nächste Stapelverarbeitung speichern möchten, geben Sie einen Namen ein und klicken Sie auf „Speichern und verarbeiten“, andernfalls auf „Überspringen und verarbeiten“.</translation>
    </message>
    <message>
        <source>Save and Process</source>
        <translation>Speichern und verarbeiten</translation>
    </message>
    <message>
        <source>Skip and Process</source>
        <translation>Überspringen und verarbeiten</translation>
    </message>
    <message>
        <source>Do not show again</source>
        <translation>Nicht mehr anzeigen</translation>
    </message>
    <message>
        <source>Choose Destination Folder</source>
        <translation>Zielordner wählen</translation>
    </message>
    <message>
        <source>Keep Source Folder Path</source>
        <translation>Pfad des Quellordners beibehalten</translation>
    </message>
    <message>
        <source>Keyword too long</source>
        <translation>Stichwort zu lang</translation>
    </message>
    <message>
        <source>Please select an output folder</source>
        <translation>Bitte wählen Sie einen Ausgabeordner</translation>
    </message>
</context>
<context>
    <name>WorkingSetAlerts</name>
    <message>
        <source>Some images cannot be added</source>
        <translation>Einige Bilder können nicht hinzugefügt werden</translation>
    </message>
    <message>
        <source>The selected images are already added to the list</source>
        <translation>Die ausgewählten Bilder sind bereits in der Liste</translation>
    </message>
    <message>
        <source>Some of the selected images have formats which are currently not supported.</source>
        <translation>Einige der ausgewählten Bilder haben Formate, die derzeit nicht unterstützt werden.</translation>
    </message>
    <message>
        <source>Either the selected images are already added in the list or are not supported.</source>
        <translation>Die ausgewählten Bilder sind entweder bereits in der Liste oder werden nicht unterstützt.</translation>
    </message>
    <message>
        <source>Some items could not be added</source>
        <translation>Einige Objekte konnten nicht hinzugefügt werden</translation>
    </message>
    <message>
        <source>The items that are not supported could not be added to the list for processing.</source>
        <translation>Die nicht unterstützten Objekte konnten der Liste zur Verarbeitung nicht hinzugefügt werden.</translation>
    </message>
    <message>
        <source>No images were found in the selected folder</source>
        <translation>Im ausgewählten Ordner wurden keine Bilder gefunden</translation>
    </message>
    <message>
        <source>Please select another folder to add images.</source>
        <translation>Bitte wählen Sie einen anderen Ordner, um Bilder hinzuzufügen.</translation>
    </message>
    <message>
        <source>and %1 more</source>
        <translation>und %1 weitere</translation>
    </message>
    <message>
        <source>Some files were left out</source>
        <translation>Einige Dateien wurden ausgelassen</translation>
    </message>
    <message>
        <source>These files and folders could not be added:</source>
        <translation>Diese Dateien und Ordner konnten nicht hinzugefügt werden:</translation>
    </message>
    <message>
        <source>1 photo of the library is not on disk and was skipped.</source>
        <translation>1 Foto der Mediathek liegt nicht auf dem Datenträger und wurde übersprungen.</translation>
    </message>
    <message>
        <source>%1 photos of the library are not on disk and were skipped.</source>
        <translation>%1 Fotos der Mediathek liegen nicht auf dem Datenträger und wurden übersprungen.</translation>
    </message>
    <message>
        <source>Some library photos were not added</source>
        <translation>Einige Fotos der Mediathek wurden nicht hinzugefügt</translation>
    </message>
    <message>
        <source>Stop adding images?</source>
        <translation>Hinzufügen der Bilder anhalten?</translation>
    </message>
    <message>
        <source>Are you sure you want to stop adding the images?</source>
        <translation>Möchten Sie das Hinzufügen der Bilder wirklich anhalten?</translation>
    </message>
    <message>
        <source>Remove all the selected images?</source>
        <translation>Alle ausgewählten Bilder entfernen?</translation>
    </message>
    <message>
        <source>Are you sure you want to remove all the selected images?</source>
        <translation>Möchten Sie wirklich alle ausgewählten Bilder entfernen?</translation>
    </message>
    <message>
        <source>Remove all images?</source>
        <translation>Alle Bilder entfernen?</translation>
    </message>
    <message>
        <source>Are you sure you want to remove all images?</source>
        <translation>Möchten Sie wirklich alle Bilder entfernen?</translation>
    </message>
</context>
<context>
    <name>tagmoor::AddFilesScreen</name>
    <message>
        <source>Welcome to Tagmoor</source>
        <translation>Willkommen bei Tagmoor</translation>
    </message>
    <message>
        <source>Add photos or folders to edit their metadata in one go</source>
        <translation>Fügen Sie Fotos oder Ordner hinzu, um ihre Metadaten in einem Zug zu bearbeiten</translation>
    </message>
    <message>
        <source>Drag and drop photos or folders here</source>
        <translation>Fotos oder Ordner hierher ziehen</translation>
    </message>
    <message>
        <source>Add Photos</source>
        <translation>Fotos hinzufügen</translation>
    </message>
    <message>
        <source>Add from Photo Library</source>
        <translation>Aus Fotomediathek hinzufügen</translation>
    </message>
</context>
<context>
    <name>tagmoor::AlbumChooser</name>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>All Albums</source>
        <translation>Alle Alben</translation>
    </message>
    <message>
        <source>Folders and photos</source>
        <translation>Ordner und Fotos</translation>
    </message>
    <message>
        <source>A photo library</source>
        <translation>Eine Fotomediathek</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Add more from</source>
        <translation>Weitere hinzufügen aus</translation>
    </message>
    <message>
        <source>The entire library</source>
        <translation>Die ganze Mediathek</translation>
    </message>
    <message>
        <source>Albums I choose</source>
        <translation>Ausgewählte Alben</translation>
    </message>
    <message>
        <source>A photo library package, a digiKam collection or a Shotwell library.</source>
        <translation>Ein Fotomediathek-Paket, eine digiKam-Sammlung oder eine Shotwell-Mediathek.</translation>
    </message>
    <message>
        <source>Add from a photo library</source>
        <translation>Aus einer Fotomediathek hinzufügen</translation>
    </message>
    <message>
        <source>Add Photos Library</source>
        <translation>Fotomediathek hinzufügen</translation>
    </message>
    <message>
        <source>Select Photos Library</source>
        <translation>Fotomediathek auswählen</translation>
    </message>
    <message>
        <source>Nothing was added</source>
        <translation>Es wurde nichts hinzugefügt</translation>
    </message>
    <message>
        <source>Library: %1</source>
        <translation>Mediathek: %1</translation>
    </message>
    <message>
        <source>Reading the albums…</source>
        <translation>Alben werden gelesen…</translation>
    </message>
    <message>
        <source>This library has no albums.</source>
        <translation>Diese Mediathek hat keine Alben.</translation>
    </message>
    <message>
        <source>Reading the chosen albums…</source>
        <translation>Die gewählten Alben werden gelesen…</translation>
    </message>
    <message>
        <source>Select Photos Library to choose specific albums from</source>
        <translation>Fotomediathek auswählen, um daraus bestimmte Alben zu wählen</translation>
    </message>
    <message>
        <source>Albums</source>
        <translation>Alben</translation>
    </message>
</context>
<context>
    <name>tagmoor::AppDelegate</name>
    <message>
        <source>A new version of Tagmoor is available</source>
        <translation>Eine neue Version von Tagmoor ist verfügbar</translation>
    </message>
    <message>
        <source>Tagmoor %1 can be downloaded from %2.</source>
        <translation>Tagmoor %1 kann von %2 heruntergeladen werden.</translation>
    </message>
    <message>
        <source>You&apos;re up to date</source>
        <translation>Sie sind auf dem neuesten Stand</translation>
    </message>
    <message>
        <source>Tagmoor %1 is the newest version available.</source>
        <translation>Tagmoor %1 ist die neueste verfügbare Version.</translation>
    </message>
    <message>
        <source>Could not reach the update server</source>
        <translation>Der Update-Server war nicht erreichbar</translation>
    </message>
    <message>
        <source>Check the network connection and try again later.</source>
        <translation>Prüfen Sie die Netzwerkverbindung und versuchen Sie es später noch einmal.</translation>
    </message>
    <message>
        <source>The settings could not be read</source>
        <translation>Die Einstellungen konnten nicht gelesen werden</translation>
    </message>
    <message>
        <source>The settings file was damaged. It is kept as %1, and Tagmoor starts with its default settings.</source>
        <translation>Die Einstellungsdatei war beschädigt. Sie wird als %1 aufbewahrt, und Tagmoor startet mit den Standardeinstellungen.</translation>
    </message>
    <message>
        <source>The settings cannot be saved</source>
        <translation>Die Einstellungen können nicht gespeichert werden</translation>
    </message>
    <message>
        <source>Tagmoor cannot write its settings to %1. Changes last until Tagmoor quits; check that the folder can be written.</source>
        <translation>Tagmoor kann seine Einstellungen nicht in %1 schreiben. Änderungen gelten, bis Tagmoor beendet wird; prüfen Sie, ob der Ordner beschreibbar ist.</translation>
    </message>
    <message>
        <source>The saved presets could not be read</source>
        <translation>Die gespeicherten Vorgaben konnten nicht gelesen werden</translation>
    </message>
    <message>
        <source>The presets file was damaged, and the list of presets starts empty.</source>
        <translation>Die Vorgabendatei war beschädigt, und die Liste der Vorgaben beginnt leer.</translation>
    </message>
    <message>
        <source>The presets file was damaged. It is kept as %1, and the list of presets starts empty.</source>
        <translation>Die Vorgabendatei war beschädigt. Sie wird als %1 aufbewahrt, und die Liste der Vorgaben beginnt leer.</translation>
    </message>
    <message>
        <source>preset %1 (%2)</source>
        <translation>Vorgabe %1 (%2)</translation>
    </message>
    <message>
        <source>&quot;%1&quot; (%2)</source>
        <translation>„%1“ (%2)</translation>
    </message>
    <message>
        <source>Some presets were left out</source>
        <translation>Einige Vorgaben wurden ausgelassen</translation>
    </message>
    <message>
        <source>These saved presets could not be used and were left out: %1. The presets file as it was is kept as %2.</source>
        <translation>Diese gespeicherten Vorgaben waren nicht verwendbar und wurden ausgelassen: %1. Die Vorgabendatei wird im bisherigen Zustand als %2 aufbewahrt.</translation>
    </message>
    <message>
        <source>The presets cannot be saved</source>
        <translation>Die Vorgaben können nicht gespeichert werden</translation>
    </message>
    <message>
        <source>Tagmoor cannot write its presets to %1. Changes to the presets last until Tagmoor quits; check that the folder can be written.</source>
        <translation>Tagmoor kann seine Vorgaben nicht in %1 schreiben. Änderungen an den Vorgaben gelten, bis Tagmoor beendet wird; prüfen Sie, ob der Ordner beschreibbar ist.</translation>
    </message>
    <message>
        <source>Tagmoor runs on its own</source>
        <translation>Tagmoor läuft für sich allein</translation>
    </message>
    <message>
        <source>%1 stands where Tagmoor keeps the channel between its launches, and it is not Tagmoor&apos;s: it is left as it is. Photos opened while Tagmoor runs open in a new window instead of this one.</source>
        <translation>%1 liegt dort, wo Tagmoor den Kanal zwischen seinen Starts anlegt, und gehört nicht zu Tagmoor: es bleibt unverändert. Fotos, die geöffnet werden, während Tagmoor läuft, öffnen sich in einem neuen Fenster statt in diesem.</translation>
    </message>
    <message>
        <source>No update source is set</source>
        <translation>Keine Update-Quelle eingestellt</translation>
    </message>
    <message>
        <source>Tagmoor has no address to look for new versions at, so it cannot check for updates. New versions come the way this one was installed.</source>
        <translation>Tagmoor hat keine Adresse, unter der es nach neuen Versionen suchen kann, und kann daher nicht nach Updates suchen. Neue Versionen kommen auf dem Weg, auf dem diese installiert wurde.</translation>
    </message>
    <message>
        <source>The update address is refused</source>
        <translation>Die Update-Adresse wird abgelehnt</translation>
    </message>
    <message>
        <source>Tagmoor reads its update feed over https only, so that nobody on the way can announce a false release. The address set, &quot;%1&quot;, does not begin with https://.</source>
        <translation>Tagmoor liest seinen Update-Feed nur über https, damit niemand unterwegs eine falsche Version ankündigen kann. Die eingestellte Adresse „%1“ beginnt nicht mit https://.</translation>
    </message>
</context>
<context>
    <name>tagmoor::BatchController</name>
    <message>
        <source>Do you want to cancel exif details editing?</source>
        <translation>Möchten Sie die Bearbeitung der EXIF-Angaben abbrechen?</translation>
    </message>
</context>
<context>
    <name>tagmoor::DateConfigurationPanel</name>
    <message>
        <source>Date/Time Configuration</source>
        <translation>Datum/Uhrzeit einstellen</translation>
    </message>
    <message>
        <source>Keep Original</source>
        <translation>Original behalten</translation>
    </message>
    <message>
        <source>Empty Value</source>
        <translation>Leerer Wert</translation>
    </message>
    <message>
        <source>Select Date:</source>
        <translation>Datum wählen:</translation>
    </message>
    <message>
        <source>Update Date:</source>
        <translation>Datum ändern:</translation>
    </message>
    <message>
        <source>Change Day:</source>
        <translation>Tag ändern:</translation>
    </message>
    <message>
        <source>Change Month:</source>
        <translation>Monat ändern:</translation>
    </message>
    <message>
        <source>Change Year:</source>
        <translation>Jahr ändern:</translation>
    </message>
    <message>
        <source>Change Time:</source>
        <translation>Uhrzeit ändern:</translation>
    </message>
    <message>
        <source>Increment/Decrement Original Date:</source>
        <translation>Originaldatum erhöhen/verringern:</translation>
    </message>
    <message>
        <source>Increment/Decrement Original Time:</source>
        <translation>Originaluhrzeit erhöhen/verringern:</translation>
    </message>
    <message>
        <source>Change Hour:</source>
        <translation>Stunde ändern:</translation>
    </message>
    <message>
        <source>Change Minute:</source>
        <translation>Minute ändern:</translation>
    </message>
    <message>
        <source>Change Second:</source>
        <translation>Sekunde ändern:</translation>
    </message>
    <message>
        <source>Carry into days, months and years</source>
        <translation>In Tage, Monate und Jahre übertragen</translation>
    </message>
    <message>
        <source>Shifts count like a calendar: an hour past midnight is the next day, a day past the month&apos;s end the next month. Off, each part wraps within its own range. Applies to every date field.</source>
        <translation>Verschiebungen zählen wie ein Kalender: eine Stunde nach Mitternacht ist der nächste Tag, ein Tag nach Monatsende der nächste Monat. Ausgeschaltet bleibt jeder Teil in seinem eigenen Bereich und beginnt von vorn. Gilt für jedes Datumsfeld.</translation>
    </message>
    <message>
        <source>Time zone:</source>
        <translation>Zeitzone:</translation>
    </message>
    <message>
        <source>none (Europe/Lisbon, +05:45)</source>
        <translation>keine (Europe/Lisbon, +05:45)</translation>
    </message>
    <message>
        <source>The dates are written with this zone&apos;s offset on each date, in OffsetTime and the XMP dates. With the shift, the zone the camera&apos;s clock was set to (empty: this computer&apos;s).</source>
        <translation>Die Daten werden mit dem Versatz dieser Zone am jeweiligen Tag geschrieben, in OffsetTime und in den XMP-Daten. Mit der Verschiebung: die Zone, auf die die Kamerauhr gestellt war (leer: die dieses Computers).</translation>
    </message>
    <message>
        <source>Shift to the local time of the place</source>
        <translation>Auf die Ortszeit des Aufnahmeorts verschieben</translation>
    </message>
    <message>
        <source>Each photo with a GPS position gets the zone of its place, and its dates move there from the camera&apos;s zone.</source>
        <translation>Jedes Foto mit GPS-Position erhält die Zeitzone seines Orts, und seine Daten werden aus der Zone der Kamera dorthin verschoben.</translation>
    </message>
</context>
<context>
    <name>tagmoor::DesktopActions</name>
    <message>
        <source>The photo could not be opened</source>
        <translation>Das Foto konnte nicht geöffnet werden</translation>
    </message>
    <message>
        <source>No application is set to open &quot;%1&quot;. Choose a default application for this type of file in your desktop&apos;s settings.</source>
        <translation>Keine Anwendung ist zum Öffnen von „%1“ eingerichtet. Wählen Sie in den Einstellungen Ihrer Arbeitsumgebung eine Standardanwendung für diesen Dateityp.</translation>
    </message>
    <message>
        <source>The folder could not be shown</source>
        <translation>Der Ordner konnte nicht angezeigt werden</translation>
    </message>
    <message>
        <source>No file manager answered for &quot;%1&quot;.</source>
        <translation>Kein Dateimanager hat für „%1“ geantwortet.</translation>
    </message>
</context>
<context>
    <name>tagmoor::ExtraTextsSection</name>
    <message>
        <source>Alt text:</source>
        <translation>Alternativtext:</translation>
    </message>
    <message>
        <source>Extended description:</source>
        <translation>Erweiterte Beschreibung:</translation>
    </message>
    <message>
        <source>Event:</source>
        <translation>Ereignis:</translation>
    </message>
    <message>
        <source>Usage terms:</source>
        <translation>Nutzungsbedingungen:</translation>
    </message>
    <message>
        <source>Credit line:</source>
        <translation>Bildnachweis:</translation>
    </message>
    <message>
        <source>Instructions:</source>
        <translation>Anweisungen:</translation>
    </message>
    <message>
        <source>Creator email:</source>
        <translation>E-Mail des Urhebers:</translation>
    </message>
    <message>
        <source>Creator phone:</source>
        <translation>Telefon des Urhebers:</translation>
    </message>
    <message>
        <source>Creator website:</source>
        <translation>Website des Urhebers:</translation>
    </message>
    <message>
        <source>Creator city:</source>
        <translation>Ort des Urhebers:</translation>
    </message>
    <message>
        <source>Creator country:</source>
        <translation>Land des Urhebers:</translation>
    </message>
    <message>
        <source>IPTC texts</source>
        <translation>IPTC-Texte</translation>
    </message>
    <message>
        <source>Unchanged</source>
        <translation>Unverändert</translation>
    </message>
    <message>
        <source>People shown</source>
        <translation>Abgebildete Personen</translation>
    </message>
    <message>
        <source>Names, separated by commas</source>
        <translation>Namen, durch Kommas getrennt</translation>
    </message>
    <message>
        <source>People shown:</source>
        <translation>Abgebildete Personen:</translation>
    </message>
</context>
<context>
    <name>tagmoor::FieldControl</name>
    <message>
        <source>Set...</source>
        <translation>Festlegen...</translation>
    </message>
    <message>
        <source>Choose the rule of this date</source>
        <translation>Die Regel für dieses Datum wählen</translation>
    </message>
    <message>
        <source>%1 field</source>
        <translation>Feld %1</translation>
    </message>
    <message>
        <source>Set the rule of %1</source>
        <translation>Die Regel für %1 festlegen</translation>
    </message>
    <message>
        <source>From the XMP sidecar %1</source>
        <translation>Aus der XMP-Begleitdatei %1</translation>
    </message>
    <message>
        <source>From the XMP sidecar of one of the marked photos</source>
        <translation>Aus der XMP-Begleitdatei eines der markierten Fotos</translation>
    </message>
    <message>
        <source>From the XMP sidecars of %1 of the marked photos</source>
        <translation>Aus den XMP-Begleitdateien von %1 der markierten Fotos</translation>
    </message>
</context>
<context>
    <name>tagmoor::FileInfoDialog</name>
    <message>
        <source>Name</source>
        <translation>Name</translation>
    </message>
    <message>
        <source>Kind</source>
        <translation>Art</translation>
    </message>
    <message>
        <source>Size</source>
        <translation>Größe</translation>
    </message>
    <message>
        <source>%1 (%2 bytes)</source>
        <translation>%1 (%2 Bytes)</translation>
    </message>
    <message>
        <source>Where</source>
        <translation>Ordner</translation>
    </message>
    <message>
        <source>Created</source>
        <translation>Erstellt</translation>
    </message>
    <message>
        <source>Modified</source>
        <translation>Geändert</translation>
    </message>
    <message>
        <source>Permissions</source>
        <translation>Zugriffsrechte</translation>
    </message>
    <message>
        <source>Read and write</source>
        <translation>Lesen und Schreiben</translation>
    </message>
    <message>
        <source>Read only</source>
        <translation>Nur lesen</translation>
    </message>
    <message>
        <source>%1 Info</source>
        <translation>Informationen zu %1</translation>
    </message>
</context>
<context>
    <name>tagmoor::FilePanel</name>
    <message>
        <source>Supported photos and folders (*)</source>
        <translation>Unterstützte Fotos und Ordner (*)</translation>
    </message>
    <message>
        <source>No photo or folder named &quot;%1&quot; is in this folder.</source>
        <translation>In diesem Ordner gibt es kein Foto und keinen Ordner namens „%1“.</translation>
    </message>
</context>
<context>
    <name>tagmoor::FinalProcessedVC</name>
    <message>
        <source>Stop</source>
        <translation>Anhalten</translation>
    </message>
    <message>
        <source>Show List...</source>
        <translation>Liste anzeigen...</translation>
    </message>
    <message>
        <source>Finish</source>
        <translation>Fertig</translation>
    </message>
    <message>
        <source>Processing</source>
        <translation>Verarbeitung</translation>
    </message>
    <message>
        <source>Images processed:</source>
        <translation>Verarbeitete Bilder:</translation>
    </message>
    <message>
        <source>Processing Images</source>
        <translation>Bilder werden verarbeitet</translation>
    </message>
    <message>
        <source>Please wait while the metadata of the selected photos is written.</source>
        <translation>Bitte warten Sie, während die Metadaten der ausgewählten Fotos geschrieben werden.</translation>
    </message>
    <message>
        <source>Batch Count</source>
        <translation>Anzahl im Stapel</translation>
    </message>
    <message>
        <source>Images Processed</source>
        <translation>Verarbeitete Bilder</translation>
    </message>
    <message>
        <source>Photos Skipped</source>
        <translation>Übersprungene Fotos</translation>
    </message>
    <message>
        <source>Output Directory</source>
        <translation>Ausgabeordner</translation>
    </message>
    <message>
        <source>1 photo could not be changed</source>
        <translation>1 Foto konnte nicht geändert werden</translation>
    </message>
    <message>
        <source>%1 photos could not be changed</source>
        <translation>%1 Fotos konnten nicht geändert werden</translation>
    </message>
    <message>
        <source>Photo</source>
        <translation>Foto</translation>
    </message>
    <message>
        <source>Reason</source>
        <translation>Grund</translation>
    </message>
    <message>
        <source>Not reached: the run was stopped</source>
        <translation>Nicht erreicht: der Lauf wurde angehalten</translation>
    </message>
</context>
<context>
    <name>tagmoor::FormSectionView</name>
    <message>
        <source>Enter keywords separated by commas</source>
        <translation>Stichwörter durch Kommas getrennt eingeben</translation>
    </message>
</context>
<context>
    <name>tagmoor::GeoLocationViewController</name>
    <message>
        <source>Location</source>
        <translation>Ort</translation>
    </message>
    <message>
        <source>Change the location of the selected photos</source>
        <translation>Den Ort der ausgewählten Fotos ändern</translation>
    </message>
    <message>
        <source>Decimal degrees, north positive</source>
        <translation>Dezimalgrad, Norden positiv</translation>
    </message>
    <message>
        <source>Decimal degrees, east positive</source>
        <translation>Dezimalgrad, Osten positiv</translation>
    </message>
    <message>
        <source>Type a place, e.g. Zürich or Paris, France</source>
        <translation>Ort eingeben, z. B. Zürich oder Paris, Frankreich</translation>
    </message>
    <message>
        <source>Latitude:</source>
        <translation>Breitengrad:</translation>
    </message>
    <message>
        <source>Longitude:</source>
        <translation>Längengrad:</translation>
    </message>
    <message>
        <source>Place:</source>
        <translation>Ort:</translation>
    </message>
    <message>
        <source>View:</source>
        <translation>Ansicht:</translation>
    </message>
    <message>
        <source>Done</source>
        <translation>Fertig</translation>
    </message>
</context>
<context>
    <name>tagmoor::Geocoder</name>
    <message>
        <source>The place names are not installed</source>
        <translation>Die Ortsnamen sind nicht installiert</translation>
    </message>
</context>
<context>
    <name>tagmoor::GeotagPanel</name>
    <message>
        <source>Geotag from Track</source>
        <translation>Aus GPS-Track verorten</translation>
    </message>
    <message>
        <source>Apply</source>
        <translation>Anwenden</translation>
    </message>
    <message>
        <source>Left out:</source>
        <translation>Ausgelassen:</translation>
    </message>
    <message>
        <source>Add the photos to place first.</source>
        <translation>Fügen Sie zuerst die Fotos hinzu, die verortet werden sollen.</translation>
    </message>
    <message>
        <source>Load GPX Files...</source>
        <translation>GPX-Dateien laden...</translation>
    </message>
    <message>
        <source>Added to the camera&apos;s clock to give the track&apos;s, as [+|-]H:M:S (a camera 2 minutes slow: +0:02:00)</source>
        <translation>Wird zur Kamerauhr addiert, um die Zeit des Tracks zu erhalten, als [+|-]H:M:S (eine Kamera, die 2 Minuten nachgeht: +0:02:00)</translation>
    </message>
    <message>
        <source>Clock offset:</source>
        <translation>Uhrabweichung:</translation>
    </message>
    <message>
        <source>The zone the camera&apos;s clock was set to: Europe/Lisbon, UTC, +02:00</source>
        <translation>Die Zeitzone, auf die die Kamerauhr gestellt war: Europe/Lisbon, UTC, +02:00</translation>
    </message>
    <message>
        <source>Camera zone:</source>
        <translation>Kamerazone:</translation>
    </message>
    <message>
        <source> s</source>
        <translation> s</translation>
    </message>
    <message>
        <source>The longest stretch between two fixes that is bridged</source>
        <translation>Die längste Zeitspanne zwischen zwei Messpunkten, die überbrückt wird</translation>
    </message>
    <message>
        <source>Largest gap:</source>
        <translation>Größte Lücke:</translation>
    </message>
    <message>
        <source>Load</source>
        <translation>Laden</translation>
    </message>
    <message>
        <source>Choose the GPX files of the track.</source>
        <translation>Wählen Sie die GPX-Dateien des Tracks.</translation>
    </message>
    <message>
        <source>Some of the track could not be read</source>
        <translation>Ein Teil des Tracks konnte nicht gelesen werden</translation>
    </message>
    <message>
        <source>%1 of %2 photos placed</source>
        <translation>%1 von %2 Fotos verortet</translation>
    </message>
</context>
<context>
    <name>tagmoor::HomeActionBar</name>
    <message>
        <source>Review changes...</source>
        <translation>Änderungen prüfen...</translation>
    </message>
    <message>
        <source>Start Process</source>
        <translation>Verarbeitung starten</translation>
    </message>
    <message>
        <source>Mode:</source>
        <translation>Modus:</translation>
    </message>
</context>
<context>
    <name>tagmoor::HomeEditorBox</name>
    <message>
        <source>Location...</source>
        <translation>Ort...</translation>
    </message>
    <message>
        <source>Reset All</source>
        <translation>Alles zurücksetzen</translation>
    </message>
    <message>
        <source>Rename...</source>
        <translation>Umbenennen...</translation>
    </message>
    <message>
        <source>Presets...</source>
        <translation>Vorgaben...</translation>
    </message>
    <message>
        <source>%1 of %2 marked</source>
        <translation>%1 von %2 markiert</translation>
    </message>
    <message>
        <source>Mark photos in the list to edit their metadata.</source>
        <translation>Markieren Sie Fotos in der Liste, um ihre Metadaten zu bearbeiten.</translation>
    </message>
    <message>
        <source>The editor and a run work on the marked photos.</source>
        <translation>Der Editor und ein Lauf wirken auf die markierten Fotos.</translation>
    </message>
    <message>
        <source>Keywords &amp;&amp; More</source>
        <translation>Stichwörter &amp;&amp; mehr</translation>
    </message>
    <message>
        <source>Keywords and more</source>
        <translation>Stichwörter und mehr</translation>
    </message>
</context>
<context>
    <name>tagmoor::HomeListPane</name>
    <message>
        <source>Add More</source>
        <translation>Weitere hinzufügen</translation>
    </message>
    <message>
        <source>Remove</source>
        <translation>Entfernen</translation>
    </message>
    <message>
        <source>Grid</source>
        <translation>Raster</translation>
    </message>
    <message>
        <source>Table</source>
        <translation>Tabelle</translation>
    </message>
    <message>
        <source>Select All</source>
        <translation>Alle auswählen</translation>
    </message>
    <message>
        <source>Remove the marked photos from the list</source>
        <translation>Die markierten Fotos aus der Liste entfernen</translation>
    </message>
    <message>
        <source>1 Photo</source>
        <translation>1 Foto</translation>
    </message>
    <message>
        <source>%1 Photos</source>
        <translation>%1 Fotos</translation>
    </message>
    <message>
        <source>Photos</source>
        <translation>Fotos</translation>
    </message>
    <message>
        <source>The photos in the list as thumbnails</source>
        <translation>Die Fotos der Liste als Miniaturen</translation>
    </message>
    <message>
        <source>The photos in the list as a table</source>
        <translation>Die Fotos der Liste als Tabelle</translation>
    </message>
</context>
<context>
    <name>tagmoor::HomeMenuActions</name>
    <message>
        <source>&amp;Mark All</source>
        <translation>Alle &amp;markieren</translation>
    </message>
    <message>
        <source>&amp;Unmark All</source>
        <translation>Markierung &amp;aufheben</translation>
    </message>
    <message>
        <source>&amp;Edit Fields</source>
        <translation>Felder &amp;bearbeiten</translation>
    </message>
    <message>
        <source>&amp;Location...</source>
        <translation>&amp;Ort...</translation>
    </message>
    <message>
        <source>Re&amp;name...</source>
        <translation>&amp;Umbenennen...</translation>
    </message>
    <message>
        <source>&amp;Presets...</source>
        <translation>&amp;Vorgaben...</translation>
    </message>
    <message>
        <source>Reset &amp;All</source>
        <translation>Alles &amp;zurücksetzen</translation>
    </message>
    <message>
        <source>Re&amp;view Changes...</source>
        <translation>Änderungen &amp;prüfen...</translation>
    </message>
    <message>
        <source>&amp;Start Process</source>
        <translation>Verarbeitung &amp;starten</translation>
    </message>
    <message>
        <source>Show &amp;Tips</source>
        <translation>&amp;Tipps zeigen</translation>
    </message>
    <message>
        <source>&amp;Remove Marked</source>
        <translation>Markierte &amp;entfernen</translation>
    </message>
    <message>
        <source>&amp;Copy Metadata</source>
        <translation>Metadaten &amp;kopieren</translation>
    </message>
    <message>
        <source>&amp;Paste Metadata...</source>
        <translation>Metadaten &amp;einfügen...</translation>
    </message>
    <message>
        <source>&amp;Export Metadata...</source>
        <translation>Metadaten e&amp;xportieren...</translation>
    </message>
    <message>
        <source>&amp;Import Metadata...</source>
        <translation>Metadaten &amp;importieren...</translation>
    </message>
</context>
<context>
    <name>tagmoor::HomePreviewPane</name>
    <message>
        <source>No photo selected</source>
        <translation>Keine Auswahl</translation>
    </message>
</context>
<context>
    <name>tagmoor::HomeScreen</name>
    <message>
        <source>Add More Images</source>
        <translation>Weitere Bilder hinzufügen</translation>
    </message>
    <message>
        <source>Remove All Selected</source>
        <translation>Alle ausgewählten entfernen</translation>
    </message>
    <message>
        <source>Remove All</source>
        <translation>Alle entfernen</translation>
    </message>
    <message>
        <source>Show Metadata</source>
        <translation>Metadaten anzeigen</translation>
    </message>
    <message>
        <source>Mark/Unmark All</source>
        <translation>Alle markieren/Markierung aufheben</translation>
    </message>
    <message>
        <source>Get Info</source>
        <translation>Informationen</translation>
    </message>
    <message>
        <source>Open with Default Application</source>
        <translation>Mit Standardanwendung öffnen</translation>
    </message>
    <message>
        <source>Show in File Manager</source>
        <translation>Im Dateimanager anzeigen</translation>
    </message>
    <message>
        <source>No location</source>
        <translation>Kein Ort</translation>
    </message>
    <message>
        <source>Dimensions</source>
        <translation>Abmessungen</translation>
    </message>
    <message>
        <source>%1 x %2 pixels</source>
        <translation>%1 x %2 Pixel</translation>
    </message>
    <message>
        <source>Preview</source>
        <translation>Vorschau</translation>
    </message>
    <message>
        <source>Show or hide the picture and the map of the photo on display</source>
        <translation>Bild und Karte des angezeigten Fotos ein- oder ausblenden</translation>
    </message>
    <message>
        <source>Copy Metadata</source>
        <translation>Metadaten kopieren</translation>
    </message>
    <message>
        <source>Mark a photo to show it, then copy its values.</source>
        <translation>Markieren Sie ein Foto, damit es angezeigt wird, und kopieren Sie dann seine Werte.</translation>
    </message>
</context>
<context>
    <name>tagmoor::HomeSummaryBar</name>
    <message>
        <source>What the next run does</source>
        <translation>Was der nächste Lauf tut</translation>
    </message>
    <message>
        <source>Nothing set for the run yet</source>
        <translation>Für den Lauf ist noch nichts festgelegt</translation>
    </message>
    <message>
        <source>location: %1</source>
        <translation>Ort: %1</translation>
    </message>
    <message>
        <source>Take this back</source>
        <translation>Zurücknehmen</translation>
    </message>
</context>
<context>
    <name>tagmoor::KeywordListSection</name>
    <message>
        <source>Keywords of the marked photos</source>
        <translation>Stichwörter der markierten Fotos</translation>
    </message>
    <message>
        <source>Keyword</source>
        <translation>Stichwort</translation>
    </message>
    <message>
        <source>Photos</source>
        <translation>Fotos</translation>
    </message>
    <message>
        <source>Add a keyword</source>
        <translation>Stichwort hinzufügen</translation>
    </message>
    <message>
        <source>Add a keyword (&quot;|&quot; between levels)</source>
        <translation>Stichwort hinzufügen („|“ zwischen Ebenen)</translation>
    </message>
    <message>
        <source>Add</source>
        <translation>Hinzufügen</translation>
    </message>
    <message>
        <source>Add the keyword</source>
        <translation>Das Stichwort hinzufügen</translation>
    </message>
    <message>
        <source>Keywords</source>
        <translation>Stichwörter</translation>
    </message>
    <message>
        <source>new</source>
        <translation>neu</translation>
    </message>
    <message>
        <source>Keep</source>
        <translation>Behalten</translation>
    </message>
    <message>
        <source>Keep the keyword %1</source>
        <translation>Das Stichwort %1 behalten</translation>
    </message>
    <message>
        <source>Remove the keyword %1</source>
        <translation>Das Stichwort %1 entfernen</translation>
    </message>
    <message>
        <source>Keyword not added</source>
        <translation>Stichwort nicht hinzugefügt</translation>
    </message>
    <message>
        <source>The keywords of one photo come from its XMP sidecar.</source>
        <translation>Die Stichwörter eines Fotos stammen aus seiner XMP-Begleitdatei.</translation>
    </message>
    <message>
        <source>The keywords of %1 photos come from their XMP sidecars.</source>
        <translation>Die Stichwörter von %1 Fotos stammen aus ihren XMP-Begleitdateien.</translation>
    </message>
</context>
<context>
    <name>tagmoor::MainWindow</name>
    <message>
        <source>&amp;File</source>
        <translation>&amp;Datei</translation>
    </message>
    <message>
        <source>&amp;Add Photos...</source>
        <translation>Fotos &amp;hinzufügen...</translation>
    </message>
    <message>
        <source>&amp;Preferences...</source>
        <translation>&amp;Einstellungen...</translation>
    </message>
    <message>
        <source>&amp;Quit</source>
        <translation>&amp;Beenden</translation>
    </message>
    <message>
        <source>&amp;Window</source>
        <translation>&amp;Fenster</translation>
    </message>
    <message>
        <source>&amp;Tagmoor</source>
        <translation>&amp;Tagmoor</translation>
    </message>
    <message>
        <source>&amp;Help</source>
        <translation>&amp;Hilfe</translation>
    </message>
    <message>
        <source>Check for &amp;Updates...</source>
        <translation>Nach &amp;Updates suchen...</translation>
    </message>
    <message>
        <source>&amp;About Tagmoor</source>
        <translation>&amp;Über Tagmoor</translation>
    </message>
    <message>
        <source>About Tagmoor</source>
        <translation>Über Tagmoor</translation>
    </message>
    <message>
        <source>&amp;Photos</source>
        <translation>F&amp;otos</translation>
    </message>
    <message>
        <source>&amp;Undo Last Batch...</source>
        <translation>&amp;Letzten Stapel rückgängig machen...</translation>
    </message>
    <message>
        <source>Undo Last Batch</source>
        <translation>Letzten Stapel rückgängig machen</translation>
    </message>
    <message>
        <source>There is no batch to undo.</source>
        <translation>Es gibt keinen Stapel, der rückgängig gemacht werden kann.</translation>
    </message>
    <message>
        <source>A batch is running. Undo it when it is done.</source>
        <translation>Ein Stapel läuft. Machen Sie ihn rückgängig, wenn er fertig ist.</translation>
    </message>
    <message>
        <source>in place</source>
        <translation>am Ort</translation>
    </message>
    <message>
        <source>%1, %2, photos: %3%4</source>
        <translation>%1, %2, Fotos: %3%4</translation>
    </message>
    <message>
        <source> (undone)</source>
        <translation> (rückgängig gemacht)</translation>
    </message>
    <message>
        <source>Undo the batch of %1? Its photos get their old metadata back and the files it made are removed.

Past batches, newest first:
%2</source>
        <translation>Den Stapel vom %1 rückgängig machen? Seine Fotos erhalten ihre alten Metadaten zurück, und die Dateien, die er angelegt hat, werden entfernt.

Frühere Stapel, die neuesten zuerst:
%2</translation>
    </message>
    <message>
        <source>Files restored or removed: %1.</source>
        <translation>Wiederhergestellte oder entfernte Dateien: %1.</translation>
    </message>
    <message>
        <source>%1: %2</source>
        <translation>%1: %2</translation>
    </message>
    <message>
        <source>These files were left as they are:
%1</source>
        <translation>Diese Dateien wurden so gelassen, wie sie sind:
%1</translation>
    </message>
    <message>
        <source>&amp;Edit</source>
        <translation>&amp;Bearbeiten</translation>
    </message>
    <message>
        <source>&amp;Geotag from Track...</source>
        <translation>Aus &amp;GPS-Track verorten...</translation>
    </message>
    <message>
        <source>&lt;h3&gt;Tagmoor %1&lt;/h3&gt;&lt;p&gt;Edit the metadata of many photos at once.&lt;/p&gt;&lt;p&gt;World outline: Natural Earth (public domain). Place and region names: GeoNames (CC BY 4.0). Time zones: @photostructure/tz-lookup (CC0). Map tiles: © OpenStreetMap contributors.&lt;/p&gt;</source>
        <translation>&lt;h3&gt;Tagmoor %1&lt;/h3&gt;&lt;p&gt;Bearbeitet die Metadaten vieler Fotos auf einmal.&lt;/p&gt;&lt;p&gt;Weltumriss: Natural Earth (gemeinfrei). Orts- und Regionsnamen: GeoNames (CC BY 4.0). Zeitzonen: @photostructure/tz-lookup (CC0). Kartenkacheln: © OpenStreetMap-Mitwirkende.&lt;/p&gt;</translation>
    </message>
</context>
<context>
    <name>tagmoor::MapTypeSegment</name>
    <message>
        <source>Standard</source>
        <translation>Standard</translation>
    </message>
    <message>
        <source>Satellite</source>
        <translation>Satellit</translation>
    </message>
    <message>
        <source>Hybrid</source>
        <translation>Hybrid</translation>
    </message>
</context>
<context>
    <name>tagmoor::MapView</name>
    <message>
        <source>Zoom In</source>
        <translation>Vergrößern</translation>
    </message>
    <message>
        <source>Zoom Out</source>
        <translation>Verkleinern</translation>
    </message>
    <message>
        <source>Map tiles from the internet are turned off in Preferences; showing the outline.</source>
        <translation>Kartenkacheln aus dem Internet sind in den Einstellungen ausgeschaltet; der Umriss wird gezeigt.</translation>
    </message>
    <message>
        <source>Satellite imagery needs a tile address in the settings; showing the outline.</source>
        <translation>Satellitenbilder brauchen eine Kachel-Adresse in den Einstellungen; der Umriss wird gezeigt.</translation>
    </message>
    <message>
        <source>Outline: Natural Earth</source>
        <translation>Umriss: Natural Earth</translation>
    </message>
    <message>
        <source>© OpenStreetMap contributors</source>
        <translation>© OpenStreetMap-Mitwirkende</translation>
    </message>
    <message>
        <source>© OpenStreetMap contributors (%1)</source>
        <translation>© OpenStreetMap-Mitwirkende (%1)</translation>
    </message>
    <message>
        <source>Imagery: %1</source>
        <translation>Bilder: %1</translation>
    </message>
</context>
<context>
    <name>tagmoor::PhotoTableModel</name>
    <message>
        <source>The edits of the editor will be written to this photo</source>
        <translation>Die Änderungen des Editors werden in dieses Foto geschrieben</translation>
    </message>
    <message>
        <source>Photos the edits of the editor will be written to</source>
        <translation>Fotos, in die die Änderungen des Editors geschrieben werden</translation>
    </message>
    <message>
        <source>Name</source>
        <translation>Name</translation>
    </message>
    <message>
        <source>Edited</source>
        <translation>Bearbeitet</translation>
    </message>
    <message>
        <source>Size</source>
        <translation>Größe</translation>
    </message>
    <message>
        <source>Dimensions</source>
        <translation>Abmessungen</translation>
    </message>
    <message>
        <source>Capture Date</source>
        <translation>Aufnahmedatum</translation>
    </message>
    <message>
        <source>Camera</source>
        <translation>Kamera</translation>
    </message>
</context>
<context>
    <name>tagmoor::PinCallout</name>
    <message>
        <source>More Info</source>
        <translation>Mehr Infos</translation>
    </message>
</context>
<context>
    <name>tagmoor::PreferencesWindow</name>
    <message>
        <source>Preferences</source>
        <translation>Einstellungen</translation>
    </message>
    <message>
        <source>General</source>
        <translation>Allgemein</translation>
    </message>
    <message>
        <source>Launch Tagmoor automatically at login</source>
        <translation>Tagmoor bei der Anmeldung automatisch starten</translation>
    </message>
    <message>
        <source>Overwrite if a file with the same name exists</source>
        <translation>Überschreiben, wenn eine Datei mit demselben Namen existiert</translation>
    </message>
    <message>
        <source>Offer to save the settings as a preset after a run</source>
        <translation>Nach einem Lauf anbieten, die Einstellungen als Vorgabe zu speichern</translation>
    </message>
    <message>
        <source>Check for updates automatically</source>
        <translation>Automatisch nach Updates suchen</translation>
    </message>
    <message>
        <source>Select Language:</source>
        <translation>Sprache wählen:</translation>
    </message>
    <message>
        <source>Application Settings</source>
        <translation>Anwendungseinstellungen</translation>
    </message>
    <message>
        <source>Language Settings</source>
        <translation>Spracheinstellungen</translation>
    </message>
    <message>
        <source>File Saving Preference</source>
        <translation>Speichern von Dateien</translation>
    </message>
    <message>
        <source>Write tags in their standard form</source>
        <translation>Tags in ihrer Standardform schreiben</translation>
    </message>
    <message>
        <source>When unticked, Tagmoor follows its classic rules: every listed tag is rewritten, absent numbers become zero, GPS seconds lose their fraction, only the last keyword is kept and date shifts wrap instead of carrying.</source>
        <translation>Ohne Häkchen folgt Tagmoor seinen klassischen Regeln: jeder aufgeführte Tag wird neu geschrieben, fehlende Zahlen werden zu null, GPS-Sekunden verlieren ihre Nachkommastellen, nur das letzte Stichwort bleibt erhalten, und Datumsverschiebungen beginnen im eigenen Bereich von vorn, statt überzutragen.</translation>
    </message>
    <message>
        <source>Map</source>
        <translation>Karte</translation>
    </message>
    <message>
        <source>Load map tiles from the internet</source>
        <translation>Kartenkacheln aus dem Internet laden</translation>
    </message>
    <message>
        <source>The maps ask a public tile server for the places of the photos shown, and keep the tiles in a cache on this computer. When unticked, the maps show the world outline only.</source>
        <translation>Die Karten fragen einen öffentlichen Kachel-Server nach den Orten der gezeigten Fotos und bewahren die Kacheln in einem Zwischenspeicher auf diesem Computer auf. Ohne Häkchen zeigen die Karten nur den Weltumriss.</translation>
    </message>
    <message>
        <source>Clear map cache</source>
        <translation>Kartenzwischenspeicher leeren</translation>
    </message>
    <message>
        <source>Notification</source>
        <translation>Benachrichtigung</translation>
    </message>
    <message>
        <source>Update Setting</source>
        <translation>Updates</translation>
    </message>
    <message>
        <source>English</source>
        <translatorcomment>The one entry of the language box names the language the window is shown in.</translatorcomment>
        <translation>Deutsch</translation>
    </message>
    <message>
        <source>The map cache is empty.</source>
        <translation>Der Kartenzwischenspeicher ist leer.</translation>
    </message>
    <message>
        <source>The way Tagmoor looks for updates is settled when it starts, and cannot be changed here in this version.</source>
        <translation>Wie Tagmoor nach Updates sucht, wird beim Start festgelegt und lässt sich in dieser Version hier nicht ändern.</translation>
    </message>
    <message>
        <source>Tagmoor follows the desktop&apos;s language in this version: English, or German where the desktop asks for it.</source>
        <translation>Tagmoor folgt in dieser Version der Sprache der Arbeitsumgebung: Englisch, oder Deutsch, wo die Arbeitsumgebung es verlangt.</translation>
    </message>
    <message>
        <source>Follow the desktop</source>
        <translation>Wie die Arbeitsumgebung</translation>
    </message>
    <message>
        <source>Light</source>
        <translation>Hell</translation>
    </message>
    <message>
        <source>Dark</source>
        <translation>Dunkel</translation>
    </message>
    <message>
        <source>Appearance:</source>
        <translation>Erscheinungsbild:</translation>
    </message>
    <message>
        <source>Keep captions, creators and rights in step</source>
        <translation>Beschreibungen, Urheber und Rechte gleich halten</translation>
    </message>
    <message>
        <source>XMP sidecar files</source>
        <translation>XMP-Begleitdateien</translation>
    </message>
    <message>
        <source>Never</source>
        <translation>Nie</translation>
    </message>
    <message>
        <source>Only where the photo cannot hold XMP</source>
        <translation>Nur wo das Foto kein XMP aufnehmen kann</translation>
    </message>
    <message>
        <source>Always, instead of the photo</source>
        <translation>Immer, statt in das Foto</translation>
    </message>
    <message>
        <source>Both the photo and a sidecar</source>
        <translation>In das Foto und eine Begleitdatei</translation>
    </message>
    <message>
        <source>XMP sidecar files:</source>
        <translation>XMP-Begleitdateien:</translation>
    </message>
    <message>
        <source>Accept only the classic file formats</source>
        <translation>Nur die klassischen Dateiformate annehmen</translation>
    </message>
    <message>
        <source>An edit of a caption, creator or rights is written to its Exif, IPTC and XMP copies alike, and a photo shows the copy that readers prefer. Applies to the photos added from now on.</source>
        <translation>Eine geänderte Beschreibung, ein Urheber oder Rechte werden in die Exif-, IPTC- und XMP-Kopien gleichermaßen geschrieben, und ein Foto zeigt die Kopie, die Leseprogramme bevorzugen. Gilt für die von nun an hinzugefügten Fotos.</translation>
    </message>
    <message>
        <source>When ticked, HEIC, AVIF, JPEG XL, WebP, CR3 and RW2 photos are not added.</source>
        <translation>Mit Häkchen werden HEIC-, AVIF-, JPEG-XL-, WebP-, CR3- und RW2-Fotos nicht hinzugefügt.</translation>
    </message>
</context>
<context>
    <name>tagmoor::PresetsDetailsViewController</name>
    <message>
        <source>Presets</source>
        <translation>Vorgaben</translation>
    </message>
    <message>
        <source>Add</source>
        <translation>Hinzufügen</translation>
    </message>
    <message>
        <source>Remove</source>
        <translation>Entfernen</translation>
    </message>
    <message>
        <source>Save</source>
        <translation>Speichern</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Add a preset with empty values</source>
        <translation>Eine Vorgabe mit leeren Werten hinzufügen</translation>
    </message>
    <message>
        <source>Remove the selected preset</source>
        <translation>Die ausgewählte Vorgabe entfernen</translation>
    </message>
    <message>
        <source>Double-click a name to rename it.</source>
        <translation>Doppelklicken Sie auf einen Namen, um ihn umzubenennen.</translation>
    </message>
    <message>
        <source>Preset Saved!</source>
        <translation>Vorgabe gespeichert!</translation>
    </message>
    <message>
        <source>The values for the selected preset have been saved.</source>
        <translation>Die Werte der ausgewählten Vorgabe wurden gespeichert.</translation>
    </message>
</context>
<context>
    <name>tagmoor::PresetsViewController</name>
    <message>
        <source>New Configuration</source>
        <translation>Neue Konfiguration</translation>
    </message>
    <message>
        <source>Edit Presets...</source>
        <translation>Vorgaben bearbeiten...</translation>
    </message>
    <message>
        <source>Presets</source>
        <translation>Vorgaben</translation>
    </message>
</context>
<context>
    <name>tagmoor::PreviewViewController</name>
    <message>
        <source>Preview</source>
        <translation>Vorschau</translation>
    </message>
    <message>
        <source>Location:</source>
        <translation>Ort:</translation>
    </message>
    <message>
        <source>Name:</source>
        <translation>Name:</translation>
    </message>
    <message>
        <source>Dimensions:</source>
        <translation>Abmessungen:</translation>
    </message>
    <message>
        <source>Size:</source>
        <translation>Größe:</translation>
    </message>
    <message>
        <source>Path:</source>
        <translation>Pfad:</translation>
    </message>
    <message>
        <source>Metadata</source>
        <translation>Metadaten</translation>
    </message>
    <message>
        <source>Tagmoor - Preview</source>
        <translation>Tagmoor - Vorschau</translation>
    </message>
    <message>
        <source>Loading…</source>
        <translation>Wird geladen…</translation>
    </message>
</context>
<context>
    <name>tagmoor::ProcessingControls</name>
    <message>
        <source>Edit metadata, keep the other tags</source>
        <translation>Metadaten bearbeiten, andere Tags behalten</translation>
    </message>
    <message>
        <source>Edit metadata, clear the other tags</source>
        <translation>Metadaten bearbeiten, andere Tags leeren</translation>
    </message>
    <message>
        <source>Remove metadata groups</source>
        <translation>Metadatengruppen entfernen</translation>
    </message>
    <message>
        <source>Remove these metadata groups from the marked photos:</source>
        <translation>Diese Metadatengruppen aus den markierten Fotos entfernen:</translation>
    </message>
    <message>
        <source>EXIF (all of it)</source>
        <translation>EXIF (vollständig)</translation>
    </message>
    <message>
        <source>GPS information</source>
        <translation>GPS-Informationen</translation>
    </message>
    <message>
        <source>User comment</source>
        <translation>Benutzerkommentar</translation>
    </message>
    <message>
        <source>IPTC</source>
        <translation>IPTC</translation>
    </message>
    <message>
        <source>XMP</source>
        <translation>XMP</translation>
    </message>
</context>
<context>
    <name>tagmoor::RatingLabelSection</name>
    <message>
        <source>Rejected</source>
        <translation>Abgelehnt</translation>
    </message>
    <message>
        <source>Label</source>
        <translation>Markierung</translation>
    </message>
    <message>
        <source>Unchanged</source>
        <translation>Unverändert</translation>
    </message>
    <message>
        <source>None</source>
        <translation>Keine</translation>
    </message>
    <message>
        <source>Rating and label</source>
        <translation>Bewertung und Markierung</translation>
    </message>
    <message>
        <source>Rating:</source>
        <translation>Bewertung:</translation>
    </message>
    <message>
        <source>Label:</source>
        <translation>Markierung:</translation>
    </message>
    <message>
        <source>Red</source>
        <translation>Rot</translation>
    </message>
    <message>
        <source>Yellow</source>
        <translation>Gelb</translation>
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
        <source>Purple</source>
        <translation>Lila</translation>
    </message>
    <message>
        <source>1 star</source>
        <translation>1 Stern</translation>
    </message>
    <message>
        <source>%1 stars</source>
        <translation>%1 Sterne</translation>
    </message>
</context>
<context>
    <name>tagmoor::RenameViewController</name>
    <message>
        <source>Rename</source>
        <translation>Umbenennen</translation>
    </message>
    <message>
        <source>Configure Settings to Rename the selected files</source>
        <translation>Einstellungen zum Umbenennen der ausgewählten Dateien</translation>
    </message>
    <message>
        <source>Keep Original File Names</source>
        <translation>Originale Dateinamen behalten</translation>
    </message>
    <message>
        <source>Add Text:</source>
        <translation>Text hinzufügen:</translation>
    </message>
    <message>
        <source>Replace With:</source>
        <translation>Ersetzen durch:</translation>
    </message>
    <message>
        <source>Change FIle Name Format:</source>
        <translation>Dateinamenformat ändern:</translation>
    </message>
    <message>
        <source>Name From the Capture Date:</source>
        <translation>Name aus dem Aufnahmedatum:</translation>
    </message>
    <message>
        <source>before name</source>
        <translation>vor dem Namen</translation>
    </message>
    <message>
        <source>after name</source>
        <translation>nach dem Namen</translation>
    </message>
    <message>
        <source>Name and Index</source>
        <translation>Name und Index</translation>
    </message>
    <message>
        <source>Name and Counter</source>
        <translation>Name und Zähler</translation>
    </message>
    <message>
        <source>Name and Date</source>
        <translation>Name und Datum</translation>
    </message>
    <message>
        <source>Auto</source>
        <translation>Automatisch</translation>
    </message>
    <message>
        <source>A date pattern: yyyy year, MM month, dd day, HH hour, mm minute, ss second. Photos taken in the same second get -1, -2 ...</source>
        <translation>Ein Datumsmuster: yyyy Jahr, MM Monat, dd Tag, HH Stunde, mm Minute, ss Sekunde. Fotos aus derselben Sekunde erhalten -1, -2 ...</translation>
    </message>
    <message>
        <source>Find:</source>
        <translation>Suchen:</translation>
    </message>
    <message>
        <source>Name Format:</source>
        <translation>Namensformat:</translation>
    </message>
    <message>
        <source>Where:</source>
        <translation>Position:</translation>
    </message>
    <message>
        <source>Custom Format:</source>
        <translation>Eigenes Format:</translation>
    </message>
    <message>
        <source>Start numbers at:</source>
        <translation>Nummern beginnen bei:</translation>
    </message>
    <message>
        <source>Min. number of digits:</source>
        <translation>Mindestanzahl Ziffern:</translation>
    </message>
    <message>
        <source>Date Pattern:</source>
        <translation>Datumsmuster:</translation>
    </message>
    <message>
        <source>Save</source>
        <translation>Speichern</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Schließen</translation>
    </message>
    <message>
        <source>Text to add</source>
        <translation>Hinzuzufügender Text</translation>
    </message>
    <message>
        <source>Text to find</source>
        <translation>Zu suchender Text</translation>
    </message>
    <message>
        <source>Replace with</source>
        <translation>Ersetzen durch</translation>
    </message>
    <message>
        <source>Custom format</source>
        <translation>Eigenes Format</translation>
    </message>
    <message>
        <source>Start number</source>
        <translation>Startnummer</translation>
    </message>
    <message>
        <source>Capture date pattern</source>
        <translation>Muster für das Aufnahmedatum</translation>
    </message>
</context>
<context>
    <name>tagmoor::ReviewChangesWindow</name>
    <message>
        <source>Start Process...</source>
        <translation>Verarbeitung starten...</translation>
    </message>
    <message>
        <source>Review Changes</source>
        <translation>Änderungen prüfen</translation>
    </message>
    <message>
        <source>What Start Process would do to the marked photos, before anything is written. The output folder is chosen when the run starts; names are shown in the photos&apos; own folders.</source>
        <translation>Was „Verarbeitung starten“ mit den markierten Fotos tun würde, bevor etwas geschrieben wird. Der Ausgabeordner wird beim Start des Laufs gewählt; Namen werden in den eigenen Ordnern der Fotos gezeigt.</translation>
    </message>
    <message>
        <source>Working out the changes...</source>
        <translation>Änderungen werden ermittelt...</translation>
    </message>
    <message>
        <source>Photo</source>
        <translation>Foto</translation>
    </message>
    <message>
        <source>Change</source>
        <translation>Änderung</translation>
    </message>
    <message>
        <source>Now</source>
        <translation>Jetzt</translation>
    </message>
    <message>
        <source>After the Run</source>
        <translation>Nach dem Lauf</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Schließen</translation>
    </message>
    <message>
        <source>Skipped</source>
        <translation>Übersprungen</translation>
    </message>
    <message>
        <source>New name</source>
        <translation>Neuer Name</translation>
    </message>
    <message>
        <source>Not changed</source>
        <translation>Nicht geändert</translation>
    </message>
    <message>
        <source>No change</source>
        <translation>Keine Änderung</translation>
    </message>
    <message>
        <source>Would be written: %1 of %2 photos. Skipped: %3. Tag changes: %4.</source>
        <translation>Würden geschrieben: %1 von %2 Fotos. Übersprungen: %3. Tag-Änderungen: %4.</translation>
    </message>
    <message>
        <source>Show all tags</source>
        <translation>Alle Tags zeigen</translation>
    </message>
    <message>
        <source>Also show the tags that change because the photo is written, besides those you asked to change</source>
        <translation>Neben den Tags, deren Änderung Sie verlangt haben, auch die Tags zeigen, die sich ändern, weil das Foto geschrieben wird</translation>
    </message>
    <message>
        <source>Other tags</source>
        <translation>Weitere Tags</translation>
    </message>
    <message>
        <source>1 more tag changes as the photo is written</source>
        <translation>1 weiterer Tag ändert sich, wenn das Foto geschrieben wird</translation>
    </message>
    <message>
        <source>%1 more tags change as the photo is written</source>
        <translation>%1 weitere Tags ändern sich, wenn das Foto geschrieben wird</translation>
    </message>
    <message>
        <source>Changes</source>
        <translation>Änderungen</translation>
    </message>
</context>
<context>
    <name>tagmoor::ScanProgressBox</name>
    <message>
        <source>Adding Images</source>
        <translation>Bilder werden hinzugefügt</translation>
    </message>
    <message>
        <source>Stop</source>
        <translation>Anhalten</translation>
    </message>
</context>
<context>
    <name>tagmoor::TickListDialog</name>
    <message>
        <source>Tick All</source>
        <translation>Alle ankreuzen</translation>
    </message>
    <message>
        <source>Tick None</source>
        <translation>Keine ankreuzen</translation>
    </message>
</context>
<context>
    <name>tagmoor::TutorialOverlay</name>
    <message>
        <source>Skip Intro</source>
        <translation>Einführung überspringen</translation>
    </message>
    <message>
        <source>Your photos are in the list. Switch between thumbnails and a table with Grid and Table.</source>
        <translation>Ihre Fotos stehen in der Liste. Mit „Raster“ und „Tabelle“ wechseln Sie zwischen Miniaturen und einer Tabelle.</translation>
    </message>
    <message>
        <source>The check box of a photo marks it: a run and the editor work on the marked photos only.</source>
        <translation>Das Kästchen eines Fotos markiert es: ein Lauf und der Editor wirken nur auf die markierten Fotos.</translation>
    </message>
    <message>
        <source>Click a photo to see it on the right. Right-click for more: remove, get info, open it.</source>
        <translation>Klicken Sie auf ein Foto, um es rechts zu sehen. Ein Rechtsklick bietet mehr: entfernen, Informationen, öffnen.</translation>
    </message>
    <message>
        <source>Edit EXIF, IPTC and XMP values in the editor. A field you change is framed and goes to every marked photo.</source>
        <translation>Bearbeiten Sie EXIF-, IPTC- und XMP-Werte im Editor. Ein geändertes Feld wird umrahmt und gilt für jedes markierte Foto.</translation>
    </message>
    <message>
        <source>Fields that differ between the marked photos show &quot;Multiple Values&quot;; untouched, each photo keeps its own.</source>
        <translation>Felder, die sich zwischen den markierten Fotos unterscheiden, zeigen „Mehrere Werte“; unberührt behält jedes Foto seinen eigenen Wert.</translation>
    </message>
    <message>
        <source>Set rules for the dates with the buttons beside the date fields, and rename rules with Rename.</source>
        <translation>Legen Sie Regeln für die Datumsangaben mit den Knöpfen neben den Datumsfeldern fest und Regeln zum Umbenennen mit „Umbenennen“.</translation>
    </message>
    <message>
        <source>When you are ready, press Start Process. Reset All takes every edit back.</source>
        <translation>Wenn Sie bereit sind, drücken Sie „Verarbeitung starten“. „Alles zurücksetzen“ nimmt jede Änderung zurück.</translation>
    </message>
    <message>
        <source>Tip %1 of %2</source>
        <translation>Tipp %1 von %2</translation>
    </message>
    <message>
        <source>Back</source>
        <translation>Zurück</translation>
    </message>
    <message>
        <source>Done</source>
        <translation>Fertig</translation>
    </message>
    <message>
        <source>Next</source>
        <translation>Weiter</translation>
    </message>
</context>
<context>
    <name>tagmoor::WelcomeWindow</name>
    <message>
        <source>Welcome to Tagmoor</source>
        <translation>Willkommen bei Tagmoor</translation>
    </message>
    <message>
        <source>Launch Tagmoor at login</source>
        <translation>Tagmoor bei der Anmeldung starten</translation>
    </message>
    <message>
        <source>Get Started</source>
        <translation>Los geht’s</translation>
    </message>
</context>
</TS>
