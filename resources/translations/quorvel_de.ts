<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de" sourcelanguage="en">
<context>
    <name>Advice</name>
    <message>
        <source>It can be used here as soon as that program has let go of it.</source>
        <translation>Er kann hier benutzt werden, sobald jenes Programm ihn freigibt.</translation>
    </message>
    <message>
        <source>Close windows and programs that are not needed, or start this one again.</source>
        <translation>Schließen Sie Fenster und Programme, die nicht gebraucht werden, oder starten Sie dieses neu.</translation>
    </message>
    <message>
        <source>Install the udev rule %1 and plug the frame in again. Without a session at the screen, join the group %2 too.</source>
        <translation>Installieren Sie die udev-Regel %1 und stecken Sie den Rahmen neu ein. Ohne Sitzung am Bildschirm treten Sie auch der Gruppe %2 bei.</translation>
    </message>
    <message>
        <source>The udev rule %1 is there, but this system has no group %2. Make it with &quot;groupadd --system %2&quot;, join it and plug the frame in again.</source>
        <translation>Die udev-Regel %1 ist da, aber dieses System hat keine Gruppe %2. Legen Sie sie mit „groupadd --system %2“ an, treten Sie ihr bei und stecken Sie den Rahmen neu ein.</translation>
    </message>
    <message>
        <source>The udev rule %1 is there, but the node does not have its rights yet. Plug the frame in again.</source>
        <translation>Die udev-Regel %1 ist da, aber die Gerätedatei hat ihre Rechte noch nicht. Stecken Sie den Rahmen neu ein.</translation>
    </message>
    <message>
        <source>This user is in the group %1, but joined it after this session began. Log in again.</source>
        <translation>Dieser Benutzer ist in der Gruppe %1, trat ihr aber erst nach Beginn dieser Sitzung bei. Melden Sie sich neu an.</translation>
    </message>
    <message>
        <source>Join the group %1, then log in again.</source>
        <translation>Treten Sie der Gruppe %1 bei und melden Sie sich dann neu an.</translation>
    </message>
    <message>
        <source>A touch frame is at %1 but this user may not open it (%2).</source>
        <translation>An %1 ist ein Touchrahmen, aber dieser Benutzer darf ihn nicht öffnen (%2).</translation>
    </message>
    <message>
        <source>%1, perhaps a touch frame, cannot be opened (%2).</source>
        <translation>%1, vielleicht ein Touchrahmen, lässt sich nicht öffnen (%2).</translation>
    </message>
    <message>
        <source>A touch frame is at %1 but it cannot be opened (%2).</source>
        <translation>An %1 ist ein Touchrahmen, aber er lässt sich nicht öffnen (%2).</translation>
    </message>
    <message>
        <source>Unplug it and plug it in again.</source>
        <translation>Ziehen Sie ihn ab und stecken Sie ihn wieder ein.</translation>
    </message>
    <message>
        <source>The serial port %1 cannot be opened (%2).</source>
        <translation>Die serielle Schnittstelle %1 lässt sich nicht öffnen (%2).</translation>
    </message>
    <message>
        <source>A touch frame is there but cannot be read: this system has no room for another thread.</source>
        <translation>Ein Touchrahmen ist da, kann aber nicht gelesen werden: Dieses System hat keinen Platz für einen weiteren Thread.</translation>
    </message>
    <message>
        <source>End programs that are not needed. The frame is used as soon as there is room.</source>
        <translation>Beenden Sie Programme, die nicht gebraucht werden. Der Rahmen wird benutzt, sobald Platz ist.</translation>
    </message>
    <message>
        <source>A program that has ended left the file %1 behind, which keeps the serial port %2 closed.</source>
        <translation>Ein beendetes Programm hat die Datei %1 zurückgelassen, die die serielle Schnittstelle %2 versperrt.</translation>
    </message>
    <message>
        <source>Remove that file, as its owner %1 or as root.</source>
        <translation>Entfernen Sie diese Datei, als ihr Eigentümer %1 oder als root.</translation>
    </message>
    <message>
        <source>This user may not open the serial port %1: it is for its owner %2 alone.</source>
        <translation>Dieser Benutzer darf die serielle Schnittstelle %1 nicht öffnen: Sie ist allein für ihren Eigentümer %2 da.</translation>
    </message>
    <message>
        <source>Ask who looks after this machine for access.</source>
        <translation>Bitten Sie um Zugang, wer diesen Rechner betreut.</translation>
    </message>
    <message>
        <source>This user may not open the serial port %1.</source>
        <translation>Dieser Benutzer darf die serielle Schnittstelle %1 nicht öffnen.</translation>
    </message>
    <message>
        <source>There is no serial port %1.</source>
        <translation>Es gibt keine serielle Schnittstelle %1.</translation>
    </message>
    <message>
        <source>Check the cable and the name, such as ttyUSB0.</source>
        <translation>Prüfen Sie das Kabel und den Namen, etwa ttyUSB0.</translation>
    </message>
    <message>
        <source>The touch frame at %1 is in use by another program.</source>
        <translation>Der Touchrahmen an %1 wird von einem anderen Programm benutzt.</translation>
    </message>
    <message>
        <source>The touch frame at %1 is in use by process %2.</source>
        <translation>Der Touchrahmen an %1 wird vom Prozess %2 benutzt.</translation>
    </message>
    <message>
        <source>The touch frame at %1 is in use by %2 (process %3).</source>
        <translation>Der Touchrahmen an %1 wird von %2 (Prozess %3) benutzt.</translation>
    </message>
    <message>
        <source>Another program has %1 open without saying that it uses the frame.</source>
        <translation>Ein anderes Programm hat %1 offen, ohne zu sagen, dass es den Rahmen benutzt.</translation>
    </message>
    <message>
        <source>Process %2 has %1 open without saying that it uses the frame.</source>
        <translation>Der Prozess %2 hat %1 offen, ohne zu sagen, dass er den Rahmen benutzt.</translation>
    </message>
    <message>
        <source>%2 (process %3) has %1 open without saying that it uses the frame.</source>
        <translation>%2 (Prozess %3) hat %1 offen, ohne zu sagen, dass es den Rahmen benutzt.</translation>
    </message>
    <message>
        <source>End that program if answers get lost.</source>
        <translation>Beenden Sie jenes Programm, wenn Antworten verloren gehen.</translation>
    </message>
    <message>
        <source>The serial port %1 is in use by another program.</source>
        <translation>Die serielle Schnittstelle %1 wird von einem anderen Programm benutzt.</translation>
    </message>
    <message>
        <source>The serial port %1 is in use by process %2.</source>
        <translation>Die serielle Schnittstelle %1 wird vom Prozess %2 benutzt.</translation>
    </message>
    <message>
        <source>The serial port %1 is in use by %2 (process %3).</source>
        <translation>Die serielle Schnittstelle %1 wird von %2 (Prozess %3) benutzt.</translation>
    </message>
    <message>
        <source>This user may not open the serial port %1: it belongs to root alone.</source>
        <translation>Dieser Benutzer darf die serielle Schnittstelle %1 nicht öffnen: Sie gehört allein root.</translation>
    </message>
    <message>
        <source>The device manager (udev) has usually not set up such a port. Plug its adapter in again, run &quot;sudo udevadm trigger&quot; or restart this machine.</source>
        <translation>Meist hat die Geräteverwaltung (udev) eine solche Schnittstelle nicht eingerichtet. Stecken Sie den Adapter neu ein, rufen Sie „sudo udevadm trigger“ auf oder starten Sie diesen Rechner neu.</translation>
    </message>
</context>
<context>
    <name>CalEnd_dlg</name>
    <message>
        <source>MalvoTools</source>
        <translation>MalvoTools</translation>
    </message>
    <message>
        <source>Do you want to save the Calibration results ?</source>
        <translation>Möchten Sie die Kalibrierung speichern?</translation>
    </message>
    <message>
        <source>Saves the calibration</source>
        <translation>Speichert die Kalibrierung</translation>
    </message>
    <message>
        <source>Yes</source>
        <translation>Ja</translation>
    </message>
    <message>
        <source>Discards the calibration</source>
        <translation>Verwirft die Kalibrierung</translation>
    </message>
    <message>
        <source>No = 10</source>
        <translation>Nein = 10</translation>
    </message>
    <message>
        <source>Calibration error is too large.We recommend calibrate it again.</source>
        <translation>Der Kalibrierfehler ist zu groß. Wir empfehlen, neu zu kalibrieren.</translation>
    </message>
    <message>
        <source>Calibration accuracy: %1%.</source>
        <translation>Kalibriergenauigkeit: %1 %.</translation>
    </message>
    <message>
        <source>Calibration error is too large.We recommend calibrate it again. The touches were %1% off.</source>
        <translation>Der Kalibrierfehler ist zu groß. Wir empfehlen, neu zu kalibrieren. Die Berührungen lagen %1 % daneben.</translation>
    </message>
    <message>
        <source>No = %1</source>
        <translation>Nein = %1</translation>
    </message>
</context>
<context>
    <name>CalibrationCheck_dlg</name>
    <message>
        <source>Calibration check</source>
        <translation>Kalibrierung prüfen</translation>
    </message>
    <message>
        <source>Touch the crosses one after the other. ESC leaves.</source>
        <translation>Berühren Sie die Kreuze nacheinander. ESC bricht ab.</translation>
    </message>
    <message>
        <source>ESC leaves, Backspace takes the last touch back.</source>
        <translation>ESC bricht ab, die Rücktaste nimmt die letzte Berührung zurück.</translation>
    </message>
    <message>
        <source>Check &amp;again</source>
        <translation>&amp;Erneut prüfen</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Schließen</translation>
    </message>
    <message>
        <source>Touch the middle of cross %L1 of %L2.</source>
        <translation>Berühren Sie die Mitte von Kreuz %L1 von %L2.</translation>
    </message>
    <message>
        <source>Passed</source>
        <translation>Bestanden</translation>
    </message>
    <message>
        <source>Calibrate again</source>
        <translation>Neu kalibrieren</translation>
    </message>
    <message>
        <source>Cross %L1: %2 px off, which is %3 mm.</source>
        <translation>Kreuz %L1: %2 px daneben, das sind %3 mm.</translation>
    </message>
    <message>
        <source>Cross %L1: %2 px off.</source>
        <translation>Kreuz %L1: %2 px daneben.</translation>
    </message>
    <message>
        <source>%L1: %2 px, %3 mm</source>
        <translation>%L1: %2 px, %3 mm</translation>
    </message>
    <message>
        <source>%L1: %2 px</source>
        <translation>%L1: %2 px</translation>
    </message>
    <message>
        <source>Touches were %1 px (%2 mm) off on average, and at the most %3 px (%4 mm), at cross %L5.
Good are up to %6 px on average and %7 px at the most.</source>
        <translation>Berührungen lagen im Mittel %1 px (%2 mm) daneben und höchstens %3 px (%4 mm), bei Kreuz %L5.
Gut sind bis zu %6 px im Mittel und höchstens %7 px.</translation>
    </message>
    <message>
        <source>Touches were %1 px off on average, and at the most %2 px, at cross %L3.
Good are up to %4 px on average and %5 px at the most.</source>
        <translation>Berührungen lagen im Mittel %1 px daneben und höchstens %2 px, bei Kreuz %L3.
Gut sind bis zu %4 px im Mittel und höchstens %5 px.</translation>
    </message>
</context>
<context>
    <name>Calibration_Dlg</name>
    <message>
        <source>MalvoTools</source>
        <translation>MalvoTools</translation>
    </message>
    <message>
        <source>Calibration</source>
        <translation>Kalibrierung</translation>
    </message>
    <message>
        <source>Touch the four targets one after the other. ESC leaves.</source>
        <translation>Berühren Sie die vier Ziele nacheinander. ESC bricht ab.</translation>
    </message>
    <message>
        <source>The calibration ended because the screens have changed. It was discarded.</source>
        <translation>Die Kalibrierung endete, weil sich die Bildschirme geändert haben. Sie wurde verworfen.</translation>
    </message>
    <message>
        <source>press ESC to back</source>
        <translation>Zurück mit ESC</translation>
    </message>
    <message>
        <source>The calibration was discarded because nobody answered whether to save it. %1</source>
        <translation>Die Kalibrierung wurde verworfen, weil niemand beantwortet hat, ob sie gespeichert werden soll. %1</translation>
    </message>
    <message>
        <source>The calibration ended because the touch frame was lost.</source>
        <translation>Die Kalibrierung endete, weil die Verbindung zum Touchrahmen abriss.</translation>
    </message>
    <message>
        <source>The calibration ended with the link to the touch frame. It was discarded.</source>
        <translation>Die Kalibrierung endete mit der Verbindung zum Touchrahmen. Sie wurde verworfen.</translation>
    </message>
    <message>
        <source>The calibration ended because no target was touched for a while. It was discarded.</source>
        <translation>Die Kalibrierung endete, weil eine Weile kein Ziel berührt wurde. Sie wurde verworfen.</translation>
    </message>
    <message>
        <source>Calibration accuracy: %1%</source>
        <translation>Kalibriergenauigkeit: %1 %</translation>
    </message>
</context>
<context>
    <name>HelpAction</name>
    <message>
        <source>&amp;Help</source>
        <translation>&amp;Hilfe</translation>
    </message>
</context>
<context>
    <name>HelpWindow</name>
    <message>
        <source>Quorvel manual</source>
        <translation>Handbuch von Quorvel</translation>
    </message>
    <message>
        <source>Page of the manual</source>
        <translation>Seite des Handbuchs</translation>
    </message>
    <message>
        <source>Scroll up and down</source>
        <translation>Auf und ab blättern</translation>
    </message>
    <message>
        <source>Scroll to the side</source>
        <translation>Seitwärts blättern</translation>
    </message>
    <message>
        <source>&amp;Back</source>
        <translation>&amp;Zurück</translation>
    </message>
    <message>
        <source>&amp;Forward</source>
        <translation>&amp;Vorwärts</translation>
    </message>
    <message>
        <source>&amp;Contents</source>
        <translation>&amp;Inhalt</translation>
    </message>
    <message>
        <source>C&amp;lose</source>
        <translation>&amp;Schließen</translation>
    </message>
    <message>
        <source>The manual is not installed. The package quorvel-doc brings it.</source>
        <translation>Das Handbuch ist nicht installiert. Das Paket quorvel-doc bringt es mit.</translation>
    </message>
</context>
<context>
    <name>History</name>
    <message>
        <source>%1: cannot be written: %2</source>
        <translation>%1: kann nicht geschrieben werden: %2</translation>
    </message>
    <message>
        <source>%1: cannot be read: %2</source>
        <translation>%1: kann nicht gelesen werden: %2</translation>
    </message>
</context>
<context>
    <name>LightCheckAction</name>
    <message>
        <source>L&amp;ight check...</source>
        <translation>&amp;Lichtprüfung...</translation>
    </message>
</context>
<context>
    <name>LightCheck_dlg</name>
    <message>
        <source>Light check</source>
        <translation>Lichtprüfung</translation>
    </message>
    <message>
        <source>Not measured yet</source>
        <translation>Noch nicht gemessen</translation>
    </message>
    <message>
        <source>&amp;Name of the unit:</source>
        <translation>&amp;Name des Geräts:</translation>
    </message>
    <message>
        <source>Findings</source>
        <translation>Befunde</translation>
    </message>
    <message>
        <source>&amp;Curves</source>
        <translation>&amp;Kurven</translation>
    </message>
    <message>
        <source>&amp;All lights</source>
        <translation>&amp;Alle Lichtschranken</translation>
    </message>
    <message>
        <source>All lights</source>
        <translation>Alle Lichtschranken</translation>
    </message>
    <message>
        <source>&amp;Key</source>
        <translation>&amp;Legende</translation>
    </message>
    <message>
        <source>Letters: w weak, d dead, n noisy, s saturated, o switched off. Dark strips: touches are missed; light ones: they jump. Bars outside: stretches with one thing wrong.</source>
        <translation>Buchstaben: w schwach, d tot, n verrauscht, s übersteuert, o ausgeschaltet. Dunkle Streifen: Berührungen gehen verloren; helle: sie springen. Balken außen: Strecken mit einem gemeinsamen Fehler.</translation>
    </message>
    <message>
        <source>Curves: solid the level, dashed that of a healthy light, dotted the level then, dash-dotted the lowest that works; crosses: lights out of order.</source>
        <translation>Kurven: durchgezogen der Pegel, gestrichelt der einer gesunden Lichtschranke, gepunktet der damalige Pegel, strichpunktiert der niedrigste, der noch reicht; Kreuze: gestörte Lichtschranken.</translation>
    </message>
    <message>
        <source>The arrow keys go from light to light, in the picture of the frame and in the curves; Enter opens one in the light screen. In the curves + and - zoom, and 0 shows all.</source>
        <translation>Die Pfeiltasten gehen von Lichtschranke zu Lichtschranke, im Bild des Rahmens und in den Kurven; die Eingabetaste öffnet eine in der Lichteinstellung. In den Kurven vergrößern und verkleinern + und -, und 0 zeigt alles.</translation>
    </message>
    <message>
        <source>Progress of the measurement</source>
        <translation>Fortschritt der Messung</translation>
    </message>
    <message>
        <source>&amp;Follow</source>
        <translation>&amp;Fortlaufend</translation>
    </message>
    <message>
        <source>Go on measuring until it is stopped</source>
        <translation>Weitermessen, bis es gestoppt wird</translation>
    </message>
    <message>
        <source>&amp;Measure</source>
        <translation>&amp;Messen</translation>
    </message>
    <message>
        <source>&amp;Remember</source>
        <translation>Me&amp;rken</translation>
    </message>
    <message>
        <source>Keep this measurement as what is good for this unit</source>
        <translation>Diese Messung als den guten Zustand dieses Geräts aufbewahren</translation>
    </message>
    <message>
        <source>Compare &amp;with</source>
        <translation>Ver&amp;gleichen mit</translation>
    </message>
    <message>
        <source>Re&amp;port...</source>
        <translation>&amp;Bericht...</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Schließen</translation>
    </message>
    <message>
        <source>Scroll to the side</source>
        <translation>Seitwärts blättern</translation>
    </message>
    <message>
        <source>Scroll up and down</source>
        <translation>Auf und ab blättern</translation>
    </message>
    <message>
        <source>Curves of the levels</source>
        <translation>Kurven der Pegel</translation>
    </message>
    <message>
        <source>The touch frame is gone. Measuring begins anew when one is there.</source>
        <translation>Der Touchrahmen ist weg. Die Messung beginnt neu, sobald einer da ist.</translation>
    </message>
    <message>
        <source>&amp;Stop</source>
        <translation>&amp;Stopp</translation>
    </message>
    <message>
        <source>Curves of the levels. %1</source>
        <translation>Kurven der Pegel. %1</translation>
    </message>
    <message>
        <source>&amp;What was remembered last</source>
        <translation>&amp;Zuletzt gemerkt</translation>
    </message>
    <message>
        <source>A &amp;file...</source>
        <translation>&amp;Datei...</translation>
    </message>
    <message>
        <source>Compare with a file</source>
        <translation>Mit einer Datei vergleichen</translation>
    </message>
    <message>
        <source>Measurements (*.json *.csv)</source>
        <translation>Messungen (*.json *.csv)</translation>
    </message>
    <message>
        <source>&amp;Nothing</source>
        <translation>&amp;Nichts</translation>
    </message>
    <message>
        <source>Remembered. What is measured from now on can be compared with it.</source>
        <translation>Gemerkt. Was ab jetzt gemessen wird, lässt sich damit vergleichen.</translation>
    </message>
    <message>
        <source>Write a report</source>
        <translation>Bericht schreiben</translation>
    </message>
    <message>
        <source>Documents (*.pdf)</source>
        <translation>Dokumente (*.pdf)</translation>
    </message>
    <message>
        <source>Pages (*.html)</source>
        <translation>Seiten (*.html)</translation>
    </message>
    <message>
        <source>For programs (*.json)</source>
        <translation>Für Programme (*.json)</translation>
    </message>
    <message>
        <source>Tables (*.csv)</source>
        <translation>Tabellen (*.csv)</translation>
    </message>
    <message>
        <source>%1: a report is a file whose name ends with .pdf, .html, .json or .csv</source>
        <translation>%1: Ein Bericht ist eine Datei, deren Name auf .pdf, .html, .json oder .csv endet</translation>
    </message>
    <message>
        <source>%1 cannot be written: %2</source>
        <translation>%1 kann nicht geschrieben werden: %2</translation>
    </message>
    <message>
        <source>Written to %1.</source>
        <translation>Nach %1 geschrieben.</translation>
    </message>
    <message>
        <source>PASS</source>
        <translation>IN ORDNUNG</translation>
    </message>
    <message>
        <source>SERVICE NEEDED</source>
        <translation>WARTUNG NÖTIG</translation>
    </message>
    <message>
        <source>No touch frame is linked.</source>
        <translation>Kein Touchrahmen ist verbunden.</translation>
    </message>
    <message>
        <source>Measured %1</source>
        <translation>Gemessen %1</translation>
    </message>
    <message>
        <source>Unit %1, measured %2</source>
        <translation>Gerät %1, gemessen %2</translation>
    </message>
    <message>
        <source>Since %1 light %2 has changed most for the worse, by %3 % beside the others.</source>
        <translation>Seit %1 hat sich die Lichtschranke %2 am meisten verschlechtert, um %3 % gegenüber den anderen.</translation>
    </message>
    <message>
        <source>Views</source>
        <translation>Ansichten</translation>
    </message>
    <message>
        <source>Report...</source>
        <translation>Bericht...</translation>
    </message>
    <message numerus="yes">
        <source>Following the touch frame: %Ln scan(s) of each axis so far.</source>
        <translation>
            <numerusform>Folgt dem Touchrahmen: bisher %Ln Messung jeder Achse.</numerusform>
            <numerusform>Folgt dem Touchrahmen: bisher %Ln Messungen jeder Achse.</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>LightModel</name>
    <message>
        <source>%1 of light %2: %3</source>
        <translation>%1 der Lichtschranke %2: %3</translation>
    </message>
    <message>
        <source>Light</source>
        <translation>Lichtschranke</translation>
    </message>
    <message>
        <source>Verdict</source>
        <translation>Urteil</translation>
    </message>
    <message>
        <source>Level</source>
        <translation>Pegel</translation>
    </message>
    <message>
        <source>Healthy level</source>
        <translation>Gesunder Pegel</translation>
    </message>
    <message>
        <source>Noise</source>
        <translation>Rauschen</translation>
    </message>
    <message>
        <source>Change, %</source>
        <translation>Änderung, %</translation>
    </message>
</context>
<context>
    <name>LightSet_dlg</name>
    <message>
        <source>Dialog</source>
        <translation>Lichtschranken</translation>
    </message>
    <message>
        <source>ADCline Setting</source>
        <translation>ADC-Einstellungen</translation>
    </message>
    <message>
        <source>ADC range:</source>
        <translation>ADC-Bereich:</translation>
    </message>
    <message>
        <source>Edge ADC range: </source>
        <translation>ADC-Bereich Rand: </translation>
    </message>
    <message>
        <source>ADC threshold:</source>
        <translation>ADC-Schwelle:</translation>
    </message>
    <message>
        <source>Edge ADC threshold:</source>
        <translation>ADC-Schwelle Rand:</translation>
    </message>
    <message>
        <source>Min</source>
        <translation>Min</translation>
    </message>
    <message>
        <source>Max</source>
        <translation>Max</translation>
    </message>
    <message>
        <source>ADC range, Min</source>
        <translation>ADC-Bereich, Min</translation>
    </message>
    <message>
        <source>ADC range, Max</source>
        <translation>ADC-Bereich, Max</translation>
    </message>
    <message>
        <source>Edge ADC range, Min</source>
        <translation>ADC-Bereich Rand, Min</translation>
    </message>
    <message>
        <source>Edge ADC range, Max</source>
        <translation>ADC-Bereich Rand, Max</translation>
    </message>
    <message>
        <source>ADC threshold</source>
        <translation>ADC-Schwelle</translation>
    </message>
    <message>
        <source>Edge ADC threshold</source>
        <translation>ADC-Schwelle Rand</translation>
    </message>
    <message>
        <source>Default ADC settings</source>
        <translation>Standard: ADC-Einstellungen</translation>
    </message>
    <message>
        <source>Default</source>
        <translation>Standard</translation>
    </message>
    <message>
        <source>Set the ADC settings</source>
        <translation>Setzen: ADC-Einstellungen</translation>
    </message>
    <message>
        <source>Set</source>
        <translation>Setzen</translation>
    </message>
    <message>
        <source>Light Setting</source>
        <translation>Lichtschranken</translation>
    </message>
    <message>
        <source>Light Num:</source>
        <translation>Licht Nr.:</translation>
    </message>
    <message>
        <source>Light Num: axis of the chosen light, X or Y</source>
        <translation>Licht Nr.: Achse der gewählten Lichtschranke, X oder Y</translation>
    </message>
    <message>
        <source>Light Num: number of the chosen light</source>
        <translation>Licht Nr.: Nummer der gewählten Lichtschranke</translation>
    </message>
    <message>
        <source>Disable</source>
        <translation>Sperren</translation>
    </message>
    <message>
        <source>ADC:</source>
        <translation>ADC:</translation>
    </message>
    <message>
        <source>ADC value of the chosen light</source>
        <translation>ADC-Wert der gewählten Lichtschranke</translation>
    </message>
    <message>
        <source>Choose</source>
        <translation>Wählen</translation>
    </message>
    <message>
        <source>ORG:</source>
        <translation>ORG:</translation>
    </message>
    <message>
        <source>ORG value of the chosen light</source>
        <translation>ORG-Wert der gewählten Lichtschranke</translation>
    </message>
    <message>
        <source>AGC:</source>
        <translation>AGC:</translation>
    </message>
    <message>
        <source>AGC value of the chosen light</source>
        <translation>AGC-Wert der gewählten Lichtschranke</translation>
    </message>
    <message>
        <source>AGC offset of the chosen light</source>
        <translation>AGC-Versatz der gewählten Lichtschranke</translation>
    </message>
    <message>
        <source>signal intensity:</source>
        <translation>Signalstärke:</translation>
    </message>
    <message>
        <source>+ raises the signal intensity</source>
        <translation>+ erhöht die Signalstärke</translation>
    </message>
    <message>
        <source>+</source>
        <translation>+</translation>
    </message>
    <message>
        <source>- lowers the signal intensity</source>
        <translation>- verringert die Signalstärke</translation>
    </message>
    <message>
        <source>-</source>
        <translation>-</translation>
    </message>
    <message>
        <source>WARNING!

Please don&apos;t touch the screan, and use your mouse to operat this dialog！</source>
        <translation>WARNUNG!

Berühren Sie den Bildschirm nicht und bedienen Sie dieses Fenster mit der Maus!</translation>
    </message>
    <message>
        <source>Exit</source>
        <translation>Schließen</translation>
    </message>
    <message>
        <source>Num:%1  ADC:%2  AGC:%3</source>
        <translation>Nr.:%1  ADC:%2  AGC:%3</translation>
    </message>
    <message>
        <source>Enable</source>
        <translation>Nutzen</translation>
    </message>
    <message>
        <source>%1: enter a whole number from 0 to %2</source>
        <translation>%1: Geben Sie eine ganze Zahl von 0 bis %2 ein</translation>
    </message>
    <message>
        <source>The smallest ADC value is above the largest</source>
        <translation>Der kleinste ADC-Wert liegt über dem größten</translation>
    </message>
    <message>
        <source>The smallest ADC value at the edges is above the largest</source>
        <translation>Der kleinste ADC-Wert am Rand liegt über dem größten</translation>
    </message>
    <message>
        <source>The touch frame has no such light</source>
        <translation>Diese Lichtschranke hat der Touchrahmen nicht</translation>
    </message>
    <message>
        <source>No answer about light %1 %2</source>
        <translation>Keine Antwort zu Lichtschranke %1 %2</translation>
    </message>
    <message>
        <source>The touch frame has set other values</source>
        <translation>Der Touchrahmen hat andere Werte gesetzt</translation>
    </message>
    <message>
        <source>This waits until the light check has ended</source>
        <translation>Dies wartet, bis die Lichtprüfung beendet ist</translation>
    </message>
</context>
<context>
    <name>LightWall</name>
    <message>
        <source>The frame and its lights. %1</source>
        <translation>Der Rahmen und seine Lichtschranken. %1</translation>
    </message>
    <message>
        <source>The frame and its lights</source>
        <translation>Der Rahmen und seine Lichtschranken</translation>
    </message>
</context>
<context>
    <name>Link</name>
    <message>
        <source>The frame on USB that had taken over from the serial port %1 is gone. Open the port again to use it.</source>
        <translation>Der Rahmen an USB, der die serielle Schnittstelle %1 abgelöst hatte, ist weg. Öffnen Sie sie erneut, um sie zu benutzen.</translation>
    </message>
</context>
<context>
    <name>MainWindow</name>
    <message>
        <source>Quorvel</source>
        <translation>Quorvel</translation>
    </message>
    <message>
        <source>Calibration</source>
        <translation>Kalibrierung</translation>
    </message>
    <message>
        <source>Calibrate your touch device, make it more suitable for your screen.</source>
        <translation>Die Touch-Erfassung an den Bildschirm anpassen.</translation>
    </message>
    <message>
        <source>&amp;Calibration</source>
        <translation>&amp;Kalibrieren</translation>
    </message>
    <message>
        <source>Rotation</source>
        <translation>Drehung</translation>
    </message>
    <message>
        <source>Rotate your touch device,
make it more suitable for your
screen</source>
        <translation>Die Touch-Erfassung drehen,
bis sie zur Lage des
Bildschirms passt</translation>
    </message>
    <message>
        <source>&amp;Rotation</source>
        <translation>&amp;Drehen</translation>
    </message>
    <message>
        <source>Setting</source>
        <translation>Einstellungen</translation>
    </message>
    <message>
        <source>Set your touch device, make it more suitable for your custom.</source>
        <translation>Das Touchgerät nach Ihren Gewohnheiten einstellen.</translation>
    </message>
    <message>
        <source>Connect</source>
        <translation>Verbindung</translation>
    </message>
    <message>
        <source>Choose USB or UART mode, and set the TUIO options.</source>
        <translation>USB oder UART wählen und TUIO einstellen.</translation>
    </message>
    <message>
        <source>Resets the touch frame</source>
        <translation>Setzt den Touchrahmen zurück</translation>
    </message>
    <message>
        <source>Reset</source>
        <translation>Zurücksetzen</translation>
    </message>
    <message>
        <source>Shows the versions of the tool and of the touch frame</source>
        <translation>Zeigt die Versionen des Programms und des Touchrahmens</translation>
    </message>
    <message>
        <source>Have not linked equipment</source>
        <translation>Kein Gerät verbunden</translation>
    </message>
    <message>
        <source>&amp;What to do next</source>
        <translation>&amp;Nächster Schritt</translation>
    </message>
    <message>
        <source>&amp;Menu</source>
        <translation>&amp;Menü</translation>
    </message>
    <message>
        <source>Quorvel v%1</source>
        <translation>Quorvel v%1</translation>
    </message>
    <message>
        <source>Quorvel (simulated touch frame)</source>
        <translation>Quorvel (simulierter Touchrahmen)</translation>
    </message>
    <message>
        <source>&amp;Setting</source>
        <translation>&amp;Einstellungen</translation>
    </message>
    <message>
        <source>S&amp;moothing</source>
        <translation>&amp;Glättung</translation>
    </message>
    <message>
        <source>&amp;Connect</source>
        <translation>&amp;Verbindung</translation>
    </message>
    <message>
        <source>Already link equipment</source>
        <translation>Gerät verbunden</translation>
    </message>
    <message>
        <source>Reset the device</source>
        <translation>Das Gerät zurücksetzen</translation>
    </message>
</context>
<context>
    <name>PlottedCurves</name>
    <message>
        <source>Lights of X</source>
        <translation>Lichtschranken von X</translation>
    </message>
    <message>
        <source>Lights of Y</source>
        <translation>Lichtschranken von Y</translation>
    </message>
    <message>
        <source>Level</source>
        <translation>Pegel</translation>
    </message>
    <message>
        <source>Change, %</source>
        <translation>Änderung, %</translation>
    </message>
</context>
<context>
    <name>PluginFolder</name>
    <message>
        <source>%1 cannot be followed; remove this link</source>
        <translation>%1 kann nicht verfolgt werden; entfernen Sie diese Verknüpfung</translation>
    </message>
    <message>
        <source>it holds more than %1 files; remove what is no plug-in</source>
        <translation>er enthält mehr als %1 Dateien; entfernen Sie, was kein Plug-in ist</translation>
    </message>
    <message>
        <source>%1 cannot be read (%2)</source>
        <translation>%1 kann nicht gelesen werden (%2)</translation>
    </message>
    <message>
        <source>%1 belongs to user %2; &quot;chown root&quot; would let it in</source>
        <translation>%1 gehört dem Benutzer %2; „chown root“ ließe es zu</translation>
    </message>
    <message>
        <source>everybody can write to %1; &quot;chmod go-w&quot; would let it in</source>
        <translation>jeder kann %1 schreiben; „chmod go-w“ ließe es zu</translation>
    </message>
    <message>
        <source>group %1 can write to %2; &quot;chmod go-w&quot; would let it in</source>
        <translation>die Gruppe %1 kann %2 schreiben; „chmod go-w“ ließe es zu</translation>
    </message>
    <message>
        <source>the plug-in folder %1 is left out: %2</source>
        <translation>der Plug-in-Ordner %1 bleibt außen vor: %2</translation>
    </message>
</context>
<context>
    <name>PortChoice</name>
    <message>
        <source>%1: %2</source>
        <comment>port, adapter</comment>
        <translation>%1: %2</translation>
    </message>
</context>
<context>
    <name>Posix_QextSerialPort</name>
    <message>
        <source>The serial port %1 is open already. Close it first.</source>
        <translation>Die serielle Schnittstelle %1 ist bereits offen. Schließen Sie sie zuerst.</translation>
    </message>
    <message>
        <source>No serial port is chosen. Enter a name such as ttyUSB0.</source>
        <translation>Es ist keine serielle Schnittstelle gewählt. Geben Sie einen Namen ein, etwa ttyUSB0.</translation>
    </message>
    <message>
        <source>There is no baud rate number %1. Choose 0 (50 baud) to 21 (256000 baud).</source>
        <translation>Es gibt keine Baudrate Nummer %1. Wählen Sie 0 (50 Baud) bis 21 (256000 Baud).</translation>
    </message>
    <message>
        <source>There is no data bits setting number %1. Choose 0 (5 bits) to 3 (8 bits).</source>
        <translation>Es gibt keine Datenbit-Einstellung Nummer %1. Wählen Sie 0 (5 Bits) bis 3 (8 Bits).</translation>
    </message>
    <message>
        <source>There is no parity number %1. Choose 0 (none) to 4 (space).</source>
        <translation>Es gibt keine Parität Nummer %1. Wählen Sie 0 (keine) bis 4 (Space).</translation>
    </message>
    <message>
        <source>1.5 stop bits cannot be set here. Choose 1 or 2 stop bits.</source>
        <translation>1,5 Stoppbits lassen sich hier nicht einstellen. Wählen Sie 1 oder 2 Stoppbits.</translation>
    </message>
    <message>
        <source>There is no stop bits setting number %1. Choose 0 (1 bit) or 2 (2 bits).</source>
        <translation>Es gibt keine Stoppbit-Einstellung Nummer %1. Wählen Sie 0 (1 Bit) oder 2 (2 Bits).</translation>
    </message>
    <message>
        <source>With 5 data bits a line makes 1.5 stop bits of 2. Choose 1 stop bit or more data bits.</source>
        <translation>Bei 5 Datenbits macht eine Leitung aus 2 Stoppbits 1,5. Wählen Sie 1 Stoppbit oder mehr Datenbits.</translation>
    </message>
    <message>
        <source>There is no flow control number %1. Choose 0 (off), 1 (hardware) or 2 (XON/XOFF).</source>
        <translation>Es gibt keine Flusskontrolle Nummer %1. Wählen Sie 0 (aus), 1 (Hardware) oder 2 (XON/XOFF).</translation>
    </message>
    <message>
        <source>A time-out of %1 ms cannot be. Choose 0 ms or more.</source>
        <translation>Eine Wartezeit von %1 ms ist nicht möglich. Wählen Sie 0 ms oder mehr.</translation>
    </message>
    <message>
        <source>The serial port is not open.</source>
        <translation>Die serielle Schnittstelle ist nicht offen.</translation>
    </message>
    <message>
        <source>The line at %1 takes no more bytes. Check the cable and the flow control.</source>
        <translation>Die Leitung an %1 nimmt keine Bytes mehr an. Prüfen Sie das Kabel und die Flusskontrolle.</translation>
    </message>
    <message>
        <source>The line at %1 does not take the bytes that wait, so its settings stay. Check the cable and the flow control.</source>
        <translation>Die Leitung an %1 nimmt die wartenden Bytes nicht an, daher bleiben ihre Einstellungen. Prüfen Sie das Kabel und die Flusskontrolle.</translation>
    </message>
    <message>
        <source>%1 runs at %2 baud instead of %3. Choose another rate.</source>
        <translation>%1 läuft mit %2 statt %3 Baud. Wählen Sie eine andere Rate.</translation>
    </message>
    <message>
        <source>%1 does not do %2 baud. Choose another rate.</source>
        <translation>%1 kann %2 Baud nicht. Wählen Sie eine andere Rate.</translation>
    </message>
    <message>
        <source>%1 does not do %2 data bits. Choose another number.</source>
        <translation>%1 kann %2 Datenbits nicht. Wählen Sie eine andere Anzahl.</translation>
    </message>
    <message>
        <source>%1 does not do this parity. Choose another parity.</source>
        <translation>%1 kann diese Parität nicht. Wählen Sie eine andere.</translation>
    </message>
    <message>
        <source>%1 does not do this number of stop bits. Choose another number.</source>
        <translation>%1 kann diese Anzahl Stoppbits nicht. Wählen Sie eine andere.</translation>
    </message>
    <message>
        <source>%1 does not do this flow control. Choose another one.</source>
        <translation>%1 kann diese Flusskontrolle nicht. Wählen Sie eine andere.</translation>
    </message>
    <message>
        <source>%1 is not a serial port. Choose a name such as ttyUSB0.</source>
        <translation>%1 ist keine serielle Schnittstelle. Wählen Sie einen Namen, etwa ttyUSB0.</translation>
    </message>
    <message>
        <source>The serial port %1 cannot be opened: %2.</source>
        <translation>Die serielle Schnittstelle %1 kann nicht geöffnet werden: %2.</translation>
    </message>
    <message>
        <source>The serial port %1 is gone. Plug it in and open it again.</source>
        <translation>Die serielle Schnittstelle %1 ist weg. Stecken Sie sie ein und öffnen Sie sie erneut.</translation>
    </message>
</context>
<context>
    <name>QMessageBox</name>
    <message>
        <source>Quorvel</source>
        <translation>Quorvel</translation>
    </message>
</context>
<context>
    <name>QtSingleApplication</name>
    <message>
        <source>A second start of this program cannot be noticed. Set XDG_RUNTIME_DIR to a folder that only this user can enter.</source>
        <translation>Ein zweiter Start dieses Programms kann nicht bemerkt werden. Setzen Sie XDG_RUNTIME_DIR auf einen Ordner, den nur dieser Benutzer betreten kann.</translation>
    </message>
    <message>
        <source>it cannot be used (%1)</source>
        <translation>er lässt sich nicht benutzen (%1)</translation>
    </message>
    <message>
        <source>it is not a folder</source>
        <translation>es ist kein Ordner</translation>
    </message>
    <message>
        <source>it belongs to another user</source>
        <translation>er gehört einem anderen Benutzer</translation>
    </message>
    <message>
        <source>others can enter it; &quot;chmod 700&quot; it</source>
        <translation>andere können ihn betreten; „chmod 700“ hilft</translation>
    </message>
    <message>
        <source>its name is too long</source>
        <translation>sein Name ist zu lang</translation>
    </message>
    <message>
        <source>%1 is no place to find the running program in: %2.</source>
        <translation>%1 ist kein Ort, an dem sich das laufende Programm finden lässt: %2.</translation>
    </message>
    <message>
        <source>%1 cannot be written, so a second start of this program is not noticed. Make room and check who may write there.</source>
        <translation>%1 kann nicht geschrieben werden, daher wird ein zweiter Start dieses Programms nicht bemerkt. Schaffen Sie Platz und prüfen Sie, wer dort schreiben darf.</translation>
    </message>
    <message>
        <source>%1 cannot be made (%2), so a second start of this program ends without a word.</source>
        <translation>%1 kann nicht angelegt werden (%2), daher endet ein zweiter Start dieses Programms ohne ein Wort.</translation>
    </message>
</context>
<context>
    <name>Reader</name>
    <message>
        <source>%1: cannot be read: %2</source>
        <translation>%1: kann nicht gelesen werden: %2</translation>
    </message>
    <message>
        <source>%1: is no file, and so no recording</source>
        <translation>%1: ist keine Datei und daher keine Aufzeichnung</translation>
    </message>
    <message>
        <source>%1: is larger than %2 MiB, which no recording is</source>
        <translation>%1: ist größer als %2 MiB, was keine Aufzeichnung ist</translation>
    </message>
    <message>
        <source>%1: is no capture file: %2</source>
        <translation>%1: ist keine Mitschnittdatei: %2</translation>
    </message>
    <message>
        <source>%1: is a capture file of something else: its link type is %2, that of a recording %3</source>
        <translation>%1: ist ein Mitschnitt von etwas anderem: Sein Verbindungstyp ist %2, der einer Aufzeichnung %3</translation>
    </message>
    <message>
        <source>%1: packet %2 tells of no traffic with a touch frame, or in a newer format</source>
        <translation>%1: Paket %2 enthält keinen Verkehr mit einem Touchrahmen oder ein neueres Format</translation>
    </message>
    <message>
        <source>%1: behind packet %2: %3</source>
        <translation>%1: nach Paket %2: %3</translation>
    </message>
</context>
<context>
    <name>RecordAction</name>
    <message>
        <source>Recording into %1, but that cannot be written: %2.</source>
        <translation>Aufzeichnung nach %1, aber dorthin kann nicht geschrieben werden: %2.</translation>
    </message>
    <message numerus="yes">
        <source>Recording into %1, where %Ln packet(s) are missing.</source>
        <translation>
            <numerusform>Aufzeichnung nach %1; %Ln Paket fehlt darin.</numerusform>
            <numerusform>Aufzeichnung nach %1; %Ln Pakete fehlen darin.</numerusform>
        </translation>
    </message>
    <message>
        <source>Recording into %1.</source>
        <translation>Aufzeichnung nach %1.</translation>
    </message>
    <message>
        <source>Record what travels to and from the touch frame</source>
        <translation>Den Verkehr mit dem Touchrahmen aufzeichnen</translation>
    </message>
    <message>
        <source>Recordings (*.pcap)</source>
        <translation>Aufzeichnungen (*.pcap)</translation>
    </message>
    <message>
        <source>No recording</source>
        <translation>Keine Aufzeichnung</translation>
    </message>
    <message>
        <source>Stop &amp;recording</source>
        <translation>Aufzeichnung &amp;beenden</translation>
    </message>
    <message>
        <source>&amp;Record...</source>
        <translation>Auf&amp;zeichnen...</translation>
    </message>
</context>
<context>
    <name>Rotation_dlg</name>
    <message>
        <source>Quorvel</source>
        <translation>Quorvel</translation>
    </message>
    <message>
        <source>Rotation</source>
        <translation>Drehung</translation>
    </message>
    <message>
        <source>Your current rotation is:</source>
        <translation>Aktuelle Drehung:</translation>
    </message>
    <message>
        <source>0 degrees</source>
        <translation>0 Grad</translation>
    </message>
    <message>
        <source>0</source>
        <translation>0</translation>
    </message>
    <message>
        <source>90 degrees</source>
        <translation>90 Grad</translation>
    </message>
    <message>
        <source>90</source>
        <translation>90</translation>
    </message>
    <message>
        <source>180 degrees</source>
        <translation>180 Grad</translation>
    </message>
    <message>
        <source>180</source>
        <translation>180</translation>
    </message>
    <message>
        <source>270 degrees</source>
        <translation>270 Grad</translation>
    </message>
    <message>
        <source>270</source>
        <translation>270</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>The touch frame has not answered since %1.</source>
        <translation>Der Touchrahmen hat seit %1 nicht geantwortet.</translation>
    </message>
</context>
<context>
    <name>ScanWatch</name>
    <message>
        <source>No answer from the touch frame</source>
        <translation>Keine Antwort vom Touchrahmen</translation>
    </message>
    <message>
        <source>Scan incomplete: page %1 of %2</source>
        <translation>Messung unvollständig: Seite %1 von %2</translation>
    </message>
</context>
<context>
    <name>Scrolled</name>
    <message>
        <source>Scroll to the side</source>
        <translation>Seitwärts blättern</translation>
    </message>
    <message>
        <source>Scroll up and down</source>
        <translation>Auf und ab blättern</translation>
    </message>
</context>
<context>
    <name>Setting_dlg</name>
    <message>
        <source>MalvoTools</source>
        <translation>MalvoTools</translation>
    </message>
    <message>
        <source>Usage and environment</source>
        <translation>Verwendung und Umgebung</translation>
    </message>
    <message>
        <source>Use</source>
        <translation>Nutzung</translation>
    </message>
    <message>
        <source>This equipment is mainly used for:</source>
        <translation>Das Gerät wird vor allem genutzt zum:</translation>
    </message>
    <message>
        <source>Operate</source>
        <translation>Bedienen</translation>
    </message>
    <message>
        <source>Write</source>
        <translation>Schreiben</translation>
    </message>
    <message>
        <source>Percussion</source>
        <translation>Antippen</translation>
    </message>
    <message>
        <source>Multipoint</source>
        <translation>Mehrfachtippen</translation>
    </message>
    <message>
        <source>Current use</source>
        <translation>Gewählte Nutzung</translation>
    </message>
    <message>
        <source>Environment</source>
        <translation>Umgebung</translation>
    </message>
    <message>
        <source>The environment around you is:</source>
        <translation>Die Umgebung des Geräts ist:</translation>
    </message>
    <message>
        <source>Indoor</source>
        <translation>Innenraum</translation>
    </message>
    <message>
        <source>Rain</source>
        <translation>Regen</translation>
    </message>
    <message>
        <source>Sunshine</source>
        <translation>Sonne</translation>
    </message>
    <message>
        <source>Shock</source>
        <translation>Erschütterung</translation>
    </message>
    <message>
        <source>Current environment</source>
        <translation>Gewählte Umgebung</translation>
    </message>
    <message>
        <source>Advanced settings</source>
        <translation>Erweiterte Einstellungen</translation>
    </message>
    <message>
        <source>Advance</source>
        <translation>Erweitert</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Apply</source>
        <translation>Anwenden</translation>
    </message>
</context>
<context>
    <name>StatusLine</name>
    <message>
        <source>&amp;Details</source>
        <translation>De&amp;tails</translation>
    </message>
    <message>
        <source>&amp;What to do next</source>
        <translation>&amp;Nächster Schritt</translation>
    </message>
    <message>
        <source>Details</source>
        <translation>Details</translation>
    </message>
    <message>
        <source>What to do next</source>
        <translation>Nächster Schritt</translation>
    </message>
    <message>
        <source>Quorvel: %1</source>
        <translation>Quorvel: %1</translation>
    </message>
    <message>
        <source>Quorvel: a touch frame is linked</source>
        <translation>Quorvel: Ein Touchrahmen ist verbunden</translation>
    </message>
    <message>
        <source>Quorvel: no touch frame is linked</source>
        <translation>Quorvel: Kein Touchrahmen ist verbunden</translation>
    </message>
    <message>
        <source>Linked by USB.</source>
        <translation>Über USB verbunden.</translation>
    </message>
    <message>
        <source>Linked by USB, at %1.</source>
        <translation>Über USB verbunden, an %1.</translation>
    </message>
    <message>
        <source>Linked over the serial port %1.</source>
        <translation>Über die serielle Schnittstelle %1 verbunden.</translation>
    </message>
</context>
<context>
    <name>SupportFileAction</name>
    <message>
        <source>Support &amp;file...</source>
        <translation>Support&amp;datei...</translation>
    </message>
    <message>
        <source>screen %1: %2 x %3 at %4, %5; scale %6</source>
        <translation>Bildschirm %1: %2 x %3 bei %4, %5; Skalierung %6</translation>
    </message>
    <message>
        <source>desktop: %1 x %2, by %3</source>
        <translation>Desktop: %1 x %2, durch %3</translation>
    </message>
</context>
<context>
    <name>SupportFile_dlg</name>
    <message>
        <source>Support file</source>
        <translation>Supportdatei</translation>
    </message>
    <message>
        <source>These files are written when you save them, and nothing else is. Names of users and of the machine have been taken out; look through them before you pass them on.</source>
        <translation>Beim Speichern werden diese Dateien geschrieben, sonst nichts. Namen von Benutzern und des Rechners sind entfernt; sehen Sie die Dateien durch, bevor Sie sie weitergeben.</translation>
    </message>
    <message>
        <source>Files</source>
        <translation>Dateien</translation>
    </message>
    <message>
        <source>Content</source>
        <translation>Inhalt</translation>
    </message>
    <message>
        <source>&amp;Save...</source>
        <translation>&amp;Speichern...</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Schließen</translation>
    </message>
    <message>
        <source>Written to %1.</source>
        <translation>Nach %1 geschrieben.</translation>
    </message>
    <message>
        <source>Save the support file</source>
        <translation>Supportdatei speichern</translation>
    </message>
    <message>
        <source>Archives (*.zip)</source>
        <translation>Archive (*.zip)</translation>
    </message>
</context>
<context>
    <name>Tray</name>
    <message>
        <source>Show</source>
        <translation>Anzeigen</translation>
    </message>
    <message>
        <source>Exit</source>
        <translation>Beenden</translation>
    </message>
    <message>
        <source>This desktop has no tray to hide in. Start quorvel again to show its window, or quorvel -close to end it.</source>
        <translation>Dieser Desktop hat keinen Infobereich, in den sich das Programm zurückziehen könnte. Starten Sie quorvel erneut, um das Fenster zu zeigen, oder quorvel -close, um das Programm zu beenden.</translation>
    </message>
    <message>
        <source>Quorvel goes on</source>
        <translation>Quorvel läuft weiter</translation>
    </message>
    <message>
        <source>Show the window</source>
        <translation>Fenster zeigen</translation>
    </message>
    <message>
        <source>End Quorvel</source>
        <translation>Quorvel beenden</translation>
    </message>
</context>
<context>
    <name>TryOut_dlg</name>
    <message>
        <source>Try out gestures</source>
        <translation>Gesten ausprobieren</translation>
    </message>
    <message>
        <source>Field for gestures</source>
        <translation>Feld für Gesten</translation>
    </message>
    <message>
        <source>Press and hold, click twice, drag or turn the wheel here, with a finger or a mouse.</source>
        <translation>Halten, doppelklicken, ziehen oder rollen Sie hier, mit dem Finger oder der Maus.</translation>
    </message>
    <message>
        <source>Gestures before the last one</source>
        <translation>Gesten vor der letzten</translation>
    </message>
    <message>
        <source>C&amp;lear</source>
        <translation>&amp;Leeren</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Schließen</translation>
    </message>
    <message>
        <source>Wheel: less than a step in %L1 ms</source>
        <translation>Mausrad: weniger als ein Schritt in %L1 ms</translation>
    </message>
    <message numerus="yes">
        <source>Wheel: %Ln step(s) to the left in %L1 ms</source>
        <translation>
            <numerusform>Mausrad: %Ln Schritt nach links in %L1 ms</numerusform>
            <numerusform>Mausrad: %Ln Schritte nach links in %L1 ms</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>Wheel: %Ln step(s) to the right in %L1 ms</source>
        <translation>
            <numerusform>Mausrad: %Ln Schritt nach rechts in %L1 ms</numerusform>
            <numerusform>Mausrad: %Ln Schritte nach rechts in %L1 ms</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>Wheel: %Ln step(s) up in %L1 ms</source>
        <translation>
            <numerusform>Mausrad: %Ln Schritt nach oben in %L1 ms</numerusform>
            <numerusform>Mausrad: %Ln Schritte nach oben in %L1 ms</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>Wheel: %Ln step(s) down in %L1 ms</source>
        <translation>
            <numerusform>Mausrad: %Ln Schritt nach unten in %L1 ms</numerusform>
            <numerusform>Mausrad: %Ln Schritte nach unten in %L1 ms</numerusform>
        </translation>
    </message>
    <message>
        <source>On this desktop two clicks within %L1 ms are a double click, two taps also within %L2 px; what is down for %L3 ms is held, and what moves %L4 px is dragged.</source>
        <translation>Hier sind zwei Klicks innerhalb von %L1 ms ein Doppelklick, zweimal Tippen auch nur innerhalb von %L2 px; was %L3 ms gedrückt bleibt, wird gehalten, und was sich um %L4 px bewegt, gezogen.</translation>
    </message>
    <message>
        <source>Tap: down for %L1 ms, moved %L2 px</source>
        <translation>Tippen: %L1 ms lang, %L2 px bewegt</translation>
    </message>
    <message>
        <source>Click: down for %L1 ms, moved %L2 px</source>
        <translation>Klick: %L1 ms lang, %L2 px bewegt</translation>
    </message>
    <message>
        <source>Tap %L1 ms after the one before and %L2 px from it: no double tap</source>
        <translation>Tippen %L1 ms nach dem vorigen und %L2 px davon: kein doppeltes Tippen</translation>
    </message>
    <message>
        <source>Click %L1 ms after the one before and %L2 px from it: no double click</source>
        <translation>Klick %L1 ms nach dem vorigen und %L2 px davon: kein Doppelklick</translation>
    </message>
    <message>
        <source>Double tap: %L1 ms and %L2 px apart</source>
        <translation>Doppeltes Tippen: %L1 ms und %L2 px auseinander</translation>
    </message>
    <message>
        <source>Double click: %L1 ms and %L2 px apart</source>
        <translation>Doppelklick: %L1 ms und %L2 px auseinander</translation>
    </message>
    <message>
        <source>Touched for %L1 ms, moved %L2 px: no right click</source>
        <translation>%L1 ms berührt, %L2 px bewegt: kein Rechtsklick</translation>
    </message>
    <message>
        <source>Pressed for %L1 ms, moved %L2 px: no right click</source>
        <translation>%L1 ms gedrückt, %L2 px bewegt: kein Rechtsklick</translation>
    </message>
    <message>
        <source>Right click after %L1 ms, moved %L2 px</source>
        <translation>Rechtsklick nach %L1 ms, %L2 px bewegt</translation>
    </message>
    <message>
        <source>Right click: down for %L1 ms, moved %L2 px</source>
        <translation>Rechtsklick: %L1 ms lang, %L2 px bewegt</translation>
    </message>
    <message>
        <source>Drag by touch of %L1 px in %L2 ms</source>
        <translation>Mit dem Finger um %L1 px gezogen in %L2 ms</translation>
    </message>
    <message>
        <source>Drag of %L1 px in %L2 ms</source>
        <translation>Um %L1 px gezogen in %L2 ms</translation>
    </message>
</context>
<context>
    <name>Version_Dlg</name>
    <message>
        <source>Quorvel</source>
        <translation>Quorvel</translation>
    </message>
    <message>
        <source>Versions</source>
        <translation>Versionen</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>Device version:</source>
        <translation>Geräteversion:</translation>
    </message>
    <message>
        <source>Hardware version:</source>
        <translation>Hardwareversion:</translation>
    </message>
    <message>
        <source>Backs up for a firmware update and closes the tool</source>
        <translation>Legt Sicherungen für ein Firmware-Update an und schließt das Programm</translation>
    </message>
    <message>
        <source>Update</source>
        <translation>Update</translation>
    </message>
    <message>
        <source>Service version: %1</source>
        <translation>Programm: %1</translation>
    </message>
    <message>
        <source>Device version: %1.%2.%3.%4</source>
        <translation>Gerät: %1.%2.%3.%4</translation>
    </message>
    <message>
        <source>Hardware: %1 - %2</source>
        <translation>Hardware: %1 - %2</translation>
    </message>
    <message>
        <source>SID: %1 - %2</source>
        <translation>SID: %1 - %2</translation>
    </message>
    <message>
        <source>PID: %1 - %2</source>
        <comment>family, date and number</comment>
        <translation>PID: %1 - %2</translation>
    </message>
</context>
<context>
    <name>WindowMenu</name>
    <message>
        <source>&amp;Try out gestures</source>
        <translation>Gesten &amp;ausprobieren</translation>
    </message>
    <message>
        <source>Check c&amp;alibration</source>
        <translation>&amp;Kalibrierung prüfen</translation>
    </message>
</context>
<context>
    <name>Writer</name>
    <message>
        <source>%1: is a symbolic link, which a recording does not follow: name the file itself</source>
        <translation>%1: ist eine symbolische Verknüpfung, der eine Aufzeichnung nicht folgt: Nennen Sie die Datei selbst</translation>
    </message>
    <message>
        <source>%1: cannot be written: %2</source>
        <translation>%1: kann nicht geschrieben werden: %2</translation>
    </message>
    <message>
        <source>%1: is no file: choose another name</source>
        <translation>%1: ist keine Datei: Wählen Sie einen anderen Namen</translation>
    </message>
    <message>
        <source>%1: another program is recording into it: choose another name</source>
        <translation>%1: Ein anderes Programm zeichnet dorthin auf: Wählen Sie einen anderen Namen</translation>
    </message>
    <message>
        <source>%1: exists and is no recording: choose another name</source>
        <translation>%1: besteht schon und ist keine Aufzeichnung: Wählen Sie einen anderen Namen</translation>
    </message>
    <message>
        <source>a recording has at most %1 MiB</source>
        <translation>eine Aufzeichnung hat höchstens %1 MiB</translation>
    </message>
</context>
<context>
    <name>advconnect_dlg</name>
    <message>
        <source>Advance Connect Setting</source>
        <translation>Weitere Verbindungseinstellungen</translation>
    </message>
    <message>
        <source>TUIO</source>
        <translation>TUIO</translation>
    </message>
    <message>
        <source>Socket:</source>
        <translation>Socket:</translation>
    </message>
    <message>
        <source>UDP</source>
        <translation>UDP</translation>
    </message>
    <message>
        <source>TCP</source>
        <translation>TCP</translation>
    </message>
    <message>
        <source>TUIO Version:</source>
        <translation>TUIO-Version:</translation>
    </message>
    <message>
        <source>TUIO 2.0</source>
        <translation>TUIO 2.0</translation>
    </message>
    <message>
        <source>TUIO 1.1</source>
        <translation>TUIO 1.1</translation>
    </message>
    <message>
        <source>UART</source>
        <translation>UART</translation>
    </message>
    <message>
        <source>&amp;OK</source>
        <translation>&amp;OK</translation>
    </message>
    <message>
        <source>&amp;Cancel</source>
        <translation>&amp;Abbrechen</translation>
    </message>
</context>
<context>
    <name>advset_dlg</name>
    <message>
        <source>MalvoTools</source>
        <translation>MalvoTools</translation>
    </message>
    <message>
        <source>Diagnostics</source>
        <translation>Diagnose</translation>
    </message>
    <message>
        <source>Test the signals</source>
        <translation>Test der Signale</translation>
    </message>
    <message>
        <source>Test</source>
        <translation>Test</translation>
    </message>
    <message>
        <source>Light Setting</source>
        <translation>Lichtschranken</translation>
    </message>
    <message>
        <source>Exit</source>
        <translation>Schließen</translation>
    </message>
</context>
<context>
    <name>bundle::Archive</name>
    <message>
        <source>%1 cannot be written: %2. Choose another place.</source>
        <translation>%1 kann nicht geschrieben werden: %2. Wählen Sie einen anderen Ort.</translation>
    </message>
    <message>
        <source>%1 exists and is no support file. Choose another name.</source>
        <translation>%1 besteht schon und ist keine Supportdatei. Wählen Sie einen anderen Namen.</translation>
    </message>
    <message>
        <source>The support file cannot be made: %1.</source>
        <translation>Die Supportdatei kann nicht erstellt werden: %1.</translation>
    </message>
</context>
<context>
    <name>bundle::Contents</name>
    <message>
        <source>frame: %1:%2, release %3</source>
        <translation>Rahmen: %1:%2, Ausgabe %3</translation>
    </message>
    <message>
        <source>firmware: revision %1, checksum %2, family %3, date %4, number %5</source>
        <translation>Firmware: Revision %1, Prüfsumme %2, Familie %3, Datum %4, Nummer %5</translation>
    </message>
    <message>
        <source>program: %1 %2</source>
        <translation>Programm: %1 %2</translation>
    </message>
    <message>
        <source>toolkit: Qt %1, built with %2</source>
        <translation>Toolkit: Qt %1, gebaut mit %2</translation>
    </message>
    <message>
        <source>system: %1</source>
        <translation>System: %1</translation>
    </message>
    <message>
        <source>kernel: %1 %2 on %3</source>
        <translation>Kernel: %1 %2 auf %3</translation>
    </message>
    <message>
        <source>link: none</source>
        <translation>Verbindung: keine</translation>
    </message>
    <message>
        <source>link: %1</source>
        <translation>Verbindung: %1</translation>
    </message>
    <message>
        <source>the link begins</source>
        <translation>die Verbindung beginnt</translation>
    </message>
    <message>
        <source>the link ends</source>
        <translation>die Verbindung endet</translation>
    </message>
    <message numerus="yes">
        <source>    (%n more time(s))</source>
        <translation>
            <numerusform>    (noch %n-mal)</numerusform>
            <numerusform>    (noch %n-mal)</numerusform>
        </translation>
    </message>
    <message>
        <source>What a support engineer needs to know of a touch frame and its machine.</source>
        <translation>Was der Support von einem Touchrahmen und seinem Rechner wissen muss.</translation>
    </message>
    <message>
        <source>Names of users, their groups and homes, and of the machine have been replaced by &lt;user&gt;, &lt;group&gt;, &lt;home&gt; and &lt;machine&gt;.</source>
        <translation>Namen von Benutzern, deren Gruppen und Ordnern sowie des Rechners sind ersetzt durch &lt;user&gt;, &lt;group&gt;, &lt;home&gt; und &lt;machine&gt;.</translation>
    </message>
    <message>
        <source>what there is</source>
        <translation>was alles dabei ist</translation>
    </message>
    <message>
        <source>what keeps the frame from working</source>
        <translation>was den Rahmen am Arbeiten hindert</translation>
    </message>
    <message>
        <source>the same for programs</source>
        <translation>dasselbe für Programme</translation>
    </message>
    <message>
        <source>versions of program, toolkit, system and frame</source>
        <translation>Versionen von Programm, Toolkit, System und Rahmen</translation>
    </message>
    <message>
        <source>the settings file</source>
        <translation>die Einstellungsdatei</translation>
    </message>
    <message>
        <source>There is no settings file that can be read.</source>
        <translation>Es gibt keine lesbare Einstellungsdatei.</translation>
    </message>
    <message>
        <source>A program without windows does not know the screens.</source>
        <translation>Ein Programm ohne Fenster kennt die Bildschirme nicht.</translation>
    </message>
    <message>
        <source>the screens, in native pixels</source>
        <translation>die Bildschirme, in echten Bildpunkten</translation>
    </message>
    <message>
        <source>No frames went either way in the last minute.</source>
        <translation>In der letzten Minute lief in keiner Richtung etwas.</translation>
    </message>
    <message>
        <source>the frames of the last minute; it can be replayed</source>
        <translation>der Verkehr der letzten Minute; er lässt sich wiedergeben</translation>
    </message>
</context>
<context>
    <name>capture::Recorder</name>
    <message>
        <source>The recording %1 cannot be written: %2. The link goes on, and what is missing in the recording is counted.</source>
        <translation>Die Aufzeichnung %1 kann nicht geschrieben werden: %2. Die Verbindung läuft weiter, und was in der Aufzeichnung fehlt, wird gezählt.</translation>
    </message>
</context>
<context>
    <name>connect_dlg</name>
    <message>
        <source>Connect</source>
        <translation>Verbindung</translation>
    </message>
    <message>
        <source>Connection</source>
        <translation>Verbindung</translation>
    </message>
    <message>
        <source>&amp;USB, linked as soon as it is plugged in</source>
        <translation>&amp;USB, wird beim Einstecken verbunden</translation>
    </message>
    <message>
        <source>U&amp;ART, a serial port</source>
        <translation>U&amp;ART, eine serielle Schnittstelle</translation>
    </message>
    <message>
        <source>&amp;Port:</source>
        <translation>&amp;Port:</translation>
    </message>
    <message>
        <source>Port, by name or path</source>
        <translation>Port, mit Namen oder Pfad</translation>
    </message>
    <message>
        <source>Refresh the list of serial ports</source>
        <translation>Auffrischen: Liste der seriellen Schnittstellen</translation>
    </message>
    <message>
        <source>Re&amp;fresh</source>
        <translation>Au&amp;ffrischen</translation>
    </message>
    <message>
        <source>&amp;Rate, baud:</source>
        <translation>&amp;Baudrate:</translation>
    </message>
    <message>
        <source>&amp;Data bits:</source>
        <translation>&amp;Datenbits:</translation>
    </message>
    <message>
        <source>Pari&amp;ty:</source>
        <translation>Pari&amp;tät:</translation>
    </message>
    <message>
        <source>&amp;Stop bits:</source>
        <translation>&amp;Stoppbits:</translation>
    </message>
    <message>
        <source>Open the chosen connection</source>
        <translation>Öffnen: gewählte Verbindung</translation>
    </message>
    <message>
        <source>&amp;Open</source>
        <translation>&amp;Öffnen</translation>
    </message>
    <message>
        <source>Search for the rate at which a frame answers</source>
        <translation>Die Rate suchen, bei der ein Rahmen antwortet</translation>
    </message>
    <message>
        <source>Asks for a frame at the chosen rate, then at 9600, 19200, 38400, 57600 and 115200 baud.</source>
        <translation>Fragt nach einem Rahmen mit der gewählten Rate, dann mit 9600, 19200, 38400, 57600 und 115200 Baud.</translation>
    </message>
    <message>
        <source>Fi&amp;nd</source>
        <translation>Su&amp;chen</translation>
    </message>
    <message>
        <source>Closes the serial port</source>
        <translation>Schließt die serielle Schnittstelle</translation>
    </message>
    <message>
        <source>&amp;Close port</source>
        <translation>Schli&amp;eßen</translation>
    </message>
    <message>
        <source>State</source>
        <translation>Zustand</translation>
    </message>
    <message>
        <source>State of the connection</source>
        <translation>Zustand der Verbindung</translation>
    </message>
    <message>
        <source>unknown (%1)</source>
        <translation>unbekannt (%1)</translation>
    </message>
    <message>
        <source>The frame took over from the serial port. Unplug it to use the port.</source>
        <translation>Der Rahmen an USB hat die serielle Schnittstelle abgelöst. Ziehen Sie ihn ab, um sie zu benutzen.</translation>
    </message>
    <message>
        <source>No touch frame was found by USB. One that is plugged in is connected at once.</source>
        <translation>Kein Touchrahmen an USB gefunden. Wird einer eingesteckt, ist er sofort verbunden.</translation>
    </message>
    <message>
        <source>The search was stopped.</source>
        <translation>Die Suche wurde angehalten.</translation>
    </message>
    <message>
        <source>%1 cannot be written: these choices are not kept.</source>
        <translation>%1 kann nicht geschrieben werden: Diese Auswahl ist nicht gespeichert.</translation>
    </message>
    <message>
        <source>None</source>
        <comment>parity</comment>
        <translation>Keine</translation>
    </message>
    <message>
        <source>Odd</source>
        <comment>parity</comment>
        <translation>Ungerade</translation>
    </message>
    <message>
        <source>Even</source>
        <comment>parity</comment>
        <translation>Gerade</translation>
    </message>
    <message>
        <source>Mark</source>
        <comment>parity</comment>
        <translation>Mark</translation>
    </message>
    <message>
        <source>Space</source>
        <comment>parity</comment>
        <translation>Space</translation>
    </message>
    <message>
        <source>1.5</source>
        <comment>stop bits</comment>
        <translation>1,5</translation>
    </message>
    <message>
        <source>Serial ports cannot be set to 1.5 stop bits here.</source>
        <translation>Serielle Schnittstellen lassen sich hier nicht auf 1,5 Stoppbits einstellen.</translation>
    </message>
    <message>
        <source>No frame answers at %1 baud. Check the cable and the port.</source>
        <translation>Kein Rahmen antwortet bei %1 Baud. Prüfen Sie Kabel und Port.</translation>
    </message>
    <message>
        <source>Stop</source>
        <translation>Stopp</translation>
    </message>
    <message>
        <source>A touch frame is connected by USB.</source>
        <translation>Ein Touchrahmen ist über USB verbunden.</translation>
    </message>
    <message>
        <source>The serial port %1 is open.</source>
        <translation>Die serielle Schnittstelle %1 ist offen.</translation>
    </message>
    <message>
        <source>A touch frame answers there.</source>
        <translation>Ein Touchrahmen antwortet dort.</translation>
    </message>
    <message>
        <source>Nothing has come from a touch frame there yet.</source>
        <translation>Von einem Touchrahmen kam dort noch nichts.</translation>
    </message>
    <message>
        <source>Looking for a frame at %1 baud.</source>
        <translation>Suche einen Rahmen bei %1 Baud.</translation>
    </message>
    <message>
        <source>A frame answers at %1 baud.</source>
        <translation>Ein Rahmen antwortet bei %1 Baud.</translation>
    </message>
    <message>
        <source>A frame answers.</source>
        <translation>Ein Rahmen antwortet.</translation>
    </message>
    <message>
        <source>No answer: check cable and rate.</source>
        <translation>Keine Antwort: Kabel und Rate prüfen.</translation>
    </message>
    <message>
        <source>No touch frame is connected, no serial port is open.</source>
        <translation>Kein Touchrahmen verbunden, keine serielle Schnittstelle offen.</translation>
    </message>
    <message>
        <source>No touch frame is connected.</source>
        <translation>Kein Touchrahmen ist verbunden.</translation>
    </message>
    <message>
        <source>The serial port %1 is open but not used.</source>
        <translation>Die serielle Schnittstelle %1 ist offen, wird aber nicht benutzt.</translation>
    </message>
</context>
<context>
    <name>doctor::Answers</name>
    <message>
        <source>No touch frame is linked.</source>
        <translation>Kein Touchrahmen ist verbunden.</translation>
    </message>
    <message>
        <source>Try again.</source>
        <translation>Versuchen Sie es noch einmal.</translation>
    </message>
    <message>
        <source>The frame could not be asked.</source>
        <translation>Der Rahmen konnte nicht gefragt werden.</translation>
    </message>
    <message>
        <source>It answers after %1 ms.</source>
        <translation>Er antwortet nach %1 ms.</translation>
    </message>
    <message>
        <source>It answers at %1, after %2 ms.</source>
        <translation>Er antwortet an %1 nach %2 ms.</translation>
    </message>
    <message>
        <source>No frame answers at %1.</source>
        <translation>An %1 antwortet kein Rahmen.</translation>
    </message>
    <message>
        <source>Check the cable, and look for the frame&apos;s rate with &quot;Find&quot; in the window &quot;Connect&quot;.</source>
        <translation>Prüfen Sie das Kabel und suchen Sie die Rate des Rahmens mit „Suchen“ im Fenster „Verbindung“.</translation>
    </message>
    <message>
        <source>The frame does not answer.</source>
        <translation>Der Rahmen antwortet nicht.</translation>
    </message>
    <message>
        <source>Unplug it, wait for ten seconds and plug it in again, at another USB port if need be.</source>
        <translation>Ziehen Sie ihn ab, warten Sie zehn Sekunden und stecken Sie ihn wieder ein, notfalls an einem anderen USB-Anschluss.</translation>
    </message>
    <message>
        <source>The serial port is set to %1 baud.</source>
        <translation>Die serielle Schnittstelle ist auf %1 Baud eingestellt.</translation>
    </message>
    <message>
        <source>The frame sends no reports.</source>
        <translation>Der Rahmen sendet keine Reports.</translation>
    </message>
    <message>
        <source>Unplug it and plug it in again, without a hub between.</source>
        <translation>Ziehen Sie ihn ab und stecken Sie ihn ohne Hub dazwischen wieder ein.</translation>
    </message>
    <message>
        <source>A report takes %1 ms, where 67 are usual.</source>
        <translation>Ein Report dauert %1 ms; üblich sind 67.</translation>
    </message>
    <message>
        <source>Plug the frame in without a hub, and see what else keeps this machine busy.</source>
        <translation>Stecken Sie den Rahmen ohne Hub ein und sehen Sie nach, was den Rechner sonst beschäftigt.</translation>
    </message>
    <message>
        <source>A report takes %1 ms.</source>
        <translation>Ein Report dauert %1 ms.</translation>
    </message>
    <message>
        <source>A frame on a serial line does not say its generation.</source>
        <translation>Ein Rahmen an einer seriellen Leitung nennt seine Generation nicht.</translation>
    </message>
    <message>
        <source>It is of the older generation, which does not say its firmware.</source>
        <translation>Er gehört zur älteren Generation, die ihre Firmware nicht nennt.</translation>
    </message>
    <message>
        <source>It is of the current generation, with the firmware %1.</source>
        <translation>Er gehört zur aktuellen Generation, mit der Firmware %1.</translation>
    </message>
    <message>
        <source>It is of the current generation, but does not say its firmware.</source>
        <translation>Er gehört zur aktuellen Generation, nennt aber seine Firmware nicht.</translation>
    </message>
    <message>
        <source>Plug it in again; a frame that stays so needs its firmware anew.</source>
        <translation>Stecken Sie ihn neu ein; bleibt es dabei, braucht der Rahmen neue Firmware.</translation>
    </message>
</context>
<context>
    <name>doctor::Desktop</name>
    <message>
        <source>This session has no desktop, as one over ssh.</source>
        <translation>Diese Sitzung hat keinen Desktop, wie etwa eine über ssh.</translation>
    </message>
    <message>
        <source>The command line does without; windows need a session at a screen.</source>
        <translation>Die Befehlszeile kommt ohne aus; Fenster brauchen eine Sitzung am Bildschirm.</translation>
    </message>
    <message>
        <source>X11</source>
        <translation>X11</translation>
    </message>
    <message>
        <source>Wayland</source>
        <translation>Wayland</translation>
    </message>
    <message>
        <source>Windows are shown by %1, on a desktop that does not say its name.</source>
        <translation>Fenster werden von %1 gezeigt, auf einem Desktop, der seinen Namen nicht nennt.</translation>
    </message>
    <message>
        <source>Windows are shown by %1, on %2.</source>
        <translation>Fenster werden von %1 gezeigt, auf %2.</translation>
    </message>
    <message>
        <source>A program without windows cannot ask for the tray; the windows&apos; support file tells.</source>
        <translation>Ein Programm ohne Fenster kann nicht nach dem Infobereich fragen; die Supportdatei der Fenster sagt es.</translation>
    </message>
    <message>
        <source>The desktop has a tray.</source>
        <translation>Der Desktop hat einen Infobereich.</translation>
    </message>
    <message>
        <source>The desktop has no tray to hide in.</source>
        <translation>Der Desktop hat keinen Infobereich.</translation>
    </message>
    <message>
        <source>Start quorvel again to show a window that was closed, or quorvel -close to end it.</source>
        <translation>Starten Sie quorvel erneut, um ein geschlossenes Fenster zu zeigen, oder quorvel -close, um es zu beenden.</translation>
    </message>
</context>
<context>
    <name>doctor::Examination</name>
    <message>
        <source>note</source>
        <translation>Hinweis</translation>
    </message>
    <message>
        <source>TROUBLE</source>
        <translation>STÖRUNG</translation>
    </message>
    <message>
        <source>not looked at</source>
        <translation>nicht geprüft</translation>
    </message>
    <message>
        <source>good</source>
        <translation>gut</translation>
    </message>
    <message>
        <source>The frame answers all the same.</source>
        <translation>Der Rahmen antwortet trotzdem.</translation>
    </message>
    <message>
        <source>The frame at the serial port %1 does not need this.</source>
        <translation>Der Rahmen an der seriellen Schnittstelle %1 braucht das nicht.</translation>
    </message>
</context>
<context>
    <name>doctor::SerialChecks</name>
    <message>
        <source>This user may open the serial port %1, and no other program uses it.</source>
        <translation>Dieser Benutzer darf die serielle Schnittstelle %1 öffnen, und kein anderes Programm benutzt sie.</translation>
    </message>
    <message>
        <source>There is no /sys here to see serial ports by.</source>
        <translation>Hier gibt es kein /sys, in dem serielle Schnittstellen zu sehen wären.</translation>
    </message>
    <message>
        <source>There are no serial ports; a frame on USB needs none.</source>
        <translation>Es gibt keine seriellen Schnittstellen; ein Rahmen an USB braucht keine.</translation>
    </message>
    <message>
        <source>This user may open these serial ports: %1.</source>
        <translation>Dieser Benutzer darf diese seriellen Schnittstellen öffnen: %1.</translation>
    </message>
    <message>
        <source>This user may not open these serial ports: %1. That matters only to a frame on one of them.</source>
        <translation>Dieser Benutzer darf diese seriellen Schnittstellen nicht öffnen: %1. Das betrifft nur einen Rahmen an einer von ihnen.</translation>
    </message>
</context>
<context>
    <name>doctor::Settings</name>
    <message>
        <source>line %1: %2</source>
        <translation>Zeile %1: %2</translation>
    </message>
    <message>
        <source>There is no settings file %1 yet.</source>
        <translation>Es gibt noch keine Einstellungsdatei %1.</translation>
    </message>
    <message>
        <source>It is made when a window is used; until then the frame keeps its own gestures.</source>
        <translation>Sie entsteht, wenn ein Fenster benutzt wird; bis dahin behält der Rahmen seine eigenen Gesten.</translation>
    </message>
    <message>
        <source>There is no settings file %1, and none can be made.</source>
        <translation>Es gibt keine Einstellungsdatei %1, und es lässt sich keine anlegen.</translation>
    </message>
    <message>
        <source>Make the folder %1, owned by this user.</source>
        <translation>Legen Sie den Ordner %1 an, im Besitz dieses Benutzers.</translation>
    </message>
    <message>
        <source>The settings file %1 cannot be read.</source>
        <translation>Die Einstellungsdatei %1 kann nicht gelesen werden.</translation>
    </message>
    <message>
        <source>See that it is a file, owned by this user, or move it away.</source>
        <translation>Sorgen Sie dafür, dass es eine Datei im Besitz dieses Benutzers ist, oder schaffen Sie sie beiseite.</translation>
    </message>
    <message>
        <source>The settings file %1 is damaged (%2).</source>
        <translation>Die Einstellungsdatei %1 ist beschädigt (%2).</translation>
    </message>
    <message>
        <source>Open each settings window and choose OK, which writes the file anew, or move it away.</source>
        <translation>Öffnen Sie jedes Einstellungsfenster und wählen Sie OK, was die Datei neu schreibt, oder schaffen Sie sie beiseite.</translation>
    </message>
    <message>
        <source>The settings file %1 is not whole: it lacks values of %2.</source>
        <translation>Die Einstellungsdatei %1 ist nicht vollständig: Es fehlen Werte von %2.</translation>
    </message>
    <message>
        <source>Open each settings window and choose OK. Gestures are not sent until the file names every one.</source>
        <translation>Öffnen Sie jedes Einstellungsfenster und wählen Sie OK. Gesten werden erst gesendet, wenn die Datei alle nennt.</translation>
    </message>
    <message>
        <source>The settings file %1 has values out of range: %2.</source>
        <translation>Die Einstellungsdatei %1 hat Werte außerhalb des Bereichs: %2.</translation>
    </message>
    <message>
        <source>Open the windows that show them and choose OK: the nearest that is possible counts until then.</source>
        <translation>Öffnen Sie die Fenster, die sie zeigen, und wählen Sie OK: Bis dahin gilt der nächste mögliche Wert.</translation>
    </message>
    <message>
        <source>The settings file %1 can be read, but not written.</source>
        <translation>Die Einstellungsdatei %1 kann gelesen, aber nicht geschrieben werden.</translation>
    </message>
    <message>
        <source>Give it to this user if settings are to be kept.</source>
        <translation>Übergeben Sie sie diesem Benutzer, wenn Einstellungen gespeichert werden sollen.</translation>
    </message>
    <message>
        <source>The settings file %1 is whole.</source>
        <translation>Die Einstellungsdatei %1 ist vollständig.</translation>
    </message>
</context>
<context>
    <name>doctor::UsbChecks</name>
    <message>
        <source>No touch frame is on USB.</source>
        <translation>An USB ist kein Touchrahmen.</translation>
    </message>
    <message>
        <source>No touch frame is on USB; these nodes are other makers&apos;: %1.</source>
        <translation>An USB ist kein Touchrahmen; diese Gerätedateien sind von anderen Herstellern: %1.</translation>
    </message>
    <message>
        <source>Plug the frame in, or try another USB port and another cable. For a frame on a serial line choose its port: &quot;Connect&quot; in the menu of the window, or --port on the command line. If it is plugged in all the same, see whether this user may use it: quorvelctl doctor tells the rights.</source>
        <translation>Stecken Sie den Rahmen ein oder versuchen Sie einen anderen USB-Anschluss und ein anderes Kabel. Für einen Rahmen an einer seriellen Leitung wählen Sie dessen Schnittstelle: „Verbindung“ im Menü des Fensters oder --port auf der Befehlszeile. Ist er trotzdem eingesteckt, sehen Sie nach, ob dieser Benutzer ihn benutzen darf: quorvelctl doctor nennt die Rechte.</translation>
    </message>
    <message>
        <source>The touch frame %1 on USB has not been set up by the kernel.</source>
        <translation>Der Touchrahmen %1 an USB wurde vom Kernel nicht eingerichtet.</translation>
    </message>
    <message>
        <source>Unplug it and plug it in again, at another USB port if need be.</source>
        <translation>Ziehen Sie ihn ab und stecken Sie ihn wieder ein, notfalls an einem anderen USB-Anschluss.</translation>
    </message>
    <message>
        <source>The touch frame %1 on USB has no node, since no driver uses it.</source>
        <translation>Der Touchrahmen %1 an USB hat keine Gerätedatei, da kein Treiber ihn benutzt.</translation>
    </message>
    <message>
        <source>Unplug it and plug it in again, or write &quot;%1&quot; to /sys/bus/usb/drivers/usbhid/bind as root.</source>
        <translation>Ziehen Sie ihn ab und stecken Sie ihn wieder ein, oder schreiben Sie als root „%1“ nach /sys/bus/usb/drivers/usbhid/bind.</translation>
    </message>
    <message>
        <source>The touch frame %1 on USB has no node, since the driver %2 uses it instead of usbhid.</source>
        <translation>Der Touchrahmen %1 an USB hat keine Gerätedatei, da der Treiber %2 statt usbhid ihn benutzt.</translation>
    </message>
    <message>
        <source>End the program that took the frame for that driver, such as a virtual machine, then plug the frame in again.</source>
        <translation>Beenden Sie das Programm, das den Rahmen für jenen Treiber nahm, etwa eine virtuelle Maschine, und stecken Sie den Rahmen neu ein.</translation>
    </message>
    <message>
        <source>The driver usbhid uses the touch frame %1 on USB, but made no hiddev node for it.</source>
        <translation>Der Treiber usbhid benutzt den Touchrahmen %1 an USB, legte aber keine hiddev-Gerätedatei für ihn an.</translation>
    </message>
    <message>
        <source>Use a kernel with CONFIG_USB_HIDDEV, and unplug other devices if they have all 16 nodes.</source>
        <translation>Nehmen Sie einen Kernel mit CONFIG_USB_HIDDEV, und ziehen Sie andere Geräte ab, wenn diese alle 16 Gerätedateien belegen.</translation>
    </message>
    <message>
        <source>There is no /sys here to see the kernel by, as in some containers.</source>
        <translation>Hier gibt es kein /sys, in dem der Kernel zu sehen wäre, wie in manchen Containern.</translation>
    </message>
    <message>
        <source>This kernel (%1) has no USB.</source>
        <translation>Dieser Kernel (%1) hat kein USB.</translation>
    </message>
    <message>
        <source>Use a machine or a kernel with USB, or a frame on a serial line.</source>
        <translation>Nehmen Sie einen Rechner oder einen Kernel mit USB oder einen Rahmen an einer seriellen Leitung.</translation>
    </message>
    <message>
        <source>The kernel&apos;s driver usbhid is installed but not loaded.</source>
        <translation>Der Treiber usbhid des Kernels ist installiert, aber nicht geladen.</translation>
    </message>
    <message>
        <source>Load it as root with &quot;modprobe usbhid&quot;, and look in /etc/modprobe.d for what keeps it out.</source>
        <translation>Laden Sie ihn als root mit „modprobe usbhid“, und sehen Sie in /etc/modprobe.d nach, was ihn fernhält.</translation>
    </message>
    <message>
        <source>This kernel (%1) has no driver usbhid.</source>
        <translation>Dieser Kernel (%1) hat keinen Treiber usbhid.</translation>
    </message>
    <message>
        <source>Install the distribution&apos;s complete kernel: those for clouds leave this driver out.</source>
        <translation>Installieren Sie den vollständigen Kernel der Distribution: Denen für die Cloud fehlt dieser Treiber.</translation>
    </message>
    <message>
        <source>This kernel (%1) was built without hiddev.</source>
        <translation>Dieser Kernel (%1) wurde ohne hiddev gebaut.</translation>
    </message>
    <message>
        <source>Use a kernel with CONFIG_USB_HIDDEV, as the distributions&apos; have it.</source>
        <translation>Nehmen Sie einen Kernel mit CONFIG_USB_HIDDEV, wie ihn die Distributionen haben.</translation>
    </message>
    <message>
        <source>The kernel&apos;s driver usbhid is there.</source>
        <translation>Der Treiber usbhid des Kernels ist da.</translation>
    </message>
    <message>
        <source>The kernel&apos;s driver usbhid is there, with hiddev.</source>
        <translation>Der Treiber usbhid des Kernels ist da, mit hiddev.</translation>
    </message>
    <message>
        <source>No touch frame is at %1.</source>
        <translation>An %1 ist kein Touchrahmen.</translation>
    </message>
    <message>
        <source>Plug the frame in, or name its own node.</source>
        <translation>Stecken Sie den Rahmen ein oder nennen Sie seine eigene Gerätedatei.</translation>
    </message>
    <message>
        <source>The kernel has the node %1 for the touch frame, but it is not in /dev.</source>
        <translation>Der Kernel hat die Gerätedatei %1 für den Touchrahmen, aber sie fehlt in /dev.</translation>
    </message>
    <message>
        <source>Give this container the device %1, or see that devtmpfs is mounted on /dev.</source>
        <translation>Geben Sie diesem Container das Gerät %1, oder sorgen Sie dafür, dass devtmpfs auf /dev eingehängt ist.</translation>
    </message>
    <message numerus="yes">
        <source>There are %n touch frames on USB; %1 is the first.</source>
        <translation>
            <numerusform>Es ist %n Touchrahmen an USB; %1 ist der erste.</numerusform>
            <numerusform>Es sind %n Touchrahmen an USB; %1 ist der erste.</numerusform>
        </translation>
    </message>
    <message>
        <source>Unplug the others, or name a node on the command line.</source>
        <translation>Ziehen Sie die anderen ab, oder nennen Sie auf der Befehlszeile eine Gerätedatei.</translation>
    </message>
    <message>
        <source>The touch frame is at %1.</source>
        <translation>Der Touchrahmen ist an %1.</translation>
    </message>
    <message>
        <source>There is no touch frame on USB.</source>
        <translation>An USB ist kein Touchrahmen.</translation>
    </message>
    <message>
        <source>It is %1:%2, release %3.</source>
        <translation>Es ist %1:%2, Ausgabe %3.</translation>
    </message>
    <message>
        <source>This product number is not a known one. If it does not answer, see whether it is a touch frame at all.</source>
        <translation>Diese Produktnummer ist nicht bekannt. Antwortet das Gerät nicht, prüfen Sie, ob es überhaupt ein Touchrahmen ist.</translation>
    </message>
    <message>
        <source>There is no node to open.</source>
        <translation>Es gibt keine Gerätedatei zu öffnen.</translation>
    </message>
    <message>
        <source>It belongs to %1 and the group %2, with the mode %3.</source>
        <translation>Sie gehört %1 und der Gruppe %2, mit den Rechten %3.</translation>
    </message>
    <message>
        <source>This user may open %1.</source>
        <translation>Dieser Benutzer darf %1 öffnen.</translation>
    </message>
    <message>
        <source>There is no node to use.</source>
        <translation>Es gibt keine Gerätedatei zu benutzen.</translation>
    </message>
    <message>
        <source>This program uses it.</source>
        <translation>Dieses Programm benutzt sie.</translation>
    </message>
    <message>
        <source>No other program uses it.</source>
        <translation>Kein anderes Programm benutzt sie.</translation>
    </message>
    <message>
        <source>It is linked in a moment.</source>
        <translation>Er ist gleich verbunden.</translation>
    </message>
</context>
<context>
    <name>lights</name>
    <message>
        <source>Lights of a touch frame</source>
        <translation>Lichtschranken eines Touchrahmens</translation>
    </message>
    <message>
        <source>en</source>
        <translation>de</translation>
    </message>
    <message>
        <source>PASS</source>
        <translation>IN ORDNUNG</translation>
    </message>
    <message>
        <source>SERVICE NEEDED</source>
        <translation>WARTUNG NÖTIG</translation>
    </message>
    <message>
        <source>Unit</source>
        <translation>Gerät</translation>
    </message>
    <message>
        <source>Identification</source>
        <translation>Kennung</translation>
    </message>
    <message>
        <source>Measured</source>
        <translation>Gemessen</translation>
    </message>
    <message>
        <source>Lights</source>
        <translation>Lichtschranken</translation>
    </message>
    <message>
        <source>%1 on X, %2 on Y</source>
        <translation>%1 auf X, %2 auf Y</translation>
    </message>
    <message>
        <source>Scans</source>
        <translation>Messungen</translation>
    </message>
    <message>
        <source>Program</source>
        <translation>Programm</translation>
    </message>
    <message>
        <source>The frame</source>
        <translation>Der Rahmen</translation>
    </message>
    <message>
        <source>Letters: w weak, d dead, n noisy, s saturated, o switched off. Dark strips: touches are missed; light ones: they jump. Bars outside: stretches with one thing wrong.</source>
        <translation>Buchstaben: w schwach, d tot, n verrauscht, s übersteuert, o ausgeschaltet. Dunkle Streifen: Berührungen gehen verloren; helle: sie springen. Balken außen: Strecken mit einem gemeinsamen Fehler.</translation>
    </message>
    <message>
        <source>Solid: the level of each light. Dashed: that of a healthy one. Dotted: the lowest that works.</source>
        <translation>Durchgezogen: der Pegel jeder Lichtschranke. Gestrichelt: der einer gesunden. Gepunktet: der niedrigste, der noch reicht.</translation>
    </message>
    <message>
        <source>%1 to %2: %3. %4</source>
        <translation>%1 bis %2: %3. %4</translation>
    </message>
    <message>
        <source>%1: %2. %3</source>
        <translation>%1: %2. %3</translation>
    </message>
    <message>
        <source>Findings</source>
        <translation>Befunde</translation>
    </message>
    <message>
        <source>Nothing was found.</source>
        <translation>Es wurde nichts gefunden.</translation>
    </message>
    <message>
        <source>Touches</source>
        <translation>Berührungen</translation>
    </message>
    <message>
        <source>Since it was in good order</source>
        <translation>Seit alles in Ordnung war</translation>
    </message>
    <message>
        <source>Compared with the measurement of %1.</source>
        <translation>Verglichen mit der Messung vom %1.</translation>
    </message>
    <message>
        <source>All lights</source>
        <translation>Alle Lichtschranken</translation>
    </message>
    <message>
        <source>Light</source>
        <translation>Lichtschranke</translation>
    </message>
    <message>
        <source>Verdict</source>
        <translation>Urteil</translation>
    </message>
    <message>
        <source>Level</source>
        <translation>Pegel</translation>
    </message>
    <message>
        <source>Healthy level</source>
        <translation>Gesunder Pegel</translation>
    </message>
    <message>
        <source>Noise</source>
        <translation>Rauschen</translation>
    </message>
    <message>
        <source>Change, %</source>
        <translation>Änderung, %</translation>
    </message>
    <message>
        <source>The frame with its lights along the edges, and where touches go wrong on the screen</source>
        <translation>Der Rahmen mit seinen Lichtschranken an den Rändern, und wo auf dem Bildschirm Berührungen fehlgehen</translation>
    </message>
    <message>
        <source>Levels of the lights of X, and of healthy ones</source>
        <translation>Pegel der Lichtschranken von X und von gesunden</translation>
    </message>
    <message>
        <source>Levels of the lights of Y, and of healthy ones</source>
        <translation>Pegel der Lichtschranken von Y und von gesunden</translation>
    </message>
    <message>
        <source>Touches at lights %1 to %2 are missed.</source>
        <translation>Berührungen bei den Lichtschranken %1 bis %2 gehen verloren.</translation>
    </message>
    <message>
        <source>Touches at lights %1 to %2 jump by up to %3 lights.</source>
        <translation>Berührungen bei den Lichtschranken %1 bis %2 springen um bis zu %3 Lichtschranken.</translation>
    </message>
    <message>
        <source>Touches between %1 and %2 mm from the left are missed.</source>
        <translation>Berührungen zwischen %1 und %2 mm von links gehen verloren.</translation>
    </message>
    <message>
        <source>Touches between %1 and %2 mm from the top are missed.</source>
        <translation>Berührungen zwischen %1 und %2 mm von oben gehen verloren.</translation>
    </message>
    <message>
        <source>Touches between %1 and %2 mm from the left jump by up to %3 mm.</source>
        <translation>Berührungen zwischen %1 und %2 mm von links springen um bis zu %3 mm.</translation>
    </message>
    <message>
        <source>Touches between %1 and %2 mm from the top jump by up to %3 mm.</source>
        <translation>Berührungen zwischen %1 und %2 mm von oben springen um bis zu %3 mm.</translation>
    </message>
    <message>
        <source>Clean the upper and the lower edge between %1 and %2 mm from the left, then measure again.</source>
        <translation>Reinigen Sie den oberen und den unteren Rand zwischen %1 und %2 mm von links und messen Sie dann erneut.</translation>
    </message>
    <message>
        <source>Clean the left and the right edge between %1 and %2 mm from the top, then measure again.</source>
        <translation>Reinigen Sie den linken und den rechten Rand zwischen %1 und %2 mm von oben und messen Sie dann erneut.</translation>
    </message>
    <message>
        <source>Clean both edges along lights %1 to %2, then measure again.</source>
        <translation>Reinigen Sie beide Ränder bei den Lichtschranken %1 bis %2 und messen Sie dann erneut.</translation>
    </message>
    <message>
        <source>Remove what stands before the screen between %1 and %2 mm from the left, then measure again.</source>
        <translation>Entfernen Sie, was zwischen %1 und %2 mm von links vor dem Bildschirm steht, und messen Sie dann erneut.</translation>
    </message>
    <message>
        <source>Remove what stands before the screen between %1 and %2 mm from the top, then measure again.</source>
        <translation>Entfernen Sie, was zwischen %1 und %2 mm von oben vor dem Bildschirm steht, und messen Sie dann erneut.</translation>
    </message>
    <message>
        <source>Remove what stands before lights %1 to %2, then measure again.</source>
        <translation>Entfernen Sie, was vor den Lichtschranken %1 bis %2 steht, und messen Sie dann erneut.</translation>
    </message>
    <message>
        <source>Align the upper or the lower bar between %1 and %2 mm from the left: its lights aim past each other more and more.</source>
        <translation>Richten Sie die obere oder die untere Leiste zwischen %1 und %2 mm von links aus: Ihre Lichtschranken zielen immer weiter aneinander vorbei.</translation>
    </message>
    <message>
        <source>Align the left or the right bar between %1 and %2 mm from the top: its lights aim past each other more and more.</source>
        <translation>Richten Sie die linke oder die rechte Leiste zwischen %1 und %2 mm von oben aus: Ihre Lichtschranken zielen immer weiter aneinander vorbei.</translation>
    </message>
    <message>
        <source>Align the bars along lights %1 to %2: they aim past each other more and more.</source>
        <translation>Richten Sie die Leisten bei den Lichtschranken %1 bis %2 aus: Sie zielen immer weiter aneinander vorbei.</translation>
    </message>
    <message>
        <source>Replace the board between %1 and %2 mm from the left, or see to its plug: all its lights fail alike.</source>
        <translation>Ersetzen Sie die Platine zwischen %1 und %2 mm von links oder prüfen Sie ihren Stecker: Alle ihre Lichtschranken versagen gleichermaßen.</translation>
    </message>
    <message>
        <source>Replace the board between %1 and %2 mm from the top, or see to its plug: all its lights fail alike.</source>
        <translation>Ersetzen Sie die Platine zwischen %1 und %2 mm von oben oder prüfen Sie ihren Stecker: Alle ihre Lichtschranken versagen gleichermaßen.</translation>
    </message>
    <message>
        <source>Replace the board of lights %1 to %2, or see to its plug: all its lights fail alike.</source>
        <translation>Ersetzen Sie die Platine der Lichtschranken %1 bis %2 oder prüfen Sie ihren Stecker: Alle ihre Lichtschranken versagen gleichermaßen.</translation>
    </message>
    <message>
        <source>Watch light %1, %2 mm from the left: only a far higher gain makes up for its weakness.</source>
        <translation>Beobachten Sie die Lichtschranke %1, %2 mm von links: Nur eine weit höhere Verstärkung gleicht ihre Schwäche aus.</translation>
    </message>
    <message>
        <source>Watch light %1, %2 mm from the top: only a far higher gain makes up for its weakness.</source>
        <translation>Beobachten Sie die Lichtschranke %1, %2 mm von oben: Nur eine weit höhere Verstärkung gleicht ihre Schwäche aus.</translation>
    </message>
    <message>
        <source>Watch light %1: only a far higher gain makes up for its weakness.</source>
        <translation>Beobachten Sie die Lichtschranke %1: Nur eine weit höhere Verstärkung gleicht ihre Schwäche aus.</translation>
    </message>
    <message>
        <source>Clean light %1, %2 mm from the left; if it stays weak, plan to replace its board.</source>
        <translation>Reinigen Sie die Lichtschranke %1, %2 mm von links; bleibt sie schwach, planen Sie den Tausch ihrer Platine.</translation>
    </message>
    <message>
        <source>Clean light %1, %2 mm from the top; if it stays weak, plan to replace its board.</source>
        <translation>Reinigen Sie die Lichtschranke %1, %2 mm von oben; bleibt sie schwach, planen Sie den Tausch ihrer Platine.</translation>
    </message>
    <message>
        <source>Clean light %1; if it stays weak, plan to replace its board.</source>
        <translation>Reinigen Sie die Lichtschranke %1; bleibt sie schwach, planen Sie den Tausch ihrer Platine.</translation>
    </message>
    <message>
        <source>See whether light %1, %2 mm from the left, is covered or switched off; if not, replace its board.</source>
        <translation>Prüfen Sie, ob die Lichtschranke %1, %2 mm von links, verdeckt oder ausgeschaltet ist; wenn nicht, ersetzen Sie ihre Platine.</translation>
    </message>
    <message>
        <source>See whether light %1, %2 mm from the top, is covered or switched off; if not, replace its board.</source>
        <translation>Prüfen Sie, ob die Lichtschranke %1, %2 mm von oben, verdeckt oder ausgeschaltet ist; wenn nicht, ersetzen Sie ihre Platine.</translation>
    </message>
    <message>
        <source>See whether light %1 is covered or switched off; if not, replace its board.</source>
        <translation>Prüfen Sie, ob die Lichtschranke %1 verdeckt oder ausgeschaltet ist; wenn nicht, ersetzen Sie ihre Platine.</translation>
    </message>
    <message>
        <source>See whether light %1, %2 mm from the left, is covered; if not, replace its board.</source>
        <translation>Prüfen Sie, ob die Lichtschranke %1, %2 mm von links, verdeckt ist; wenn nicht, ersetzen Sie ihre Platine.</translation>
    </message>
    <message>
        <source>See whether light %1, %2 mm from the top, is covered; if not, replace its board.</source>
        <translation>Prüfen Sie, ob die Lichtschranke %1, %2 mm von oben, verdeckt ist; wenn nicht, ersetzen Sie ihre Platine.</translation>
    </message>
    <message>
        <source>See whether light %1 is covered; if not, replace its board.</source>
        <translation>Prüfen Sie, ob die Lichtschranke %1 verdeckt ist; wenn nicht, ersetzen Sie ihre Platine.</translation>
    </message>
    <message>
        <source>Look for a loose contact or a lamp that shines on light %1, %2 mm from the left.</source>
        <translation>Suchen Sie nach einem Wackelkontakt oder einer Lampe, die auf die Lichtschranke %1, %2 mm von links, scheint.</translation>
    </message>
    <message>
        <source>Look for a loose contact or a lamp that shines on light %1, %2 mm from the top.</source>
        <translation>Suchen Sie nach einem Wackelkontakt oder einer Lampe, die auf die Lichtschranke %1, %2 mm von oben, scheint.</translation>
    </message>
    <message>
        <source>Look for a loose contact or a lamp that shines on light %1.</source>
        <translation>Suchen Sie nach einem Wackelkontakt oder einer Lampe, die auf die Lichtschranke %1 scheint.</translation>
    </message>
    <message>
        <source>Keep the sun and lamps off light %1, %2 mm from the left, or lower its gain.</source>
        <translation>Halten Sie Sonne und Lampen von der Lichtschranke %1, %2 mm von links, fern oder senken Sie ihre Verstärkung.</translation>
    </message>
    <message>
        <source>Keep the sun and lamps off light %1, %2 mm from the top, or lower its gain.</source>
        <translation>Halten Sie Sonne und Lampen von der Lichtschranke %1, %2 mm von oben, fern oder senken Sie ihre Verstärkung.</translation>
    </message>
    <message>
        <source>Keep the sun and lamps off light %1, or lower its gain.</source>
        <translation>Halten Sie Sonne und Lampen von der Lichtschranke %1 fern oder senken Sie ihre Verstärkung.</translation>
    </message>
    <message>
        <source>Switch light %1, %2 mm from the left, on again unless it was switched off on purpose.</source>
        <translation>Schalten Sie die Lichtschranke %1, %2 mm von links, wieder ein, wenn sie nicht absichtlich ausgeschaltet wurde.</translation>
    </message>
    <message>
        <source>Switch light %1, %2 mm from the top, on again unless it was switched off on purpose.</source>
        <translation>Schalten Sie die Lichtschranke %1, %2 mm von oben, wieder ein, wenn sie nicht absichtlich ausgeschaltet wurde.</translation>
    </message>
    <message>
        <source>Switch light %1 on again unless it was switched off on purpose.</source>
        <translation>Schalten Sie die Lichtschranke %1 wieder ein, wenn sie nicht absichtlich ausgeschaltet wurde.</translation>
    </message>
    <message>
        <source>healthy</source>
        <translation>gesund</translation>
    </message>
    <message>
        <source>weak</source>
        <translation>schwach</translation>
    </message>
    <message>
        <source>dead</source>
        <translation>tot</translation>
    </message>
    <message>
        <source>noisy</source>
        <translation>verrauscht</translation>
    </message>
    <message>
        <source>saturated</source>
        <translation>übersteuert</translation>
    </message>
    <message>
        <source>switched off</source>
        <translation>ausgeschaltet</translation>
    </message>
    <message>
        <source>dirt</source>
        <translation>Schmutz</translation>
    </message>
    <message>
        <source>obstacle</source>
        <translation>Hindernis</translation>
    </message>
    <message>
        <source>bar out of line</source>
        <translation>Leiste verstellt</translation>
    </message>
    <message>
        <source>broken board</source>
        <translation>Platine defekt</translation>
    </message>
    <message>
        <source>The weakest light is %1 at level %2; the measurements kept so far do not show when it falls below %3.</source>
        <translation>Die schwächste Lichtschranke ist %1 mit dem Pegel %2; die bisherigen Messungen zeigen nicht, wann sie unter %3 fällt.</translation>
    </message>
    <message>
        <source>The weakest light is %1 at level %2; it is expected to fall below %3 on %4, between %5 and %6 with a certainty of 95 %.</source>
        <translation>Die schwächste Lichtschranke ist %1 mit dem Pegel %2; sie fällt voraussichtlich am %4 unter %3, mit 95 % Sicherheit zwischen %5 und %6.</translation>
    </message>
    <message>
        <source>%1: %2, level %3 where %4 is usual</source>
        <translation>%1: %2, Pegel %3, üblich ist %4</translation>
    </message>
    <message>
        <source>%1: %2, level %3 where %4 is usual, changed by %5 %</source>
        <translation>%1: %2, Pegel %3, üblich ist %4, geändert um %5 %</translation>
    </message>
    <message>
        <source>The measurement</source>
        <translation>Die Messung</translation>
    </message>
    <message>
        <source>Touches at light %1 are missed.</source>
        <translation>Berührungen bei der Lichtschranke %1 gehen verloren.</translation>
    </message>
    <message>
        <source>Touches at light %1 jump by up to %2 lights.</source>
        <translation>Berührungen bei der Lichtschranke %1 springen um bis zu %2 Lichtschranken.</translation>
    </message>
</context>
<context>
    <name>lights::History</name>
    <message>
        <source>The unit says nothing of itself: give it a name to remember it by.</source>
        <translation>Das Gerät sagt nichts über sich: Geben Sie ihm einen Namen, unter dem es wiederzufinden ist.</translation>
    </message>
    <message>
        <source>The measurement has no date.</source>
        <translation>Die Messung hat kein Datum.</translation>
    </message>
    <message>
        <source>The folder %1 cannot be made.</source>
        <translation>Der Ordner %1 kann nicht angelegt werden.</translation>
    </message>
    <message>
        <source>%1 cannot be written: %2.</source>
        <translation>%1 kann nicht geschrieben werden: %2.</translation>
    </message>
    <message>
        <source>%1: it has no date</source>
        <translation>%1: hat kein Datum</translation>
    </message>
    <message>
        <source>%1: it is of another unit, %2 and not %3</source>
        <translation>%1: ist von einem anderen Gerät, %2 und nicht %3</translation>
    </message>
</context>
<context>
    <name>lights::Measuring</name>
    <message>
        <source>The touch frame says that it has no lights.</source>
        <translation>Der Touchrahmen meldet, dass er keine Lichtschranken hat.</translation>
    </message>
    <message>
        <source>No answer from the touch frame</source>
        <translation>Keine Antwort vom Touchrahmen</translation>
    </message>
    <message>
        <source>The scan of X stays incomplete: %1 of %2 lights came.</source>
        <translation>Die Messung von X bleibt unvollständig: %1 von %2 Lichtschranken kamen.</translation>
    </message>
    <message>
        <source>The scan of Y stays incomplete: %1 of %2 lights came.</source>
        <translation>Die Messung von Y bleibt unvollständig: %1 von %2 Lichtschranken kamen.</translation>
    </message>
</context>
<context>
    <name>lights::ScanFile</name>
    <message>
        <source>too long for a line of a signal test&apos;s log</source>
        <translation>zu lang für eine Zeile des Protokolls eines Signaltests</translation>
    </message>
    <message>
        <source>it is empty</source>
        <translation>sie ist leer</translation>
    </message>
    <message>
        <source>line %1: %2</source>
        <translation>Zeile %1: %2</translation>
    </message>
    <message>
        <source>not the title of a signal test&apos;s log: Date,Time,X000,...</source>
        <translation>nicht die Titelzeile des Protokolls eines Signaltests: Date,Time,X000,...</translation>
    </message>
    <message>
        <source>no frame has more than %1 lights on %2</source>
        <translation>kein Rahmen hat mehr als %1 Lichtschranken auf %2</translation>
    </message>
    <message>
        <source>the level of light %1 is no number from 0 to %2</source>
        <translation>der Pegel der Lichtschranke %1 ist keine Zahl von 0 bis %2</translation>
    </message>
    <message>
        <source>no measurement of lights: &quot;format&quot; has to be &quot;%1&quot;</source>
        <translation>keine Messung von Lichtschranken: „format“ muss „%1“ sein</translation>
    </message>
    <message>
        <source>&quot;version&quot; has to be %1</source>
        <translation>„version“ muss %1 sein</translation>
    </message>
    <message>
        <source>&quot;date&quot; is no date such as 2026-01-31T12:00:00Z</source>
        <translation>„date“ ist kein Datum wie 2026-01-31T12:00:00Z</translation>
    </message>
    <message>
        <source>it has neither axis</source>
        <translation>sie hat keine der beiden Achsen</translation>
    </message>
    <message>
        <source>&quot;lights&quot; of %1 has to be a whole number from 1 to %2</source>
        <translation>„lights“ von %1 muss eine ganze Zahl von 1 bis %2 sein</translation>
    </message>
    <message>
        <source>%1 has no scans</source>
        <translation>%1 hat keine Messungen</translation>
    </message>
    <message>
        <source>&quot;off&quot; of %1 names a light that is not there</source>
        <translation>„off“ von %1 nennt eine Lichtschranke, die es nicht gibt</translation>
    </message>
    <message>
        <source>&quot;pitch&quot; of %1 has to be millimetres above 0</source>
        <translation>„pitch“ von %1 muss in Millimetern über 0 sein</translation>
    </message>
    <message>
        <source>&quot;%1&quot; of %2 has %3 numbers where there are %4 lights</source>
        <translation>„%1“ von %2 hat %3 Zahlen, wo es %4 Lichtschranken gibt</translation>
    </message>
    <message>
        <source>&quot;%1&quot; of %2 has to be numbers from %3 to %4</source>
        <translation>„%1“ von %2 muss aus Zahlen von %3 bis %4 bestehen</translation>
    </message>
    <message>
        <source>%1 is no file</source>
        <translation>%1 ist keine Datei</translation>
    </message>
    <message>
        <source>%1 does not exist</source>
        <translation>%1 gibt es nicht</translation>
    </message>
    <message>
        <source>%1 cannot be read: %2</source>
        <translation>%1 kann nicht gelesen werden: %2</translation>
    </message>
    <message>
        <source>%1 is larger than %2 MiB</source>
        <translation>%1 ist größer als %2 MiB</translation>
    </message>
    <message>
        <source>damaged, at byte %1: %2</source>
        <translation>beschädigt, bei Byte %1: %2</translation>
    </message>
    <message>
        <source>light %1 was never read</source>
        <translation>die Lichtschranke %1 wurde nie gelesen</translation>
    </message>
    <message>
        <source>%1: %2</source>
        <translation>%1: %2</translation>
    </message>
    <message>
        <source>it has no scan</source>
        <translation>sie hat keine Messung</translation>
    </message>
</context>
<context>
    <name>lights::Thresholds</name>
    <message>
        <source>%1: %2</source>
        <translation>%1: %2</translation>
    </message>
    <message>
        <source>no JSON, at byte %1: %2</source>
        <translation>kein JSON, bei Byte %1: %2</translation>
    </message>
    <message>
        <source>no file of thresholds: &quot;format&quot; has to be &quot;%1&quot;</source>
        <translation>keine Datei mit Schwellen: „format“ muss „%1“ sein</translation>
    </message>
    <message>
        <source>&quot;version&quot; has to be %1</source>
        <translation>„version“ muss %1 sein</translation>
    </message>
    <message>
        <source>there is no threshold &quot;%1&quot;</source>
        <translation>es gibt keine Schwelle „%1“</translation>
    </message>
    <message>
        <source>&quot;%1&quot; has to be a whole number from %2 to %3</source>
        <translation>„%1“ muss eine ganze Zahl von %2 bis %3 sein</translation>
    </message>
    <message>
        <source>&quot;%1&quot; has to be a number from %2 to %3</source>
        <translation>„%1“ muss eine Zahl von %2 bis %3 sein</translation>
    </message>
    <message>
        <source>%1 cannot be read: %2</source>
        <translation>%1 kann nicht gelesen werden: %2</translation>
    </message>
    <message>
        <source>%1 is too large for a file of thresholds</source>
        <translation>%1 ist zu groß für eine Datei mit Schwellen</translation>
    </message>
</context>
<context>
    <name>main</name>
    <message>
        <source>There is no display to show windows on. Start this from a desktop, or set DISPLAY or WAYLAND_DISPLAY.</source>
        <translation>Es gibt keine Anzeige für Fenster. Starten Sie das Programm auf einem Desktop oder setzen Sie DISPLAY oder WAYLAND_DISPLAY.</translation>
    </message>
    <message>
        <source>Quorvel runs already but does not answer. End it with &quot;pkill -KILL quorvel&quot; and start it again.</source>
        <translation>Quorvel läuft bereits, antwortet aber nicht. Beenden Sie es mit „pkill -KILL quorvel“ und starten Sie es neu.</translation>
    </message>
    <message>
        <source>Quorvel runs already, and this start records nothing: choose &quot;Record...&quot; in the menu of its window.</source>
        <translation>Quorvel läuft bereits, und dieser Start zeichnet nichts auf: Wählen Sie „Aufzeichnen...“ im Menü des Fensters.</translation>
    </message>
    <message>
        <source>Started hidden in the tray: the argument %1 asks for it.</source>
        <translation>Unsichtbar im Infobereich gestartet: Das Argument %1 verlangt es.</translation>
    </message>
</context>
<context>
    <name>outcome</name>
    <message>
        <source>Kept.</source>
        <translation>Gespeichert.</translation>
    </message>
    <message>
        <source>Not kept: cannot write %1</source>
        <translation>Schreibfehler bei %1</translation>
    </message>
</context>
<context>
    <name>paper::Pdf</name>
    <message>
        <source>This is no report.</source>
        <translation>Das ist kein Bericht.</translation>
    </message>
</context>
<context>
    <name>smoothing_dlg</name>
    <message>
        <source>MalvoTools</source>
        <translation>MalvoTools</translation>
    </message>
    <message>
        <source>Smoothing</source>
        <translation>Glättung</translation>
    </message>
    <message>
        <source>Use of smoothing on writing</source>
        <translation>Glättung beim Schreiben</translation>
    </message>
    <message>
        <source>We strongly recommend that you use the smoothing mode, which will optimize the use of your experience, and almost no side effects.</source>
        <translation>Wir empfehlen dringend, die Glättung zu benutzen: Sie macht das Schreiben angenehmer und hat fast keine Nebenwirkungen.</translation>
    </message>
    <message>
        <source>Smoothing Level:</source>
        <translation>Stärke der Glättung:</translation>
    </message>
    <message>
        <source>Low smoothing level</source>
        <translation>Niedrig: Stärke der Glättung</translation>
    </message>
    <message>
        <source>Low</source>
        <translation>Niedrig</translation>
    </message>
    <message>
        <source>Smoothing Level</source>
        <translation>Stärke der Glättung</translation>
    </message>
    <message>
        <source>High smoothing level</source>
        <translation>Hoch: Stärke der Glättung</translation>
    </message>
    <message>
        <source>High</source>
        <translation>Hoch</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
</context>
<context>
    <name>test_win</name>
    <message>
        <source>MalvoTools</source>
        <translation>MalvoTools</translation>
    </message>
    <message>
        <source>Signal test</source>
        <translation>Signaltest</translation>
    </message>
    <message>
        <source>The signal level of every light of the X axis (green) and the Y axis (red), from 0 to 1100, between two dashed limits.</source>
        <translation>Der Signalpegel jeder Lichtschranke der X-Achse (grün) und der Y-Achse (rot), von 0 bis 1100, zwischen zwei gestrichelten Grenzen.</translation>
    </message>
    <message>
        <source>Tests the X axis once</source>
        <translation>Testet die X-Achse einmal</translation>
    </message>
    <message>
        <source>Once [X]</source>
        <translation>Einmal [X]</translation>
    </message>
    <message>
        <source>Tests the Y axis once</source>
        <translation>Testet die Y-Achse einmal</translation>
    </message>
    <message>
        <source>Once [Y]</source>
        <translation>Einmal [Y]</translation>
    </message>
    <message>
        <source>All Test</source>
        <translation>Dauernd</translation>
    </message>
    <message>
        <source>Closes the signal test</source>
        <translation>Schließt den Signaltest</translation>
    </message>
    <message>
        <source>Exit</source>
        <translation>Schließen</translation>
    </message>
    <message>
        <source>Settings of the test</source>
        <translation>Einstellungen des Tests</translation>
    </message>
    <message>
        <source>Upper Limit:</source>
        <translation>Maximum:</translation>
    </message>
    <message>
        <source>Lower Limit:</source>
        <translation>Minimum:</translation>
    </message>
    <message>
        <source>Interval (s):</source>
        <translation>Intervall (s):</translation>
    </message>
    <message>
        <source>AGC:</source>
        <translation>AGC:</translation>
    </message>
    <message>
        <source>Draws the signal curves</source>
        <translation>Zeichnet die Signalkurven</translation>
    </message>
    <message>
        <source>ADC</source>
        <translation>ADC</translation>
    </message>
    <message>
        <source>Draws the AGC curves</source>
        <translation>Zeichnet die AGC-Kurven</translation>
    </message>
    <message>
        <source>AGC</source>
        <translation>AGC</translation>
    </message>
    <message>
        <source>Draws the ripple curves</source>
        <translation>Zeichnet die Rippelkurven</translation>
    </message>
    <message>
        <source>Rippel</source>
        <translation>Rippel</translation>
    </message>
    <message>
        <source>Fills in the default settings</source>
        <translation>Setzt die Standardwerte ein</translation>
    </message>
    <message>
        <source>Defualt</source>
        <translation>Standard</translation>
    </message>
    <message>
        <source>Touch Test</source>
        <translation>Touchtest</translation>
    </message>
    <message>
        <source>Multitouch View</source>
        <translation>Multitouch</translation>
    </message>
    <message>
        <source>Data View</source>
        <translation>Daten</translation>
    </message>
    <message>
        <source>Options...</source>
        <translation>Optionen...</translation>
    </message>
    <message>
        <source>AGC...</source>
        <translation>AGC...</translation>
    </message>
    <message>
        <source>X Data</source>
        <translation>X-Daten</translation>
    </message>
    <message>
        <source>Y Data</source>
        <translation>Y-Daten</translation>
    </message>
    <message>
        <source>Number</source>
        <translation>Nummer</translation>
    </message>
    <message>
        <source>Range</source>
        <translation>Bereich</translation>
    </message>
    <message>
        <source>warning</source>
        <translation>Warnung</translation>
    </message>
    <message>
        <source>False to open ResultX.csv.</source>
        <translation>ResultX.csv kann nicht geöffnet werden.</translation>
    </message>
    <message>
        <source>&amp;Log to TestLog.csv</source>
        <translation>In TestLog.csv auf&amp;zeichnen</translation>
    </message>
    <message>
        <source>Upper limit value less than lower limit value.</source>
        <translation>Das Maximum ist kleiner als das Minimum.</translation>
    </message>
    <message>
        <source>%1 enter a whole number from 0 to %2</source>
        <translation>%1 Geben Sie eine ganze Zahl von 0 bis %2 ein</translation>
    </message>
    <message>
        <source>Stop</source>
        <translation>Stopp</translation>
    </message>
    <message>
        <source>The test waits until the light setting is closed</source>
        <translation>Der Test wartet, bis die Lichteinstellung geschlossen ist</translation>
    </message>
    <message>
        <source>The test waits until the light check has ended</source>
        <translation>Der Test wartet, bis die Lichtprüfung beendet ist</translation>
    </message>
</context>
<context>
    <name>useradv_dlg</name>
    <message>
        <source>Advanced Setting</source>
        <translation>Erweiterte Einstellungen</translation>
    </message>
    <message>
        <source>Use your finger as an input device</source>
        <translation>Den Finger als Eingabegerät benutzen</translation>
    </message>
    <message>
        <source>Right-button setting</source>
        <translation>Rechte Maustaste</translation>
    </message>
    <message>
        <source>Enable press and hold for right-button</source>
        <translation>Halten löst die rechte Maustaste aus</translation>
    </message>
    <message>
        <source>Duration:</source>
        <translation>Dauer:</translation>
    </message>
    <message>
        <source>Short duration</source>
        <translation>Kurz: Dauer</translation>
    </message>
    <message>
        <source>Shortens press and hold by half a second</source>
        <translation>Verkürzt das Halten um eine halbe Sekunde</translation>
    </message>
    <message>
        <source>Short</source>
        <translation>Kurz</translation>
    </message>
    <message>
        <source>Duration of press and hold</source>
        <translation>Dauer des Haltens</translation>
    </message>
    <message>
        <source>Long duration</source>
        <translation>Lang: Dauer</translation>
    </message>
    <message>
        <source>Lengthens press and hold by half a second</source>
        <translation>Verlängert das Halten um eine halbe Sekunde</translation>
    </message>
    <message>
        <source>Long</source>
        <translation>Lang</translation>
    </message>
    <message>
        <source>Spatial tolerance:</source>
        <translation>Toleranz:</translation>
    </message>
    <message>
        <source>Small tolerance of press and hold</source>
        <translation>Klein: Toleranz beim Halten</translation>
    </message>
    <message>
        <source>Allows less movement during press and hold</source>
        <translation>Erlaubt weniger Bewegung beim Halten</translation>
    </message>
    <message>
        <source>Small</source>
        <translation>Klein</translation>
    </message>
    <message>
        <source>Spatial tolerance of press and hold</source>
        <translation>Toleranz beim Halten</translation>
    </message>
    <message>
        <source>Large tolerance of press and hold</source>
        <translation>Groß: Toleranz beim Halten</translation>
    </message>
    <message>
        <source>Allows more movement during press and hold</source>
        <translation>Erlaubt mehr Bewegung beim Halten</translation>
    </message>
    <message>
        <source>Large</source>
        <translation>Groß</translation>
    </message>
    <message>
        <source>Double-click setting</source>
        <translation>Doppelklick</translation>
    </message>
    <message>
        <source>You must restart the computer to make double-click setting take effect.</source>
        <translation>Der Doppelklick wird erst nach einem Neustart des Rechners so erkannt.</translation>
    </message>
    <message>
        <source>Speed:</source>
        <translation>Pause:</translation>
    </message>
    <message>
        <source>Slow double-click</source>
        <translation>Lang: Pause beim Doppelklick</translation>
    </message>
    <message>
        <source>Allows more time between the clicks</source>
        <translation>Erlaubt mehr Zeit zwischen den Klicks</translation>
    </message>
    <message>
        <source>Slow</source>
        <translation>Lang</translation>
    </message>
    <message>
        <source>Speed of double-click</source>
        <translation>Pause beim Doppelklick</translation>
    </message>
    <message>
        <source>Fast double-click</source>
        <translation>Kurz: Pause beim Doppelklick</translation>
    </message>
    <message>
        <source>Allows less time between the clicks</source>
        <translation>Erlaubt weniger Zeit zwischen den Klicks</translation>
    </message>
    <message>
        <source>Fast</source>
        <translation>Kurz</translation>
    </message>
    <message>
        <source>Small tolerance of double-click</source>
        <translation>Klein: Toleranz beim Doppelklick</translation>
    </message>
    <message>
        <source>Allows less distance between the clicks</source>
        <translation>Erlaubt weniger Abstand zwischen den Klicks</translation>
    </message>
    <message>
        <source>Spatial tolerance of double-click</source>
        <translation>Toleranz beim Doppelklick</translation>
    </message>
    <message>
        <source>Large tolerance of double-click</source>
        <translation>Groß: Toleranz beim Doppelklick</translation>
    </message>
    <message>
        <source>Allows more distance between the clicks</source>
        <translation>Erlaubt mehr Abstand zwischen den Klicks</translation>
    </message>
    <message>
        <source>Wheel setting</source>
        <translation>Mausrad</translation>
    </message>
    <message>
        <source>Enable Use your finger for wheel</source>
        <translation>Mit dem Finger rollen</translation>
    </message>
    <message>
        <source>Sensitivity:</source>
        <translation>Empfindlichkeit:</translation>
    </message>
    <message>
        <source>Low sensitivity</source>
        <translation>Niedrig: Empfindlichkeit</translation>
    </message>
    <message>
        <source>Makes the wheel less sensitive</source>
        <translation>Macht das Mausrad unempfindlicher</translation>
    </message>
    <message>
        <source>Low</source>
        <translation>Niedrig</translation>
    </message>
    <message>
        <source>Sensitivity of the wheel</source>
        <translation>Empfindlichkeit des Mausrads</translation>
    </message>
    <message>
        <source>High sensitivity</source>
        <translation>Hoch: Empfindlichkeit</translation>
    </message>
    <message>
        <source>Makes the wheel more sensitive</source>
        <translation>Macht das Mausrad empfindlicher</translation>
    </message>
    <message>
        <source>High</source>
        <translation>Hoch</translation>
    </message>
    <message>
        <source>Default</source>
        <translation>Standard</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Apply</source>
        <translation>Anwenden</translation>
    </message>
    <message>
        <source>%1 ms</source>
        <comment>duration</comment>
        <translation>%1 ms</translation>
    </message>
    <message>
        <source>Kept, and sent to the touch frame.</source>
        <translation>Gespeichert und an den Touchrahmen gesendet.</translation>
    </message>
    <message>
        <source>Sent. Not kept: cannot write %1</source>
        <translation>Gesendet. Schreibfehler bei %1</translation>
    </message>
    <message>
        <source>The settings are sent, but %1 cannot be written: they are not kept.</source>
        <translation>Die Einstellungen sind gesendet, aber %1 kann nicht geschrieben werden: Sie sind nicht gespeichert.</translation>
    </message>
    <message>
        <source>Kept. Sent when a frame is connected by USB.</source>
        <translation>Gespeichert. Wird gesendet, sobald ein Rahmen an USB ist.</translation>
    </message>
    <message>
        <source>No touch frame is connected. The settings are kept and will be sent when one is connected by USB.</source>
        <translation>Kein Touchrahmen ist verbunden. Die Einstellungen sind gespeichert und werden gesendet, sobald einer über USB verbunden ist.</translation>
    </message>
    <message>
        <source>No touch frame is connected, and %1 cannot be written: the settings are not kept.</source>
        <translation>Kein Touchrahmen ist verbunden, und %1 kann nicht geschrieben werden: Die Einstellungen sind nicht gespeichert.</translation>
    </message>
</context>
</TS>
