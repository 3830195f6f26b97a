<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de_DE">
<context>
    <name>Brennvik::DisplayItemTreeWidget</name>
    <message>
        <location filename="../debugmenucontent/treewidgets/DisplayItemTreeWidget.cpp" line="+33"/>
        <source>&amp;Select/deselect display item</source>
        <translation>Anzeigeelement &amp;auswählen/abwählen</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Select or deselect the display item</source>
        <translation>Wählt das Anzeigeelement aus oder hebt die Auswahl auf</translation>
    </message>
    <message>
        <location line="+3"/>
        <source>&amp;Delete display item</source>
        <translation>Anzeigeelement &amp;löschen</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Delete a display item</source>
        <translation>Löscht ein Anzeigeelement</translation>
    </message>
    <message>
        <location line="+3"/>
        <source>Make subtree invisible</source>
        <translation>Teilbaum unsichtbar machen</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Make recursively all items in the subtree invisible</source>
        <translation>Macht rekursiv alle Elemente des Teilbaums unsichtbar</translation>
    </message>
    <message>
        <location line="+3"/>
        <source>Make subtree visible</source>
        <translation>Teilbaum sichtbar machen</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Make recursively all items in the subtree visible</source>
        <translation>Macht rekursiv alle Elemente des Teilbaums sichtbar</translation>
    </message>
    <message>
        <location line="+110"/>
        <source>The display item no longer exists</source>
        <translation>Das Anzeigeelement existiert nicht mehr</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Visible</source>
        <translation>Sichtbar</translation>
    </message>
    <message>
        <location line="+0"/>
        <source>Not visible</source>
        <translation>Nicht sichtbar</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Selected</source>
        <translation>Ausgewählt</translation>
    </message>
    <message>
        <location line="+0"/>
        <source>Not selected</source>
        <translation>Nicht ausgewählt</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Hidden by an ancestor</source>
        <translation>Von einem übergeordneten Element ausgeblendet</translation>
    </message>
    <message>
        <location line="+0"/>
        <source>No ancestor hides it</source>
        <translation>Kein übergeordnetes Element blendet es aus</translation>
    </message>
</context>
<context>
    <name>Brennvik::DisplayModel2DDialog</name>
    <message>
        <location filename="../debugmenucontent/displaymodel2d/DisplayModel2DDialog.cpp" line="+46"/>
        <location line="+1"/>
        <source>Name</source>
        <translation>Name</translation>
    </message>
    <message>
        <location line="-1"/>
        <location line="+1"/>
        <source>Value</source>
        <translation>Wert</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Display items</source>
        <translation>Anzeigeelemente</translation>
    </message>
</context>
<context>
    <name>Brennvik::PropertyPane</name>
    <message>
        <location filename="../debugmenucontent/treewidgets/PropertyPaneCopy.cpp" line="+94"/>
        <source>Copy value</source>
        <translation>Wert kopieren</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Copy name and value</source>
        <translation>Name und Wert kopieren</translation>
    </message>
    <message>
        <location line="+2"/>
        <source>Copy all properties</source>
        <translation>Alle Eigenschaften kopieren</translation>
    </message>
</context>
<context>
    <name>DebugCloneDisplayModelDialogClass</name>
    <message>
        <location filename="../debugmenucontent/clonecomparison/DebugCloneDisplayModelDialog.ui" line="+14"/>
        <source>DisplayModelDialog</source>
        <translation>Anzeigemodell-Dialog</translation>
    </message>
    <message>
        <location line="+21"/>
        <source>Display Model</source>
        <translation>Anzeigemodell</translation>
    </message>
    <message>
        <location line="+10"/>
        <source>Cloned Display Model</source>
        <translation>Geklontes Anzeigemodell</translation>
    </message>
    <message>
        <location line="+23"/>
        <location line="+21"/>
        <source>1</source>
        <translation>1</translation>
    </message>
</context>
<context>
    <name>DisplayModel2DDialogClass</name>
    <message>
        <location filename="../debugmenucontent/displaymodel2d/DisplayModel2DDialog.ui" line="+14"/>
        <source>DisplayModel2DDialog</source>
        <translation>2D-Anzeigemodell-Dialog</translation>
    </message>
    <message>
        <location line="+30"/>
        <source>Update List</source>
        <translation>Liste aktualisieren</translation>
    </message>
    <message>
        <location line="+10"/>
        <source>Display items</source>
        <translation>Anzeigeelemente</translation>
    </message>
    <message>
        <location line="+25"/>
        <location line="+71"/>
        <location line="+59"/>
        <source>1</source>
        <translation>1</translation>
    </message>
    <message>
        <location line="-88"/>
        <source>Business object properties</source>
        <translation>Eigenschaften des Geschäftsobjekts</translation>
    </message>
    <message>
        <location line="+34"/>
        <location line="+59"/>
        <source>2</source>
        <translation>2</translation>
    </message>
    <message>
        <location line="-34"/>
        <source>Display item properties</source>
        <translation>Eigenschaften des Anzeigeelements</translation>
    </message>
</context>
<context>
    <name>DisplayModelDialogClass</name>
    <message>
        <location filename="../debugmenucontent/displaymodeldialog/DisplayModelDialog.ui" line="+14"/>
        <source>DisplayModelDialog</source>
        <translation>Anzeigemodell-Dialog</translation>
    </message>
    <message>
        <location line="+63"/>
        <source>Search Value:</source>
        <translation>Suchwert:</translation>
    </message>
    <message>
        <location line="+10"/>
        <source>Search Criteria:</source>
        <translation>Suchkriterium:</translation>
    </message>
    <message>
        <location line="+33"/>
        <source>Number of Display Items:</source>
        <translation>Anzahl der Anzeigeelemente:</translation>
    </message>
    <message>
        <location line="+16"/>
        <source>Update</source>
        <translation>Aktualisieren</translation>
    </message>
    <message>
        <location line="+7"/>
        <source>Find next</source>
        <translation>Weitersuchen</translation>
    </message>
    <message>
        <location line="+31"/>
        <source>Clone</source>
        <translation>Klon</translation>
    </message>
    <message>
        <location line="+10"/>
        <source>Show Clone in 3D View</source>
        <translation>Klon in der 3D-Ansicht zeigen</translation>
    </message>
    <message>
        <location line="+10"/>
        <source>Only compare mirrored item properties</source>
        <translation>Nur Eigenschaften gespiegelter Elemente vergleichen</translation>
    </message>
    <message>
        <location line="+27"/>
        <source>Business object properties</source>
        <translation>Eigenschaften des Geschäftsobjekts</translation>
    </message>
    <message>
        <location line="+32"/>
        <location line="+50"/>
        <location line="+25"/>
        <source>1</source>
        <translation>1</translation>
    </message>
    <message>
        <location line="-70"/>
        <location line="+50"/>
        <source>2</source>
        <translation>2</translation>
    </message>
    <message>
        <location line="-37"/>
        <source>Display item properties</source>
        <translation>Eigenschaften des Anzeigeelements</translation>
    </message>
    <message>
        <location filename="untracked_texts.cpp" line="+11"/>
        <source>Cloned display items</source>
        <translation>Geklonte Anzeigeelemente</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Cloned business object properties</source>
        <translation>Eigenschaften des geklonten Geschäftsobjekts</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Cloned display item properties</source>
        <translation>Eigenschaften des geklonten Anzeigeelements</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Name</source>
        <translation>Name</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Value</source>
        <translation>Wert</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Display items</source>
        <translation>Anzeigeelemente</translation>
    </message>
    <message>
        <location filename="../debugmenucontent/displaymodeldialog/NoMatchMark.cpp" line="+44"/>
        <source>no further match below the current row</source>
        <translation>keine weitere Übereinstimmung unterhalb der aktuellen Zeile</translation>
    </message>
</context>
</TS>
