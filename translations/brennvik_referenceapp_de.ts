<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de_DE">
<context>
    <name>Brennvik::ProcessPlots</name>
    <message>
        <location filename="../app/ProcessPlots.cpp" line="+149"/>
        <source>Material generator</source>
        <translation>Materialgenerator</translation>
    </message>
    <message>
        <location line="+2"/>
        <source>DC04, 1.20 mm: Hollomon fit and forming limit</source>
        <translation>DC04, 1,20 mm: Hollomon-Anpassung und Grenzformänderung</translation>
    </message>
</context>
<context>
    <name>Brennvik::ReferenceMainWindow</name>
    <message>
        <location filename="../app/ReferenceMainWindow.cpp" line="+52"/>
        <source>Brennvik reference host</source>
        <translation>Brennvik-Referenzanwendung</translation>
    </message>
    <message>
        <location line="+2"/>
        <source>Display items</source>
        <translation>Anzeigeelemente</translation>
    </message>
    <message>
        <location line="+93"/>
        <source>Brennvik reference host - %1</source>
        <translation>Brennvik-Referenzanwendung - %1</translation>
    </message>
    <message>
        <location line="+6"/>
        <source>Open a 3D scene</source>
        <translation>3D-Szene öffnen</translation>
    </message>
    <message>
        <location line="+57"/>
        <source>&amp;File</source>
        <translation>&amp;Datei</translation>
    </message>
    <message>
        <location line="+4"/>
        <source>&amp;Open...</source>
        <translation>Ö&amp;ffnen...</translation>
    </message>
    <message>
        <location line="+3"/>
        <source>&amp;Quit</source>
        <translation>&amp;Beenden</translation>
    </message>
    <message>
        <location line="+0"/>
        <source>Ctrl+Q</source>
        <translation>Ctrl+Q</translation>
    </message>
    <message>
        <location line="+3"/>
        <source>&amp;View</source>
        <translation>&amp;Ansicht</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>&amp;Rebuild tree</source>
        <translation>Baum &amp;neu aufbauen</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>&amp;Expand all</source>
        <translation>Alle &amp;aufklappen</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>&amp;Collapse all</source>
        <translation>Alle &amp;zuklappen</translation>
    </message>
    <message>
        <location line="+4"/>
        <source>&amp;Window</source>
        <translation>&amp;Fenster</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>&amp;Material generator</source>
        <translation>&amp;Materialgenerator</translation>
    </message>
    <message>
        <location line="+11"/>
        <source>&amp;Debug</source>
        <translation>De&amp;bug</translation>
    </message>
    <message>
        <location line="+3"/>
        <source>Display &amp;model...</source>
        <translation>&amp;Anzeigemodell...</translation>
    </message>
    <message>
        <location line="+0"/>
        <source>Ctrl+Shift+D</source>
        <translation>Ctrl+Shift+D</translation>
    </message>
    <message>
        <location line="+3"/>
        <source>&amp;Clone comparison...</source>
        <translation>&amp;Klonvergleich...</translation>
    </message>
    <message>
        <location line="+0"/>
        <source>Ctrl+Shift+C</source>
        <translation>Ctrl+Shift+C</translation>
    </message>
    <message>
        <location line="+3"/>
        <source>&amp;2D display models...</source>
        <translation>&amp;2D-Anzeigemodelle...</translation>
    </message>
    <message>
        <location line="+0"/>
        <source>Ctrl+Shift+P</source>
        <translation>Ctrl+Shift+P</translation>
    </message>
    <message>
        <location line="+51"/>
        <source>3D view</source>
        <translation>3D-Ansicht</translation>
    </message>
    <message>
        <location line="+2"/>
        <source>3D view (clone)</source>
        <translation>3D-Ansicht (Klon)</translation>
    </message>
    <message>
        <location line="+93"/>
        <source>%1 display items</source>
        <translation>%1 Anzeigeelemente</translation>
    </message>
</context>
<context>
    <name>Brennvik::SceneView3D</name>
    <message numerus="yes">
        <location filename="../app/SceneView3D.cpp" line="+486"/>
        <source>%1 - %n item(s) drawn</source>
        <translation>
            <numerusform>%1 - %n Element gezeichnet</numerusform>
            <numerusform>%1 - %n Elemente gezeichnet</numerusform>
        </translation>
    </message>
    <message>
        <location line="+0"/>
        <source>3D view</source>
        <translation>3D-Ansicht</translation>
    </message>
    <message numerus="yes">
        <location line="+2"/>
        <source>, %n selected</source>
        <translation>
            <numerusform>, %n ausgewählt</numerusform>
            <numerusform>, %n ausgewählt</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <location line="+2"/>
        <source> (%n not painted)</source>
        <translation>
            <numerusform> (%n nicht gezeichnet)</numerusform>
            <numerusform> (%n nicht gezeichnet)</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>Brennvik::TreeViewContextMenu</name>
    <message>
        <location filename="../referencehost/widgetkit/TreeViewContextMenu.cpp" line="+169"/>
        <source>Expand recursively</source>
        <translation>Rekursiv aufklappen</translation>
    </message>
    <message>
        <location line="+2"/>
        <source>Collapse all</source>
        <translation>Alle zuklappen</translation>
    </message>
    <message>
        <location line="+2"/>
        <source>Copy</source>
        <translation>Kopieren</translation>
    </message>
    <message>
        <location line="+10"/>
        <source>Expand this row and every row below it</source>
        <translation>Klappt diese Zeile und alle Zeilen darunter auf</translation>
    </message>
    <message>
        <location line="+2"/>
        <source>Collapse every row of the tree</source>
        <translation>Klappt alle Zeilen des Baums zu</translation>
    </message>
    <message>
        <location line="+2"/>
        <source>Copy this row and the rows below it as indented text</source>
        <translation>Kopiert diese Zeile und die Zeilen darunter als eingerückten Text</translation>
    </message>
</context>
<context>
    <name>ModelFileLoading</name>
    <message>
        <location filename="../app/ModelFileLoading.cpp" line="+17"/>
        <source>Loading %1...</source>
        <translation>%1 wird geladen...</translation>
    </message>
</context>
<context>
    <name>main</name>
    <message>
        <location filename="../app/main.cpp" line="+251"/>
        <source>Generating %1 display items...</source>
        <translation>%1 Anzeigeelemente werden erzeugt...</translation>
    </message>
    <message>
        <location filename="../app/SceneFile.cpp" line="+28"/>
        <source>Importing %1...</source>
        <translation>%1 wird importiert...</translation>
    </message>
    <message>
        <location line="+20"/>
        <source>All files (*)</source>
        <translation>Alle Dateien (*)</translation>
    </message>
    <message>
        <location line="+3"/>
        <source>3D scenes (%1)</source>
        <translation>3D-Szenen (%1)</translation>
    </message>
</context>
</TS>
